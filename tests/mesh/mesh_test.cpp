#include "mesh/mesh.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "support/failing_allocations.h"
#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

std::vector<void *> released;

void note_release(void *user_data)
{
    released.push_back(user_data);
}

class Mesh : public ::testing::Test {
  protected:
    Mesh() { released.clear(); }

    RecordingContext context;
};

TEST_F(Mesh, NeedsAContext)
{
    EXPECT_EQ(korvane_mesh_new(nullptr), nullptr);
}

TEST_F(Mesh, KnowsItsContext)
{
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    ASSERT_NE(mesh, nullptr);
    korvane_context_t *found = nullptr;
    EXPECT_EQ(korvane_mesh_get_context(mesh, &found), STATUS_OK);
    EXPECT_EQ(found, context);
    korvane_mesh_delete(mesh);
}

TEST_F(Mesh, IsConsistentWhateverItIs)
{
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    EXPECT_EQ(korvane_mesh_check_consistency(mesh), STATUS_OK);
    EXPECT_EQ(korvane_mesh_check_consistency(nullptr), STATUS_OK);
    korvane_mesh_delete(mesh);
    korvane_mesh_delete(nullptr);
}

TEST_F(Mesh, ReleasesItsStorageOnce)
{
    char data = 0;
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    mesh->data_release = note_release;
    mesh->data_release_user_data = &data;
    korvane_mesh_delete(mesh);
    EXPECT_EQ(released, std::vector<void *>{&data});
}

TEST_F(Mesh, ReleasesNothingWithoutUserData)
{
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    mesh->data_release = note_release;
    korvane_mesh_delete(mesh);
    EXPECT_TRUE(released.empty());
}

TEST_F(Mesh, IsReleasedByItsContextNewestFirst)
{
    korvane_context_t *own = korvane_context_new();
    char data[4] = {};
    korvane_mesh_t *meshes[4];
    for (int i = 0; i < 4; ++i) {
        meshes[i] = korvane_mesh_new(own);
        meshes[i]->data_release = note_release;
        meshes[i]->data_release_user_data = &data[i];
    }
    korvane_mesh_delete(meshes[2]);
    EXPECT_EQ(released, (std::vector<void *>{&data[2]}));
    korvane_context_delete(own);
    EXPECT_EQ(released, (std::vector<void *>{&data[2], &data[3], &data[1], &data[0]}));
}

TEST_F(Mesh, IsMadeWholeOrNotAtAll)
{
    oom_sweep([&](AllocationFault &fault) {
        fault.arm();
        korvane_mesh_t *mesh = korvane_mesh_new(context);
        fault.disarm();
        if (mesh == nullptr)
            return;
        int32_t count = 5;
        EXPECT_EQ(korvane_mesh_get_pyramid_count(mesh, &count), STATUS_OK);
        EXPECT_EQ(count, 0);
        korvane_mesh_delete(mesh); // which may not be attached
    });
}

} // namespace
} // namespace korvane::testing
