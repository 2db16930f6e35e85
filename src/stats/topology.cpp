// The surface elements as a graph of faces that are joined by edges.
//
// The edge map numbers the edges; the faces of an edge form a list, in the order of the faces, that is
// threaded through the face records: the neighbour of a face across an edge is the next face of the list, and
// the last one leads back to the first. So the map keeps only the end of each list, and the records are
// linked once the map is built. Cost: one pass over the faces with one insertion per side, then searches that
// visit every record once; 44 bytes per face and about 23 per edge. All is released before the end.
#include "stats/topology.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "common/array.h"
#include "common/prefetch.h"
#include "mesh/fetch.h"
#include "stats/report_text.h"
#include "tags/tuple_shapes.h"

namespace korvane {

namespace {

/// Sides are numbered from 1, faces too; 0 is none.
struct Face {
    std::array<int32_t, 4> vertices;       // a triangle has three
    std::array<int32_t, 4> neighbour;      // by side
    std::array<uint8_t, 4> neighbour_edge; // the side of the neighbour that is joined to this one
    int32_t component;
    uint8_t kind; // the number of vertices

    /// Side e joins the vertices e mod n and e + 1 mod n, from 0, of n.
    [[nodiscard]] std::array<int32_t, 2> side(unsigned number) const
    {
        const unsigned first = number < kind ? number : 0;
        const unsigned second = first + 1 < kind ? first + 1 : 0;
        return {vertices[first], vertices[second]};
    }
};

/// A key of the edge map: an edge, and the end of the list of its faces, by which it is not found.
struct Edge {
    std::array<int32_t, 2> vertices;
    int32_t last_face;
    uint8_t last_side;
    uint8_t face_count; // 3 stands for more, too
};

struct edge_key {
    using value_type = Edge;

    static constexpr uint32_t bucket(const Edge &edge, uint32_t bucket_count)
    {
        return unordered_pair::bucket(edge.vertices, bucket_count);
    }
    static constexpr bool equal(const Edge &a, const Edge &b)
    {
        return unordered_pair::equal(a.vertices, b.vertices);
    }
};

// Hash sets take batches, which hide the time of memory.
constexpr std::size_t faces_per_batch = 128;
constexpr std::size_t edges_per_batch = 64;

class WorkStack {
  public:
    [[nodiscard]] bool try_create(std::size_t capacity) { return slots.try_resize_zeroed(capacity); }
    [[nodiscard]] bool try_push(int32_t number)
    {
        if (count == slots.size() && !slots.try_resize_zeroed(2 * slots.size()))
            return false;
        slots[count++] = number;
        return true;
    }
    /// Pops as many numbers as there are, but not more than `numbers` holds.
    [[nodiscard]] std::span<const int32_t> pop_into(std::span<int32_t> numbers)
    {
        const std::size_t popped = std::min(numbers.size(), count);
        count -= popped;
        std::copy_n(slots.data() + count, popped, numbers.data());
        return numbers.first(popped);
    }

  private:
    Array<int32_t> slots;
    std::size_t count = 0;
};

struct Components {
    int32_t edges = 0;
    int32_t components = 0;
};

struct Workspace {
    Array<Face> faces;
    tuple_major_set_t<edge_key> edges;
    WorkStack work;
    Components free;
    Components non_manifold;
    int32_t surface_components = 0;

