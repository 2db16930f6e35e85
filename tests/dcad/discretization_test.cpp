#include "dcad/discretization.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <random>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "common/memory.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

struct Vertex {
    double t = 0;
    std::array<double, 2> uv{};
    std::array<double, 3> xyz{};
    int32_t tag = 0;
    bool operator==(const Vertex &) const = default;
};

class Discretization : public ::testing::Test {
  protected:
    korvane_status_t resize(std::size_t count)
    {
        return korvane_dcad_edge_discretization_set_vertex_count(edge, static_cast<int32_t>(count));
    }

    int32_t count() const
    {
        int32_t count = -1;
        EXPECT_EQ(korvane_dcad_edge_discretization_get_vertex_count(edge, &count), STATUS_OK);
        return count;
    }

    void write(int32_t index, const Vertex &vertex)
    {
        EXPECT_EQ(korvane_dcad_edge_discretization_set_vertex_coordinates(
                      edge, index, vertex.t, vertex.uv.data(), vertex.xyz.data()),
            STATUS_OK);
        EXPECT_EQ(korvane_dcad_edge_discretization_set_vertex_tag(edge, index, vertex.tag), STATUS_OK);
    }

    Vertex read(int32_t index) const
    {
        Vertex vertex{-9, {-9, -9}, {-9, -9, -9}, -9};
        EXPECT_EQ(korvane_dcad_edge_discretization_get_vertex_coordinates(
                      edge, index, &vertex.t, vertex.uv.data(), vertex.xyz.data()),
            STATUS_OK);
        EXPECT_EQ(korvane_dcad_edge_discretization_get_vertex_tag(edge, index, &vertex.tag), STATUS_OK);
        return vertex;
    }

    std::vector<Vertex> read_all() const
    {
        std::vector<Vertex> vertices;
        for (int32_t index = 1; index <= count(); ++index)
            vertices.push_back(read(index));
        return vertices;
    }

    /// Sets the count and writes vertices that are all different.
    std::vector<Vertex> fill(int32_t count)
    {
        EXPECT_EQ(resize(static_cast<std::size_t>(count)), STATUS_OK);
        std::vector<Vertex> vertices;
        for (int32_t index = 1; index <= count; ++index) {
            const double x = index;
            vertices.push_back({x, {x + 0.1, x + 0.2}, {x + 0.3, x + 0.4, x + 0.5}, 100 + index});
            write(index, vertices.back());
        }
        return vertices;
    }

    Owned<korvane_dcad_edge_discretization_t> owned = create_owned<korvane_dcad_edge_discretization_t>();
    korvane_dcad_edge_discretization_t *edge = owned.get();
};

TEST_F(Discretization, BehavesAsAVectorOfVertices)
{
    std::mt19937 engine(20110809);
    std::vector<Vertex> model;
    for (int step = 0; step < 3000; ++step) {
        if (engine() % 4 == 0) {
            const std::size_t size = engine() % 20;
            ASSERT_EQ(resize(size), STATUS_OK);
            model.resize(size);
        }
        if (!model.empty()) {
            const std::size_t position = engine() % model.size();
            const double x = step;
            model[position] = {x, {x + 0.1, x + 0.2}, {x + 0.3, x + 0.4, x + 0.5}, step};
            write(static_cast<int32_t>(position) + 1, model[position]);
        }
        ASSERT_EQ(read_all(), model);
    }
}

TEST_F(Discretization, KeepsVerticesWhenItGrowsAndZeroesTheNewOnes)
{
    std::vector<Vertex> vertices = fill(3);
    ASSERT_EQ(resize(5), STATUS_OK);
    vertices.resize(5);
    EXPECT_EQ(read_all(), vertices);
    EXPECT_EQ(read(5), Vertex{});
}

TEST_F(Discretization, ReleasesTheArraysWithTheLastVertex)
{
    fill(3);
    ASSERT_EQ(resize(0), STATUS_OK);
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(edge->parameters.data(), nullptr);
    EXPECT_EQ(edge->uv.data(), nullptr);
    EXPECT_EQ(edge->xyz.data(), nullptr);
    EXPECT_EQ(edge->tags.data(), nullptr);
    ASSERT_EQ(resize(2), STATUS_OK);
    EXPECT_EQ(read_all(), std::vector<Vertex>(2));
}

TEST_F(Discretization, AllocatesNothingForTheSameCount)
{
    const std::vector<Vertex> vertices = fill(3);
    const int64_t before = allocation_count();
    EXPECT_EQ(resize(3), STATUS_OK);
    EXPECT_EQ(allocation_count(), before);
    EXPECT_EQ(read_all(), vertices);
}

TEST_F(Discretization, RefusesNegativeCounts)
{
    const std::vector<Vertex> vertices = fill(3);
    for (const int32_t negative : {-1, -3, INT32_MIN})
        EXPECT_EQ(korvane_dcad_edge_discretization_set_vertex_count(edge, negative), STATUS_ERROR);
    EXPECT_EQ(read_all(), vertices);
}

