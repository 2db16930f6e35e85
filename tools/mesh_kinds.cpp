#include "mesh_kinds.h"

#include <algorithm>

#include "stats/shapes.h"

namespace korvane::tools {

namespace {

constexpr CornerPair the_edge[] = {{0, 1}};
constexpr CornerPair pyramid_edges[] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}};

} // namespace

std::span<const MeshKind> mesh_kinds()
{
    static const MeshKind kinds[] = {
        {"vertices", {}, korvane_mesh_get_vertex_count, nullptr, korvane_mesh_get_vertex_tag,
            korvane_mesh_get_vertex_required_status},
        {"edges", the_edge, korvane_mesh_get_edge_count, korvane_mesh_get_edge_vertices,
            korvane_mesh_get_edge_tag, korvane_mesh_get_edge_required_status},
        {"triangles", triangle_edges, korvane_mesh_get_triangle_count, korvane_mesh_get_triangle_vertices,
            korvane_mesh_get_triangle_tag, korvane_mesh_get_triangle_required_status},
        {"quadrilaterals", quadrangle_edges, korvane_mesh_get_quadrangle_count,
            korvane_mesh_get_quadrangle_vertices, korvane_mesh_get_quadrangle_tag,
            korvane_mesh_get_quadrangle_required_status},
        {"tetrahedra", tetrahedron_edges, korvane_mesh_get_tetrahedron_count,
            korvane_mesh_get_tetrahedron_vertices, korvane_mesh_get_tetrahedron_tag,
            korvane_mesh_get_tetrahedron_required_status},
        {"hexahedra", hexahedron_edges, korvane_mesh_get_hexahedron_count,
            korvane_mesh_get_hexahedron_vertices, korvane_mesh_get_hexahedron_tag,
            korvane_mesh_get_hexahedron_required_status},
        {"pyramids", pyramid_edges, korvane_mesh_get_pyramid_count, korvane_mesh_get_pyramid_vertices,
            korvane_mesh_get_pyramid_tag, korvane_mesh_get_pyramid_required_status},
    };
    return kinds;
}

int32_t count_of(const MeshKind &kind, const korvane_mesh_t *mesh)
{
    int32_t count = 0;
    return kind.get_count(mesh, &count) == STATUS_OK ? std::max(count, 0) : 0;
}

} // namespace korvane::tools
