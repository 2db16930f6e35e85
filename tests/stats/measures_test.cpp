#include "stats/measures.h"

#include <algorithm>
#include <limits>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "stats/shapes.h"

namespace korvane {
namespace {

using Real = long double;
constexpr double infinite = HUGE_VAL;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// Independent versions in extended precision, by other formulas.

Real distance(Vec3 p, Vec3 q)
{
    return std::hypot(Real{p.x} - q.x, Real{p.y} - q.y, Real{p.z} - q.z);
}

/// By Heron's formula, in the order that keeps digits.
Real area(Vec3 p, Vec3 q, Vec3 r)
{
    Real sides[] = {distance(p, q), distance(q, r), distance(r, p)};
    std::sort(std::begin(sides), std::end(sides));
    const auto [c, b, a] = sides;
    return 0.25L * std::sqrt((a + (b + c)) * (c - (a - b)) * (c + (a - b)) * (a + (b - c)));
}

/// By the determinant, along its first row.
Real volume(Vec3 p, Vec3 q, Vec3 r, Vec3 s)
{
    const Real m[3][3] = {{Real{q.x} - p.x, Real{q.y} - p.y, Real{q.z} - p.z},
        {Real{r.x} - p.x, Real{r.y} - p.y, Real{r.z} - p.z},
        {Real{s.x} - p.x, Real{s.y} - p.y, Real{s.z} - p.z}};
    Real determinant = 0;
    for (int i = 0; i < 3; ++i)
        determinant +=
            m[0][i] * (m[1][(i + 1) % 3] * m[2][(i + 2) % 3] - m[1][(i + 2) % 3] * m[2][(i + 1) % 3]);
    return determinant / 6;
}

/// By the law of cosines.
Real angle(Vec3 before, Vec3 corner, Vec3 after)
{
    const Real a = distance(corner, before);
    const Real b = distance(corner, after);
    const Real c = distance(before, after);
    return std::acos((a * a + b * b - c * c) / (2 * a * b)) * 180 / 3.141593L;
}

/// Longest side over the inscribed radius.
Real naive_triangle(Vec3 p, Vec3 q, Vec3 r)
{
    const Real l1 = distance(p, q), l2 = distance(q, r), l3 = distance(r, p);
    const Real inscribed_radius = 2 * area(p, q, r) / (l1 + l2 + l3);
    return std::max({l1, l2, l3}) / (2 * std::sqrt(3.0L) * inscribed_radius);
}

Real naive_tetrahedron(const TetrahedronCorners &p)
{
    const Real measured_volume = volume(p[0], p[1], p[2], p[3]);
    if (measured_volume <= 0)
        return infinite;
    Real longest = 0;
    for (const Vec3 a : p)
        for (const Vec3 b : p)
            longest = std::max(longest, distance(a, b));
    const Real surface =
        area(p[0], p[1], p[2]) + area(p[0], p[1], p[3]) + area(p[0], p[2], p[3]) + area(p[1], p[2], p[3]);
    const Real inscribed_radius = 3 * measured_volume / surface;
    return longest / (2 * std::sqrt(6.0L) * inscribed_radius);
}

Real naive_quadrangle(const QuadrangleCorners &p)
{
    Real worst = 0;
    for (size_t i = 0; i < 4; ++i)
        worst = std::max(worst, naive_triangle(p[i], p[(i + 1) % 4], p[(i + 2) % 4]));
    const Real right_isosceles = std::sqrt(3.0L) / 6 * std::sqrt(2.0L) * (2 + std::sqrt(2.0L));
    return worst / right_isosceles;
}

/// The cosine of the dihedral angle of two triangles at the edge (a, b), from the lengths of two altitudes
/// and the distance of their feet.
Real cosine_of_fold(Vec3 a, Vec3 b, Vec3 c, Vec3 d)
{
    const Real edge = distance(a, b);
    const auto foot = [&](Vec3 p) {
        return (distance(a, p) * distance(a, p) - distance(b, p) * distance(b, p) + edge * edge) / (2 * edge);
    };
    const Real h = 2 * area(a, b, c) / edge, k = 2 * area(a, b, d) / edge;
    const Real along = foot(c) - foot(d);
    const Real apart = distance(c, d) * distance(c, d) - along * along;
    return -(h * h + k * k - apart) / (2 * h * k);
}

Real naive_planarity(const QuadrangleCorners &p)
{
    return std::min(
        (1 + cosine_of_fold(p[0], p[2], p[1], p[3])) / 2, (1 + cosine_of_fold(p[1], p[3], p[0], p[2])) / 2);
}

Real naive_hexahedron(const HexahedronCorners &p)
{
    Real length = 0;
    for (size_t i = 0; i < 4; ++i)
        length += distance(p[i], p[(i + 1) % 4]) + distance(p[4 + i], p[4 + (i + 1) % 4]) +
                  distance(p[i], p[i + 4]);
    Real smallest = infinite;
    for (size_t i = 0; i < 4; ++i) {
        const size_t next = (i + 1) % 4, previous = (i + 3) % 4;
        smallest = std::min(smallest, volume(p[i], p[next], p[previous], p[i + 4]));
        smallest = std::min(smallest, volume(p[4 + i], p[4 + previous], p[4 + next], p[i]));
    }
    smallest = std::min(smallest, volume(p[0], p[2], p[7], p[5]));
    smallest = std::min(smallest, volume(p[1], p[3], p[4], p[6]));
    return std::pow(length / 12, 1.5L) / smallest;
}

class RandomElements : public ::testing::Test {
  protected:
    Vec3 point() { return {coordinate(generator), coordinate(generator), coordinate(generator)}; }

