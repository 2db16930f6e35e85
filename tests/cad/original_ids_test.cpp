#include "cad/records.h"
#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

/// The functions of faces or of edges under common names.
struct FaceOriginals {
    using Object = korvane_cad_face_t;
    static constexpr auto add = korvane_cad_face_add_original_id;
    static constexpr auto count = korvane_cad_face_get_original_id_count;
    static constexpr auto get = korvane_cad_face_get_original_id;
    static constexpr auto reset = korvane_cad_face_reset_original_id;
    static Object *make(korvane_cad_t *cad, uint32_t id)
    {
        return korvane_cad_face_new(cad, id, blank_surface, nullptr);
    }
};

struct EdgeOriginals {
    using Object = korvane_cad_edge_t;
    static constexpr auto add = korvane_cad_edge_add_original_id;
    static constexpr auto count = korvane_cad_edge_get_original_id_count;
    static constexpr auto get = korvane_cad_edge_get_original_id;
    static constexpr auto reset = korvane_cad_edge_reset_original_id;
    static Object *make(korvane_cad_t *cad, uint32_t id)
    {
        return korvane_cad_edge_new(FaceOriginals::make(cad, 1), id, 0, 1, blank_curve, nullptr);
    }
};

template <class Originals>
class OriginalIds : public Cad {
  protected:
    std::vector<uint32_t> ids() const
    {
        std::vector<uint32_t> found;
        for (int32_t index = 1; index <= got(Originals::count, object); ++index) {
            uint32_t id = 0;
            EXPECT_EQ(Originals::get(object, index, &id), STATUS_OK);
            found.push_back(id);
        }
        return found;
    }

    typename Originals::Object *object = Originals::make(cad, 12);
};

using Kinds = ::testing::Types<FaceOriginals, EdgeOriginals>;
TYPED_TEST_SUITE(OriginalIds, Kinds);

TYPED_TEST(OriginalIds, StartWithTheObjectsOwn)
{
    EXPECT_EQ(this->ids(), (std::vector<uint32_t>{12}));
    EXPECT_EQ(TypeParam::add(this->object, 40), STATUS_OK);
    EXPECT_EQ(this->ids(), (std::vector<uint32_t>{40}));
    EXPECT_EQ(TypeParam::add(this->object, 41), STATUS_OK);
    EXPECT_EQ(this->ids(), (std::vector<uint32_t>{40, 41}));
}

TYPED_TEST(OriginalIds, WithoutAListThereIsOne)
{
    uint32_t id = 5;
    for (const int32_t index : {2, 0, -1})
        EXPECT_EQ(TypeParam::get(this->object, index, &id), STATUS_ERROR);
    EXPECT_EQ(id, 5u);
}

TYPED_TEST(OriginalIds, ResettingLeavesNone)
{
    EXPECT_EQ(TypeParam::reset(this->object), STATUS_OK);
    EXPECT_EQ(this->ids(), (std::vector<uint32_t>{12})) << "there was no list to reset";
    TypeParam::add(this->object, 40);
    const int64_t blocks = live_block_count();
    EXPECT_EQ(TypeParam::reset(this->object), STATUS_OK);
    EXPECT_EQ(live_block_count(), blocks) << "the list stays";
    EXPECT_EQ(this->ids(), (std::vector<uint32_t>{}));
    EXPECT_EQ(TypeParam::add(this->object, 7), STATUS_OK);
    EXPECT_EQ(this->ids(), (std::vector<uint32_t>{7}));
}

TYPED_TEST(OriginalIds, TheThirdDoublesTheList)
{
    std::vector<int32_t> capacities;
    for (uint32_t id = 1; id <= 5; ++id) {
        TypeParam::add(this->object, id);
        capacities.push_back(this->object->original_ids->capacity);
        EXPECT_EQ(std::ssize(this->object->original_ids->ids), capacities.back());
    }
    EXPECT_EQ(capacities, (std::vector<int32_t>{1, 2, 4, 4, 8}));
    EXPECT_EQ(this->ids(), (std::vector<uint32_t>{1, 2, 3, 4, 5}));
}

