#include "cad/multiple_periodicity.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <random>
#include <vector>

#include "cad/records.h"
#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

using Ids = std::vector<int32_t>;

struct Edges {
    static constexpr auto add = korvane_cad_add_edge_multiple_periodicity_with_transformation_function;
    static constexpr auto add_by_points =
        korvane_cad_add_edge_multiple_periodicity_with_transformation_function_by_points;
    static constexpr auto count = korvane_cad_get_edge_multiple_periodicity_count;
    static constexpr auto get = korvane_cad_get_edge_multiple_periodicity;
    static constexpr auto capacity = &korvane_cad_t::edge_multiple_periodicity_capacity;
    static constexpr auto records = &korvane_cad_t::edge_multiple_periodicities;
};

struct Faces {
    static constexpr auto add = korvane_cad_add_face_multiple_periodicity_with_transformation_function;
    static constexpr auto add_by_points =
        korvane_cad_add_face_multiple_periodicity_with_transformation_function_by_points;
    static constexpr auto count = korvane_cad_get_face_multiple_periodicity_count;
    static constexpr auto get = korvane_cad_get_face_multiple_periodicity;
    static constexpr auto capacity = &korvane_cad_t::face_multiple_periodicity_capacity;
    static constexpr auto records = &korvane_cad_t::face_multiple_periodicities;
};

/// A declaration as it is read back.
struct Declaration {
    Ids source, target;
    korvane_cad_transformation_t transformation = nullptr;
    void *user_data = nullptr;
    bool operator==(const Declaration &) const = default;
};

korvane_status_t twice(const double *source, double *target, void *calls)
{
    for (int i = 0; i < 3; ++i)
        target[i] = 2 * source[i];
    ++*static_cast<int *>(calls);
    return 42;
}

template <class Kind>
class MultiplePeriodicityOf : public Cad {
  protected:
    korvane_status_t add(const Declaration &declaration)
    {
        return Kind::add(cad, declaration.source.data(), static_cast<int32_t>(declaration.source.size()),
            declaration.target.data(), static_cast<int32_t>(declaration.target.size()),
            declaration.transformation, declaration.user_data);
    }

    /// Of face or edge 1 with 2; the points are packed.
    korvane_status_t add_by_points(const std::vector<double> &source, const std::vector<double> &target)
    {
        const int32_t ids[] = {1, 2};
        return Kind::add_by_points(cad, &ids[0], 1, &ids[1], 1, source.data(),
            static_cast<int32_t>(source.size() / 3), target.data(), static_cast<int32_t>(target.size() / 3));
    }

    int32_t count() const { return got(Kind::count, cad); }

    /// Reads into the buffers that the model hands out, as a client does.
    Declaration read(int32_t index) const
    {
        auto *source = static_cast<int32_t *>(korvane_cad_calloc_generic_buffer(cad));
        auto *target = static_cast<int32_t *>(korvane_cad_calloc_generic_buffer(cad));
        int32_t source_count = -1, target_count = -1;
        Declaration found;
        EXPECT_EQ(Kind::get(cad, index, source, &source_count, target, &target_count, &found.transformation,
                      &found.user_data),
            STATUS_OK);
        found.source.assign(source, source + source_count);
        found.target.assign(target, target + target_count);
        korvane_cad_free_generic_buffer(source);
        korvane_cad_free_generic_buffer(target);
        return found;
    }

    /// The image of a point under the transformation of the last declaration.
    Xyz image(Xyz point) const
    {
        const Declaration last = read(count());
        Xyz image{};
        EXPECT_NE(last.transformation, nullptr);
        if (last.transformation != nullptr) {
            EXPECT_EQ(last.transformation(point.data(), image.data(), last.user_data), STATUS_OK);
        }
        return image;
    }

    void expect_no_transformation() const
    {
        const Declaration last = read(count());
        EXPECT_EQ(last.source, Ids{1});
        EXPECT_EQ(last.target, Ids{2});
        EXPECT_EQ(last.transformation, nullptr);
    }

    int data[4] = {};
};
using Kinds = ::testing::Types<Edges, Faces>;
TYPED_TEST_SUITE(MultiplePeriodicityOf, Kinds);

TYPED_TEST(MultiplePeriodicityOf, IsReadBackAsDeclared)
{
    EXPECT_EQ(this->count(), 0);
    const Declaration first{{1, 2, 3}, {4, 5, 6}, twice, this->data};
    const Declaration second{{-7}, {INT32_MIN, INT32_MAX}, nullptr, this->data + 1};
    EXPECT_EQ(this->add(first), STATUS_OK);
    EXPECT_EQ(this->add(second), STATUS_OK);
    EXPECT_EQ(this->count(), 2);
    EXPECT_EQ(this->read(1), first);
    EXPECT_EQ(this->read(2), second);
}

