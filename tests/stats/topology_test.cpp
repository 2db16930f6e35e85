#include "stats/topology.h"

#include <algorithm>
#include <climits>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <tuple>

#include <gtest/gtest.h>

#include "mesh/mesh.h"
#include "mesh_data.h"
#include "support/failing_allocations.h"
#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

struct Numbers {
    int free_edges = 0;
    int free_components = 0;
    int non_manifold_edges = 0;
    int non_manifold_components = 0;
    int surface_components = 0;

    bool operator==(const Numbers &) const = default;
    friend std::ostream &operator<<(std::ostream &out, const Numbers &n)
    {
        return out << "free " << n.free_edges << '/' << n.free_components << ", non-manifold "
                   << n.non_manifold_edges << '/' << n.non_manifold_components << ", surface "
                   << n.surface_components;
    }
};

std::vector<RecordedMessage> keyed(const Numbers &n)
{
    const auto line = [](const char *key, int value) {
        return RecordedMessage{
            0, std::string("VALID.part.") + key + ".count = " + std::to_string(value) + '\n'};
    };
    return {line("free_edge", n.free_edges), line("free_edge_component", n.free_components),
        line("non_manifold_edge", n.non_manifold_edges),
        line("non_manifold_edge_component", n.non_manifold_components),
        line("surface_component_by_edge", n.surface_components)};
}

void expect_numbers(RecordingContext &context, const korvane_mesh_t *mesh, const Numbers &expected)
{
    context.messages.clear();
    EXPECT_EQ(compute_topological_statistics(mesh, "part"), STATUS_OK);
    EXPECT_EQ(context.messages, keyed(expected)) << expected;
}

void expect_numbers(const MeshData &data, const Numbers &expected)
{
    RecordingContext context;
    expect_numbers(context, StoredMesh(context, data), expected);
    MeshServer server(data);
    expect_numbers(context, ServedMesh(context, server), expected);
}

MeshData triangles(std::vector<std::array<int32_t, 3>> elements)
{
    MeshData data;
    data.triangles = std::move(elements);
    return data;
}

TEST(Topology, OfNothingIsZeros)
{
    expect_numbers(MeshData{}, {});
    MeshData volume;
    volume.tetrahedra = {{1, 2, 3, 4}};
    expect_numbers(volume, {});
}

TEST(Topology, OfOneElement)
{
    expect_numbers(triangles({{1, 2, 3}}), {3, 1, 0, 0, 1});
    MeshData quadrangle;
    quadrangle.quadrangles = {{1, 2, 3, 4}};
    expect_numbers(quadrangle, {4, 1, 0, 0, 1});
}

TEST(Topology, TheDirectionOfACommonEdgeDoesNotMatter)
{
    expect_numbers(triangles({{1, 2, 3}, {2, 1, 4}}), {4, 1, 0, 0, 1});
    expect_numbers(triangles({{1, 2, 3}, {1, 2, 4}}), {4, 1, 0, 0, 1});
}

TEST(Topology, ATriangleAndAQuadrangleShareAnEdge)
{
    MeshData data = triangles({{1, 2, 3}});
    data.quadrangles = {{3, 2, 4, 5}};
    expect_numbers(data, {5, 1, 0, 0, 1});
    data.quadrangles = {{6, 7, 4, 5}};
    expect_numbers(data, {7, 2, 0, 0, 2});
}

TEST(Topology, ThreeTrianglesOnACommonEdge)
{
    expect_numbers(triangles({{1, 2, 3}, {1, 2, 4}, {2, 1, 5}}), {6, 1, 1, 1, 1});
}

TEST(Topology, FansOnOneEdgeJoinAllTheirFaces)
{
    for (int32_t blades = 3; blades <= 300; blades *= 3) {
        MeshData data;
        for (int32_t i = 0; i < blades; ++i)
            data.triangles.push_back({1, 2, i + 3});
        expect_numbers(data, {2 * blades, 1, 1, 1, 1});
    }
}

TEST(Topology, NonManifoldEdgesHaveComponentsOfTheirOwn)
{
    // Two fans on edges without common vertex, and a third on an edge that continues the first.
    MeshData data;
    for (int32_t i = 0; i < 3; ++i) {
        data.triangles.push_back({1, 2, 10 + i});
        data.triangles.push_back({20, 21, 30 + i});
        data.triangles.push_back({2, 3, 40 + i});
    }
    expect_numbers(data, {18, 2, 3, 2, 3});
}

TEST(Topology, AClosedSurfaceHasNoFreeEdge)
{
    expect_numbers(triangles({{1, 3, 2}, {1, 2, 4}, {2, 3, 4}, {3, 1, 4}}), {0, 0, 0, 0, 1});
}

