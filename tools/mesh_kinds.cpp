#include "mesh_kinds.h"

#include <algorithm>

#include "stats/shapes.h"

namespace korvane::tools {

namespace {

constexpr CornerPair the_edge[] = {{0, 1}};
constexpr CornerPair pyramid_edges[] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}};
constexpr CornerTetrahedron the_tetrahedron[] = {{0, 1, 2, 3}};
/// Each corner of the base with its neighbours.
constexpr CornerTetrahedron pyramid_tetrahedra[] = {{0, 1, 3, 4}, {1, 2, 0, 4}, {2, 3, 1, 4}, {3, 0, 2, 4}};

} // namespace

std::span<const MeshKind> mesh_kinds()
{
    static const MeshKind kinds[] = {
        {"vertex", "vertices", 0, 0, 1, {}, {}, korvane_mesh_get_vertex_count, nullptr,
            korvane_mesh_get_vertex_tag, korvane_mesh_get_vertex_required_status},
        {"edge", "edges", 2, 1, 3, the_edge, {}, korvane_mesh_get_edge_count, korvane_mesh_get_edge_vertices,
            korvane_mesh_get_edge_tag, korvane_mesh_get_edge_required_status},
        {"triangle", "triangles", 3, 2, 5, triangle_edges, {}, korvane_mesh_get_triangle_count,
            korvane_mesh_get_triangle_vertices, korvane_mesh_get_triangle_tag,
            korvane_mesh_get_triangle_required_status},
        {"quadrangle", "quadrilaterals", 4, 2, 9, quadrangle_edges, {}, korvane_mesh_get_quadrangle_count,
            korvane_mesh_get_quadrangle_vertices, korvane_mesh_get_quadrangle_tag,
            korvane_mesh_get_quadrangle_required_status},
        {"tetrahedron", "tetrahedra", 4, 3, 10, tetrahedron_edges, the_tetrahedron,
            korvane_mesh_get_tetrahedron_count, korvane_mesh_get_tetrahedron_vertices,
            korvane_mesh_get_tetrahedron_tag, korvane_mesh_get_tetrahedron_required_status},
        {"hexahedron", "hexahedra", 8, 3, 12, hexahedron_edges, hexahedron_tetrahedra,
            korvane_mesh_get_hexahedron_count, korvane_mesh_get_hexahedron_vertices,
            korvane_mesh_get_hexahedron_tag, korvane_mesh_get_hexahedron_required_status},
        {"pyramid", "pyramids", 5, 3, 14, pyramid_edges, pyramid_tetrahedra, korvane_mesh_get_pyramid_count,
            korvane_mesh_get_pyramid_vertices, korvane_mesh_get_pyramid_tag,
            korvane_mesh_get_pyramid_required_status},
    };
    return kinds;
}

std::span<const MeshKind> element_kinds()
{
    return mesh_kinds().subspan(1);
}

const MeshKind &vertex_kind()
{
    return mesh_kinds().front();
}

const MeshKind *find_kind(std::string_view singular)
{
    const auto kinds = mesh_kinds();
    const auto found = std::ranges::find(kinds, singular, &MeshKind::singular);
    return found == kinds.end() ? nullptr : &*found;
}

int32_t count_of(const MeshKind &kind, const korvane_mesh_t *mesh)
{
    int32_t count = 0;
    return kind.get_count(mesh, &count) == STATUS_OK ? std::max(count, 0) : 0;
}

ElementVertices vertices_of(const MeshKind &kind, const korvane_mesh_t *mesh, int32_t number)
{
    ElementVertices vertices{};
    kind.get_vertices(mesh, number, vertices.data());
    return vertices;
}

int32_t tag_of(const MeshKind &kind, const korvane_mesh_t *mesh, int32_t number)
{
    int32_t tag = 0;
    return kind.get_tag(mesh, number, &tag) == STATUS_OK ? tag : 0;
}

bool is_required(const MeshKind &kind, const korvane_mesh_t *mesh, int32_t number)
{
    int32_t required = 0;
    return kind.get_required_status(mesh, number, &required) == STATUS_OK && required != 0;
}

std::array<double, 3> position_of(const korvane_mesh_t *mesh, int32_t vertex)
{
    std::array<double, 3> xyz{};
    korvane_mesh_get_vertex_coordinates(mesh, vertex, xyz.data());
    return xyz;
}

} // namespace korvane::tools