TYPED_TEST(MultiplePeriodicityOf, HoldsCopiesOfTheLists)
{
    Declaration declaration{{1, 2}, {3, 4}, twice, this->data};
    const Declaration declared = declaration;
    ASSERT_EQ(this->add(declaration), STATUS_OK);
    declaration.source = {0, 0};
    EXPECT_EQ(this->read(1), declared);
}

TYPED_TEST(MultiplePeriodicityOf, BehavesAsAListOfDeclarations)
{
    std::mt19937 engine(20110807);
    const auto random_ids = [&] {
        Ids ids(engine() % 30 + 1);
        for (int32_t &id : ids)
            id = static_cast<int32_t>(engine());
        return ids;
    };
    std::vector<Declaration> declared;
    for (int step = 0; step < 200; ++step) {
        declared.push_back({random_ids(), random_ids(), engine() % 2 == 0 ? twice : nullptr,
            engine() % 2 == 0 ? &this->data[engine() % 4] : nullptr});
        ASSERT_EQ(this->add(declared.back()), STATUS_OK);
        ASSERT_EQ(this->count(), std::ssize(declared));
        for (std::size_t i = 0; i < declared.size(); ++i)
            ASSERT_EQ(this->read(static_cast<int32_t>(i) + 1), declared[i]);
    }
}

TYPED_TEST(MultiplePeriodicityOf, TheListGrowsBySevenRecords)
{
    const Declaration declaration{{1}, {2}, twice, this->data};
    for (const int32_t capacity : {10, 17, 24}) {
        while (this->count() < capacity)
            ASSERT_EQ(this->add(declaration), STATUS_OK);
        EXPECT_EQ(this->cad->*TypeParam::capacity, capacity);
        ASSERT_EQ(this->add(declaration), STATUS_OK);
        EXPECT_EQ(this->cad->*TypeParam::capacity, capacity + 7);
    }
}

TYPED_TEST(MultiplePeriodicityOf, OutsideTheListIsAnError)
{
    const auto status_at = [&](int32_t index) {
        int32_t source = -9, target = -9, source_count = -9, target_count = -9;
        korvane_cad_transformation_t transformation = twice;
        void *user_data = this->data;
        const korvane_status_t status = TypeParam::get(
            this->cad, index, &source, &source_count, &target, &target_count, &transformation, &user_data);
        if (status == STATUS_ERROR) {
            EXPECT_EQ(source + target + source_count + target_count, -36);
            EXPECT_EQ(transformation, twice);
            EXPECT_EQ(user_data, this->data);
        }
        return status;
    };
    EXPECT_EQ(status_at(1), STATUS_ERROR); // before any was added
    ASSERT_EQ(this->add({{1}, {2}, twice, this->data}), STATUS_OK);
    EXPECT_EQ(status_at(1), STATUS_OK);
    for (const int32_t index : {INT32_MIN, -1, 0, 2, INT32_MAX})
        EXPECT_EQ(status_at(index), STATUS_ERROR);
}

TYPED_TEST(MultiplePeriodicityOf, ReadingNeedsAllOutputs)
{
    ASSERT_EQ(this->add({{1}, {2}, twice, this->data}), STATUS_OK);
    int32_t a = 0, b = 0, c = 0, d = 0;
    korvane_cad_transformation_t f = nullptr;
    void *u = nullptr;
    EXPECT_EQ(TypeParam::get(nullptr, 1, &a, &b, &c, &d, &f, &u), STATUS_ERROR);
    EXPECT_EQ(TypeParam::get(this->cad, 1, nullptr, &b, &c, &d, &f, &u), STATUS_ERROR);
    EXPECT_EQ(TypeParam::get(this->cad, 1, &a, nullptr, &c, &d, &f, &u), STATUS_ERROR);
    EXPECT_EQ(TypeParam::get(this->cad, 1, &a, &b, nullptr, &d, &f, &u), STATUS_ERROR);
    EXPECT_EQ(TypeParam::get(this->cad, 1, &a, &b, &c, nullptr, &f, &u), STATUS_ERROR);
    EXPECT_EQ(TypeParam::get(this->cad, 1, &a, &b, &c, &d, nullptr, &u), STATUS_ERROR);
    EXPECT_EQ(TypeParam::get(this->cad, 1, &a, &b, &c, &d, &f, nullptr), STATUS_ERROR);
    EXPECT_EQ(TypeParam::get(this->cad, 1, &a, &b, &c, &d, &f, &u), STATUS_OK);
    EXPECT_EQ(TypeParam::count(nullptr, &a), STATUS_ERROR);
    EXPECT_EQ(TypeParam::count(this->cad, nullptr), STATUS_ERROR);
}

