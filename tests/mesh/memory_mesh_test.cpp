#include "mesh/memory_mesh.h"

#include <array>
#include <cstdint>

#include <gtest/gtest.h>
#include <korvane.h>

#include "mesh/slots.h"
#include "support/failing_allocations.h"
#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

class MemoryMesh : public ::testing::Test {
  protected:
    MemoryMesh() : mesh(korvane_mesh_new_in_memory(context)) {}

    RecordingContext context;
    korvane_mesh_t *mesh; // the context deletes it
};

TEST_F(MemoryMesh, ReadsZerosBeforeAnyWriteAndRefusesOtherIndices)
{
    ASSERT_EQ(korvane_mesh_set_vertex_count(mesh, 3), STATUS_OK);
    std::array<double, 3> xyz = {1, 2, 3};
    EXPECT_EQ(korvane_mesh_get_vertex_coordinates(mesh, 2, xyz.data()), STATUS_OK);
    EXPECT_EQ(xyz, (std::array<double, 3>{0, 0, 0}));
    EXPECT_EQ(korvane_mesh_get_vertex_coordinates(mesh, 4, xyz.data()), STATUS_ERROR);
    EXPECT_EQ(korvane_mesh_get_vertex_coordinates(mesh, 0, xyz.data()), STATUS_ERROR);
}

TEST_F(MemoryMesh, KeepsValuesWhenTheCountIsRaised)
{
    ASSERT_EQ(korvane_mesh_set_triangle_count(mesh, 4), STATUS_OK);
    for (int32_t index = 1; index <= 4; ++index) {
        const int32_t tag = 10 * index;
        ASSERT_EQ(korvane_mesh_set_triangle_tag(mesh, index, &tag), STATUS_OK);
    }
    const int32_t fifth = 50;
    EXPECT_EQ(korvane_mesh_set_triangle_tag(mesh, 5, &fifth), STATUS_ERROR);
    ASSERT_EQ(korvane_mesh_set_triangle_count(mesh, 5), STATUS_OK);
    EXPECT_EQ(korvane_mesh_set_triangle_tag(mesh, 5, &fifth), STATUS_OK);
    for (int32_t index = 1; index <= 5; ++index) {
        int32_t tag = 0;
        EXPECT_EQ(korvane_mesh_get_triangle_tag(mesh, index, &tag), STATUS_OK);
        EXPECT_EQ(tag, 10 * index);
    }
}

TEST_F(MemoryMesh, StoresExtraVerticesModuloThousand)
{
    ASSERT_EQ(korvane_mesh_set_edge_count(mesh, 1), STATUS_OK);
    const std::array<int32_t, 3> list = {7, 8, 9};
    ASSERT_EQ(korvane_mesh_set_edge_extra_vertices(mesh, 1, 1003, list.data()), STATUS_OK);
    int32_t count = 0;
    std::array<int32_t, 4> read = {-1, -1, -1, -1};
    EXPECT_EQ(korvane_mesh_get_edge_extra_vertices(mesh, 1, &count, read.data()), STATUS_OK);
    EXPECT_EQ(count, 1003);
    EXPECT_EQ(read, (std::array<int32_t, 4>{7, 8, 9, -1}));

    ASSERT_EQ(korvane_mesh_set_edge_extra_vertices(mesh, 1, 1000, nullptr), STATUS_OK);
    read = {-1, -1, -1, -1};
    EXPECT_EQ(korvane_mesh_get_edge_extra_vertices(mesh, 1, &count, read.data()), STATUS_OK);
    EXPECT_EQ(count, 1000);
    EXPECT_EQ(read, (std::array<int32_t, 4>{-1, -1, -1, -1}));
}

TEST_F(MemoryMesh, TakesANegativeCountAndThenRefusesWrites)
{
    std::array<double, 3> xyz = {1, 2, 3};
    ASSERT_EQ(korvane_mesh_set_vertex_count(mesh, 1), STATUS_OK);
    ASSERT_EQ(korvane_mesh_set_vertex_coordinates(mesh, 1, xyz.data()), STATUS_OK);
    ASSERT_EQ(korvane_mesh_set_vertex_count(mesh, -2), STATUS_OK);
    int32_t count = 0;
    EXPECT_EQ(korvane_mesh_get_vertex_count(mesh, &count), STATUS_OK);
    EXPECT_EQ(count, -2);
    EXPECT_EQ(korvane_mesh_set_vertex_coordinates(mesh, 1, xyz.data()), STATUS_ERROR);
    EXPECT_EQ(korvane_mesh_get_vertex_coordinates(mesh, 1, xyz.data()), STATUS_ERROR);

    ASSERT_EQ(korvane_mesh_set_vertex_count(mesh, 1), STATUS_OK);
    xyz = {};
    EXPECT_EQ(korvane_mesh_get_vertex_coordinates(mesh, 1, xyz.data()), STATUS_OK);
    EXPECT_EQ(xyz, (std::array<double, 3>{1, 2, 3}));
}

TEST_F(MemoryMesh, IsReleasedWithItsContextOrByItself)
{
    const int64_t before = live_block_count();
    korvane_context_t *own = korvane_context_new();
    korvane_mesh_t *meshes[3];
    for (korvane_mesh_t *&made : meshes) {
        made = korvane_mesh_new_in_memory(own);
        ASSERT_NE(made, nullptr);
        korvane_context_t *found = nullptr;
        EXPECT_EQ(korvane_mesh_get_context(made, &found), STATUS_OK);
        EXPECT_EQ(found, own);
        const int32_t tag = 5;
        const std::array<int32_t, 2> extra = {1, 2};
        ASSERT_EQ(korvane_mesh_set_tetrahedron_count(made, 4), STATUS_OK);
        ASSERT_EQ(korvane_mesh_set_tetrahedron_tag(made, 4, &tag), STATUS_OK);
        ASSERT_EQ(korvane_mesh_set_tetrahedron_extra_vertices(made, 4, 2, extra.data()), STATUS_OK);
    }
    korvane_mesh_delete(meshes[1]);
    korvane_context_delete(own);
    EXPECT_EQ(live_block_count(), before);
}

