#include <array>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

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

} // namespace
} // namespace korvane::testing