TYPED_TEST(MultiplePeriodicityOf, NullOrNegativeArgumentsDeclareNothing)
{
    const int32_t id = 1;
    const double point[3] = {};
    const auto add = [&](korvane_cad_t *model, const int32_t *source, int32_t source_count,
                         const int32_t *target, int32_t target_count) {
        const korvane_status_t status =
            TypeParam::add(model, source, source_count, target, target_count, twice, nullptr);
        EXPECT_EQ(
            TypeParam::add_by_points(model, source, source_count, target, target_count, point, 1, point, 1),
            status);
        return status;
    };
    EXPECT_EQ(add(nullptr, &id, 1, &id, 1), STATUS_ERROR);
    EXPECT_EQ(add(this->cad, nullptr, 1, &id, 1), STATUS_ERROR);
    EXPECT_EQ(add(this->cad, &id, 1, nullptr, 1), STATUS_ERROR);
    EXPECT_EQ(add(this->cad, nullptr, 0, &id, 1), STATUS_ERROR);
    EXPECT_EQ(add(this->cad, &id, -1, &id, 1), STATUS_ERROR);
    EXPECT_EQ(add(this->cad, &id, 1, &id, INT32_MIN), STATUS_ERROR);
    const auto by_points = TypeParam::add_by_points;
    EXPECT_EQ(by_points(this->cad, &id, 1, &id, 1, nullptr, 1, point, 1), STATUS_ERROR);
    EXPECT_EQ(by_points(this->cad, &id, 1, &id, 1, point, 1, nullptr, 1), STATUS_ERROR);
    EXPECT_EQ(this->count(), 0);
    EXPECT_EQ(add(this->cad, &id, 0, &id, 0), STATUS_OK);
    EXPECT_EQ(this->count(), 2);
    EXPECT_EQ(this->read(1), (Declaration{{}, {}, twice, nullptr}));
}

TYPED_TEST(MultiplePeriodicityOf, TheBufferTakesTheLongestListDeclaredSoFar)
{
    EXPECT_EQ(this->cad->generic_buffer_size, 35);
    ASSERT_EQ(this->add({Ids(8), Ids(8), nullptr, nullptr}), STATUS_OK);
    EXPECT_EQ(this->cad->generic_buffer_size, 35);
    ASSERT_EQ(this->add({Ids(9), Ids(1), nullptr, nullptr}), STATUS_OK);
    EXPECT_EQ(this->cad->generic_buffer_size, 36);
    const int32_t ids[100] = {};
    const double point[3] = {};
    ASSERT_EQ(TypeParam::add_by_points(this->cad, ids, 1, ids, 100, point, 1, point, 1), STATUS_OK);
    EXPECT_EQ(this->cad->generic_buffer_size, 400);
    ASSERT_EQ(this->add({Ids(10), Ids(10), nullptr, nullptr}), STATUS_OK);
    EXPECT_EQ(this->cad->generic_buffer_size, 400);
    auto *buffer = static_cast<unsigned char *>(korvane_cad_calloc_generic_buffer(this->cad));
    EXPECT_TRUE(std::all_of(buffer, buffer + 400, [](unsigned char byte) { return byte == 0; }));
    korvane_cad_free_generic_buffer(buffer);
}

TYPED_TEST(MultiplePeriodicityOf, OneMapIsFittedToOnePair)
{
    EXPECT_EQ(this->add_by_points({0, 0, 0}, {1, 2, 3}), STATUS_OK);
    EXPECT_EQ(this->image({0, 0, 0}), (Xyz{1, 2, 3}));
    EXPECT_EQ(this->image({5, -6, 7}), (Xyz{1, 2, 3}));
    EXPECT_EQ((this->cad->*TypeParam::records)[0]->owns_data, 1);
}

TYPED_TEST(MultiplePeriodicityOf, TwoPairsOfOneOffsetAreAccepted)
{
    EXPECT_EQ(this->add_by_points({0, 0, 0, 1, 0, 0}, {5, 0, 0, 6, 0.004, 0}), STATUS_OK);
    EXPECT_EQ(this->image({1, 1, 1}), (Xyz{5, 0, 0}));
    EXPECT_EQ((this->cad->*TypeParam::records)[0]->owns_data, 1);
    EXPECT_EQ(this->add_by_points({0, 0, 0, 1, 0, 0}, {5, 0, 0, 6, 0.006, 0}), STATUS_OK);
    EXPECT_EQ(this->count(), 2);
    this->expect_no_transformation();
    EXPECT_EQ((this->cad->*TypeParam::records)[1]->owns_data, 1);
}

