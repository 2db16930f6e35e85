#include "cad/affine_fit.h"

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace korvane::testing {
namespace {

using Points = std::vector<Vec3>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

AffineFit fit(const Points &source, const Points &target, AffineMap &map)
{
    static_assert(sizeof(Vec3) == 3 * sizeof(double));
    return fit_affine_map(&source.data()->x, &target.data()->x, static_cast<int32_t>(source.size()), map);
}

AffineFit fit(const Points &source, const Points &target)
{
    AffineMap map{};
    return fit(source, target, map);
}

Vec3 apply(AffineMap &map, Vec3 point)
{
    Vec3 image{};
    EXPECT_EQ(apply_affine_map(&point.x, &image.x, &map), STATUS_OK);
    return image;
}

void expect_near(Vec3 a, Vec3 b, double tolerance = 1e-12)
{
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

/// The unit vector in the plane of x and y whose angle with x has the given cosine.
Vec3 at_cosine(double cosine)
{
    return {cosine, std::sqrt(1 - cosine * cosine), 0};
}

/// Three unit vectors, two of them those of x and y, whose determinant is `volume`.
std::array<Vec3, 3> of_volume(double volume)
{
    return {{{1, 0, 0}, {0, 1, 0}, {std::sqrt(1 - volume * volume), 0, volume}}};
}

/// The first point at the origin, the others at the ends of the edges.
Points along(std::initializer_list<Vec3> edges)
{
    Points points{{0, 0, 0}};
    points.insert(points.end(), edges);
    return points;
}

class Random {
  public:
    double number(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(engine);
    }
    Vec3 vector(double size) { return {number(-size, size), number(-size, size), number(-size, size)}; }

    /// From a random quaternion.
    Matrix3 rotation()
    {
        double w, x, y, z, square;
        do {
            w = number(-1, 1), x = number(-1, 1), y = number(-1, 1), z = number(-1, 1);
            square = w * w + x * x + y * y + z * z;
        } while (square < 0.1 || square > 1);
        const double s = 2 / square;
        return {{{{1 - s * (y * y + z * z), s * (x * y - w * z), s * (x * z + w * y)},
            {s * (x * y + w * z), 1 - s * (x * x + z * z), s * (y * z - w * x)},
            {s * (x * z - w * y), s * (y * z + w * x), 1 - s * (x * x + y * y)}}}};
    }

  private:
    std::mt19937 engine{20110805};
};

TEST(AffineFit, OnePairMapsEveryPointToItsTarget)
{
    AffineMap map{};
    ASSERT_EQ(fit({{0, 0, 0}}, {{1, 2, 3}}, map), AffineFit::found);
    for (const Vec3 point : {Vec3{0, 0, 0}, Vec3{5, -7, 1e9}})
        expect_near(apply(map, point), {1, 2, 3}, 0);
}

TEST(AffineFit, TwoPairsAreAcceptedAsOneTranslationOnly)
{
    AffineMap map{};
    ASSERT_EQ(fit({{0, 0, 0}, {1, 1, 1}}, {{5, 0, 0}, {6, 1, 1}}, map), AffineFit::found);
    expect_near(map.centre, {0, 0, 0}, 0);
    expect_near(map.translation, {5, 0, 0}, 0);
    expect_near(apply(map, {1, 1, 1}), {5, 0, 0}, 0); // the matrix is zero all the same

    map.translation = {7, 7, 7};
    EXPECT_EQ(fit({{0, 0, 0}, {1, 1, 1}}, {{5, 0, 0}, {6, 2, 1}}, map), AffineFit::none);
    expect_near(map.translation, {7, 7, 7}, 0);
}

TEST(AffineFit, OffsetsOfTwoPairsAgreeWithinAThousandth)
{
    const auto with_offsets = [](Vec3 first, Vec3 second) {
        return fit({{0, 0, 0}, {0, 1, 0}}, {first, Vec3{0, 1, 0} + second});
    };
    EXPECT_EQ(with_offsets({1000.999, 0, 0}, {1000, 0, 0}), AffineFit::found);
    EXPECT_EQ(with_offsets({1001.001, 0, 0}, {1000, 0, 0}), AffineFit::none);
    EXPECT_EQ(with_offsets({1000, 0, 0.999}, {1000, 0, 0}), AffineFit::found);
    EXPECT_EQ(with_offsets({1000, 0, 1.001}, {1000, 0, 0}), AffineFit::none);
    // The limit is exact, and relative to the second offset: between them lie 1 / 1001 and 1 / 1000.
    EXPECT_EQ(with_offsets({1000, 1, 0}, {1000, 0, 0}), AffineFit::found);
    EXPECT_EQ(with_offsets({0, 1000, 0}, {0, 1001, 0}), AffineFit::found);
    EXPECT_EQ(with_offsets({0, 1001.0005, 0}, {0, 1000, 0}), AffineFit::none);
    EXPECT_EQ(with_offsets({0, 1000, 0}, {0, 1001.0005, 0}), AffineFit::found);
    EXPECT_EQ(with_offsets({0, 0, 0}, {0, 0, 0}), AffineFit::found);
    EXPECT_EQ(with_offsets({0, 1e-9, 0}, {0, 0, 0}), AffineFit::none);
    // Offsets are from source to target, wherever the source is.
    EXPECT_EQ(fit({{7, 8, 9}, {-3, 4, 5}}, {{8, 8, 9}, {-2, 4, 5}}), AffineFit::found);
    EXPECT_EQ(fit({{7, 8, 9}, {-3, 4, 5}}, {{8, 8, 9}, {-2, 4, 5.1}}), AffineFit::none);
}

TEST(AffineFit, ThreePairsGiveTheRotationThatRelatesThem)
{
    Random random;
    int fitted = 0;
    for (int i = 0; i < 500; ++i) {
        const Matrix3 rotation = random.rotation();
        const Vec3 shift = random.vector(10);
        const Points source = {random.vector(3), random.vector(3), random.vector(3)};
        Points target;
        for (const Vec3 &point : source)
            target.push_back(rotation * (point - source[0]) + source[0] + shift);
        const Vec3 a = source[1] - source[0], b = source[2] - source[0];
        if (std::fabs(dot(a, b)) > 0.95 * norm(a) * norm(b))
            continue;
        ++fitted;
        AffineMap map{};
        ASSERT_EQ(fit(source, target, map), AffineFit::found);
        for (std::size_t row = 0; row < 3; ++row)
            expect_near(map.matrix.rows[row], rotation.rows[row]);
        expect_near(map.centre, source[0], 0);
        expect_near(map.translation, target[0], 0);
        for (std::size_t point = 0; point < 3; ++point)
            expect_near(apply(map, source[point]), target[point], 1e-11);
        const Vec3 other = random.vector(10);
        expect_near(apply(map, other), rotation * (other - source[0]) + source[0] + shift, 1e-10);
    }
    EXPECT_GT(fitted, 400);
}

TEST(AffineFit, FourPairsCarryTheUnitFrameOfTheSourceToThatOfTheTarget)
{
    Random random;
    int fitted = 0;
    for (int i = 0; i < 2000; ++i) {
        // A rotation, or reflection, with some shear and stretch.
        Matrix3 relation = random.rotation();
        for (Vec3 &row : relation.rows)
            row = (i % 2 == 0 ? 1 : -1) * row + random.vector(0.05);
        const Vec3 origin = random.vector(10), shift = random.vector(10);
        Points source{origin}, target{origin + shift};
        for (int edge = 0; edge < 3; ++edge) {
            source.push_back(origin + random.vector(2));
            target.push_back(relation * (source.back() - origin) + target[0]);
        }
        AffineMap map{};
        if (fit(source, target, map) != AffineFit::found)
            continue;
        ++fitted;
        // By the reciprocal basis: the matrix is the sum of the products (target vector)(reciprocal vector).
        std::array<Vec3, 3> u, image;
        for (std::size_t edge = 0; edge < 3; ++edge) {
            u[edge] = source[edge + 1] - origin;
            u[edge] = u[edge] / norm(u[edge]);
            image[edge] = target[edge + 1] - target[0];
            image[edge] = image[edge] / norm(image[edge]);
        }
        const double volume = dot(u[0], cross(u[1], u[2]));
        const Vec3 point = random.vector(5);
        Vec3 expected = target[0];
        for (std::size_t edge = 0; edge < 3; ++edge) {
            const Vec3 reciprocal = cross(u[(edge + 1) % 3], u[(edge + 2) % 3]) / volume;
            expected = expected + dot(reciprocal, point - origin) * image[edge];
        }
        expect_near(apply(map, point), expected, 1e-9);
    }
    EXPECT_GT(fitted, 1000);
}

TEST(AffineFit, FourPairsRelatedByAMotionGiveThatMotion)
{
    Random random;
    for (const double sign : {1.0, -1.0}) {
        Matrix3 motion = random.rotation();
        for (Vec3 &row : motion.rows)
            row = sign * row;
        const Points source = {{1, 2, 3}, {2, 2.5, 3}, {1, 4, 3.5}, {0, 2, 7}};
        Points target;
        for (const Vec3 &point : source)
            target.push_back(motion * point + Vec3{5, 6, 7});
        AffineMap map{};
        ASSERT_EQ(fit(source, target, map), AffineFit::found);
        for (const Vec3 point : {source[1], source[2], source[3], Vec3{-9, 8, 0.5}})
            expect_near(apply(map, point), motion * point + Vec3{5, 6, 7}, 1e-11);
    }
}

TEST(AffineFit, PairsAfterTheFourthDoNotCount)
{
    const Points source = along({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    Points more = source;
    more.push_back({1, 1, 1});
    Points elsewhere = source;
    elsewhere.push_back({-50, nan, 0});
    AffineMap map{}, same{};
    ASSERT_EQ(fit(source, source, map), AffineFit::found);
    ASSERT_EQ(fit(more, elsewhere, same), AffineFit::found);
    EXPECT_EQ(std::memcmp(&map, &same, sizeof map), 0);
}

TEST(AffineFit, NoPairsAreRefused)
{
    AffineMap map{};
    const double point[3] = {1, 2, 3};
    EXPECT_EQ(fit_affine_map(point, point, 0, map), AffineFit::impossible);
    EXPECT_EQ(fit_affine_map(point, point, -1, map), AffineFit::impossible);
    EXPECT_EQ(fit_affine_map(point, point, INT32_MIN, map), AffineFit::impossible);
}

/// The tests below are on three pairs and on four.
class AffineFrame : public ::testing::TestWithParam<std::size_t> {
  protected:
    Points unit() const
    {
        Points points = along({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
        points.resize(GetParam());
        return points;
    }
};
INSTANTIATE_TEST_SUITE_P(Pairs, AffineFrame, ::testing::Values(3, 4));

TEST_P(AffineFrame, LengthsOfEdgesAgreeWithinEightPercentOfTheLonger)
{
    for (std::size_t edge = 1; edge < GetParam(); ++edge) {
        const auto with_lengths = [&](double source_length, double target_length) {
            Points source = unit(), target = unit();
            source[edge] = source_length * source[edge];
            target[edge] = target_length * target[edge];
            return fit(source, target);
        };
        EXPECT_EQ(with_lengths(1, 1.05), AffineFit::found);
        EXPECT_EQ(with_lengths(1.05, 1), AffineFit::found);
        EXPECT_EQ(with_lengths(1, 1.1), AffineFit::impossible);
        EXPECT_EQ(with_lengths(1.1, 1), AffineFit::impossible);
        EXPECT_EQ(with_lengths(100, 92.0001), AffineFit::found);
        EXPECT_EQ(with_lengths(100, 91.9999), AffineFit::impossible);
        EXPECT_EQ(with_lengths(92.0001, 100), AffineFit::found);
        EXPECT_EQ(with_lengths(91.9999, 100), AffineFit::impossible);
        EXPECT_EQ(with_lengths(100, 92), AffineFit::found); // 8 <= 0.08 * 100, exactly
    }
}

TEST_P(AffineFrame, EdgesHaveALength)
{
    for (std::size_t edge = 1; edge < GetParam(); ++edge) {
        Points source = unit(), target = unit();
        source[edge] = source[0];
        EXPECT_EQ(fit(source, target), AffineFit::impossible);
        EXPECT_EQ(fit(target, source), AffineFit::impossible);
        EXPECT_EQ(fit(source, source), AffineFit::impossible);
        source[edge] = {1e-200, 0, 0}; // whose square underflows
        EXPECT_EQ(fit(source, source), AffineFit::impossible);
    }
}

TEST_P(AffineFrame, FailureLeavesTheMapAsItWas)
{
    Points bad = unit();
    bad[1] = bad[0];
    AffineMap map{{}, {1, 2, 3}, {4, 5, 6}};
    EXPECT_EQ(fit(unit(), bad, map), AffineFit::impossible);
    expect_near(map.centre, {1, 2, 3}, 0);
    expect_near(map.translation, {4, 5, 6}, 0);
}

TEST_P(AffineFrame, NotANumberGivesAMapOfSuchValuesOrNone)
{
    const AffineMap untouched{{}, {1, 2, 3}, {4, 5, 6}};
    for (std::size_t point = 0; point < GetParam(); ++point) {
        for (double Vec3::*coordinate : {&Vec3::x, &Vec3::y, &Vec3::z}) {
            for (const double value : {nan, infinite, -infinite}) {
                Points odd = unit();
                odd[point].*coordinate = value;
                for (const bool as_source : {true, false}) {
                    AffineMap map = untouched;
                    const AffineFit result = fit(as_source ? odd : unit(), as_source ? unit() : odd, map);
                    const Vec3 image = apply(map, {1, 2, 3});
                    ASSERT_NE(result, AffineFit::none);
                    EXPECT_EQ(std::isfinite(image.x + image.y + image.z), result == AffineFit::impossible);
                    if (result == AffineFit::impossible) {
                        EXPECT_EQ(std::memcmp(&map, &untouched, sizeof map), 0);
                    }
                }
            }
        }
    }
    Points all(GetParam(), {nan, nan, nan});
    EXPECT_EQ(fit(all, unit()), AffineFit::found);
    EXPECT_EQ(fit(unit(), all), AffineFit::found);
}

TEST(AffineFitOfTwoPairs, NotANumberIsNoContradictionButAnInfiniteOffsetCanBe)
{
    const Points pair = {{0, 0, 0}, {1, 0, 0}};
    EXPECT_EQ(fit(pair, {{nan, 0, 0}, {1, 0, 0}}), AffineFit::found);
    EXPECT_EQ(fit(pair, {{0, 0, 0}, {1, nan, 0}}), AffineFit::found);
    EXPECT_EQ(fit(pair, {{infinite, 0, 0}, {1, 0, 0}}), AffineFit::none);
    EXPECT_EQ(fit(pair, {{0, 0, 0}, {infinite, 0, 0}}), AffineFit::found);
    EXPECT_EQ(fit({{nan, 0, 0}}, {{1, 2, 3}}), AffineFit::found);
}

TEST(AffineFitOfThreePairs, CollinearPointsAreRefused)
{
    const Points square = along({{1, 0, 0}, {0, 1, 0}});
    for (const double direction : {1.0, -1.0}) {
        const Points line = along({{1, 0, 0}, {direction, 0, 0}});
        EXPECT_EQ(fit(line, line), AffineFit::impossible);
        EXPECT_EQ(fit(line, square), AffineFit::impossible);
        EXPECT_EQ(fit(square, line), AffineFit::impossible);
        const auto angle = [&](double cosine) { return along({{1, 0, 0}, at_cosine(direction * cosine)}); };
        EXPECT_EQ(fit(angle(0.989999), angle(0.989999)), AffineFit::found);
        EXPECT_EQ(fit(angle(0.99), angle(0.99)), AffineFit::found); // exactly
        EXPECT_EQ(fit(angle(0.990001), angle(0.990001)), AffineFit::impossible);
        EXPECT_EQ(fit(angle(0.990001), angle(0.989999)), AffineFit::impossible);
        EXPECT_EQ(fit(angle(0.989999), angle(0.990001)), AffineFit::impossible);
    }
}

TEST(AffineFitOfThreePairs, CosinesAgreeWithinAFifth)
{
    const auto with_cosines = [](double source, double target) {
        return fit(along({{1, 0, 0}, at_cosine(source)}), along({{1, 0, 0}, at_cosine(target)}));
    };
    EXPECT_EQ(with_cosines(0.3, 0.499999), AffineFit::found);
    EXPECT_EQ(with_cosines(0.3, 0.500001), AffineFit::impossible);
    EXPECT_EQ(with_cosines(0.499999, 0.3), AffineFit::found);
    EXPECT_EQ(with_cosines(0.500001, 0.3), AffineFit::impossible);
    EXPECT_EQ(with_cosines(0, 0.2), AffineFit::found);    // exactly
    EXPECT_EQ(with_cosines(0.6, -0.6), AffineFit::found); // only magnitudes are compared
}

TEST(AffineFitOfThreePairs, ShearsWithinTheToleranceAreKept)
{
    AffineMap map{};
    const Points target = along({{0, 0, 1}, {std::sqrt(0.99), 0, 0.1}});
    ASSERT_EQ(fit(along({{1, 0, 0}, {0, 1, 0}}), target, map), AffineFit::found);
    expect_near(apply(map, {1, 0, 0}), target[1]);
    expect_near(apply(map, {0, 1, 0}), target[2]);
    expect_near(apply(map, {0, 0, 1}), {0, 1, 0}); // the normal of the target
}

TEST(AffineFitOfThreePairs, LengthsAlongTheEdgesAreKept)
{
    AffineMap map{};
    ASSERT_EQ(fit(along({{2, 0, 0}, {0, 3, 0}}), along({{2.1, 0, 0}, {0, 2.9, 0}}), map), AffineFit::found);
    expect_near(apply(map, {2, 3, 1}), {2, 3, 1}); // not the target points, which are out by some percent
}

TEST(AffineFitOfFourPairs, CoplanarPointsAreRefused)
{
    const Points cube = along({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    const Points flat = along({{1, 0, 0}, {0, 1, 0}, {0.6, 0.8, 0}});
    EXPECT_EQ(fit(flat, flat), AffineFit::impossible);
    EXPECT_EQ(fit(flat, cube), AffineFit::impossible);
    EXPECT_EQ(fit(cube, flat), AffineFit::impossible);
    const Points line = along({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}});
    EXPECT_EQ(fit(line, line), AffineFit::impossible);
}

TEST(AffineFitOfFourPairs, VolumesAreLargeEnoughAndAgreeWithinAFifth)
{
    const auto with_volumes = [](double source, double target) {
        const auto from = of_volume(source), to = of_volume(target);
        return fit(along({from[0], from[1], from[2]}), along({to[0], to[1], to[2]}));
    };
    EXPECT_EQ(with_volumes(0.02, 0.02), AffineFit::found); // exactly
    EXPECT_EQ(with_volumes(0.020001, 0.020001), AffineFit::found);
    EXPECT_EQ(with_volumes(0.019999, 0.020001), AffineFit::impossible);
    EXPECT_EQ(with_volumes(0.020001, 0.019999), AffineFit::impossible);
    EXPECT_EQ(with_volumes(0.019999, 0.019999), AffineFit::impossible);
    EXPECT_EQ(with_volumes(0.3, 0.499999), AffineFit::found);
    EXPECT_EQ(with_volumes(0.3, 0.500001), AffineFit::impossible);
    EXPECT_EQ(with_volumes(0.499999, 0.3), AffineFit::found);
    EXPECT_EQ(with_volumes(0.500001, 0.3), AffineFit::impossible);
    EXPECT_EQ(with_volumes(0.224, 0.024), AffineFit::found); // exactly, as 0.224 - 0.024 is 0.2
    EXPECT_EQ(with_volumes(0.4, -0.4), AffineFit::found);    // only magnitudes are compared
}

TEST(AffineMap, AppliesRowByRowAndInPlace)
{
    AffineMap map{{{{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}}}, {1, 1, 1}, {10, 20, 30}};
    double point[3] = {2, 3, 4};
    EXPECT_EQ(apply_affine_map(point, point, &map), STATUS_OK);
    EXPECT_EQ(point[0], 1 + 4 + 9 + 10);
    EXPECT_EQ(point[1], 4 + 10 + 18 + 20);
    EXPECT_EQ(point[2], 7 + 16 + 27 + 30);
}

} // namespace
} // namespace korvane::testing