    [[nodiscard]] Face &face(int32_t number) { return faces[static_cast<std::size_t>(number) - 1]; }
};

[[nodiscard]] bool try_create(int64_t face_count, Workspace &workspace)
{
    if (face_count > INT32_MAX)
        return false;
    const int64_t edge_capacity = std::max<int64_t>(2 * face_count / 3, 11);
    return workspace.faces.try_resize_zeroed(static_cast<std::size_t>(face_count)) &&
           workspace.edges.try_create(
               static_cast<int32_t>(edge_capacity * 3 / 2), static_cast<int32_t>(edge_capacity)) &&
           workspace.work.try_create(static_cast<std::size_t>(std::max<int64_t>(face_count / 10, 11)));
}

/// Fills `faces` with all elements of a kind. False if one cannot be read.
template <auto vertices_slot>
[[nodiscard]] bool try_read_faces(const korvane_mesh_t *mesh, std::span<Face> faces)
{
    int32_t index = 0;
    for (Face &face : faces) {
        face.kind = Stored<vertices_slot>::values_per_element;
        if (fetch<vertices_slot>(mesh, ++index, face.vertices.data()) != STATUS_OK)
            return false;
    }
    return true;
}

[[nodiscard]] bool try_read_mesh(const korvane_mesh_t *mesh, Workspace &workspace)
{
    int32_t triangle_count = 0;
    int32_t quadrangle_count = 0;
    if (korvane_mesh_get_triangle_count(mesh, &triangle_count) != STATUS_OK ||
        korvane_mesh_get_quadrangle_count(mesh, &quadrangle_count) != STATUS_OK)
        return false;
    triangle_count = std::max(triangle_count, 0);
    quadrangle_count = std::max(quadrangle_count, 0);
    if (!try_create(int64_t{triangle_count} + quadrangle_count, workspace))
        return false;
    const std::span faces(workspace.faces.data(), workspace.faces.size());
    const auto triangles = faces.first(static_cast<std::size_t>(triangle_count));
    return try_read_faces<&korvane_mesh_s::triangle_vertices>(mesh, triangles) &&
           try_read_faces<&korvane_mesh_s::quadrangle_vertices>(mesh, faces.subspan(triangles.size()));
}

/// Appends a side of a face to the list of an edge, which stays a ring: the last face leads to the first.
void append(Workspace &workspace, Edge &edge, int32_t number, uint8_t side)
{
    Face &last = workspace.face(edge.last_face);
    Face &face = workspace.face(number);
    const auto last_slot = static_cast<std::size_t>(edge.last_side - 1);
    const auto slot = static_cast<std::size_t>(side - 1);
    const bool alone = edge.face_count == 1;
    face.neighbour[slot] = alone ? edge.last_face : last.neighbour[last_slot];
    face.neighbour_edge[slot] = alone ? edge.last_side : last.neighbour_edge[last_slot];
    last.neighbour[last_slot] = number;
    last.neighbour_edge[last_slot] = side;
    edge.last_face = number;
    edge.last_side = side;
    edge.face_count = static_cast<uint8_t>(std::min(edge.face_count + 1, 3));
}

/// Enters the sides of some faces into the edge map. A side that stays alone on its edge leads nowhere.
[[nodiscard]] bool try_insert_sides(Workspace &workspace, std::size_t first, std::size_t end)
{
    std::array<Edge, 4 * faces_per_batch> sides;
    std::array<int32_t, sides.size()> identifiers;
    std::size_t count = 0;
    for (std::size_t i = first; i < end; ++i)
        for (uint8_t side = 1; side <= workspace.faces[i].kind; ++side)
            sides[count++] = {workspace.faces[i].side(side), static_cast<int32_t>(i + 1), side, 1};
    if (!workspace.edges.try_insert_batch({sides.data(), count}, identifiers.data()))
        return false;
    for (std::size_t i = 0; i < count; ++i) {
        const Edge &edge = workspace.edges.key(identifiers[i]);
        prefetch(&workspace.face(edge.last_face).neighbour[edge.last_side - 1]);
    }
    for (std::size_t i = 0; i < count; ++i) {
        const Edge &side = sides[i];
        Edge &edge = workspace.edges.key(identifiers[i]);
        const bool is_new = edge.last_face == side.last_face && edge.last_side == side.last_side;
        if (!is_new)
            append(workspace, edge, side.last_face, side.last_side);
    }
    return true;
}

/// Numbers the edges and lists the faces of each.
[[nodiscard]] bool try_build_edge_map(Workspace &workspace)
{
    const std::size_t face_count = workspace.faces.size();
    for (std::size_t first = 0; first < face_count; first += faces_per_batch)
        if (!try_insert_sides(workspace, first, std::min(first + faces_per_batch, face_count)))
            return false;
    return true;
}

/// The entries of all edges, in the order of their identifiers.
auto edge_entries(const Workspace &workspace)
{
    return std::span(workspace.edges.keys.data() + 1, static_cast<std::size_t>(workspace.edges.count));
}

void count_edges(Workspace &workspace)
{
    for (const auto &entry : edge_entries(workspace)) {
        workspace.free.edges += entry.key.face_count == 1;
        workspace.non_manifold.edges += entry.key.face_count == 3;
    }
}

/// Counts the connected components of the nodes 1..node_count. `component(node)` is the node's label, 0 until
/// it is visited; `for_each_neighbour(node, visit)` stops and returns false where `visit` does. Several nodes
/// are popped at a time, so that the labels of all their neighbours come from memory together.
template <class Component, class ForEachNeighbour>
[[nodiscard]] bool try_count_components(int32_t node_count, Component component,
    ForEachNeighbour for_each_neighbour, WorkStack &work, int32_t &count)
{
    const auto prefetch_label = [&](int32_t node) {
        prefetch(&component(node));
        return true;
    };
    const auto visit = [&](int32_t node) {
        if (component(node) != 0)
            return true;
        component(node) = count;
        return work.try_push(node);
    };
    for (int64_t number = 1; number <= node_count; ++number) {
        const auto start = static_cast<int32_t>(number);
        if (component(start) != 0)
            continue;
        ++count;
        if (!visit(start))
            return false;
        std::array<int32_t, 16> room;
        for (auto nodes = work.pop_into(room); !nodes.empty(); nodes = work.pop_into(room)) {
            for (const int32_t node : nodes)
                static_cast<void>(for_each_neighbour(node, prefetch_label));
            for (const int32_t node : nodes)
                if (!for_each_neighbour(node, visit))
                    return false;
        }
    }
    return true;
}

/// A key of a graph: a vertex, and the head of the list of its neighbours, by which it is not found.
struct Vertex {
    int32_t number;
    uint32_t first_value;
};

struct vertex_key {
    using value_type = Vertex;