TEST(Topology, DisjointElements)
{
    expect_numbers(triangles({{1, 2, 3}, {4, 5, 6}}), {6, 2, 0, 0, 2});
    expect_numbers(triangles({{1, 2, 3}, {3, 4, 5}}), {6, 1, 0, 0, 2}); // a common vertex joins edges only
}

TEST(Topology, AHoleIsAFreeComponent)
{
    MeshData ring; // a square ring of four quadrangles around a hole
    ring.quadrangles = {{1, 2, 6, 5}, {2, 3, 7, 6}, {3, 4, 8, 7}, {4, 1, 5, 8}};
    expect_numbers(ring, {8, 2, 0, 0, 1});
}

TEST(Topology, ElementsThatNameAVertexTwice)
{
    expect_numbers(triangles({{1, 2, 1}}), {1, 1, 0, 0, 1});
    expect_numbers(triangles({{1, 1, 1}}), {0, 0, 1, 1, 1});
    MeshData data;
    data.quadrangles = {{1, 2, 1, 2}};
    expect_numbers(data, {0, 0, 1, 1, 1});
}

TEST(Topology, AnyIntegersAreVertices)
{
    expect_numbers(triangles({{INT32_MIN, INT32_MAX, 0}, {INT32_MAX, INT32_MIN, -1}}), {4, 1, 0, 0, 1});
    expect_numbers(triangles({{-3, 3, 0}, {3, -3, 1}, {-1, 1, 4}}), {7, 1, 0, 0, 2});
}

/// Elements by their vertices against maps and union-find.
class Model {
  public:
    explicit Model(const MeshData &data)
    {
        for (const auto &[a, b, c] : data.triangles)
            add({a, b, c});
        for (const auto &[a, b, c, d] : data.quadrangles)
            add({a, b, c, d});
    }

    Numbers numbers() const
    {
        Numbers numbers;
        std::vector<int> faces(static_cast<size_t>(face_count));
        std::iota(faces.begin(), faces.end(), 0);
        std::map<int, int> free, non_manifold;
        for (const auto &[edge, on_it] : faces_of_edge) {
            for (const int face : on_it)
                join(faces, face, on_it.front());
            if (on_it.size() == 2)
                continue;
            auto &parents = on_it.size() == 1 ? free : non_manifold;
            ++(on_it.size() == 1 ? numbers.free_edges : numbers.non_manifold_edges);
            parents.try_emplace(edge.first, edge.first);
            parents.try_emplace(edge.second, edge.second);
            join(parents, edge.first, edge.second);
        }
        for (int face = 0; face < face_count; ++face)
            numbers.surface_components += root(faces, face) == face;
        for (const auto &[vertex, parent] : free)
            numbers.free_components += vertex == parent;
        for (const auto &[vertex, parent] : non_manifold)
            numbers.non_manifold_components += vertex == parent;
        return numbers;
    }

  private:
    void add(const std::vector<int> &vertices)
    {
        for (size_t i = 0; i < vertices.size(); ++i)
            faces_of_edge[std::minmax({vertices[i], vertices[(i + 1) % vertices.size()]})].push_back(
                face_count);
        ++face_count;
    }

    template <class Parents>
    static int &parent_of(Parents &parents, int node)
    {
        return parents[static_cast<
            typename std::conditional_t<std::is_same_v<Parents, std::vector<int>>, size_t, int>>(node)];
    }
    template <class Parents>
    static int root(Parents &parents, int node)
    {
        while (parent_of(parents, node) != node)
            node = parent_of(parents, node) = parent_of(parents, parent_of(parents, node));
        return node;
    }
    template <class Parents>
    static void join(Parents &parents, int a, int b)
    {
        parent_of(parents, root(parents, a)) = root(parents, b);
    }

    int face_count = 0;
    std::map<std::pair<int, int>, std::vector<int>> faces_of_edge;
};

TEST(Topology, AgreesWithTheModelOnRandomSoups)
{
    std::mt19937 generator(1);
    for (int round = 0; round < 300; ++round) {
        const int size = 1 + round * round / 100;
        std::uniform_int_distribution<int32_t> vertex(-size, 2 * size);
        std::bernoulli_distribution extreme(0.02);
        const auto any_vertex = [&] {
            return extreme(generator) ? vertex(generator) % 2 + INT32_MAX - 1 : vertex(generator);
        };
        MeshData data;
        data.triangles.resize(static_cast<size_t>(vertex(generator) + size));
        data.quadrangles.resize(static_cast<size_t>(vertex(generator) + size) / 2);
        for (auto &element : data.triangles)
            std::ranges::generate(element, any_vertex);
        for (auto &element : data.quadrangles)
            std::ranges::generate(element, any_vertex);
        expect_numbers(data, Model(data).numbers());
    }
}