TEST_F(MemoryMesh, IsMadeWholeOrNotAtAll)
{
    oom_sweep([&](AllocationFault &fault) {
        fault.arm();
        korvane_mesh_t *made = korvane_mesh_new_in_memory(context);
        const bool failed = fault.disarm();
        if (made == nullptr) {
            EXPECT_TRUE(failed);
            return;
        }
        int32_t count = 5;
        EXPECT_EQ(korvane_mesh_get_pyramid_count(made, &count), STATUS_OK);
        EXPECT_EQ(count, 0);
        korvane_mesh_delete(made); // which may not be attached
    });
}

TEST_F(MemoryMesh, LeavesASlotToTheClientThatReplacesIt)
{
    ASSERT_EQ(korvane_mesh_set_edge_count(mesh, 3), STATUS_OK);
    int32_t tag = 4;
    ASSERT_EQ(korvane_mesh_set_edge_tag(mesh, 1, &tag), STATUS_OK);

    int32_t data = 30;
    const auto get = [](int32_t index, int32_t *value, void *user_data) {
        *value = *static_cast<int32_t *>(user_data) + index;
        return korvane_status_t{STATUS_OK};
    };
    ASSERT_EQ(korvane_mesh_set_get_edge_tag(mesh, get, &data), STATUS_OK);
    EXPECT_EQ(korvane_mesh_get_edge_tag(mesh, 9, &tag), STATUS_OK);
    EXPECT_EQ(tag, 39);
    EXPECT_EQ(korvane_mesh_get_edge_required_status(mesh, 3, &tag), STATUS_OK);
    EXPECT_EQ(tag, 0);
    EXPECT_EQ(korvane_mesh_get_edge_required_status(mesh, 4, &tag), STATUS_ERROR);
}

/// The storage's callback must not take the client's data for the storage.
TEST_F(MemoryMesh, RefusesTheCallbackThatIsLeftBesideTheClients)
{
    ASSERT_EQ(korvane_mesh_set_edge_count(mesh, 3), STATUS_OK);
    ASSERT_EQ(korvane_mesh_set_triangle_count(mesh, 3), STATUS_OK);
    char data = 0;
    int32_t value = 4;
    std::array<int32_t, 2> vertices = {1, 2};
    for (void *user_data : {static_cast<void *>(&data), static_cast<void *>(nullptr)}) {
        korvane_mesh_set_get_edge_tag(
            mesh, [](int32_t, int32_t *, void *) { return korvane_status_t{8}; }, user_data);
        EXPECT_EQ(korvane_mesh_get_edge_tag(mesh, 1, &value), 8);
        EXPECT_EQ(korvane_mesh_set_edge_tag(mesh, 1, &value), STATUS_ERROR);

        korvane_mesh_set_set_edge_vertices(
            mesh, [](int32_t, const int32_t *, void *) { return korvane_status_t{9}; }, user_data);
        EXPECT_EQ(korvane_mesh_set_edge_vertices(mesh, 1, vertices.data()), 9);
        EXPECT_EQ(korvane_mesh_get_edge_vertices(mesh, 1, vertices.data()), STATUS_ERROR);

        korvane_mesh_set_set_triangle_count(
            mesh, [](int32_t, void *) { return korvane_status_t{10}; }, user_data);
        EXPECT_EQ(korvane_mesh_set_triangle_count(mesh, 1), 10);
        EXPECT_EQ(korvane_mesh_get_triangle_count(mesh, &value), STATUS_ERROR);

        korvane_mesh_set_get_triangle_extra_vertices(
            mesh, [](int32_t, int32_t *, int32_t *, void *) { return korvane_status_t{11}; }, user_data);
        EXPECT_EQ(korvane_mesh_get_triangle_extra_vertices(mesh, 1, &value, vertices.data()), 11);
        EXPECT_EQ(korvane_mesh_set_triangle_extra_vertices(mesh, 1, 2, vertices.data()), STATUS_ERROR);
    }
}

TEST_F(MemoryMesh, CallbacksRefuseANullStorage)
{
    MeshSlots::for_each([&]<auto slot>() { (mesh->*slot).user_data = nullptr; });
    std::array<int32_t, max_width> values = {};
    for (const CountAccessors &accessors : counts) {
        EXPECT_EQ(accessors.set(mesh, 3), STATUS_ERROR);
        EXPECT_EQ(accessors.get(mesh, values.data()), STATUS_ERROR);
    }
    for (const AttributeAccessors &accessors : attributes) {
        EXPECT_EQ(accessors.set(mesh, 1, values.data()), STATUS_ERROR);
        EXPECT_EQ(accessors.get(mesh, 1, values.data()), STATUS_ERROR);
    }
    for (const ExtraVerticesAccessors &accessors : extra_vertices) {
        EXPECT_EQ(accessors.set(mesh, 1, 1, values.data()), STATUS_ERROR);
        EXPECT_EQ(accessors.get(mesh, 1, values.data(), values.data()), STATUS_ERROR);
    }
}

} // namespace
} // namespace korvane::testing