    static constexpr uint32_t bucket(const Vertex &vertex, uint32_t bucket_count)
    {
        return ordered_key<1>::bucket({vertex.number}, bucket_count);
    }
    static constexpr bool equal(const Vertex &a, const Vertex &b) { return a.number == b.number; }
};

/// The edges of some kind as a graph of their vertices.
struct Graph {
    struct Value {
        int32_t neighbour;
        uint32_t next;
    };

    tuple_major_set_t<vertex_key> vertices;
    Array<Value> values; // from 1
    uint32_t value_count = 0;

    void add(int32_t vertex, int32_t neighbour)
    {
        uint32_t &first = vertices.key(vertex).first_value;
        values[++value_count] = {neighbour, first};
        first = value_count;
    }
};

/// Enters edges, given by the vertices of each in turn.
[[nodiscard]] bool try_insert_edges(Graph &graph, std::span<const Vertex> ends)
{
    std::array<int32_t, 2 * edges_per_batch> identifiers;
    if (!graph.vertices.try_insert_batch(ends, identifiers.data()))
        return false;
    for (std::size_t i = 0; i < ends.size(); i += 2) {
        graph.add(identifiers[i], identifiers[i + 1]);
        graph.add(identifiers[i + 1], identifiers[i]);
    }
    return true;
}

/// Builds the graph of the `edge_count` edges that have `face_count` faces.
[[nodiscard]] bool try_build_graph(
    const Workspace &workspace, uint8_t face_count, int32_t edge_count, Graph &graph)
{
    const int32_t capacity = std::max(edge_count, 2);
    if (!graph.vertices.try_create(capacity, capacity) ||
        !graph.values.try_resize(2 * static_cast<std::size_t>(edge_count) + 1))
        return false;
    std::array<Vertex, 2 * edges_per_batch> ends;
    std::size_t filled = 0;
    for (const auto &entry : edge_entries(workspace)) {
        if (entry.key.face_count != face_count)
            continue;
        for (const int32_t vertex : entry.key.vertices)
            ends[filled++] = {vertex, 0};
        if (filled == ends.size()) {
            if (!try_insert_edges(graph, ends))
                return false;
            filled = 0;
        }
    }
    return try_insert_edges(graph, {ends.data(), filled});
}

[[nodiscard]] bool try_count_edge_components(Workspace &workspace, uint8_t face_count, Components &counts)
{
    if (counts.edges == 0)
        return true;
    Graph graph;
    Array<int32_t> labels;
    if (!try_build_graph(workspace, face_count, counts.edges, graph) ||
        !labels.try_resize_zeroed(static_cast<std::size_t>(graph.vertices.count) + 1))
        return false;
    return try_count_components(
        graph.vertices.count,
        [&](int32_t vertex) -> int32_t & { return labels[static_cast<std::size_t>(vertex)]; },
        [&](int32_t vertex, auto visit) {
            uint32_t value = graph.vertices.key(vertex).first_value;
            for (; value != 0; value = graph.values[value].next)
                if (!visit(graph.values[value].neighbour))
                    return false;
            return true;
        },
        workspace.work, counts.components);
}

[[nodiscard]] bool try_count_surface_components(Workspace &workspace)
{
    return try_count_components(
        static_cast<int32_t>(workspace.faces.size()),
        [&](int32_t number) -> int32_t & { return workspace.face(number).component; },
        [&](int32_t number, auto visit) {
            const Face &face = workspace.face(number);
            for (const int32_t neighbour : std::span(face.neighbour).first(face.kind))
                if (neighbour != 0 && !visit(neighbour))
                    return false;
            return true;
        },
        workspace.work, workspace.surface_components);
}

[[nodiscard]] bool try_compute(const korvane_mesh_t *mesh, Workspace &workspace)
{
    if (!try_read_mesh(mesh, workspace) || !try_build_edge_map(workspace))
        return false;
    count_edges(workspace);
    return try_count_edge_components(workspace, 1, workspace.free) &&
           try_count_edge_components(workspace, 3, workspace.non_manifold) &&
           try_count_surface_components(workspace);
}

constexpr std::size_t line_capacity = 256;

void report_keyed(const korvane_mesh_t *mesh, const char *name, const Workspace &found)
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

void report_readable(const korvane_mesh_t *mesh, const Workspace &found)
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
    Workspace workspace;
    if (!try_compute(mesh, workspace))
        return STATUS_OK; // only the report is missing
    if (name == nullptr)
        report_readable(mesh, workspace);
    else
        report_keyed(mesh, name, workspace);
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
