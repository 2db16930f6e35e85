#include "cad/periodicity_table.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "cad/records.h"
#include "cad_support.h"
#include "support/failing_allocations.h"
#include "tags/keys_support.h"

namespace korvane::testing {
namespace {

/// The operations on one kind of periodicity, on records as arrays. Declarations are given as (companion 1,
/// identifier 1, companion 2, identifier 2, orientation), of which a kind takes what it knows.
struct Points {
    static constexpr std::size_t width = 3;
    using Record = std::array<int32_t, width>;
    static constexpr auto count = korvane_cad_get_point_id_periodicity_count;
    static constexpr std::array<bool, width> cleared_on_failure = {false, false, true};

    static korvane_status_t add(korvane_cad_t *cad, const std::array<int32_t, 5> &d)
    {
        return korvane_cad_add_point_periodicity(cad, d[0], d[1], d[2], d[3]);
    }
    static korvane_status_t read(const korvane_cad_t *cad, int32_t id, int32_t index, Record &r)
    {
        return korvane_cad_get_point_id_periodicity(cad, id, index, &r[0], &r[1], &r[2]);
    }
    static Record record(int32_t own, int32_t others, int32_t other, int32_t) { return {own, others, other}; }
};

struct Edges {
    static constexpr std::size_t width = 4;
    using Record = std::array<int32_t, width>;
    static constexpr auto count = korvane_cad_get_edge_id_periodicity_count;
    static constexpr std::array<bool, width> cleared_on_failure = {false, false, true, true};

    static korvane_status_t add(korvane_cad_t *cad, const std::array<int32_t, 5> &d)
    {
        return korvane_cad_add_edge_periodicity(cad, d[0], d[1], d[2], d[3], d[4]);
    }
    static korvane_status_t read(const korvane_cad_t *cad, int32_t id, int32_t index, Record &r)
    {
        return korvane_cad_get_edge_id_periodicity(cad, id, index, &r[0], &r[1], &r[2], &r[3]);
    }
    static Record record(int32_t own, int32_t others, int32_t other, int32_t orientation)
    {
        return {own, others, other, orientation};
    }
};

struct Faces {
    static constexpr std::size_t width = 1;
    using Record = std::array<int32_t, width>;
    static constexpr auto count = korvane_cad_get_face_id_periodicity_count;
    static constexpr std::array<bool, width> cleared_on_failure = {true};

    static korvane_status_t add(korvane_cad_t *cad, const std::array<int32_t, 5> &d)
    {
        return korvane_cad_add_face_periodicity(cad, d[1], d[3]);
    }
    static korvane_status_t read(const korvane_cad_t *cad, int32_t id, int32_t index, Record &r)
    {
        return korvane_cad_get_face_id_periodicity(cad, id, index, &r[0]);
    }
    static Record record(int32_t, int32_t, int32_t other, int32_t) { return {other}; }
};

template <class Kind>
int32_t count_of(const korvane_cad_t *cad, int32_t id)
{
    int32_t count = -1;
    EXPECT_EQ(Kind::count(cad, id, &count), STATUS_OK);
    return count;
}

template <class Kind>
std::vector<typename Kind::Record> records_of(const korvane_cad_t *cad, int32_t id)
{
    std::vector<typename Kind::Record> records(static_cast<std::size_t>(count_of<Kind>(cad, id)));
    for (std::size_t i = 0; i < records.size(); ++i)
        EXPECT_EQ(Kind::read(cad, id, static_cast<int32_t>(i) + 1, records[i]), STATUS_OK);
    return records;
}

/// What the tables promise: per identifier, three buckets of distinct records.
template <class Kind>
class Model {
  public:
    using Record = typename Kind::Record;

    void add(std::array<int32_t, 5> d)
    {
        const bool faces = Kind::width == 1;
        if (d[1] == 0 || d[3] == 0 || (d[1] == d[3] && (faces || d[0] == d[2])))
            return;
        if (d[0] == 0)
            d[2] = 0;
        else if (d[2] == 0)
            d[0] = 0;
        store(d[1], Kind::record(d[0], d[2], d[3], d[4]));
        store(d[3], Kind::record(d[2], d[0], d[1], d[4]));
    }

