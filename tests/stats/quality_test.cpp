#include "stats/quality.h"

#include <climits>
#include <cmath>
#include <utility>

#include <gtest/gtest.h>

#include "mesh_data.h"
#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

using Calls = std::vector<std::string>;

const double half_sqrt3 = std::sqrt(3.0) / 2;

/// One element of every kind that is measured, with distinct corners.
MeshData one_of_each()
{
    MeshData data;
    data.points = {{0, 0, 0}, {1, 0, 0}, {0.5, half_sqrt3, 0}, {0, 0, 0.5}, {2, 1, 0.25}, {0, 2, 1},
        {3, 1, 1}, {1, 1, 4}, {-1, 0.5, 2}};
    data.triangles = {{2, 3, 5}};
    data.quadrangles = {{1, 2, 3, 6}};
    data.tetrahedra = {{1, 2, 3, 4}};
    data.hexahedra = {{9, 1, 2, 3, 8, 7, 6, 5}};
    return data;
}

template <size_t n>
std::array<Vec3, n> corners_of(const MeshData &data, const std::array<int32_t, n> &vertices)
{
    std::array<Vec3, n> corners{};
    for (size_t i = 0; i < n; ++i)
        if (vertices[i] != 0) {
            const auto &[x, y, z] = data.points[static_cast<size_t>(vertices[i]) - 1];
            corners[i] = {x, y, z};
        }
    return corners;
}

void expect_measures_of(const korvane_mesh_t *mesh, const MeshData &data)
{
    const auto triangle = corners_of(data, data.triangles[0]);
    const auto quadrangle = corners_of(data, data.quadrangles[0]);
    double one = -1;
    EXPECT_EQ(korvane_mesh_get_triangle_aspect_ratio(mesh, 1, &one), STATUS_OK);
    EXPECT_EQ(one, triangle_aspect_ratio(triangle));
    EXPECT_EQ(quality_quadrangle_aspect_ratio(mesh, 1, &one), STATUS_OK);
    EXPECT_EQ(one, quadrangle_aspect_ratio(quadrangle));
    EXPECT_EQ(quality_quadrangle_planarity(mesh, 1, &one), STATUS_OK);
    EXPECT_EQ(one, quadrangle_planarity(quadrangle));
    EXPECT_EQ(korvane_mesh_get_tetrahedron_aspect_ratio(mesh, 1, &one), STATUS_OK);
    EXPECT_EQ(one, tetrahedron_aspect_ratio(corners_of(data, data.tetrahedra[0])));
    EXPECT_EQ(quality_hexahedron_aspect_ratio(mesh, 1, &one), STATUS_OK);
    EXPECT_EQ(one, hexahedron_aspect_ratio(corners_of(data, data.hexahedra[0])));
    static_assert(quality_triangle_angles.values_per_element == 3);
    std::array<double, 3> three{};
    EXPECT_EQ(quality_triangle_angles(mesh, 1, three.data()), STATUS_OK);
    EXPECT_EQ(three, triangle_angles(triangle));
    std::array<double, 4> four{};
    EXPECT_EQ(quality_quadrangle_angles(mesh, 1, four.data()), STATUS_OK);
    EXPECT_EQ(four, quadrangle_angles(quadrangle));
}

TEST(Quality, MeasuresStoredAndServedMeshesAlike)
{
    RecordingContext context;
    const MeshData data = one_of_each();
    expect_measures_of(StoredMesh(context, data), data);
    MeshServer server(data);
    expect_measures_of(ServedMesh(context, server), data);
    for (const int parity : {0, 1}) {
        StoredMesh mixed(context, data);
        server.serve(mixed, [&](int slot) { return slot % 2 == parity; });
        expect_measures_of(mixed, data);
    }
}

TEST(Quality, RefusesNullMeshes)
{
    std::array<double, 4> results{-1, -1, -1, -1};
    const auto expect_refusal = [&](auto measure) {
        EXPECT_EQ(measure(nullptr, 1, results.data()), STATUS_ERROR);
    };
    expect_refusal(korvane_mesh_get_triangle_aspect_ratio);
    expect_refusal(korvane_mesh_get_tetrahedron_aspect_ratio);
    expect_refusal(quality_triangle_angles);
    expect_refusal(quality_quadrangle_aspect_ratio);
    expect_refusal(quality_quadrangle_angles);
    expect_refusal(quality_quadrangle_planarity);
    expect_refusal(quality_hexahedron_aspect_ratio);
    EXPECT_EQ(results, (std::array<double, 4>{-1, -1, -1, -1}));
}

TEST(Quality, TwoMeasuresRefuseNullResults)
{
    RecordingContext context;
    MeshServer server(one_of_each());
    ServedMesh mesh(context, server);
    EXPECT_EQ(quality_quadrangle_planarity(mesh, 1, nullptr), STATUS_ERROR);
    EXPECT_EQ(quality_hexahedron_aspect_ratio(mesh, 1, nullptr), STATUS_ERROR);
    EXPECT_EQ(server.call_count, 0);
}