/// Pieces of a grid of quadrangles, some split into triangles, some left out: mostly manifold.
MeshData random_grid(int32_t width, std::mt19937 &generator)
{
    std::uniform_int_distribution kind(0, 9);
    std::vector<int32_t> names(static_cast<size_t>((width + 1) * (width + 1)));
    std::iota(names.begin(), names.end(), 1);
    std::ranges::shuffle(names, generator);
    const auto vertex = [&](int32_t x, int32_t y) { return names[static_cast<size_t>(y * (width + 1) + x)]; };
    MeshData data;
    for (int32_t y = 0; y < width; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            const int32_t a = vertex(x, y), b = vertex(x + 1, y);
            const int32_t c = vertex(x + 1, y + 1), d = vertex(x, y + 1);
            const int drawn = kind(generator);
            if (drawn < 5) {
                data.triangles.push_back({a, b, c});
                data.triangles.push_back({a, c, d});
            } else if (drawn < 9) {
                data.quadrangles.push_back({d, c, b, a});
            }
            if (drawn == 0)
                data.triangles.push_back({c, a, vertex(0, 0)}); // a fin
        }
    }
    std::ranges::shuffle(data.triangles, generator);
    std::ranges::shuffle(data.quadrangles, generator);
    return data;
}

TEST(Topology, AgreesWithTheModelOnGridsWithHolesAndFins)
{
    std::mt19937 generator(2);
    for (const int32_t width : {1, 2, 3, 5, 8, 13, 21, 34, 55, 89}) {
        const MeshData data = random_grid(width, generator);
        expect_numbers(data, Model(data).numbers());
    }
}

TEST(Topology, CountsLongStrips)
{
    MeshData star; // a fan around one edge
    for (int32_t i = 0; i < 3000; ++i)
        star.triangles.push_back({1, 2, i + 3});
    expect_numbers(star, Model(star).numbers());
    MeshData strip;
    for (int32_t i = 1; i < 5000; ++i)
        strip.triangles.push_back({i, i + 1, i + 2});
    expect_numbers(strip, Model(strip).numbers());
}

TEST(Topology, CountsRibbonsWhoseCrossEdgesHaveOneSum)
{
    constexpr int32_t length = 20'000;
    MeshData data = ribbon(length);
    expect_numbers(data, {2 * length + 2, 1, 0, 0, 1});
    // A second ribbon on the cross edges of the first, and a fin on the edge at its beginning.
    const MeshData other = data;
    data.quadrangles.insert(data.quadrangles.end(), other.quadrangles.rbegin(), other.quadrangles.rend());
    data.triangles = {{1, 2 * length + 2, 2 * length + 3}};
    expect_numbers(data, {2, 1, length, length, 1});
}

TEST(Topology, ReportsInReadableForm)
{
    RecordingContext context;
    StoredMesh mesh(context, triangles({{1, 2, 3}, {1, 2, 4}, {2, 1, 5}, {7, 8, 9}}));
    EXPECT_EQ(korvane_mesh_compute_topological_statistics(mesh), STATUS_OK);
    EXPECT_EQ(context.messages, (std::vector<RecordedMessage>{{0, "Mesh topological statistics : \n"},
                                    {0, "    Number of free edges :          9 (2 components) \n"},
                                    {0, "    Number of non-manifold edges :  1 (1 components) \n"},
                                    {0, "    Number of surface components (edge neighbourings) : 2 \n"}}));
}

TEST(Topology, CutsLongNames)
{
    RecordingContext context;
    const StoredMesh mesh(context, triangles({{1, 2, 3}}));
    for (const size_t length : {300u, 2000u}) {
        context.messages.clear();
        EXPECT_EQ(compute_topological_statistics(mesh, std::string(length, 'x').c_str()), STATUS_OK);
        const RecordedMessage cut{0, "VALID." + std::string(249, 'x')};
        EXPECT_EQ(context.messages, std::vector<RecordedMessage>(5, cut));
    }
}

TEST(Topology, RefusesNullAndMeshesWithoutContext)
{
    EXPECT_EQ(korvane_mesh_compute_topological_statistics(nullptr), STATUS_ERROR);
    EXPECT_EQ(compute_topological_statistics(nullptr, "part"), STATUS_ERROR);
    RecordingContext context;
    const StoredMesh mesh(context, triangles({{1, 2, 3}}));
    korvane_mesh_s &record = *mesh;
    record.context = nullptr;
    EXPECT_EQ(korvane_mesh_compute_topological_statistics(mesh), STATUS_ERROR);
    EXPECT_EQ(compute_topological_statistics(mesh, "part"), STATUS_ERROR);
    EXPECT_TRUE(context.messages.empty());
    record.context = context;
}

