// The 144 accessors and registrations of the 36 slots: four templates, and a row per slot.
//
// An accessor tests the mesh and calls; all else is the business of the callback. A registration replaces the
// user data that both callbacks of a slot share.
#include "mesh/memory_mesh.h"

namespace korvane {

namespace {

template <auto slot, class... Arguments>
korvane_status_t dispatch_get(const korvane_mesh_t *mesh, Arguments... arguments)
{
    if (mesh == nullptr)
        return STATUS_ERROR;
    return (mesh->*slot).get(arguments..., (mesh->*slot).user_data);
}

template <auto slot, class... Arguments>
korvane_status_t dispatch_set(korvane_mesh_t *mesh, Arguments... arguments)
{
    if (mesh == nullptr)
        return STATUS_ERROR;
    return (mesh->*slot).set(arguments..., (mesh->*slot).user_data);
}

/// A getter of the client ends the service of the storage's setter, which would take the client's user data
/// for the storage.
template <auto slot, class Getter>
korvane_status_t register_get(korvane_mesh_t *mesh, Getter callback, void *user_data)
{
    if (mesh == nullptr)
        return STATUS_ERROR;
    auto &target = mesh->*slot;
    target.get = callback;
    if (target.set == Stored<slot>::set)
        target.set = refuse;
    target.user_data = user_data;
    return STATUS_OK;
}

/// Likewise for the storage's getter.
template <auto slot, class Setter>
korvane_status_t register_set(korvane_mesh_t *mesh, Setter callback, void *user_data)
{
    if (mesh == nullptr)
        return STATUS_ERROR;
    auto &target = mesh->*slot;
    target.set = callback;
    if (target.get == Stored<slot>::get)
        target.get = refuse;
    target.user_data = user_data;
    return STATUS_OK;
}

} // namespace

} // namespace korvane

using namespace korvane;

#define REGISTRATIONS(slot, register_getter, register_setter)                                                \
    korvane_status_t register_getter(                                                                        \
        korvane_mesh_t *mesh, decltype(korvane_mesh_s::slot.get) callback, void *user_data)                  \
    {                                                                                                        \
        return register_get<&korvane_mesh_s::slot>(mesh, callback, user_data);                               \
    }                                                                                                        \
    korvane_status_t register_setter(                                                                        \
        korvane_mesh_t *mesh, decltype(korvane_mesh_s::slot.set) callback, void *user_data)                  \
    {                                                                                                        \
        return register_set<&korvane_mesh_s::slot>(mesh, callback, user_data);                               \
    }

#define COUNT_SLOT(slot, getter, setter, register_getter, register_setter)                                   \
    korvane_status_t getter(const korvane_mesh_t *mesh, int32_t *count)                                      \
    {                                                                                                        \
        return dispatch_get<&korvane_mesh_s::slot>(mesh, count);                                             \
    }                                                                                                        \
    korvane_status_t setter(korvane_mesh_t *mesh, int32_t count)                                             \
    {                                                                                                        \
        return dispatch_set<&korvane_mesh_s::slot>(mesh, count);                                             \
    }                                                                                                        \
    REGISTRATIONS(slot, register_getter, register_setter)

#define ATTRIBUTE_SLOT(Value, slot, getter, setter, register_getter, register_setter)                        \
    korvane_status_t getter(const korvane_mesh_t *mesh, int32_t index, std::add_pointer_t<Value> values)     \
    {                                                                                                        \
        return dispatch_get<&korvane_mesh_s::slot>(mesh, index, values);                                     \
    }                                                                                                        \
    korvane_status_t setter(korvane_mesh_t *mesh, int32_t index, std::add_pointer_t<const Value> values)     \
    {                                                                                                        \
        return dispatch_set<&korvane_mesh_s::slot>(mesh, index, values);                                     \
    }                                                                                                        \
    REGISTRATIONS(slot, register_getter, register_setter)

#define COORDINATES_SLOT(...) ATTRIBUTE_SLOT(double, __VA_ARGS__)
#define VALUES_SLOT(...) ATTRIBUTE_SLOT(int32_t, __VA_ARGS__)

#define EXTRA_VERTICES_SLOT(slot, getter, setter, register_getter, register_setter)                          \
    korvane_status_t getter(const korvane_mesh_t *mesh, int32_t index, int32_t *count, int32_t *vertices)    \
    {                                                                                                        \
        return dispatch_get<&korvane_mesh_s::slot>(mesh, index, count, vertices);                            \
    }                                                                                                        \
    korvane_status_t setter(korvane_mesh_t *mesh, int32_t index, int32_t count, const int32_t *vertices)     \
    {                                                                                                        \
        return dispatch_set<&korvane_mesh_s::slot>(mesh, index, count, vertices);                            \
    }                                                                                                        \
    REGISTRATIONS(slot, register_getter, register_setter)