    std::vector<Record> records_of(int32_t id) const
    {
        std::vector<Record> records;
        if (const auto found = buckets.find(id); found != buckets.end())
            for (const std::vector<Record> &bucket : found->second)
                records.insert(records.end(), bucket.begin(), bucket.end());
        return records;
    }

  private:
    void store(int32_t id, const Record &record)
    {
        auto &bucket = buckets[id][naive_bucket(record, 3)];
        if (std::find(bucket.begin(), bucket.end(), record) == bucket.end())
            bucket.push_back(record);
    }

    std::map<int32_t, std::array<std::vector<Record>, 3>> buckets;
};

template <class Kind>
class Periodicity : public Cad {
  protected:
    using Record = typename Kind::Record;
    using Declaration = std::array<int32_t, 5>;
};
using Kinds = ::testing::Types<Points, Edges, Faces>;
TYPED_TEST_SUITE(Periodicity, Kinds);

TYPED_TEST(Periodicity, BehavesAsItsModel)
{
    Integers identifier;
    Model<TypeParam> model;
    for (int step = 0; step < 6000; ++step) {
        // Few identifiers at first, later enough for every array of the table to grow several times.
        const int32_t bound = step < 1000 ? 3 : 400;
        const std::array<int32_t, 5> declaration = {
            identifier(2), identifier(bound), identifier(2), identifier(bound), identifier(1)};
        ASSERT_EQ(TypeParam::add(this->cad, declaration), STATUS_OK);
        model.add(declaration);
        ASSERT_EQ(records_of<TypeParam>(this->cad, declaration[1]), model.records_of(declaration[1]));
        ASSERT_EQ(records_of<TypeParam>(this->cad, declaration[3]), model.records_of(declaration[3]));
    }
    for (int32_t id = -401; id <= 401; ++id)
        EXPECT_EQ(records_of<TypeParam>(this->cad, id), model.records_of(id));
    for (const int32_t id : Integers::extremes)
        EXPECT_EQ(records_of<TypeParam>(this->cad, id), model.records_of(id));
}

TYPED_TEST(Periodicity, IsStoredOnceUnderEitherIdentifier)
{
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(TypeParam::add(this->cad, {1, 5, 2, 7, 1}), STATUS_OK);
    EXPECT_EQ(TypeParam::add(this->cad, {2, 7, 1, 5, 1}), STATUS_OK); // the same from the other side
    EXPECT_EQ(count_of<TypeParam>(this->cad, 5), 1);
    EXPECT_EQ(count_of<TypeParam>(this->cad, 7), 1);
    EXPECT_EQ(records_of<TypeParam>(this->cad, 5).front(), TypeParam::record(1, 2, 7, 1));
    EXPECT_EQ(records_of<TypeParam>(this->cad, 7).front(), TypeParam::record(2, 1, 5, 1));
}

TYPED_TEST(Periodicity, WithNothingOrItselfIsNotStored)
{
    EXPECT_EQ(TypeParam::add(this->cad, {1, 5, 2, 0, 1}), STATUS_OK);
    EXPECT_EQ(TypeParam::add(this->cad, {1, 0, 2, 5, 1}), STATUS_OK);
    EXPECT_EQ(TypeParam::add(this->cad, {1, 0, 2, 0, 1}), STATUS_OK);
    EXPECT_EQ(TypeParam::add(this->cad, {3, 5, 3, 5, 1}), STATUS_OK);
    EXPECT_EQ(TypeParam::add(this->cad, {0, 5, 0, 5, 1}), STATUS_OK);
    EXPECT_EQ(count_of<TypeParam>(this->cad, 5), 0);
    EXPECT_EQ(count_of<TypeParam>(this->cad, 0), 0);
}

TYPED_TEST(Periodicity, NegativeIdentifiersAreAcceptedAndToldFromPositiveOnes)
{
    EXPECT_EQ(TypeParam::add(this->cad, {1, -5, 2, 5, 1}), STATUS_OK); // in the same bucket
    EXPECT_EQ(TypeParam::add(this->cad, {1, INT32_MIN, 2, -5, 1}), STATUS_OK);
    EXPECT_EQ(count_of<TypeParam>(this->cad, -5), 2);
    EXPECT_EQ(count_of<TypeParam>(this->cad, 5), 1);
    EXPECT_EQ(records_of<TypeParam>(this->cad, 5).front(), TypeParam::record(2, 1, -5, 1));
    EXPECT_EQ(records_of<TypeParam>(this->cad, INT32_MIN).front(), TypeParam::record(1, 2, -5, 1));
}

TYPED_TEST(Periodicity, OfAnUndeclaredIdentifierIsEmpty)
{
    EXPECT_EQ(count_of<TypeParam>(this->cad, 3), 0);
    typename TypeParam::Record record;
    record.fill(-9);
    EXPECT_EQ(TypeParam::read(this->cad, 3, 1, record), STATUS_ERROR);
    for (std::size_t field = 0; field < record.size(); ++field)
        EXPECT_EQ(record[field], TypeParam::cleared_on_failure[field] ? 0 : -9);
}

TYPED_TEST(Periodicity, OutsideTheListIsAnError)
{
    ASSERT_EQ(TypeParam::add(this->cad, {1, 5, 2, 7, 1}), STATUS_OK);
    ASSERT_EQ(TypeParam::add(this->cad, {1, 5, 2, 8, 1}), STATUS_OK);
    for (const int32_t index : {INT32_MIN, -1, 0, 3, 4, INT32_MAX}) {
        typename TypeParam::Record record;
        record.fill(-9);
        EXPECT_EQ(TypeParam::read(this->cad, 5, index, record), STATUS_ERROR);
        for (std::size_t field = 0; field < record.size(); ++field)
            EXPECT_EQ(record[field], TypeParam::cleared_on_failure[field] ? 0 : -9);
    }
}

TYPED_TEST(Periodicity, WithoutAModelOrACountIsAnError)
{
    int32_t count = -9;
    typename TypeParam::Record record;
    record.fill(-9);
    EXPECT_EQ(TypeParam::add(nullptr, {1, 5, 2, 7, 1}), STATUS_ERROR);
    EXPECT_EQ(TypeParam::add(nullptr, {1, 5, 1, 5, 1}), STATUS_ERROR);
    EXPECT_EQ(TypeParam::count(nullptr, 5, &count), STATUS_ERROR);
    EXPECT_EQ(TypeParam::count(this->cad, 5, nullptr), STATUS_ERROR);
    EXPECT_EQ(TypeParam::read(nullptr, 5, 1, record), STATUS_ERROR);
    EXPECT_EQ(count, -9);
    EXPECT_EQ(record.back(), -9);
}

TYPED_TEST(Periodicity, SurvivesFailingAllocations)
{
    oom_sweep([&](AllocationFault &fault) {
        korvane_cad_t *fresh = korvane_cad_new(this->context);
        Model<TypeParam> model;
        // Enough for each array to be full and to grow, so that its growth fails in its turn.
        for (int32_t id = 1; id <= 160; ++id) {
            const std::array<int32_t, 5> declaration = {id, id, 2, id % 5 - 7, 1};
            fault.arm();
            const korvane_status_t status = TypeParam::add(fresh, declaration);
            const bool failed = fault.disarm();
            ASSERT_EQ(status, failed ? STATUS_ERROR : STATUS_OK);
            if (failed) {
                const auto stored = records_of<TypeParam>(fresh, declaration[3]);
                EXPECT_EQ(stored, model.records_of(declaration[3])); // the second direction is not stored
                ASSERT_EQ(TypeParam::add(fresh, declaration), STATUS_OK);
            }
            model.add(declaration);
        }
        for (int32_t id = -10; id <= 161; ++id)
            EXPECT_EQ(records_of<TypeParam>(fresh, id), model.records_of(id));
        korvane_cad_delete(fresh);
    });
}

TYPED_TEST(Periodicity, KeepsTheFirstDirectionWhenTheSecondOneFails)
{
    const int32_t room = TypeParam::width == 1 ? 20 : 100; // for identifiers
    for (int32_t id = 2; id <= room; ++id)
        ASSERT_EQ(TypeParam::add(this->cad, {1, 1, 2, id, 1}), STATUS_OK);
    const int32_t next = room + 1;
    AllocationFault fault(1, Failure::persistent);
    fault.arm();
    EXPECT_EQ(TypeParam::add(this->cad, {1, 1, 2, next, 1}), STATUS_ERROR);
    EXPECT_TRUE(fault.disarm());
    EXPECT_EQ(count_of<TypeParam>(this->cad, 1), room);
    EXPECT_EQ(count_of<TypeParam>(this->cad, next), 0);
    EXPECT_EQ(TypeParam::add(this->cad, {1, 1, 2, next, 1}), STATUS_OK);
    EXPECT_EQ(count_of<TypeParam>(this->cad, 1), room);
    EXPECT_EQ(count_of<TypeParam>(this->cad, next), 1);
}

class PeriodicityOfPoints : public Cad {};
class PeriodicityOfEdges : public Cad {};

TEST_F(PeriodicityOfPoints, WithItselfUnderOtherCompanionsIsStoredTwice)
{
    EXPECT_EQ(korvane_cad_add_point_periodicity(cad, 1, 5, 2, 5), STATUS_OK);
    EXPECT_EQ(records_of<Points>(cad, 5), (std::vector<Points::Record>{{1, 2, 5}, {2, 1, 5}}));
}

TEST_F(PeriodicityOfPoints, CompanionsCountAsAPairOnly)
{
    EXPECT_EQ(korvane_cad_add_point_periodicity(cad, 3, 5, 0, 6), STATUS_OK);
    EXPECT_EQ(korvane_cad_add_point_periodicity(cad, 0, 5, 4, 6), STATUS_OK);
    EXPECT_EQ(korvane_cad_add_point_periodicity(cad, 0, 5, 0, 6), STATUS_OK);
    EXPECT_EQ(records_of<Points>(cad, 5), (std::vector<Points::Record>{{0, 0, 6}}));
    EXPECT_EQ(records_of<Points>(cad, 6), (std::vector<Points::Record>{{0, 0, 5}}));
    // Companions that differ make it a declaration before the lone one is dropped.
    EXPECT_EQ(korvane_cad_add_point_periodicity(cad, 3, 8, 0, 8), STATUS_OK);
    EXPECT_EQ(records_of<Points>(cad, 8), (std::vector<Points::Record>{{0, 0, 8}}));
}

TEST_F(PeriodicityOfPoints, IsListedByBucketAndNotByDeclaration)
{
    for (const int32_t other : {11, 10, 9, 8, 7, 6}) // sums, with no companions, modulo 3: 2, 1, 0, 2, 1, 0
        ASSERT_EQ(korvane_cad_add_point_periodicity(cad, 0, 5, 0, other), STATUS_OK);
    std::vector<int32_t> others;
    for (const Points::Record &record : records_of<Points>(cad, 5))
        others.push_back(record[2]);
    EXPECT_EQ(others, (std::vector<int32_t>{9, 6, 10, 7, 11, 8}));
}

TEST_F(PeriodicityOfEdges, KeepsTheOrientationInBothDirections)
{
    EXPECT_EQ(korvane_cad_add_edge_periodicity(cad, 1, 5, 2, 6, -1), STATUS_OK);
    EXPECT_EQ(records_of<Edges>(cad, 5), (std::vector<Edges::Record>{{1, 2, 6, -1}}));
    EXPECT_EQ(records_of<Edges>(cad, 6), (std::vector<Edges::Record>{{2, 1, 5, -1}}));
    EXPECT_EQ(korvane_cad_add_edge_periodicity(cad, 1, 5, 2, 6, 1), STATUS_OK); // another record
    EXPECT_EQ(count_of<Edges>(cad, 5), 2);
}

TEST_F(Cad, PeriodicityNeedsAllOutputs)
{
    int32_t a = -9, b = -9, c = -9, d = -9;
    ASSERT_EQ(korvane_cad_add_point_periodicity(cad, 1, 5, 2, 6), STATUS_OK);
    EXPECT_EQ(korvane_cad_get_point_id_periodicity(cad, 5, 1, nullptr, &b, &c), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_point_id_periodicity(cad, 5, 1, &a, nullptr, &c), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_point_id_periodicity(cad, 5, 1, &a, &b, nullptr), STATUS_ERROR);
    ASSERT_EQ(korvane_cad_add_edge_periodicity(cad, 1, 5, 2, 6, 1), STATUS_OK);
    EXPECT_EQ(korvane_cad_get_edge_id_periodicity(cad, 5, 1, nullptr, &b, &c, &d), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_edge_id_periodicity(cad, 5, 1, &a, nullptr, &c, &d), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_edge_id_periodicity(cad, 5, 1, &a, &b, nullptr, &d), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_edge_id_periodicity(cad, 5, 1, &a, &b, &c, nullptr), STATUS_ERROR);
    ASSERT_EQ(korvane_cad_add_face_periodicity(cad, 5, 6), STATUS_OK);
    EXPECT_EQ(korvane_cad_get_face_id_periodicity(cad, 5, 1, nullptr), STATUS_ERROR);
    for (const int32_t output : {a, b, c, d})
        EXPECT_EQ(output, -9);
}

TEST_F(Cad, PeriodicityOfOneKindIsNotThatOfAnother)
{
    ASSERT_EQ(korvane_cad_add_point_periodicity(cad, 0, 5, 0, 6), STATUS_OK);
    EXPECT_EQ(count_of<Edges>(cad, 5), 0);
    EXPECT_EQ(count_of<Faces>(cad, 5), 0);
    ASSERT_EQ(korvane_cad_add_edge_periodicity(cad, 0, 8, 0, 9, 1), STATUS_OK);
    EXPECT_EQ(count_of<Points>(cad, 8), 0);
    EXPECT_EQ(count_of<Faces>(cad, 8), 0);
}

/// Of the buckets and of room for the identifiers, the records and the buckets that each identifier has.
template <class Table>
void expect_room(const Table &table, int32_t identifiers, int32_t records)
{
    EXPECT_EQ(table.major.bucket_count, static_cast<uint32_t>(identifiers));
    EXPECT_EQ(table.major.capacity, identifiers);
    EXPECT_EQ(table.minor_keys.capacity, records);
    EXPECT_EQ(table.minor_bucket_count, 3);
    EXPECT_EQ(table.row_count, identifiers);
    EXPECT_EQ(std::ssize(table.row_buckets), 3 * identifiers);
    EXPECT_EQ(table.major.count, 0);
    EXPECT_EQ(table.minor_keys.count, 0);
}

TEST_F(Cad, PeriodicityTablesBeginWithTheRoomThatIsAgreed)
{
    expect_room(*cad->face_id_periodicity, 20, 60);
    expect_room(*cad->edge_id_periodicity, 100, 300);
    expect_room(*cad->point_id_periodicity, 100, 300);
}

TEST_F(Cad, PeriodicityTablesGrowByTheIdentifierAndTheRecordThatFindNoRoom)
{
    for (int32_t id = 2; id <= 21; ++id)
        ASSERT_EQ(korvane_cad_add_face_periodicity(cad, 1, id), STATUS_OK);
    EXPECT_EQ(cad->face_id_periodicity->major.capacity, 20 + 21);
    EXPECT_EQ(cad->face_id_periodicity->row_count, 20 + 21);
    EXPECT_EQ(cad->face_id_periodicity->major.bucket_count, 20u);
    EXPECT_EQ(cad->face_id_periodicity->minor_keys.capacity, 60);
    for (int32_t id = 22; id <= 32; ++id)
        ASSERT_EQ(korvane_cad_add_face_periodicity(cad, 1, id), STATUS_OK);
    EXPECT_EQ(cad->face_id_periodicity->minor_keys.count, 62);
    EXPECT_EQ(cad->face_id_periodicity->minor_keys.capacity, 72); // 60 times 1.2
}

} // namespace
} // namespace korvane::testing