TEST(Topology, NegativeCountsAreNone)
{
    RecordingContext context;
    const StoredMesh mesh(context, triangles({{1, 2, 3}}));
    korvane_mesh_set_quadrangle_count(mesh, INT32_MIN);
    expect_numbers(context, mesh, {3, 1, 0, 0, 1});
    korvane_mesh_set_triangle_count(mesh, -1);
    expect_numbers(context, mesh, {});
}

TEST(Topology, AFailingCallbackLeavesTheHeadingOnly)
{
    RecordingContext context;
    MeshData data = triangles({{1, 2, 3}, {1, 2, 4}});
    data.quadrangles = {{1, 2, 3, 4}, {5, 6, 7, 8}};
    MeshServer server(data);
    const ServedMesh mesh(context, server);
    EXPECT_EQ(korvane_mesh_compute_topological_statistics(mesh), STATUS_OK);
    const int64_t calls = server.call_count;
    EXPECT_EQ(calls, 6);
    for (server.failing_call = 1; server.failing_call <= calls; ++server.failing_call) {
        server.call_count = 0;
        context.messages.clear();
        EXPECT_EQ(korvane_mesh_compute_topological_statistics(mesh), STATUS_OK);
        EXPECT_EQ(context.messages, (std::vector<RecordedMessage>{{0, "Mesh topological statistics : \n"}}));
        EXPECT_EQ(server.call_count, server.failing_call); // nothing is asked for after the failure
        server.call_count = 0;
        context.messages.clear();
        EXPECT_EQ(compute_topological_statistics(mesh, "part"), STATUS_OK);
        EXPECT_TRUE(context.messages.empty());
    }
}

TEST(Topology, CountsWithNothingBehindEndTheRun)
{
    RecordingContext context;
    const OwnedMesh mesh(korvane_mesh_new(context));
    static int calls;
    calls = 0;
    for (const auto set : {korvane_mesh_set_get_triangle_count, korvane_mesh_set_get_quadrangle_count})
        set(
            mesh,
            [](int32_t *count, void *) {
                *count = INT32_MAX;
                return korvane_status_t{STATUS_OK};
            },
            nullptr);
    korvane_mesh_set_get_triangle_vertices(
        mesh,
        [](int32_t, int32_t *, void *) {
            ++calls;
            return korvane_status_t{STATUS_ERROR};
        },
        nullptr);
    EXPECT_EQ(compute_topological_statistics(mesh, "part"), STATUS_OK);
    EXPECT_TRUE(context.messages.empty());
    EXPECT_EQ(calls, 0); // so many faces cannot be numbered
}

void expect_failing_allocations_survived(const MeshData &data)
{
    const Numbers expected = Model(data).numbers();
    ASSERT_GT(expected.non_manifold_edges, 0);
    ASSERT_GT(expected.free_edges, 0);
    oom_sweep([&](AllocationFault &fault) {
        RecordingContext context;
        const StoredMesh mesh(context, data);
        fault.arm();
        EXPECT_EQ(compute_topological_statistics(mesh, "part"), STATUS_OK);
        const bool failed = fault.disarm();
        const auto all = keyed(expected);
        if (!failed) {
            EXPECT_EQ(context.messages, all);
            return;
        }
        // Either there is no report, or messages of it are missing.
        EXPECT_LT(context.messages.size(), all.size());
        for (const RecordedMessage &message : context.messages)
            EXPECT_NE(std::ranges::find(all, message), all.end());
    });
}

TEST(Topology, SurvivesFailingAllocations)
{
    std::mt19937 generator(3);
    expect_failing_allocations_survived(random_grid(12, generator)); // enough to grow the edge map
}

/// More of them than a batch, each with vertices of its own, which grow the graph while it is entered.
TEST(Topology, OfManyFansSurvivesFailingAllocations)
{
    MeshData fans;
    for (int32_t first = 1; first <= 500; first += 5)
        for (int32_t blade = 2; blade <= 4; ++blade)
            fans.triangles.push_back({first, first + 1, first + blade});
    expect_failing_allocations_survived(fans);
}

TEST(Topology, LeavesTheMeshUsableAfterFailingAllocations)
{
    oom_sweep([&](AllocationFault &fault) {
        RecordingContext context;
        const StoredMesh mesh(context, triangles({{1, 2, 3}, {1, 2, 4}, {2, 1, 5}}));
        fault.arm();
        EXPECT_EQ(korvane_mesh_compute_topological_statistics(mesh), STATUS_OK);
        fault.disarm();
        expect_numbers(context, mesh, {6, 1, 1, 1, 1});
    });
}

} // namespace
} // namespace korvane::testing