extern "C" {

// clang-format off
COUNT_SLOT(vertex_count,
    korvane_mesh_get_vertex_count, korvane_mesh_set_vertex_count,
    korvane_mesh_set_get_vertex_count, korvane_mesh_set_set_vertex_count)
COORDINATES_SLOT(vertex_coordinates,
    korvane_mesh_get_vertex_coordinates, korvane_mesh_set_vertex_coordinates,
    korvane_mesh_set_get_vertex_coordinates, korvane_mesh_set_set_vertex_coordinates)
VALUES_SLOT(vertex_tag,
    korvane_mesh_get_vertex_tag, korvane_mesh_set_vertex_tag,
    korvane_mesh_set_get_vertex_tag, korvane_mesh_set_set_vertex_tag)
VALUES_SLOT(vertex_periodic_id,
    korvane_mesh_get_vertex_periodic_id, korvane_mesh_set_vertex_periodic_id,
    korvane_mesh_set_get_vertex_periodic_id, korvane_mesh_set_set_vertex_periodic_id)
VALUES_SLOT(vertex_required_status,
    korvane_mesh_get_vertex_required_status, korvane_mesh_set_vertex_required_status,
    korvane_mesh_set_get_vertex_required_status, korvane_mesh_set_set_vertex_required_status)

COUNT_SLOT(edge_count,
    korvane_mesh_get_edge_count, korvane_mesh_set_edge_count,
    korvane_mesh_set_get_edge_count, korvane_mesh_set_set_edge_count)
VALUES_SLOT(edge_vertices,
    korvane_mesh_get_edge_vertices, korvane_mesh_set_edge_vertices,
    korvane_mesh_set_get_edge_vertices, korvane_mesh_set_set_edge_vertices)
VALUES_SLOT(edge_tag,
    korvane_mesh_get_edge_tag, korvane_mesh_set_edge_tag,
    korvane_mesh_set_get_edge_tag, korvane_mesh_set_set_edge_tag)
VALUES_SLOT(edge_periodic_id,
    korvane_mesh_get_edge_periodic_id, korvane_mesh_set_edge_periodic_id,
    korvane_mesh_set_get_edge_periodic_id, korvane_mesh_set_set_edge_periodic_id)
VALUES_SLOT(edge_required_status,
    korvane_mesh_get_edge_required_status, korvane_mesh_set_edge_required_status,
    korvane_mesh_set_get_edge_required_status, korvane_mesh_set_set_edge_required_status)
EXTRA_VERTICES_SLOT(edge_extra_vertices,
    korvane_mesh_get_edge_extra_vertices, korvane_mesh_set_edge_extra_vertices,
    korvane_mesh_set_get_edge_extra_vertices, korvane_mesh_set_set_edge_extra_vertices)

COUNT_SLOT(triangle_count,
    korvane_mesh_get_triangle_count, korvane_mesh_set_triangle_count,
    korvane_mesh_set_get_triangle_count, korvane_mesh_set_set_triangle_count)
VALUES_SLOT(triangle_vertices,
    korvane_mesh_get_triangle_vertices, korvane_mesh_set_triangle_vertices,
    korvane_mesh_set_get_triangle_vertices, korvane_mesh_set_set_triangle_vertices)
VALUES_SLOT(triangle_tag,
    korvane_mesh_get_triangle_tag, korvane_mesh_set_triangle_tag,
    korvane_mesh_set_get_triangle_tag, korvane_mesh_set_set_triangle_tag)
VALUES_SLOT(triangle_periodic_id,
    korvane_mesh_get_triangle_periodic_id, korvane_mesh_set_triangle_periodic_id,
    korvane_mesh_set_get_triangle_periodic_id, korvane_mesh_set_set_triangle_periodic_id)
VALUES_SLOT(triangle_required_status,
    korvane_mesh_get_triangle_required_status, korvane_mesh_set_triangle_required_status,
    korvane_mesh_set_get_triangle_required_status, korvane_mesh_set_set_triangle_required_status)
EXTRA_VERTICES_SLOT(triangle_extra_vertices,
    korvane_mesh_get_triangle_extra_vertices, korvane_mesh_set_triangle_extra_vertices,
    korvane_mesh_set_get_triangle_extra_vertices, korvane_mesh_set_set_triangle_extra_vertices)

COUNT_SLOT(quadrangle_count,
    korvane_mesh_get_quadrangle_count, korvane_mesh_set_quadrangle_count,
    korvane_mesh_set_get_quadrangle_count, korvane_mesh_set_set_quadrangle_count)
VALUES_SLOT(quadrangle_vertices,
    korvane_mesh_get_quadrangle_vertices, korvane_mesh_set_quadrangle_vertices,
    korvane_mesh_set_get_quadrangle_vertices, korvane_mesh_set_set_quadrangle_vertices)
VALUES_SLOT(quadrangle_tag,
    korvane_mesh_get_quadrangle_tag, korvane_mesh_set_quadrangle_tag,
    korvane_mesh_set_get_quadrangle_tag, korvane_mesh_set_set_quadrangle_tag)
VALUES_SLOT(quadrangle_periodic_id,
    korvane_mesh_get_quadrangle_periodic_id, korvane_mesh_set_quadrangle_periodic_id,
    korvane_mesh_set_get_quadrangle_periodic_id, korvane_mesh_set_set_quadrangle_periodic_id)
VALUES_SLOT(quadrangle_required_status,
    korvane_mesh_get_quadrangle_required_status, korvane_mesh_set_quadrangle_required_status,
    korvane_mesh_set_get_quadrangle_required_status, korvane_mesh_set_set_quadrangle_required_status)
EXTRA_VERTICES_SLOT(quadrangle_extra_vertices,
    korvane_mesh_get_quadrangle_extra_vertices, korvane_mesh_set_quadrangle_extra_vertices,
    korvane_mesh_set_get_quadrangle_extra_vertices, korvane_mesh_set_set_quadrangle_extra_vertices)

COUNT_SLOT(tetrahedron_count,
    korvane_mesh_get_tetrahedron_count, korvane_mesh_set_tetrahedron_count,
    korvane_mesh_set_get_tetrahedron_count, korvane_mesh_set_set_tetrahedron_count)
VALUES_SLOT(tetrahedron_vertices,
    korvane_mesh_get_tetrahedron_vertices, korvane_mesh_set_tetrahedron_vertices,
    korvane_mesh_set_get_tetrahedron_vertices, korvane_mesh_set_set_tetrahedron_vertices)
VALUES_SLOT(tetrahedron_tag,
    korvane_mesh_get_tetrahedron_tag, korvane_mesh_set_tetrahedron_tag,
    korvane_mesh_set_get_tetrahedron_tag, korvane_mesh_set_set_tetrahedron_tag)
VALUES_SLOT(tetrahedron_required_status,
    korvane_mesh_get_tetrahedron_required_status, korvane_mesh_set_tetrahedron_required_status,
    korvane_mesh_set_get_tetrahedron_required_status, korvane_mesh_set_set_tetrahedron_required_status)
EXTRA_VERTICES_SLOT(tetrahedron_extra_vertices,
    korvane_mesh_get_tetrahedron_extra_vertices, korvane_mesh_set_tetrahedron_extra_vertices,
    korvane_mesh_set_get_tetrahedron_extra_vertices, korvane_mesh_set_set_tetrahedron_extra_vertices)

COUNT_SLOT(hexahedron_count,
    korvane_mesh_get_hexahedron_count, korvane_mesh_set_hexahedron_count,
    korvane_mesh_set_get_hexahedron_count, korvane_mesh_set_set_hexahedron_count)
VALUES_SLOT(hexahedron_vertices,
    korvane_mesh_get_hexahedron_vertices, korvane_mesh_set_hexahedron_vertices,
    korvane_mesh_set_get_hexahedron_vertices, korvane_mesh_set_set_hexahedron_vertices)
VALUES_SLOT(hexahedron_tag,
    korvane_mesh_get_hexahedron_tag, korvane_mesh_set_hexahedron_tag,
    korvane_mesh_set_get_hexahedron_tag, korvane_mesh_set_set_hexahedron_tag)
VALUES_SLOT(hexahedron_required_status,
    korvane_mesh_get_hexahedron_required_status, korvane_mesh_set_hexahedron_required_status,
    korvane_mesh_set_get_hexahedron_required_status, korvane_mesh_set_set_hexahedron_required_status)

COUNT_SLOT(pyramid_count,
    korvane_mesh_get_pyramid_count, korvane_mesh_set_pyramid_count,
    korvane_mesh_set_get_pyramid_count, korvane_mesh_set_set_pyramid_count)
VALUES_SLOT(pyramid_vertices,
    korvane_mesh_get_pyramid_vertices, korvane_mesh_set_pyramid_vertices,
    korvane_mesh_set_get_pyramid_vertices, korvane_mesh_set_set_pyramid_vertices)
VALUES_SLOT(pyramid_tag,
    korvane_mesh_get_pyramid_tag, korvane_mesh_set_pyramid_tag,
    korvane_mesh_set_get_pyramid_tag, korvane_mesh_set_set_pyramid_tag)
VALUES_SLOT(pyramid_required_status,
    korvane_mesh_get_pyramid_required_status, korvane_mesh_set_pyramid_required_status,
    korvane_mesh_set_get_pyramid_required_status, korvane_mesh_set_set_pyramid_required_status)
// clang-format on

} // extern "C"