    template <size_t n>
    std::array<Vec3, n> points()
    {
        std::array<Vec3, n> corners;
        for (Vec3 &corner : corners)
            corner = point();
        return corners;
    }

    /// A unit cube whose corners are moved a little.
    HexahedronCorners hexahedron()
    {
        HexahedronCorners corners;
        for (size_t i = 0; i < 8; ++i)
            corners[i] = unit_cube[i] + 0.03 * point();
        return corners;
    }

    static void expect_close(double measured, Real expected)
    {
        EXPECT_NEAR(measured / static_cast<double>(expected), 1, 1e-9);
    }

    static constexpr int rounds = 2000;
    std::mt19937 generator{1};
    std::uniform_real_distribution<double> coordinate{-10, 10};
};

TEST_F(RandomElements, TriangleMeasuresAgreeWithOtherFormulas)
{
    for (int i = 0; i < rounds; ++i) {
        const auto p = points<3>();
        expect_close(triangle_aspect_ratio(p), naive_triangle(p[0], p[1], p[2]));
        const auto angles = triangle_angles(p);
        expect_close(angles[0], angle(p[0], p[1], p[2]));
        expect_close(angles[1], angle(p[1], p[2], p[0]));
        expect_close(angles[2], angle(p[2], p[0], p[1]));
    }
}

TEST_F(RandomElements, QuadrangleMeasuresAgreeWithOtherFormulas)
{
    for (int i = 0; i < rounds; ++i) {
        const auto p = points<4>();
        expect_close(quadrangle_aspect_ratio(p), naive_quadrangle(p));
        EXPECT_NEAR(quadrangle_planarity(p), static_cast<double>(naive_planarity(p)), 1e-9);
        const auto angles = quadrangle_angles(p);
        for (size_t k = 0; k < 4; ++k)
            expect_close(angles[k], angle(p[k], p[(k + 1) % 4], p[(k + 2) % 4]));
    }
}

TEST_F(RandomElements, TetrahedronRatioAgreesWithOtherFormulas)
{
    int inverted = 0;
    for (int i = 0; i < rounds; ++i) {
        const auto p = points<4>();
        const Real expected = naive_tetrahedron(p);
        if (expected == infinite) {
            ++inverted;
            EXPECT_EQ(tetrahedron_aspect_ratio(p), infinite);
        } else {
            expect_close(tetrahedron_aspect_ratio(p), expected);
        }
    }
    EXPECT_NEAR(inverted, rounds / 2, rounds / 10);
}

TEST_F(RandomElements, HexahedronRatioAgreesWithOtherFormulas)
{
    for (int i = 0; i < rounds; ++i) {
        const auto moved = hexahedron();
        expect_close(hexahedron_aspect_ratio(moved), naive_hexahedron(moved));
        const auto tangled = points<8>();
        expect_close(hexahedron_aspect_ratio(tangled), naive_hexahedron(tangled));
    }
}

TEST_F(RandomElements, EdgeLengthIsTheDistance)
{
    for (int i = 0; i < rounds; ++i) {
        const auto p = points<2>();
        expect_close(edge_length(p[0], p[1]), distance(p[0], p[1]));
        EXPECT_EQ(edge_length(p[0], p[1]), edge_length(p[1], p[0]));
    }
}

const double half_sqrt3 = std::sqrt(3.0) / 2;
const TriangleCorners equilateral{{{0, 0, 0}, {1, 0, 0}, {0.5, half_sqrt3, 0}}};
const TriangleCorners right_isosceles{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}};
const QuadrangleCorners square{{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}};
const TetrahedronCorners regular{{{1, 1, 1}, {-1, 1, -1}, {1, -1, -1}, {-1, -1, 1}}};
const HexahedronCorners cube = std::to_array(unit_cube);

constexpr double tolerance = 1e-14;

TEST(TriangleMeasures, OfKnownTriangles)
{
    EXPECT_NEAR(triangle_aspect_ratio(equilateral), 1, tolerance);
    EXPECT_NEAR(triangle_aspect_ratio(right_isosceles), 1 / 0.7174389352143008, tolerance);
    EXPECT_NEAR(triangle_aspect_ratio(right_isosceles), 1.3938, 1e-4);
    for (const double degrees : triangle_angles(equilateral))
        EXPECT_NEAR(degrees, 60 * std::numbers::pi / 3.141593, 1e-12);
    EXPECT_LT(triangle_angles(equilateral)[0], 59.99999999);
}

TEST(TriangleMeasures, GiveTheAnglesFromTheSecondCornerOn)
{
    const TriangleCorners p{{{0, 0, 0}, {2, 0, 0}, {0, 1, 0}}};
    const auto angles = triangle_angles(p);
    EXPECT_NEAR(angles[0], 26.565, 1e-3);
    EXPECT_NEAR(angles[1], 63.435, 1e-3);
    EXPECT_NEAR(angles[2], 90.0, 1e-3);
}

TEST(TriangleMeasures, WithoutAreaTheRatioIsInfinite)
{
    EXPECT_EQ(triangle_aspect_ratio({{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}}), infinite);
    EXPECT_EQ(triangle_aspect_ratio({{{1, 2, 3}, {1, 2, 3}, {1, 2, 3}}}), infinite);
    EXPECT_EQ(triangle_aspect_ratio({{{0, 0, 0}, {1e-170, 0, 0}, {0, 1e-170, 0}}}), infinite);
    EXPECT_EQ(triangle_aspect_ratio({{{nan, 0, 0}, {1, 0, 0}, {0, 1, 0}}}), infinite);
    EXPECT_EQ(triangle_aspect_ratio({{{infinite, 0, 0}, {1, 0, 0}, {0, 1, 0}}}), infinite);
}

TEST(TriangleMeasures, OrientationDoesNotMatter)
{
    EXPECT_NEAR(triangle_aspect_ratio({equilateral[0], equilateral[2], equilateral[1]}), 1, tolerance);
}

TEST(TriangleMeasures, ASideOfLengthZeroMakesTheAnglesNearlyRight)
{
    const double nearly_right = std::acos(0.0) * 180.0 / 3.141593;
    EXPECT_LT(nearly_right, 90);
    const auto angles = triangle_angles({{{0, 0, 0}, {0, 0, 0}, {1, 0, 0}}});
    EXPECT_EQ(angles[0], nearly_right);
    EXPECT_EQ(angles[1], 0);
    EXPECT_EQ(angles[2], nearly_right);
}

TEST(TriangleMeasures, ACosinePastOneIsNotANumber)
{
    std::mt19937 generator(1);
    std::uniform_real_distribution<double> coordinate(-1, 1);
    int not_a_number = 0;
    for (int i = 0; i < 1000; ++i) {
        const Vec3 direction{coordinate(generator), coordinate(generator), coordinate(generator)};
        const Vec3 p = coordinate(generator) * direction;
        const double degrees = triangle_angles({p, {0, 0, 0}, direction})[0];
        not_a_number += std::isnan(degrees);
    }
    EXPECT_GT(not_a_number, 0);
    EXPECT_LT(not_a_number, 1000);
}

TEST(QuadrangleMeasures, OfTheUnitSquare)
{
    EXPECT_NEAR(quadrangle_aspect_ratio(square), 1, tolerance);
    EXPECT_EQ(quadrangle_planarity(square), 1);
    for (const double degrees : quadrangle_angles(square))
        EXPECT_NEAR(degrees, 90 * std::numbers::pi / 3.141593, 1e-12);
}

TEST(QuadrangleMeasures, ADegenerateCornerTriangleMakesTheRatioInfinite)
{
    for (size_t flat = 0; flat < 4; ++flat) {
        QuadrangleCorners p = square;
        p[flat] = 0.5 * (p[(flat + 1) % 4] + p[(flat + 3) % 4]);
        EXPECT_EQ(quadrangle_aspect_ratio(p), infinite) << flat;
        EXPECT_LE(quadrangle_planarity(p), 0.5) << flat;
    }
}

TEST(QuadrangleMeasures, PlanarityFallsFromPlanarToFolded)
{
    double previous = 1;
    for (const double height : {0.1, 0.5, 1.0, 2.0, 10.0}) {
        QuadrangleCorners p = square;
        p[2].z = height;
        EXPECT_LT(quadrangle_planarity(p), previous);
        previous = quadrangle_planarity(p);
    }
    const QuadrangleCorners folded_over{{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 0, 0}}};
    EXPECT_EQ(quadrangle_planarity(folded_over), 0);
    const QuadrangleCorners dart{{{0, 0, 0}, {3, 0, 0}, {1, 1, 0}, {0, 3, 0}}};
    EXPECT_EQ(quadrangle_planarity(dart), 0);
}