TEST(Quality, AsksForVerticesThenForCoordinatesInTheirOrder)
{
    RecordingContext context;
    MeshServer server(one_of_each());
    ServedMesh mesh(context, server);
    server.notes_calls = true;
    double results[4];
    const auto calls_of = [&](auto measure) {
        server.calls.clear();
        measure(mesh, 1, results);
        return server.calls;
    };
    const Calls triangle{"triangle 1", "coordinates 2", "coordinates 3", "coordinates 5"};
    EXPECT_EQ(calls_of(korvane_mesh_get_triangle_aspect_ratio), triangle);
    EXPECT_EQ(calls_of(quality_triangle_angles), triangle);
    const Calls quadrangle{
        "quadrangle 1", "coordinates 1", "coordinates 2", "coordinates 3", "coordinates 6"};
    EXPECT_EQ(calls_of(quality_quadrangle_aspect_ratio), quadrangle);
    EXPECT_EQ(calls_of(quality_quadrangle_angles), quadrangle);
    EXPECT_EQ(calls_of(quality_quadrangle_planarity), quadrangle);
    EXPECT_EQ(calls_of(korvane_mesh_get_tetrahedron_aspect_ratio),
        (Calls{"tetrahedron 1", "coordinates 1", "coordinates 2", "coordinates 3", "coordinates 4"}));
    EXPECT_EQ(calls_of(quality_hexahedron_aspect_ratio),
        (Calls{"hexahedron 1", "coordinates 9", "coordinates 1", "coordinates 2", "coordinates 3",
            "coordinates 8", "coordinates 7", "coordinates 6", "coordinates 5"}));
}

TEST(Quality, ElementsInARowAreMeasuredAsOneByOne)
{
    RecordingContext context;
    MeshData data = one_of_each();
    data.tetrahedra = {{1, 2, 3, 4}, {5, 3, 2, 1}, {0, 7, 8, 9}, {4, 3, 2, 1}, {4, 9, 8, 6}};
    MeshServer server(data);
    const ServedMesh served(context, server);
    const StoredMesh stored(context, data);
    server.notes_calls = true;
    std::array<double, 7> single{};
    for (uint32_t i = 0; i < single.size(); ++i) // the last two do not exist
        quality_tetrahedron_aspect_ratio(served, i + 1, &single[i]);
    const Calls calls = std::exchange(server.calls, {});
    std::array<TetrahedronCorners, 7> corners{};
    const auto expect_same = [&](const korvane_mesh_t *mesh) {
        quality_tetrahedron_aspect_ratio.fetch_corners(mesh, 1, corners.size(), corners.data());
        for (std::size_t i = 0; i < corners.size(); ++i)
            EXPECT_EQ(quality_tetrahedron_aspect_ratio.values(corners[i]), single[i]) << i;
    };
    expect_same(served);
    EXPECT_EQ(server.calls, calls);
    expect_same(stored);
}

TEST(Quality, PassesVertexIndicesOnAsTheyWereDelivered)
{
    RecordingContext context;
    MeshData data = one_of_each();
    data.triangles = {{0, INT32_MIN, INT32_MAX}};
    MeshServer server(data);
    ServedMesh mesh(context, server);
    server.notes_calls = true;
    double ratio = 0;
    EXPECT_EQ(korvane_mesh_get_triangle_aspect_ratio(mesh, 1, &ratio), STATUS_OK);
    EXPECT_EQ(ratio, HUGE_VAL);
    EXPECT_EQ(server.calls,
        (Calls{"triangle 1", "coordinates", "coordinates -2147483648", "coordinates 2147483647"}));
    StoredMesh stored(context, data);
    EXPECT_EQ(korvane_mesh_get_triangle_aspect_ratio(stored, 1, &ratio), STATUS_OK);
    EXPECT_EQ(ratio, HUGE_VAL);
}

TEST(Quality, TakesWhatAFailingCallbackLeaves)
{
    RecordingContext context;
    const OwnedMesh mesh(korvane_mesh_new(context));
    korvane_mesh_set_get_triangle_vertices(
        mesh,
        [](int32_t, int32_t *vertices, void *) {
            vertices[0] = 1;
            vertices[2] = 3;
            return korvane_status_t{-3};
        },
        nullptr);
    korvane_mesh_set_get_vertex_coordinates(
        mesh,
        [](int32_t index, double *xyz, void *) {
            xyz[index == 3] = index;
            return korvane_status_t{-4};
        },
        nullptr);
    double ratio = 0;
    EXPECT_EQ(korvane_mesh_get_triangle_aspect_ratio(mesh, 1, &ratio), STATUS_OK);
    EXPECT_EQ(ratio, triangle_aspect_ratio({{{1, 0, 0}, {0, 0, 0}, {0, 3, 0}}}));
}

