// The surface elements as a graph of faces that are joined by edges.
//
// The edge map numbers the edges; the faces of an edge form a list, in the order of the faces, that is
// threaded through the face records: the neighbour of a face across an edge is the next face of the list, and
// the last one leads back to the first. So the map keeps only the end of each list, and the records are
// linked once the map is built. Cost: one pass over the faces with one insertion per side, then searches that
// visit every record once; 44 bytes per face and about 22 per edge. All is released before the end.
#include "stats/topology.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "common/array.h"
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

    [[nodiscard]] std::array<int32_t, 2> edge(uint8_t side) const
    {
        return {vertices[side % kind], vertices[(side + 1) % kind]};
    }
};

/// The list of the faces of an edge.
struct EdgeFaces {
    int32_t last_face;
    uint8_t last_side;
    uint8_t count; // 3 stands for more, too
};

using VertexSet = tuple_major_set_t<ordered_key<1>>;

/// Gives an array room for all identifiers of a set; new values are zero.
template <class Key, class Value>
[[nodiscard]] bool try_follow(const tuple_major_set_t<Key> &set, Array<Value> &values)
{
    const std::size_t wanted = static_cast<std::size_t>(set.capacity) + 1;
    return values.size() >= wanted || values.try_resize_zeroed(wanted);
}

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
    [[nodiscard]] bool empty() const { return count == 0; }
    [[nodiscard]] int32_t pop() { return slots[--count]; }

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
    vertex_pair_set_t edges;
    Array<EdgeFaces> faces_of_edge; // by identifier in `edges`
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

/// Appends a face to the list of an edge, which stays a ring: the last face leads to the first.
void append(Workspace &workspace, EdgeFaces &list, int32_t number, uint8_t side)
{
    if (list.count > 0) {
        Face &last = workspace.face(list.last_face);
        Face &face = workspace.face(number);
        const bool first_is_last = list.count == 1;
        const auto last_slot = static_cast<std::size_t>(list.last_side - 1);
        const auto slot = static_cast<std::size_t>(side - 1);
        face.neighbour[slot] = first_is_last ? list.last_face : last.neighbour[last_slot];
        face.neighbour_edge[slot] = first_is_last ? list.last_side : last.neighbour_edge[last_slot];
        last.neighbour[last_slot] = number;
        last.neighbour_edge[last_slot] = side;
    }
    list = {number, side, static_cast<uint8_t>(std::min(list.count + 1, 3))};
}

/// Numbers the edges and lists the faces of each.
[[nodiscard]] bool try_build_edge_map(Workspace &workspace)
{
    constexpr std::size_t faces_per_batch = 64;
    std::array<vertex_pair_set_t::value_type, 4 * faces_per_batch> edges;
    std::array<int32_t, edges.size()> identifiers;
    const std::size_t face_count = workspace.faces.size();
    for (std::size_t first = 0; first < face_count; first += faces_per_batch) {
        const std::size_t end = std::min(first + faces_per_batch, face_count);
        std::size_t filled = 0;
        for (std::size_t i = first; i < end; ++i)
            for (uint8_t side = 1; side <= workspace.faces[i].kind; ++side)
                edges[filled++] = workspace.faces[i].edge(side);
        if (!workspace.edges.try_insert_batch({edges.data(), filled}, identifiers.data()) ||
            !try_follow(workspace.edges, workspace.faces_of_edge))
            return false;
        const int32_t *identifier = identifiers.data();
        for (std::size_t i = first; i < end; ++i) {
            for (uint8_t side = 1; side <= workspace.faces[i].kind; ++side) {
                EdgeFaces &list = workspace.faces_of_edge[static_cast<std::size_t>(*identifier++)];
                append(workspace, list, static_cast<int32_t>(i + 1), side);
            }
        }
    }
    return true;
}

void count_edges(Workspace &workspace)
{
    for (int32_t edge = 1; edge <= workspace.edges.count; ++edge) {
        const uint8_t count = workspace.faces_of_edge[static_cast<std::size_t>(edge)].count;
        workspace.free.edges += count == 1;
        workspace.non_manifold.edges += count == 3;
    }
}

/// Counts the connected components of the nodes 1..node_count. `component(node)` is the node's label, 0 until
/// it is visited; `for_each_neighbour(node, visit)` stops and returns false where `visit` does.
template <class Component, class ForEachNeighbour>
[[nodiscard]] bool try_count_components(int32_t node_count, Component component,
    ForEachNeighbour for_each_neighbour, WorkStack &work, int32_t &count)
{
    for (int32_t start = 1; start <= node_count; ++start) {
        if (component(start) != 0)
            continue;
        ++count;
        const auto visit = [&](int32_t node) {
            if (component(node) != 0)
                return true;
            component(node) = count;
            return work.try_push(node);
        };
        if (!visit(start))
            return false;
        while (!work.empty())
            if (!for_each_neighbour(work.pop(), visit))
                return false;
    }
    return true;
}

/// The edges of some kind as a graph of their vertices.
struct Graph {
    struct Value {
        int32_t neighbour;
        uint32_t next;
    };

    VertexSet vertices;
    Array<uint32_t> first_value; // by identifier in `vertices`
    Array<Value> values;         // from 1
    uint32_t value_count = 0;

    void add(int32_t vertex, int32_t neighbour)
    {
        uint32_t &first = first_value[static_cast<std::size_t>(vertex)];
        values[++value_count] = {neighbour, first};
        first = value_count;
    }
};

/// Builds the graph of the `edge_count` edges that have `face_count` faces.
[[nodiscard]] bool try_build_graph(
    const Workspace &workspace, uint8_t face_count, int32_t edge_count, Graph &graph)
{
    const int32_t capacity = std::max(edge_count, 2);
    if (!graph.vertices.try_create(capacity, capacity) ||
        !graph.values.try_resize(2 * static_cast<std::size_t>(edge_count) + 1))
        return false;
    for (int32_t edge = 1; edge <= workspace.edges.count; ++edge) {
        if (workspace.faces_of_edge[static_cast<std::size_t>(edge)].count != face_count)
            continue;
        const auto [a, b] = workspace.edges.key(edge);
        const int32_t first = graph.vertices.insert({a});
        const int32_t second = graph.vertices.insert({b});
        if (first == 0 || second == 0 || !try_follow(graph.vertices, graph.first_value))
            return false;
        graph.add(first, second);
        graph.add(second, first);
    }
    return true;
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
            uint32_t value = graph.first_value[static_cast<std::size_t>(vertex)];
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
