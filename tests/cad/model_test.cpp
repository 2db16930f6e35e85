#include "cad/records.h"

#include <vector>

#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

using Model = Cad;

TEST_F(Model, IsEmptyAtFirst)
{
    EXPECT_EQ(got(korvane_cad_get_face_count, cad), 0);
    EXPECT_EQ(got(korvane_cad_get_use_vtag, cad), 0);
    EXPECT_EQ(got(korvane_cad_get_use_etag, cad), 0);
    EXPECT_EQ(got(korvane_cad_get_use_ftag, cad), 0);
    EXPECT_EQ(got(korvane_cad_get_thread_safety, cad), 0);
    korvane_cad_face_t *face = nullptr;
    EXPECT_EQ(korvane_cad_get_face(cad, 1, &face), STATUS_ERROR);
    EXPECT_EQ(cad->face_capacity, 128);
    EXPECT_EQ(cad->generic_buffer_size, 35);
}

TEST_F(Model, KnowsItsContext)
{
    korvane_context_t *found = nullptr;
    EXPECT_EQ(korvane_cad_get_context(cad, &found), STATUS_OK);
    EXPECT_EQ(found, context);
}

TEST_F(Model, The129thFaceDoublesTheListAndTheFirstOnesKeepTheirIndices)
{
    std::vector<korvane_cad_face_t *> faces;
    for (uint32_t id = 1; id <= 128; ++id)
        faces.push_back(new_face(id));
    EXPECT_EQ(cad->face_capacity, 128);
    faces.push_back(new_face(129));
    EXPECT_EQ(cad->face_capacity, 256);
    EXPECT_EQ(got(korvane_cad_get_face_count, cad), 129);
    for (int32_t index = 1; index <= 129; ++index) {
        korvane_cad_face_t *face = nullptr;
        EXPECT_EQ(korvane_cad_get_face(cad, index, &face), STATUS_OK);
        EXPECT_EQ(face, faces[static_cast<std::size_t>(index) - 1]);
    }
    korvane_cad_face_t *face = nullptr;
    for (const int32_t index : {0, -1, 130, INT32_MIN, INT32_MAX})
        EXPECT_EQ(korvane_cad_get_face(cad, index, &face), STATUS_ERROR);
}

TEST_F(Model, StoresThreadSafety)
{
    EXPECT_EQ(korvane_cad_set_thread_safety(cad, -7), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_get_thread_safety, cad), 1);
    EXPECT_EQ(korvane_cad_set_thread_safety(cad, 0), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_get_thread_safety, cad), 0);
}

TEST_F(Model, MergingEdgesDoesNothingWhateverItIsGiven)
{
    EXPECT_EQ(korvane_cad_merge_edges(nullptr), STATUS_OK);
    EXPECT_EQ(korvane_cad_merge_edges(cad, 0.5, "text"), STATUS_OK);
}

TEST_F(Model, RefusesNull)
{
    int32_t value = 0;
    korvane_cad_face_t *face = nullptr;
    korvane_cad_delete(nullptr);
    EXPECT_EQ(korvane_cad_new(nullptr), nullptr);
    EXPECT_EQ(korvane_cad_get_face_count(nullptr, &value), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_face(nullptr, 1, &face), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_use_vtag(nullptr, &value), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_use_etag(nullptr, &value), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_use_ftag(nullptr, &value), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_set_thread_safety(nullptr, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_thread_safety(nullptr, &value), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_thread_safety(cad, nullptr), STATUS_ERROR);
}

TEST_F(Model, CreationSurvivesFailingAllocations)
{
    oom_sweep([this](AllocationFault &fault) {
        fault.arm();
        korvane_cad_t *made = korvane_cad_new(context);
        // Only the attachment to the context may fail without consequence.
        EXPECT_TRUE(fault.disarm() || made != nullptr);
        korvane_cad_delete(made);
    });
}

} // namespace
} // namespace korvane::testing