TEST(QuadrangleMeasures, ANormalOfLengthZeroContributesAHalf)
{
    EXPECT_EQ(quadrangle_planarity({{{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {1, 1, 0}}}), 0.5);
    EXPECT_EQ(quadrangle_planarity({{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}}}), 0.5);
}

TEST(QuadrangleMeasures, GiveTheAnglesFromTheSecondCornerOn)
{
    const QuadrangleCorners trapezoid{{{0, 0, 0}, {2, 0, 0}, {1, 1, 0}, {0, 1, 0}}};
    const auto angles = quadrangle_angles(trapezoid);
    EXPECT_NEAR(angles[0], 45, 1e-3);
    EXPECT_NEAR(angles[1], 135, 1e-3);
    EXPECT_NEAR(angles[2], 90, 1e-3);
    EXPECT_NEAR(angles[3], 90, 1e-3);
}

TEST(TetrahedronMeasures, OfTheRegularTetrahedron)
{
    EXPECT_NEAR(tetrahedron_aspect_ratio(regular), 1, tolerance);
}

TEST(TetrahedronMeasures, AgreeToTheBitWithTheFormula)
{
    std::mt19937 generator(1);
    std::uniform_real_distribution<double> coordinate(-1, 1);
    for (int i = 0; i < 2000; ++i) {
        TetrahedronCorners p = regular;
        for (Vec3 &corner : p)
            corner = corner + Vec3{coordinate(generator), coordinate(generator), coordinate(generator)};
        double hmax = 0;
        for (const Vec3 a : p)
            for (const Vec3 b : p)
                hmax = std::max(hmax, norm(b - a));
        const auto half_norm = [&](size_t a, size_t b, size_t c) {
            return 0.5 * norm(cross(p[a], p[b]) + cross(p[b], p[c]) + cross(p[c], p[a]));
        };
        const double surface =
            half_norm(0, 1, 2) + half_norm(0, 1, 3) + half_norm(0, 2, 3) + half_norm(1, 2, 3);
        const double sixfold = dot(p[1] - p[0], cross(p[2] - p[0], p[3] - p[0]));
        const double volume = sixfold * 0.16666666666666666;
        const double expected = volume > 0 ? 0.06804138174397717 * hmax * surface / volume : infinite;
        EXPECT_EQ(tetrahedron_aspect_ratio(p), expected);
    }
}

