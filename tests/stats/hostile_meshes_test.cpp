// Measures, statistics and topology of meshes whose callbacks fail, write less than they should, state counts
// that are not so, or name vertices that there are not.
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "mesh_data.h"
#include "stats/measures.h"
#include "support/hostile_client.h"
#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

class HostileMesh : public ::testing::Test {
  protected:
    ~HostileMesh() override { EXPECT_EQ(client.complaints, std::vector<std::string>()); }

    RecordingContext context;
    HostileClient client{context};
};

TEST_F(HostileMesh, ReadableStatisticsSurviveAnyCall)
{
    korvane_mesh_compute_statistics(client);
    const std::size_t undisturbed = context.messages.size();
    EXPECT_EQ(undisturbed, 1 + 2 + 7 + 2 + 3 + 1 + 1 + 2u);
    sweep_deviations(client, [&](Deviation) {
        context.messages.clear();
        ASSERT_EQ(korvane_mesh_compute_statistics(client), STATUS_OK);
        ASSERT_LE(context.messages.size(), undisturbed);
        if (client.deviated && client.deviated_in == Call::count)
            return;
        ASSERT_EQ(context.messages.size(), undisturbed);
    });
}

TEST_F(HostileMesh, KeyedStatisticsSurviveAnyCall)
{
    korvane_mesh_compute_statistics_valid(client, "name");
    const std::size_t undisturbed = context.messages.size();
    EXPECT_EQ(undisturbed, 2 + 7 + 8 * 9 + 5u);
    sweep_deviations(client, [&](Deviation) {
        context.messages.clear();
        ASSERT_EQ(korvane_mesh_compute_statistics_valid(client, "name"), STATUS_OK);
        if (client.deviated && client.deviated_in == Call::count)
            return;
        ASSERT_TRUE(context.messages.size() == undisturbed || context.messages.size() + 5 == undisturbed);
    });
}

TEST_F(HostileMesh, TopologyIsLeftOutIfAnyCallFails)
{
    korvane_mesh_compute_topological_statistics(client);
    const std::size_t undisturbed = context.messages.size();
    EXPECT_EQ(undisturbed, 4u);
    sweep_deviations(client, [&](Deviation how) {
        context.messages.clear();
        ASSERT_EQ(korvane_mesh_compute_topological_statistics(client), STATUS_OK);
        const bool failed = client.deviated && how != Deviation::stops_halfway;
        ASSERT_EQ(context.messages.size(), failed ? 1 : undisturbed);
    });
}

/// The corners that were delivered, of the first element of a kind, if `call` deviates; the calls are for the
/// vertices and then for the corners in turn. What was not delivered is 0.
template <std::size_t corner_count>
std::array<Vec3, corner_count> delivered_corners(int64_t call, Deviation how)
{
    std::array<Vec3, corner_count> corners{};
    for (std::size_t i = 0; i < corner_count; ++i) {
        const auto position = static_cast<int32_t>(i);
        const std::size_t written_vertices =
            call != 1 ? corner_count : (how == Deviation::fails ? 0 : corner_count / 2);
        if (i >= written_vertices)
            continue;
        const int32_t vertex = HostileClient::vertex_of(0, position);
        const int written_axes = call != position + 2 ? 3 : (how == Deviation::fails ? 0 : 1);
        corners[i] = {HostileClient::coordinate(vertex, 0),
            written_axes > 1 ? HostileClient::coordinate(vertex, 1) : 0,
            written_axes > 2 ? HostileClient::coordinate(vertex, 2) : 0};
        if (written_axes == 0)
            corners[i] = {};
    }
    return corners;
}

TEST_F(HostileMesh, MeasuresAreThoseOfWhatWasDelivered)
{
    for (const Deviation how : all_deviations) {
        for (int64_t call = 1; call <= 5; ++call) {
            double ratio = -7;
            client.deviate_at(call, how);
            poison_stack();
            ASSERT_EQ(korvane_mesh_get_triangle_aspect_ratio(client, 1, &ratio), STATUS_OK);
            ASSERT_EQ(ratio, triangle_aspect_ratio(delivered_corners<3>(call, how))) << call;
            client.deviate_at(call, how);
            poison_stack();
            ASSERT_EQ(korvane_mesh_get_tetrahedron_aspect_ratio(client, 1, &ratio), STATUS_OK);
            ASSERT_EQ(ratio, tetrahedron_aspect_ratio(delivered_corners<4>(call, how))) << call;
        }
    }
}