TYPED_TEST(MultiplePeriodicityOf, ThreePairsOfARotationGiveThatRotation)
{
    // By 90 degrees about the z axis through (1, 0, 0), then by (0, 0, 4).
    EXPECT_EQ(this->add_by_points({1, 0, 0, 3, 0, 0, 1, 1, 0}, {1, 0, 4, 1, 2, 4, 0, 0, 4}), STATUS_OK);
    const Xyz images[] = {this->image({3, 0, 0}), this->image({1, 1, 0}), this->image({2, 3, 5})};
    const Xyz expected[] = {{1, 2, 4}, {0, 0, 4}, {-2, 1, 9}};
    for (std::size_t point = 0; point < 3; ++point)
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(images[point][i], expected[point][i], 1e-14);
}

TYPED_TEST(MultiplePeriodicityOf, FourPairsOfATranslationGiveThatTranslation)
{
    EXPECT_EQ(
        this->add_by_points({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 0, 9, 1, 0, 9, 0, 1, 9, 0, 0, 10}),
        STATUS_OK);
    const Xyz image = this->image({4, 5, 6});
    EXPECT_NEAR(image[0], 4, 1e-14);
    EXPECT_NEAR(image[1], 5, 1e-14);
    EXPECT_NEAR(image[2], 15, 1e-14);
}

TYPED_TEST(MultiplePeriodicityOf, PointsThatGiveNoMapLeaveADeclarationWithoutTransformation)
{
    const std::vector<double> collinear = {0, 0, 0, 1, 0, 0, 2, 0.01, 0};
    const std::vector<double> triangle = {0, 0, 0, 1, 0, 0, 0, 1, 0};
    const std::vector<double> ten_percent = {0, 0, 0, 1.1, 0, 0, 0, 1, 0};
    const std::vector<double> five_percent = {0, 0, 0, 1.05, 0, 0, 0, 1, 0};
    const std::vector<double> coplanar = {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0};
    EXPECT_EQ(this->add_by_points(collinear, collinear), STATUS_ERROR);
    this->expect_no_transformation();
    EXPECT_EQ(this->add_by_points(triangle, ten_percent), STATUS_ERROR);
    this->expect_no_transformation();
    EXPECT_EQ(this->add_by_points(coplanar, coplanar), STATUS_ERROR);
    this->expect_no_transformation();
    const auto *map = static_cast<const double *>(this->read(3).user_data);
    EXPECT_TRUE(std::all_of(map, map + 15, [](double value) { return value == 0; }));
    EXPECT_EQ((this->cad->*TypeParam::records)[2]->owns_data, 1);
    EXPECT_EQ(this->count(), 3);
    EXPECT_EQ(this->add_by_points(triangle, five_percent), STATUS_OK);
    EXPECT_EQ(this->image({0, 0, 0}), (Xyz{0, 0, 0}));
}

TYPED_TEST(MultiplePeriodicityOf, CountsOfPointsThatMakeNoPairsLeaveADeclarationWithoutTransformation)
{
    const int32_t ids[] = {1, 2};
    const double points[6] = {};
    const int32_t counts[][2] = {{1, 2}, {2, 1}, {0, 0}, {-1, -1}, {INT32_MIN, INT32_MIN}, {-1, 1}};
    int32_t declared = 0;
    for (const auto &[source_count, target_count] : counts) {
        EXPECT_EQ(TypeParam::add_by_points(
                      this->cad, &ids[0], 1, &ids[1], 1, points, source_count, points, target_count),
            STATUS_ERROR);
        EXPECT_EQ(this->count(), ++declared);
        this->expect_no_transformation();
        EXPECT_EQ(this->read(declared).user_data, nullptr);
    }
}

TYPED_TEST(MultiplePeriodicityOf, TheClientsDataAreTheClients)
{
    ASSERT_EQ(this->add({{1}, {2}, twice, this->data}), STATUS_OK);
    const Declaration declaration = this->read(1);
    const double point[3] = {1, 2, 3};
    double image[3] = {};
    EXPECT_EQ(declaration.transformation(point, image, declaration.user_data), 42);
    EXPECT_EQ(image[2], 6);
    EXPECT_EQ(this->data[0], 1);
    EXPECT_EQ((this->cad->*TypeParam::records)[0]->owns_data, 0);
}