TEST_F(Discretization, WritesAndReadsOnlyWhatIsAskedFor)
{
    fill(2);
    const double uv[2] = {7, 8};
    const double xyz[3] = {4, 5, 6};
    Vertex expected = read(2);
    EXPECT_EQ(
        korvane_dcad_edge_discretization_set_vertex_coordinates(edge, 2, 0.5, nullptr, nullptr), STATUS_OK);
    expected.t = 0.5;
    EXPECT_EQ(read(2), expected);
    EXPECT_EQ(korvane_dcad_edge_discretization_set_vertex_coordinates(edge, 2, 0.6, uv, nullptr), STATUS_OK);
    expected.t = 0.6;
    expected.uv = {7, 8};
    EXPECT_EQ(read(2), expected);
    EXPECT_EQ(korvane_dcad_edge_discretization_set_vertex_coordinates(edge, 2, 0.7, nullptr, xyz), STATUS_OK);
    expected.t = 0.7;
    expected.xyz = {4, 5, 6};
    EXPECT_EQ(read(2), expected);

    Vertex part;
    const auto get = korvane_dcad_edge_discretization_get_vertex_coordinates;
    EXPECT_EQ(get(edge, 2, nullptr, nullptr, nullptr), STATUS_OK);
    EXPECT_EQ(part, Vertex{});
    EXPECT_EQ(get(edge, 2, &part.t, nullptr, nullptr), STATUS_OK);
    EXPECT_EQ(part.t, 0.7);
    EXPECT_EQ(get(edge, 2, nullptr, part.uv.data(), nullptr), STATUS_OK);
    EXPECT_EQ(part.uv, expected.uv);
    EXPECT_EQ(get(edge, 2, nullptr, nullptr, part.xyz.data()), STATUS_OK);
    EXPECT_EQ(part.xyz, expected.xyz);
    EXPECT_EQ(korvane_dcad_edge_discretization_get_vertex_tag(edge, 2, nullptr), STATUS_OK);
}

TEST_F(Discretization, PropertiesAccumulate)
{
    const auto is_set = [&](uint32_t bits) {
        int32_t flag = -9;
        EXPECT_EQ(korvane_dcad_edge_discretization_query_property(edge, bits, &flag), STATUS_OK);
        return flag;
    };
    EXPECT_EQ(is_set(0xFFFFFFFF), 0);
    EXPECT_EQ(korvane_dcad_edge_discretization_set_property(edge, 4), STATUS_OK);
    EXPECT_EQ(korvane_dcad_edge_discretization_set_property(edge, 1), STATUS_OK);
    EXPECT_EQ(edge->properties, 5u);
    EXPECT_EQ(is_set(2), 0);
    EXPECT_EQ(is_set(6), 1);
    EXPECT_EQ(is_set(0), 0);
    EXPECT_EQ(korvane_dcad_edge_discretization_set_property(edge, 0x80000000), STATUS_OK);
    EXPECT_EQ(is_set(0x80000000), 1);
}

TEST_F(Discretization, OfNothingIsAnError)
{
    int32_t value = -9;
    EXPECT_EQ(korvane_dcad_edge_discretization_set_vertex_count(nullptr, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_dcad_edge_discretization_get_vertex_count(nullptr, &value), STATUS_ERROR);
    EXPECT_EQ(korvane_dcad_edge_discretization_set_property(nullptr, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_dcad_edge_discretization_query_property(nullptr, 1, &value), STATUS_ERROR);
    EXPECT_EQ(korvane_dcad_edge_discretization_query_property(edge, 1, nullptr), STATUS_ERROR);
    EXPECT_EQ(value, -9);
}

TEST_F(Discretization, KeepsItsVerticesWhenAnAllocationFails)
{
    for (const std::size_t wanted : {0u, 1u, 2u, 4u, 50u}) {
        oom_sweep([&](AllocationFault &fault) {
            std::vector<Vertex> vertices = fill(3);
            fault.arm();
            const korvane_status_t status = resize(wanted);
            if (fault.disarm()) {
                EXPECT_EQ(status, STATUS_NOMEM);
                EXPECT_EQ(read_all(), vertices);
                // Arrays that did grow do not stand in the way, whatever is wanted next.
                ASSERT_EQ(resize(4), STATUS_OK);
                vertices.resize(4);
                EXPECT_EQ(read_all(), vertices);
                ASSERT_EQ(resize(wanted), STATUS_OK);
            } else {
                EXPECT_EQ(status, STATUS_OK);
            }
            vertices.resize(wanted);
            EXPECT_EQ(read_all(), vertices);
            ASSERT_EQ(resize(0), STATUS_OK);
        });
    }
}

} // namespace
} // namespace korvane::testing
