#include "cad/records.h"
#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

class Point : public Cad {
  protected:
    korvane_cad_point_t *new_point(uint32_t id)
    {
        const Uv uv{id + 0.25, id + 0.5};
        return korvane_cad_point_new(face, id, uv.data());
    }
    std::vector<uint32_t> ids() const
    {
        std::vector<uint32_t> found;
        for (int32_t index = 1; index <= got(korvane_cad_face_get_point_count, face); ++index) {
            korvane_cad_point_t *point = nullptr;
            EXPECT_EQ(korvane_cad_face_get_point(face, index, &point), STATUS_OK);
            found.push_back(got(korvane_cad_point_get_id, point));
        }
        return found;
    }

    korvane_cad_face_t *face = new_face();
};

TEST_F(Point, HoldsWhatItWasGiven)
{
    korvane_cad_point_t *point = new_point(7);
    Uv uv{};
    EXPECT_EQ(korvane_cad_point_get_uv(point, uv.data()), STATUS_OK);
    EXPECT_EQ(uv, (Uv{7.25, 7.5}));
    EXPECT_EQ(got(korvane_cad_point_get_id, point), 7u);
    EXPECT_EQ(got(korvane_cad_point_get_tag, point), 0u);
    EXPECT_EQ(face->flags, FACE_ATTACHED);
    EXPECT_EQ(got(korvane_cad_get_use_vtag, cad), 0);
}

TEST_F(Point, ItsTagSetsTheFlagOfTheModel)
{
    korvane_cad_point_t *point = new_point(7);
    EXPECT_EQ(korvane_cad_point_set_tag(point, 9), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_point_get_tag, point), 9u);
    EXPECT_EQ(got(korvane_cad_get_use_vtag, cad), 1);
    EXPECT_EQ(got(korvane_cad_get_use_etag, cad), 0);
}

TEST_F(Point, TakesATagOnAFaceWithoutAModel)
{
    korvane_cad_face_t *copy = korvane_cad_face_new_copy(face);
    const Uv uv{};
    korvane_cad_point_t *point = korvane_cad_point_new(copy, 1, uv.data());
    EXPECT_EQ(korvane_cad_point_set_tag(point, 9), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_get_use_vtag, cad), 0);
    korvane_cad_face_delete(copy);
}

TEST_F(Point, TheSecondDoublesTheListOfItsFace)
{
    new_point(1);
    EXPECT_EQ(face->point_capacity, 1);
    new_point(2);
    EXPECT_EQ(face->point_capacity, 2);
    new_point(3);
    EXPECT_EQ(face->point_capacity, 4);
    EXPECT_EQ(ids(), (std::vector<uint32_t>{1, 2, 3}));
}

TEST_F(Point, DeletingTheFirstMovesTheLastIntoItsPlace)
{
    korvane_cad_point_t *points[] = {new_point(1), new_point(2), new_point(3)};
    korvane_cad_point_delete(points[0]);
    EXPECT_EQ(ids(), (std::vector<uint32_t>{3, 2}));
    korvane_cad_point_delete(points[1]);
    EXPECT_EQ(ids(), (std::vector<uint32_t>{3}));
    korvane_cad_point_delete(points[2]);
    EXPECT_EQ(ids(), (std::vector<uint32_t>{}));
}

TEST_F(Point, IsFreedWhenItIsDeletedAndElseWithItsFace)
{
    new_point(1);
    const int64_t blocks = live_block_count();
    korvane_cad_point_t *point = new_point(2);
    EXPECT_EQ(live_block_count(), blocks + 1);
    korvane_cad_point_delete(point);
    EXPECT_EQ(live_block_count(), blocks);
    korvane_cad_face_t *copy = korvane_cad_face_new_copy(face);
    const Uv uv{};
    korvane_cad_point_new(copy, 1, uv.data());
    korvane_cad_face_delete(copy);
    EXPECT_EQ(live_block_count(), blocks);
}

TEST_F(Point, WithoutAFaceOrUnknownToItIsJustFreed)
{
    new_point(1);
    const int64_t blocks = live_block_count();
    for (korvane_cad_face_t *stated : {static_cast<korvane_cad_face_t *>(nullptr), face}) {
        auto *point = create<korvane_cad_point_t>();
        ASSERT_NE(point, nullptr);
        point->face = stated;
        korvane_cad_point_delete(point);
        EXPECT_EQ(ids(), std::vector<uint32_t>{1});
        EXPECT_EQ(live_block_count(), blocks);
    }
}

TEST_F(Point, TakesNoReference)
{
    const uint32_t references = cad->reference_count;
    korvane_cad_point_t *point = new_point(1);
    EXPECT_EQ(cad->reference_count, references);
    korvane_cad_point_delete(point);
    EXPECT_EQ(cad->reference_count, references);
}

TEST_F(Point, RefusesNull)
{
    uint32_t id = 0;
    Uv uv{};
    korvane_cad_point_delete(nullptr);
    EXPECT_EQ(korvane_cad_point_new(nullptr, 1, uv.data()), nullptr);
    EXPECT_EQ(korvane_cad_point_get_uv(nullptr, uv.data()), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_point_get_id(nullptr, &id), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_point_get_tag(nullptr, &id), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_point_set_tag(nullptr, 1), STATUS_ERROR);
}

TEST_F(Point, CreationSurvivesFailingAllocations)
{
    new_point(1);
    oom_sweep([this](AllocationFault &fault) {
        const int32_t count = face->point_count;
        fault.arm();
        korvane_cad_point_t *made = new_point(2);
        EXPECT_EQ(made == nullptr, fault.disarm());
        EXPECT_EQ(face->point_count, count + (made == nullptr ? 0 : 1));
    });
}

} // namespace
} // namespace korvane::testing
