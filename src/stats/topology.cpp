// The surface elements as a graph of faces that are joined by edges.
//
// Only numbers are reported, so the ring of faces around an edge is never built: an edge keeps one of its
// faces and how many it has, and every further face is joined with that one in disjoint sets, whose number is
// that of the components. Edges of one kind join their vertices in the same way. Cost: one pass over the
// faces, with one insertion into the edge map and at most one join per side; 4 bytes per face and about 23
// per edge, and up to 22 more where the numbers of many have the same sum. All is released before the end.
#include "stats/topology.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "common/array.h"
#include "common/prefetch.h"
#include "mesh/fetch.h"
#include "stats/disjoint_sets.h"
#include "stats/report_text.h"
#include "tags/tuple_shapes.h"

namespace korvane {

namespace {

/// A key of the edge map: an edge, and what is known of its faces, by which it is not found.
struct Edge {
    std::array<int32_t, 2> vertices;
    int32_t face;       // the first that was met
    uint8_t face_count; // 3 stands for more, too
};

struct edge_key {
    using value_type = Edge;

    template <class Count>
    static constexpr uint32_t bucket(const Edge &edge, Count bucket_count)
    {
        return unordered_pair::bucket(edge.vertices, bucket_count);
    }
    static constexpr bool equal(const Edge &a, const Edge &b)
    {
        return unordered_pair::equal(a.vertices, b.vertices);
    }
    static constexpr uint64_t packed(const Edge &edge) { return unordered_pair::packed(edge.vertices); }
};

using EdgeMap = tuple_major_set_t<edge_key>;
using VertexSet = tuple_major_set_t<ordered_key<1>>;

// Hash sets take batches, which hide the time of memory.
constexpr int32_t faces_per_batch = 128;
constexpr std::size_t edges_per_batch = 64;

struct Components {
    int32_t edges = 0;
    int32_t components = 0;
};

struct Topology {
    Components free;
    Components non_manifold;
    int32_t surface_components = 0;
};

/// The faces, numbered from 1, as far as they were met.
struct Surface {
    EdgeMap edges;
    DisjointSets faces;
    int32_t joined = 0; // sets of faces that became one with another
};

[[nodiscard]] bool try_create(int64_t face_count, Surface &surface)
{
    if (face_count > INT32_MAX)
        return false;
    const int64_t edge_capacity = std::max<int64_t>(2 * face_count / 3, 11);
    return surface.faces.try_create(static_cast<std::size_t>(face_count)) &&
           surface.edges.try_create(
               static_cast<int32_t>(edge_capacity * 3 / 2), static_cast<int32_t>(edge_capacity));
}

/// Enters sides into the edge map and joins the faces that share one.
[[nodiscard]] bool try_enter_sides(Surface &surface, std::span<const Edge> sides)
{
    std::array<int32_t, std::size_t{4} * faces_per_batch> identifiers;
    if (!surface.edges.try_insert_batch(sides, identifiers.data()))
        return false;
    for (std::size_t i = 0; i < sides.size(); ++i)
        surface.faces.prefetch_member(surface.edges.key(identifiers[i]).face);
    for (std::size_t i = 0; i < sides.size(); ++i) {
        Edge &edge = surface.edges.key(identifiers[i]);
        // An edge that came in with this side has the face of the side and one face; a face may have an edge
        // twice.
        edge.face_count = static_cast<uint8_t>(std::min(edge.face_count + 1, 3));
        surface.joined += surface.faces.join(edge.face, sides[i].face) ? 1 : 0;
    }
    return true;
}

/// Enters all elements of a kind, numbered from `first` on. False if one cannot be read or memory runs out.
template <auto vertices_slot>
[[nodiscard]] bool try_enter_faces(
    const korvane_mesh_t *mesh, int32_t first, int32_t face_count, Surface &surface)
{
    constexpr std::size_t width = Stored<vertices_slot>::values_per_element;
    std::array<int32_t, width * faces_per_batch> vertices;
    std::array<Edge, width * faces_per_batch> sides;
    for (int32_t done = 0; done < face_count;) {
        const int32_t part = std::min(face_count - done, faces_per_batch);
        vertices.fill(0); // a getter may leave some out
        if (fetch_block<vertices_slot>(mesh, done + 1, part, vertices.data()).count < part)
            return false;
        std::size_t filled = 0;
        for (int32_t i = 0; i < part; ++i) {
            const int32_t *corners = &vertices[width * static_cast<std::size_t>(i)];
            for (std::size_t side = 1; side <= width; ++side)
                sides[filled++] = {{corners[side % width], corners[(side + 1) % width]}, first + done + i, 0};
        }
        if (!try_enter_sides(surface, {sides.data(), filled}))
            return false;
        done += part;
    }
    return true;
}

[[nodiscard]] bool try_enter_mesh(const korvane_mesh_t *mesh, Surface &surface, int32_t &face_count)
{
    int32_t triangle_count = 0;
    int32_t quadrangle_count = 0;
    if (korvane_mesh_get_triangle_count(mesh, &triangle_count) != STATUS_OK ||
        korvane_mesh_get_quadrangle_count(mesh, &quadrangle_count) != STATUS_OK)
        return false;
    triangle_count = std::max(triangle_count, 0);
    quadrangle_count = std::max(quadrangle_count, 0);
    if (!try_create(int64_t{triangle_count} + quadrangle_count, surface))
        return false;
    face_count = triangle_count + quadrangle_count;
    return try_enter_faces<&korvane_mesh_s::triangle_vertices>(mesh, 1, triangle_count, surface) &&
           try_enter_faces<&korvane_mesh_s::quadrangle_vertices>(
               mesh, triangle_count + 1, quadrangle_count, surface);
}

/// The entries of all edges, in the order of their identifiers.
auto edge_entries(const EdgeMap &edges)
{
    return std::span(edges.keys.data() + 1, static_cast<std::size_t>(edges.count));
}

void count_edges(const EdgeMap &edges, Topology &topology)
{
    for (const auto &entry : edge_entries(edges)) {
        topology.free.edges += entry.key.face_count == 1;
        topology.non_manifold.edges += entry.key.face_count == 3;
    }
}

/// The vertices of edges of one kind, which the edges join.
struct Graph {
    VertexSet vertices;
    DisjointSets sets;
    int32_t joined = 0;
};

/// Enters edges, given by the vertices of each in turn.
[[nodiscard]] bool try_enter_edges(Graph &graph, std::span<const VertexSet::value_type> ends)
{
    std::array<int32_t, 2 * edges_per_batch> identifiers;
    if (!graph.vertices.try_insert_batch(ends, identifiers.data()))
        return false;
    for (std::size_t i = 0; i < ends.size(); i += 2)
        graph.joined += graph.sets.join(identifiers[i], identifiers[i + 1]) ? 1 : 0;
    return true;
}

/// Counts the components of the edges that have `face_count` faces.
[[nodiscard]] bool try_count_components(const EdgeMap &edges, uint8_t face_count, Components &counts)
{
    if (counts.edges == 0)
        return true;
    Graph graph;
    const int32_t capacity = std::max(counts.edges, 2);
    if (!graph.vertices.try_create(capacity, capacity) ||
        !graph.sets.try_create(2 * static_cast<std::size_t>(counts.edges)))
        return false;
    std::array<VertexSet::value_type, 2 * edges_per_batch> ends;
    std::size_t filled = 0;
    for (const auto &entry : edge_entries(edges)) {
        if (entry.key.face_count != face_count)
            continue;
        for (const int32_t vertex : entry.key.vertices)
            ends[filled++] = {vertex};
        if (filled == ends.size()) {
            if (!try_enter_edges(graph, ends))
                return false;
            filled = 0;
        }
    }
    if (!try_enter_edges(graph, {ends.data(), filled}))
        return false;
    counts.components = graph.vertices.count - graph.joined;
    return true;
}

[[nodiscard]] bool try_compute(const korvane_mesh_t *mesh, Topology &topology)
{
    Surface surface;
    int32_t face_count = 0;
    if (!try_enter_mesh(mesh, surface, face_count))
        return false;
    topology.surface_components = face_count - surface.joined;
    count_edges(surface.edges, topology);
    return try_count_components(surface.edges, 1, topology.free) &&
           try_count_components(surface.edges, 3, topology.non_manifold);
}

constexpr std::size_t line_capacity = 256;

void report_keyed(const korvane_mesh_t *mesh, const char *name, const Topology &found)
{
    const auto send = [&](const char *format, int32_t value) {
        send_format<line_capacity>(mesh, format, name, value);
    };
    send("VALID.%s.free_edge.count = %i\n", found.free.edges);
    send("VALID.%s.free_edge_component.count = %i\n", found.free.components);
    send("VALID.%s.non_manifold_edge.count = %i\n", found.non_manifold.edges);
    send("VALID.%s.non_manifold_edge_component.count = %i\n", found.non_manifold.components);
    send("VALID.%s.surface_component_by_edge.count = %i\n", found.surface_components);
}

void report_readable(const korvane_mesh_t *mesh, const Topology &found)
{
    send_format<line_capacity>(mesh, "    Number of free edges :          %i (%i components) \n",
        found.free.edges, found.free.components);
    send_format<line_capacity>(mesh, "    Number of non-manifold edges :  %i (%i components) \n",
        found.non_manifold.edges, found.non_manifold.components);
    send_format<line_capacity>(
        mesh, "    Number of surface components (edge neighbourings) : %i \n", found.surface_components);
}

} // namespace

korvane_status_t compute_topological_statistics(const korvane_mesh_t *mesh, const char *name)
{
    if (mesh == nullptr || mesh->context == nullptr)
        return STATUS_ERROR;
    if (name == nullptr)
        send_text(mesh, "Mesh topological statistics : \n");
    Topology topology;
    if (!try_compute(mesh, topology))
        return STATUS_OK; // only the report is missing
    if (name == nullptr)
        report_readable(mesh, topology);
    else
        report_keyed(mesh, name, topology);
    return STATUS_OK;
}

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_status_t korvane_mesh_compute_topological_statistics(const korvane_mesh_t *mesh)
{
    return compute_topological_statistics(mesh, nullptr);
}

} // extern "C"
