#include "mesh/mesh.h"

#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstddef>
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

/// A tag system with base tags 1..base_tag_count.
korvane_tag_system_t *make_tag_system(int32_t base_tag_count)
{
    korvane_tag_system_t *tag_system = korvane_tag_system_new(base_tag_count);
    for (int32_t tag = 1; tag <= base_tag_count; ++tag)
        EXPECT_EQ(korvane_tag_system_add_base_tag(tag_system, tag), STATUS_OK);
    return tag_system;
}

TEST_F(Mesh, WithoutTagSystemHasOnlyBaseTags)
{
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    char something = 0;
    auto *tag_system = reinterpret_cast<korvane_tag_system_t *>(&something);
    EXPECT_EQ(korvane_mesh_get_tag_system(mesh, &tag_system), STATUS_OK);
    EXPECT_EQ(tag_system, nullptr);

    int32_t count = 9;
    std::array<int32_t, 2> tags = {9, 9};
    EXPECT_EQ(korvane_mesh_get_composite_tag_list(mesh, &count, tags.data()), STATUS_OK);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(tags, (std::array{0, 9}));
    EXPECT_EQ(korvane_mesh_get_composite_tag_definition(mesh, 7, &count, tags.data()), STATUS_OK);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(tags, (std::array{7, 9}));
}

TEST_F(Mesh, AnswersFromItsTagSystem)
{
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    korvane_tag_system_t *tag_system = make_tag_system(3);
    EXPECT_EQ(korvane_mesh_set_tag_system(mesh, tag_system), STATUS_OK);
    korvane_tag_system_t *found = nullptr;
    EXPECT_EQ(korvane_mesh_get_tag_system(mesh, &found), STATUS_OK);
    EXPECT_EQ(found, tag_system);

    const std::array<int32_t, 2> pair = {1, 2};
    int32_t composite = 0;
    ASSERT_EQ(korvane_tag_system_get_composite_tag(tag_system, pair.data(), 2, &composite), STATUS_OK);
    int32_t count = 0;
    std::array<int32_t, 20> tags = {};
    EXPECT_EQ(korvane_mesh_get_composite_tag_list(mesh, &count, tags.data()), STATUS_OK);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(tags[0], composite);
    EXPECT_EQ(korvane_mesh_get_composite_tag_definition(mesh, composite, &count, tags.data()), STATUS_OK);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(tags[0], 2);
    EXPECT_EQ(tags[1], 1);
    EXPECT_EQ(korvane_mesh_get_composite_tag_definition(mesh, 99, &count, tags.data()), STATUS_OK);
    EXPECT_EQ(count, 0);
}

TEST_F(Mesh, DeletesTheTagSystemSetLastAndForgetsTheOneBefore)
{
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    korvane_tag_system_t *first = make_tag_system(1);
    EXPECT_EQ(korvane_mesh_set_tag_system(mesh, first), STATUS_OK);
    EXPECT_EQ(korvane_mesh_set_tag_system(mesh, make_tag_system(2)), STATUS_OK);
    korvane_mesh_delete(mesh);
    EXPECT_EQ(korvane_tag_system_add_base_tag(first, 5), STATUS_OK);
    korvane_tag_system_delete(first);

    korvane_tag_system_t *kept = make_tag_system(1);
    mesh = korvane_mesh_new_in_memory(context);
    EXPECT_EQ(korvane_mesh_set_tag_system(mesh, kept), STATUS_OK);
    EXPECT_EQ(korvane_mesh_set_tag_system(mesh, nullptr), STATUS_OK);
    korvane_mesh_delete(mesh);
    korvane_tag_system_delete(kept);
}

TEST_F(Mesh, TagFunctionsRefuseNull)
{
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    korvane_tag_system_t *tag_system = nullptr;
    int32_t count = 0;
    int32_t tags[2];
    EXPECT_EQ(korvane_mesh_set_tag_system(nullptr, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_mesh_get_tag_system(nullptr, &tag_system), STATUS_ERROR);
    for (const bool has_tag_system : {false, true}) {
        if (has_tag_system)
            korvane_mesh_set_tag_system(mesh, make_tag_system(1));
        EXPECT_EQ(korvane_mesh_get_composite_tag_list(nullptr, &count, tags), STATUS_ERROR);
        EXPECT_EQ(korvane_mesh_get_composite_tag_list(mesh, nullptr, tags), STATUS_ERROR);
        EXPECT_EQ(korvane_mesh_get_composite_tag_list(mesh, &count, nullptr), STATUS_ERROR);
        EXPECT_EQ(korvane_mesh_get_composite_tag_definition(nullptr, 1, &count, tags), STATUS_ERROR);
        EXPECT_EQ(korvane_mesh_get_composite_tag_definition(mesh, 1, nullptr, tags), STATUS_ERROR);
        EXPECT_EQ(korvane_mesh_get_composite_tag_definition(mesh, 1, &count, nullptr), STATUS_ERROR);
    }
}

/// The allocator may report a little more than was asked for; under the sanitizers the size is exact.
void expect_zeroed_buffer(const korvane_mesh_t *mesh, std::size_t bytes)
{
    auto *buffer = static_cast<unsigned char *>(korvane_mesh_calloc_generic_buffer(mesh));
    ASSERT_NE(buffer, nullptr);
    EXPECT_GE(malloc_usable_size(buffer), bytes);
    EXPECT_LT(malloc_usable_size(buffer), bytes + 32);
    EXPECT_EQ(std::count(buffer, buffer + bytes, 0), static_cast<std::ptrdiff_t>(bytes));
    korvane_mesh_free_generic_buffer(buffer);
}

TEST_F(Mesh, GenericBuffersHoldEightyBytesOrTheListsOfTheTagSystem)
{
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    expect_zeroed_buffer(mesh, 80);
    korvane_tag_system_t *small = make_tag_system(10);
    ASSERT_EQ(korvane_tag_system_get_buffer_size(small), 40);
    korvane_mesh_set_tag_system(mesh, small);
    expect_zeroed_buffer(mesh, 80);
    korvane_tag_system_delete(small);
    korvane_tag_system_t *large = make_tag_system(50);
    ASSERT_EQ(korvane_tag_system_get_buffer_size(large), 200);
    korvane_mesh_set_tag_system(mesh, large);
    expect_zeroed_buffer(mesh, 200);
    korvane_mesh_free_generic_buffer(nullptr);
}

TEST_F(Mesh, GenericBufferIsNullWithoutMemory)
{
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    AllocationFault fault(1, Failure::persistent);
    fault.arm();
    EXPECT_EQ(korvane_mesh_calloc_generic_buffer(mesh), nullptr);
    fault.disarm();
}

TEST_F(Mesh, IsMadeWholeOrNotAtAll)
{
    oom_sweep([&](AllocationFault &fault) {
        fault.arm();
        korvane_mesh_t *mesh = korvane_mesh_new(context);
        const bool failed = fault.disarm();
        if (mesh == nullptr) {
            EXPECT_TRUE(failed);
            return;
        }
        int32_t count = 5;
        EXPECT_EQ(korvane_mesh_get_pyramid_count(mesh, &count), STATUS_OK);
        EXPECT_EQ(count, 0);
        korvane_mesh_delete(mesh); // which may not be attached
    });
}

} // namespace
} // namespace korvane::testing
