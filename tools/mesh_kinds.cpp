#include "mesh_kinds.h"

#include <algorithm>

namespace korvane::tools {

std::span<const MeshKind> mesh_kinds()
{
    static const MeshKind kinds[] = {
        {"vertices", korvane_mesh_get_vertex_count, korvane_mesh_get_vertex_tag,
            korvane_mesh_get_vertex_required_status},
        {"edges", korvane_mesh_get_edge_count, korvane_mesh_get_edge_tag,
            korvane_mesh_get_edge_required_status},
        {"triangles", korvane_mesh_get_triangle_count, korvane_mesh_get_triangle_tag,
            korvane_mesh_get_triangle_required_status},
        {"quadrilaterals", korvane_mesh_get_quadrangle_count, korvane_mesh_get_quadrangle_tag,
            korvane_mesh_get_quadrangle_required_status},
        {"tetrahedra", korvane_mesh_get_tetrahedron_count, korvane_mesh_get_tetrahedron_tag,
            korvane_mesh_get_tetrahedron_required_status},
        {"hexahedra", korvane_mesh_get_hexahedron_count, korvane_mesh_get_hexahedron_tag,
            korvane_mesh_get_hexahedron_required_status},
        {"pyramids", korvane_mesh_get_pyramid_count, korvane_mesh_get_pyramid_tag,
            korvane_mesh_get_pyramid_required_status},
    };
    return kinds;
}

int32_t count_of(const MeshKind &kind, const korvane_mesh_t *mesh)
{
    int32_t count = 0;
    return kind.get_count(mesh, &count) == STATUS_OK ? std::max(count, 0) : 0;
}

} // namespace korvane::tools