TEST(Quality, OfAnElementThatCannotBeReadIsThatOfZeros)
{
    RecordingContext context;
    MeshServer server(one_of_each());
    const ServedMesh served(context, server);
    const StoredMesh stored(context, server.data);
    const OwnedMesh empty(korvane_mesh_new(context));
    for (korvane_mesh_t *mesh : {static_cast<korvane_mesh_t *>(served), static_cast<korvane_mesh_t *>(stored),
             static_cast<korvane_mesh_t *>(empty)}) {
        for (const uint32_t index : {0u, 2u, 0x7fffffffu, 0xffffffffu}) {
            double one = 0;
            EXPECT_EQ(korvane_mesh_get_triangle_aspect_ratio(mesh, index, &one), STATUS_OK);
            EXPECT_EQ(one, HUGE_VAL);
            EXPECT_EQ(korvane_mesh_get_tetrahedron_aspect_ratio(mesh, index, &one), STATUS_OK);
            EXPECT_EQ(one, HUGE_VAL);
            EXPECT_EQ(quality_quadrangle_aspect_ratio(mesh, index, &one), STATUS_OK);
            EXPECT_EQ(one, HUGE_VAL);
            EXPECT_EQ(quality_quadrangle_planarity(mesh, index, &one), STATUS_OK);
            EXPECT_EQ(one, 0.5);
            EXPECT_EQ(quality_hexahedron_aspect_ratio(mesh, index, &one), STATUS_OK);
            EXPECT_TRUE(std::isnan(one)); // no length over no volume
            std::array<double, 4> angles{};
            EXPECT_EQ(quality_quadrangle_angles(mesh, index, angles.data()), STATUS_OK);
            for (const double angle : angles)
                EXPECT_EQ(angle, std::acos(0.0) * 180.0 / 3.141593);
        }
    }
}

TEST(Quality, SurvivesACallbackThatEnlargesTheMeshBeingRead)
{
    RecordingContext context;
    MeshData data = one_of_each();
    StoredMesh mesh(context, data);
    struct Enlarging {
        korvane_mesh_t *mesh;
        int32_t count;
    } enlarging{mesh, static_cast<int32_t>(data.points.size())};
    korvane_mesh_set_get_triangle_vertices(
        mesh,
        [](int32_t, int32_t *vertices, void *user_data) {
            auto &enlarged = *static_cast<Enlarging *>(user_data);
            enlarged.count += 100000;
            korvane_mesh_set_vertex_count(enlarged.mesh, enlarged.count);
            const double xyz[] = {0, 4, 0};
            korvane_mesh_set_vertex_coordinates(enlarged.mesh, enlarged.count, xyz);
            vertices[0] = 1;
            vertices[1] = 2;
            vertices[2] = enlarged.count;
            return korvane_status_t{STATUS_OK};
        },
        &enlarging);
    for (int i = 0; i < 3; ++i) {
        double ratio = 0;
        EXPECT_EQ(korvane_mesh_get_triangle_aspect_ratio(mesh, 1, &ratio), STATUS_OK);
        EXPECT_EQ(ratio, triangle_aspect_ratio({{{0, 0, 0}, {1, 0, 0}, {0, 4, 0}}}));
    }
}

TEST(Quality, OfEdges)
{
    RecordingContext context;
    MeshServer server(one_of_each());
    const ServedMesh served(context, server);
    const StoredMesh stored(context, server.data);
    vertex_pair_set_t set;
    ASSERT_TRUE(set.try_create(2, 2));
    ASSERT_EQ(set.insert({1, 2}), 1);
    ASSERT_EQ(set.insert({8, 7}), 2);
    double length = -1;
    EXPECT_EQ(quality_edge_length(served, 1, &length, set), STATUS_OK);
    EXPECT_EQ(length, 1);
    EXPECT_EQ(quality_edge_length(stored, 2, &length, set), STATUS_OK);
    EXPECT_EQ(length, std::sqrt(13.0));
    EXPECT_EQ(quality_edge_length(nullptr, 2, &length, set), STATUS_OK);
    EXPECT_EQ(length, 0);
    std::array<int32_t, 2> vertices{};
    EXPECT_EQ(quality_edge_vertices(stored, 2, vertices.data(), set), STATUS_OK);
    EXPECT_EQ(vertices, (std::array<int32_t, 2>{8, 7}));
    EXPECT_EQ(quality_edge_vertices(nullptr, 0, vertices.data(), set), STATUS_OK);
    EXPECT_EQ(vertices, (std::array<int32_t, 2>{0, 0}));
    server.notes_calls = true;
    quality_edge_length(served, 2, &length, set);
    EXPECT_EQ(server.calls, (Calls{"coordinates 8", "coordinates 7"}));
}

} // namespace
} // namespace korvane::testing