TYPED_TEST(OriginalIds, AreNotReadFromOutsideTheList)
{
    for (uint32_t id = 1; id <= 3; ++id)
        TypeParam::add(this->object, id);
    uint32_t id = 5;
    EXPECT_EQ(TypeParam::get(this->object, 4, &id), STATUS_OK) << "an unused place of the list";
    EXPECT_EQ(id, 0u);
    for (const int32_t index : {5, 0, -1, INT32_MIN, INT32_MAX})
        EXPECT_EQ(TypeParam::get(this->object, index, &id), STATUS_ERROR);
}

TYPED_TEST(OriginalIds, RefuseNull)
{
    int32_t count = 0;
    uint32_t id = 0;
    typename TypeParam::Object *const none = nullptr;
    EXPECT_EQ(TypeParam::add(none, 1), STATUS_ERROR);
    EXPECT_EQ(TypeParam::count(none, &count), STATUS_ERROR);
    EXPECT_EQ(TypeParam::count(this->object, nullptr), STATUS_ERROR);
    EXPECT_EQ(TypeParam::get(none, 1, &id), STATUS_ERROR);
    EXPECT_EQ(TypeParam::get(this->object, 1, nullptr), STATUS_ERROR);
    EXPECT_EQ(TypeParam::reset(none), STATUS_ERROR);
}

TYPED_TEST(OriginalIds, AddingSurvivesFailingAllocations)
{
    for (const uint32_t present : {0u, 1u, 2u}) {
        oom_sweep([&](AllocationFault &fault) {
            this->object->original_ids = nullptr;
            for (uint32_t id = 0; id < present; ++id)
                TypeParam::add(this->object, id);
            const std::vector<uint32_t> before = this->ids();
            fault.arm();
            const korvane_status_t status = TypeParam::add(this->object, 9);
            const bool failed = fault.disarm();
            EXPECT_EQ(status, failed ? STATUS_NOMEM : STATUS_OK);
            if (failed)
                EXPECT_EQ(this->ids(), before);
            else
                EXPECT_EQ(this->ids().back(), 9u);
        });
    }
}

class OriginalGeometry : public Cad {};

TEST_F(OriginalGeometry, OfAnOrdinaryFaceIsTheFaceItself)
{
    korvane_cad_face_t *face = new_face();
    korvane_cad_face_t *original = nullptr;
    const Uv uv{0.25, 0.5};
    Uv original_uv{};
    int64_t aux = 9;
    EXPECT_EQ(korvane_cad_face_get_original_geometry(face, uv.data(), &original, original_uv.data(), &aux),
        STATUS_OK);
    EXPECT_EQ(original, face);
    EXPECT_EQ(original_uv, uv);
    EXPECT_EQ(aux, 0);
    EXPECT_EQ(korvane_cad_face_get_original_geometry(face, nullptr, nullptr, nullptr, nullptr), STATUS_OK);
    EXPECT_EQ(korvane_cad_face_get_original_geometry(nullptr, uv.data(), &original, original_uv.data(), &aux),
        STATUS_ERROR);
}

TEST_F(OriginalGeometry, OfAnOrdinaryEdgeIsTheEdgeItself)
{
    korvane_cad_edge_t *edge = new_edge(new_face());
    korvane_cad_edge_t *original = nullptr;
    Xyz t{};
    EXPECT_EQ(korvane_cad_edge_get_original_geometry(edge, 0.25, &original, &t[0], &t[1], &t[2]), STATUS_OK);
    EXPECT_EQ(original, edge);
    EXPECT_EQ(t, (Xyz{0.25, 0.25, 0.25}));
    EXPECT_EQ(
        korvane_cad_edge_get_original_geometry(edge, 0.25, nullptr, nullptr, nullptr, nullptr), STATUS_OK);
    EXPECT_EQ(
        korvane_cad_edge_get_original_geometry(nullptr, 0.25, &original, &t[0], &t[1], &t[2]), STATUS_ERROR);
}

} // namespace
} // namespace korvane::testing