TYPED_TEST(MultiplePeriodicityOf, FittedDataStayWhileTheListGrows)
{
    ASSERT_EQ(this->add_by_points({0, 0, 0}, {1, 2, 3}), STATUS_OK);
    const Declaration first = this->read(1);
    for (int i = 0; i < 50; ++i)
        ASSERT_EQ(this->add_by_points({0, 0, 0}, {4, 5, 6}), STATUS_OK);
    double image[3] = {};
    EXPECT_EQ(first.transformation(image, image, first.user_data), STATUS_OK);
    EXPECT_EQ(image[2], 3);
}

TYPED_TEST(MultiplePeriodicityOf, SurvivesFailingAllocations)
{
    const Declaration declaration{{1, 2, 3, 4, 5, 6, 7, 8, 9}, {2}, twice, this->data};
    oom_sweep([&](AllocationFault &fault) {
        korvane_context_delete(this->context);
        this->context = korvane_context_new();
        this->cad = korvane_cad_new(this->context);
        for (int32_t number = 1; number <= 18; ++number) { // the list grows at 11 and 18
            fault.arm();
            const korvane_status_t status = this->add(declaration);
            if (fault.disarm()) {
                EXPECT_EQ(status, STATUS_NOMEM);
                EXPECT_EQ(this->count(), number - 1);
                EXPECT_EQ(this->cad->generic_buffer_size, number == 1 ? 35 : 36);
                ASSERT_EQ(this->add(declaration), STATUS_OK);
            } else {
                EXPECT_EQ(status, STATUS_OK);
            }
            ASSERT_EQ(this->count(), number);
            EXPECT_EQ(this->read(number), declaration);
        }
    });
}

TYPED_TEST(MultiplePeriodicityOf, FittingSurvivesFailingAllocations)
{
    int without_map = 0;
    oom_sweep([&](AllocationFault &fault) {
        const int32_t before = this->count();
        fault.arm();
        const korvane_status_t status = this->add_by_points({0, 0, 0}, {1, 2, 3});
        if (!fault.disarm()) {
            EXPECT_EQ(status, STATUS_OK);
            EXPECT_EQ(this->image({0, 0, 0}), (Xyz{1, 2, 3}));
        } else {
            EXPECT_EQ(status, STATUS_NOMEM);
            if (this->count() > before) {
                ++without_map;
                this->expect_no_transformation();
                EXPECT_EQ(this->read(this->count()).user_data, nullptr);
            }
        }
    });
    EXPECT_EQ(without_map, 2); // the declaration stays when only the map fails, in either sweep
}

TEST(MultiplePeriodicity, GrowthAndSizesDoNotOverflow)
{
    EXPECT_EQ(grown_multiple_periodicity_capacity(10), 17);
    EXPECT_EQ(grown_multiple_periodicity_capacity(INT32_MAX), int64_t{INT32_MAX} + 7);
    EXPECT_EQ(id_list_bytes(9), 36);
    EXPECT_EQ(id_list_bytes(INT32_MAX), 8589934588);
}

TEST_F(Cad, MultiplePeriodicityOfEdgesIsNotThatOfFaces)
{
    const int32_t id = 1;
    ASSERT_EQ(Edges::add(cad, &id, 1, &id, 1, twice, nullptr), STATUS_OK);
    EXPECT_EQ(got(Edges::count, cad), 1);
    EXPECT_EQ(got(Faces::count, cad), 0);
    ASSERT_EQ(Faces::add(cad, &id, 1, &id, 1, twice, nullptr), STATUS_OK);
    ASSERT_EQ(Faces::add(cad, &id, 1, &id, 1, twice, nullptr), STATUS_OK);
    EXPECT_EQ(got(Edges::count, cad), 1);
    EXPECT_EQ(got(Faces::count, cad), 2);
}

TEST_F(Cad, GenericBufferIsNotToBeHadWithoutModelOrMemory)
{
    EXPECT_EQ(korvane_cad_calloc_generic_buffer(nullptr), nullptr);
    oom_sweep([&](AllocationFault &fault) {
        fault.arm();
        void *buffer = korvane_cad_calloc_generic_buffer(cad);
        EXPECT_EQ(buffer == nullptr, fault.disarm());
        korvane_cad_free_generic_buffer(buffer);
    });
    cad->generic_buffer_size = 0;
    EXPECT_EQ(korvane_cad_calloc_generic_buffer(cad), nullptr);
    cad->generic_buffer_size = 1;
    void *smallest = korvane_cad_calloc_generic_buffer(cad);
    EXPECT_NE(smallest, nullptr);
    korvane_cad_free_generic_buffer(smallest);
}

} // namespace
} // namespace korvane::testing
