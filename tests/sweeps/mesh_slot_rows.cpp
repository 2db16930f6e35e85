// Arguments of the 144 functions of the slots of a mesh: of one in memory, where indices are tested, and of
// one without callbacks, whose getters accept any index and whose setters accept nothing.
#include "sweeps/probe.h"

namespace korvane::testing {

namespace {

korvane_status_t get_some_count(int32_t *count, void *)
{
    *count = 1;
    return STATUS_OK;
}

korvane_status_t set_some_count(int32_t, void *)
{
    return STATUS_OK;
}

template <class Value>
korvane_status_t get_some(int32_t, Value *values, void *)
{
    *values = 1;
    return STATUS_OK;
}

template <class Value>
korvane_status_t set_some(int32_t, const Value *, void *)
{
    return STATUS_OK;
}

korvane_status_t get_some_list(int32_t, int32_t *count, int32_t *, void *)
{
    *count = 0;
    return STATUS_OK;
}

korvane_status_t set_some_list(int32_t, int32_t, const int32_t *, void *)
{
    return STATUS_OK;
}

} // namespace

// clang-format off
#define COUNT_ROWS(name) \
    ROW(korvane_mesh_get_##name, handle(o.mesh), trusted_output<int32_t>()), \
    ROW(korvane_mesh_get_##name, handle(o.spare_mesh), output<int32_t>()), \
    ROW(korvane_mesh_set_##name, handle(o.mesh), any(3)), \
    REFUSING_ROW(korvane_mesh_set_##name, handle(o.spare_mesh), given(3)), \
    ROW(korvane_mesh_set_get_##name, handle(o.mesh), given(get_some_count), nullable(&o)), \
    ROW(korvane_mesh_set_set_##name, handle(o.mesh), given(set_some_count), nullable(&o))

/// An attribute of `width` values; its array in the mesh has been sized before.
#define ATTRIBUTE_ROWS(name, Value, width, values) \
    ROW(korvane_mesh_get_##name, handle(o.mesh), index(2, entity_count), trusted_output<Value>(width)), \
    ROW(korvane_mesh_get_##name, handle(o.spare_mesh), any(2), output<Value>()), \
    ROW(korvane_mesh_set_##name, handle(o.mesh), index(2, entity_count), given((values).data())), \
    REFUSING_ROW(korvane_mesh_set_##name, handle(o.spare_mesh), given(2), given((values).data())), \
    ROW(korvane_mesh_set_get_##name, handle(o.mesh), given(get_some<Value>), nullable(&o)), \
    ROW(korvane_mesh_set_set_##name, handle(o.mesh), given(set_some<Value>), nullable(&o))

#define VALUES_ROWS(name, width) ATTRIBUTE_ROWS(name, int32_t, width, some_integers)

#define EXTRA_VERTICES_ROWS(name) \
    ROW(korvane_mesh_get_##name, handle(o.mesh), index(1, entity_count), trusted_output<int32_t>(), \
        trusted_output<int32_t>(3)), \
    ROW(korvane_mesh_get_##name, handle(o.spare_mesh), any(2), \
        trusted_output<int32_t>().zero_for(Cause::null_pointer), output<int32_t>()), \
    ALLOCATING_ROW(korvane_mesh_set_##name, handle(o.mesh), index(2, entity_count), \
        given(3).also(STATUS_OK, {INT32_MIN, -1, 0, 1000, 1001}), given(some_integers.data())), \
    REFUSING_ROW(korvane_mesh_set_##name, handle(o.spare_mesh), given(2), given(3), given(some_integers.data())), \
    ROW(korvane_mesh_set_get_##name, handle(o.mesh), given(get_some_list), nullable(&o)), \
    ROW(korvane_mesh_set_set_##name, handle(o.mesh), given(set_some_list), nullable(&o))

Rows mesh_slot_rows()
{
    return {
        COUNT_ROWS(vertex_count),
        ATTRIBUTE_ROWS(vertex_coordinates, double, 3, some_reals),
        VALUES_ROWS(vertex_tag, 1),
        VALUES_ROWS(vertex_periodic_id, 1),
        VALUES_ROWS(vertex_required_status, 1),
        COUNT_ROWS(edge_count),
        VALUES_ROWS(edge_vertices, 2),
        VALUES_ROWS(edge_tag, 1),
        VALUES_ROWS(edge_periodic_id, 1),
        VALUES_ROWS(edge_required_status, 1),
        EXTRA_VERTICES_ROWS(edge_extra_vertices),
        COUNT_ROWS(triangle_count),
        VALUES_ROWS(triangle_vertices, 3),
        VALUES_ROWS(triangle_tag, 1),
        VALUES_ROWS(triangle_periodic_id, 1),
        VALUES_ROWS(triangle_required_status, 1),
        EXTRA_VERTICES_ROWS(triangle_extra_vertices),
        COUNT_ROWS(quadrangle_count),
        VALUES_ROWS(quadrangle_vertices, 4),
        VALUES_ROWS(quadrangle_tag, 1),
        VALUES_ROWS(quadrangle_periodic_id, 1),
        VALUES_ROWS(quadrangle_required_status, 1),
        EXTRA_VERTICES_ROWS(quadrangle_extra_vertices),
        COUNT_ROWS(tetrahedron_count),
        VALUES_ROWS(tetrahedron_vertices, 4),
        VALUES_ROWS(tetrahedron_tag, 1),
        VALUES_ROWS(tetrahedron_required_status, 1),
        EXTRA_VERTICES_ROWS(tetrahedron_extra_vertices),
        COUNT_ROWS(hexahedron_count),
        VALUES_ROWS(hexahedron_vertices, 8),
        VALUES_ROWS(hexahedron_tag, 1),
        VALUES_ROWS(hexahedron_required_status, 1),
        COUNT_ROWS(pyramid_count),
        VALUES_ROWS(pyramid_vertices, 5),
        VALUES_ROWS(pyramid_tag, 1),
        VALUES_ROWS(pyramid_required_status, 1),
    };
}
// clang-format on

} // namespace korvane::testing