TEST(TetrahedronMeasures, FlatOrInvertedIsInfinite)
{
    for (size_t a = 0; a < 4; ++a) {
        for (size_t b = a + 1; b < 4; ++b) {
            TetrahedronCorners swapped = regular;
            std::swap(swapped[a], swapped[b]);
            EXPECT_EQ(tetrahedron_aspect_ratio(swapped), infinite);
        }
    }
    EXPECT_EQ(tetrahedron_aspect_ratio(square), infinite);
    EXPECT_EQ(tetrahedron_aspect_ratio({}), infinite);
    EXPECT_EQ(tetrahedron_aspect_ratio({{{nan, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}), infinite);
}

/// Powers of two, so that the digits stay.
TEST(Ratios, DoNotDependOnTheSize)
{
    const auto scaled = [](auto corners, double factor) {
        for (Vec3 &corner : corners)
            corner = factor * corner;
        return corners;
    };
    for (const double factor : {0x1p-20, 0x1p-2, 0x1p20}) {
        EXPECT_EQ(triangle_aspect_ratio(scaled(equilateral, factor)), triangle_aspect_ratio(equilateral));
        EXPECT_EQ(quadrangle_aspect_ratio(scaled(square, factor)), quadrangle_aspect_ratio(square));
        EXPECT_EQ(tetrahedron_aspect_ratio(scaled(regular, factor)), tetrahedron_aspect_ratio(regular));
    }
}

TEST(HexahedronMeasures, TheSubVolumesOfTheUnitCube)
{
    for (size_t i = 0; i < 10; ++i) {
        const auto &[p, q, r, s] = hexahedron_tetrahedra[i];
        const double expected = i < 8 ? 1.0 / 6 : 1.0 / 3;
        EXPECT_NEAR(static_cast<double>(volume(unit_cube[p], unit_cube[q], unit_cube[r], unit_cube[s])),
            expected, tolerance);
    }
}

TEST(HexahedronMeasures, TheCornerTetrahedraJoinEachCornerToItsNeighbours)
{
    for (uint8_t corner = 0; corner < 8; ++corner) {
        EXPECT_EQ(hexahedron_tetrahedra[corner][0], corner);
        for (size_t i = 1; i < 4; ++i) {
            const uint8_t neighbour = hexahedron_tetrahedra[corner][i];
            EXPECT_TRUE(
                std::any_of(std::begin(hexahedron_edges), std::end(hexahedron_edges), [&](auto &edge) {
                    return (edge[0] == corner && edge[1] == neighbour) ||
                           (edge[1] == corner && edge[0] == neighbour);
                }));
        }
    }
}

TEST(HexahedronMeasures, OfTheUnitCubeIsSix)
{
    EXPECT_NEAR(hexahedron_aspect_ratio(cube), 6, 1e-13);
}

TEST(HexahedronMeasures, FlatIsInfiniteAndInvertedNegative)
{
    HexahedronCorners flat = cube;
    for (Vec3 &corner : flat)
        corner.z = 0;
    EXPECT_EQ(hexahedron_aspect_ratio(flat), infinite);
    for (Vec3 &corner : flat)
        corner = {corner.z, -corner.x, corner.y};
    EXPECT_EQ(hexahedron_aspect_ratio(flat), infinite);
    HexahedronCorners inverted = cube;
    for (Vec3 &corner : inverted)
        corner.z = -corner.z;
    EXPECT_NEAR(hexahedron_aspect_ratio(inverted), -3, 1e-13); // the smallest volume is -1/3
}

} // namespace
} // namespace korvane