TEST_F(HostileMesh, CountsThatChangeFromCallToCallAreSurvived)
{
    const std::array<int32_t, 9> counts = {2, -1, 5, 0, INT32_MIN, 2, 700, 1, 2};
    for (std::size_t first = 0; first < counts.size(); ++first) {
        for (std::size_t step = 0; step < counts.size(); ++step) {
            std::size_t next = first;
            client.behave();
            client.lie = [&] { return counts[(next += step) % counts.size()]; };
            poison_stack();
            ASSERT_EQ(korvane_mesh_compute_statistics(client), STATUS_OK);
            ASSERT_EQ(korvane_mesh_compute_statistics_valid(client, "name"), STATUS_OK);
            ASSERT_EQ(korvane_mesh_compute_topological_statistics(client), STATUS_OK);
        }
    }
}

TEST_F(HostileMesh, ACountWithLittleBehindItIsMeasuredToItsEnd)
{
    client.lie = [] { return 100'000; };
    EXPECT_EQ(korvane_mesh_compute_statistics_valid(client, "name"), STATUS_OK);
    EXPECT_NE(context.text().find("VALID.name.triangle.angles.count = 300000\n"), std::string::npos);
    EXPECT_EQ(context.text().find("VALID.name.free_edge.count"), std::string::npos);
}

/// Elements whose vertices are all combinations of extreme and of usual numbers.
MeshData extreme_elements()
{
    constexpr std::array<int32_t, 9> numbers = {
        INT32_MIN, INT32_MIN + 1, -1, 0, 1, 3, 4, INT32_MAX - 1, INT32_MAX};
    MeshData data;
    data.points = {{1, 0, 0}, {1, 2, 0}, {3, 1, 4}};
    for (const int32_t a : numbers) {
        for (const int32_t b : numbers) {
            for (const int32_t c : numbers) {
                data.triangles.push_back({a, b, c});
                data.quadrangles.push_back({a, b, c, a});
                data.tetrahedra.push_back({a, b, c, 2});
                data.hexahedra.push_back({a, b, c, 2, c, 1, b, 3});
            }
        }
    }
    return data;
}

/// The same mesh with vertices in the origin in place of those that there are not.
MeshData with_all_vertices(MeshData data)
{
    std::map<int32_t, int32_t> numbers;
    const auto point_count = static_cast<int32_t>(data.points.size());
    const auto replace = [&](auto &elements) {
        for (auto &element : elements) {
            for (int32_t &vertex : element) {
                if (vertex >= 1 && vertex <= point_count)
                    continue;
                if (const auto [place, is_new] =
                        numbers.try_emplace(vertex, static_cast<int32_t>(data.points.size()) + 1);
                    is_new)
                    data.points.push_back({0, 0, 0});
                vertex = numbers[vertex];
            }
        }
    };
    replace(data.triangles);
    replace(data.quadrangles);
    replace(data.tetrahedra);
    replace(data.hexahedra);
    return data;
}

TEST(ExtremeIndices, AreVerticesInTheOrigin)
{
    RecordingContext context;
    RecordingContext other;
    MeshServer server(extreme_elements());
    const ServedMesh served(context, server);
    const StoredMesh stored(context, server.data);
    const StoredMesh whole(other, with_all_vertices(server.data));
    ASSERT_EQ(korvane_mesh_compute_statistics_valid(whole, "n"), STATUS_OK);
    for (korvane_mesh_t *mesh :
        {static_cast<korvane_mesh_t *>(served), static_cast<korvane_mesh_t *>(stored)}) {
        context.messages.clear();
        ASSERT_EQ(korvane_mesh_compute_statistics_valid(mesh, "n"), STATUS_OK);
        ASSERT_EQ(context.messages.size(), other.messages.size());
        for (std::size_t i = 0; i < context.messages.size(); ++i) {
            const std::string &text = context.messages[i].text;
            ASSERT_TRUE(text == other.messages[i].text || text == "VALID.n.vertex.count = 3\n") << text;
        }
    }
}

} // namespace
} // namespace korvane::testing
