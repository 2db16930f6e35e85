// The accessors of the mesh as tables, in the order of the slots, made by pasting the names of the slots.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <korvane.h>

namespace korvane::testing {

constexpr int max_width = 8;

struct CountAccessors {
    std::string name;
    korvane_status_t (*get)(const korvane_mesh_t *mesh, int32_t *count);
    korvane_status_t (*set)(korvane_mesh_t *mesh, int32_t count);
};

/// Coordinates are among them, as integers.
struct AttributeAccessors {
    std::string name;
    int entity; // the position of its count in `counts`
    int width;
    korvane_status_t (*get)(const korvane_mesh_t *mesh, int32_t index, int32_t *values);
    korvane_status_t (*set)(korvane_mesh_t *mesh, int32_t index, const int32_t *values);
};

struct ExtraVerticesAccessors {
    std::string name;
    int entity;
    korvane_status_t (*get)(const korvane_mesh_t *mesh, int32_t index, int32_t *count, int32_t *vertices);
    korvane_status_t (*set)(korvane_mesh_t *mesh, int32_t index, int32_t count, const int32_t *vertices);
};

inline korvane_status_t get_coordinates(const korvane_mesh_t *mesh, int32_t index, int32_t *values)
{
    double xyz[3];
    std::copy_n(values, 3, xyz);
    const korvane_status_t status = korvane_mesh_get_vertex_coordinates(mesh, index, xyz);
    std::transform(xyz, xyz + 3, values, [](double x) { return static_cast<int32_t>(x); });
    return status;
}

inline korvane_status_t set_coordinates(korvane_mesh_t *mesh, int32_t index, const int32_t *values)
{
    double xyz[3];
    std::copy_n(values, 3, xyz);
    return korvane_mesh_set_vertex_coordinates(mesh, index, xyz);
}

// clang-format off
#define COUNT(entity) {#entity, korvane_mesh_get_##entity##_count, korvane_mesh_set_##entity##_count}
#define ATTRIBUTE(entity, name, width) \
    {#name, entity, width, korvane_mesh_get_##name, korvane_mesh_set_##name}
#define EXTRA_VERTICES(entity, name) {#name, entity, korvane_mesh_get_##name, korvane_mesh_set_##name}

inline const std::vector<CountAccessors> counts = {
    COUNT(vertex), COUNT(edge), COUNT(triangle), COUNT(quadrangle), COUNT(tetrahedron), COUNT(hexahedron),
    COUNT(pyramid),
};

inline const std::vector<AttributeAccessors> attributes = {
    {"vertex_coordinates", 0, 3, get_coordinates, set_coordinates},
    ATTRIBUTE(0, vertex_tag, 1),
    ATTRIBUTE(0, vertex_periodic_id, 1),
    ATTRIBUTE(0, vertex_required_status, 1),
    ATTRIBUTE(1, edge_vertices, 2),
    ATTRIBUTE(1, edge_tag, 1),
    ATTRIBUTE(1, edge_periodic_id, 1),
    ATTRIBUTE(1, edge_required_status, 1),
    ATTRIBUTE(2, triangle_vertices, 3),
    ATTRIBUTE(2, triangle_tag, 1),
    ATTRIBUTE(2, triangle_periodic_id, 1),
    ATTRIBUTE(2, triangle_required_status, 1),
    ATTRIBUTE(3, quadrangle_vertices, 4),
    ATTRIBUTE(3, quadrangle_tag, 1),
    ATTRIBUTE(3, quadrangle_periodic_id, 1),
    ATTRIBUTE(3, quadrangle_required_status, 1),
    ATTRIBUTE(4, tetrahedron_vertices, 4),
    ATTRIBUTE(4, tetrahedron_tag, 1),
    ATTRIBUTE(4, tetrahedron_required_status, 1),
    ATTRIBUTE(5, hexahedron_vertices, 8),
    ATTRIBUTE(5, hexahedron_tag, 1),
    ATTRIBUTE(5, hexahedron_required_status, 1),
    ATTRIBUTE(6, pyramid_vertices, 5),
    ATTRIBUTE(6, pyramid_tag, 1),
    ATTRIBUTE(6, pyramid_required_status, 1),
};

inline const std::vector<ExtraVerticesAccessors> extra_vertices = {
    EXTRA_VERTICES(1, edge_extra_vertices),
    EXTRA_VERTICES(2, triangle_extra_vertices),
    EXTRA_VERTICES(3, quadrangle_extra_vertices),
    EXTRA_VERTICES(4, tetrahedron_extra_vertices),
};

#undef COUNT
#undef ATTRIBUTE
#undef EXTRA_VERTICES
// clang-format on

} // namespace korvane::testing
