// The quality measures of the elements of a mesh, by their index: they fetch the corners through the mesh's
// callbacks and leave the formulas to measures.h.
//
// First the element's vertices are asked for, then the coordinates of each, in this order. Statuses are
// ignored, and what a callback leaves out is zero. STATUS_ERROR for a null mesh; the results must not be
// null unless said otherwise. All is expanded in place, because reports measure whole meshes.
#pragma once

#include <algorithm>
#include <array>

#include <korvane.h>

#include "mesh/fetch.h"
#include "stats/measures.h"
#include "tags/tuple_shapes.h"

namespace korvane {

template <auto vertices_slot>
inline auto fetch_corners(const korvane_mesh_t *mesh, uint32_t index)
{
    constexpr std::size_t corner_count = Stored<vertices_slot>::values_per_element;
    std::array<int32_t, corner_count> vertices{};
    fetch<vertices_slot>(mesh, static_cast<int32_t>(index), vertices.data());
    std::array<Vec3, corner_count> corners;
    fetch_each<&korvane_mesh_s::vertex_coordinates>(mesh, vertices, corners.data());
    return corners;
}

inline auto fetch_triangle(const korvane_mesh_t *mesh, uint32_t index)
{
    return fetch_corners<&korvane_mesh_s::triangle_vertices>(mesh, index);
}

inline auto fetch_quadrangle(const korvane_mesh_t *mesh, uint32_t index)
{
    return fetch_corners<&korvane_mesh_s::quadrangle_vertices>(mesh, index);
}

/// 1 result.
inline korvane_status_t quality_triangle_aspect_ratio(
    const korvane_mesh_t *mesh, uint32_t index, double *ratio)
{
    if (mesh == nullptr)
        return STATUS_ERROR;
    *ratio = triangle_aspect_ratio(fetch_triangle(mesh, index));
    return STATUS_OK;
}

/// 3 results.
inline korvane_status_t quality_triangle_angles(const korvane_mesh_t *mesh, uint32_t index, double *angles)
{
    if (mesh == nullptr)
        return STATUS_ERROR;
    std::ranges::copy(triangle_angles(fetch_triangle(mesh, index)), angles);
    return STATUS_OK;
}

/// 1 result.
inline korvane_status_t quality_quadrangle_aspect_ratio(
    const korvane_mesh_t *mesh, uint32_t index, double *ratio)
{
    if (mesh == nullptr)
        return STATUS_ERROR;
    *ratio = quadrangle_aspect_ratio(fetch_quadrangle(mesh, index));
    return STATUS_OK;
}

/// 4 results.
inline korvane_status_t quality_quadrangle_angles(const korvane_mesh_t *mesh, uint32_t index, double *angles)
{
    if (mesh == nullptr)
        return STATUS_ERROR;
    std::ranges::copy(quadrangle_angles(fetch_quadrangle(mesh, index)), angles);
    return STATUS_OK;
}

/// 1 result; STATUS_ERROR if it is null.
inline korvane_status_t quality_quadrangle_planarity(
    const korvane_mesh_t *mesh, uint32_t index, double *planarity)
{
    if (mesh == nullptr || planarity == nullptr)
        return STATUS_ERROR;
    *planarity = quadrangle_planarity(fetch_quadrangle(mesh, index));
    return STATUS_OK;
}

/// 1 result.
inline korvane_status_t quality_tetrahedron_aspect_ratio(
    const korvane_mesh_t *mesh, uint32_t index, double *ratio)
{
    if (mesh == nullptr)
        return STATUS_ERROR;
    *ratio = tetrahedron_aspect_ratio(fetch_corners<&korvane_mesh_s::tetrahedron_vertices>(mesh, index));
    return STATUS_OK;
}

/// 1 result; STATUS_ERROR if it is null.
inline korvane_status_t quality_hexahedron_aspect_ratio(
    const korvane_mesh_t *mesh, uint32_t index, double *ratio)
{
    if (mesh == nullptr || ratio == nullptr)
        return STATUS_ERROR;
    *ratio = hexahedron_aspect_ratio(fetch_corners<&korvane_mesh_s::hexahedron_vertices>(mesh, index));
    return STATUS_OK;
}

/// 1 result, for the edge of that number. STATUS_OK always: without mesh the length is 0.
inline korvane_status_t quality_edge_length(
    const korvane_mesh_t *mesh, uint32_t index, double *length, const vertex_pair_set_t &set)
{
    std::array<Vec3, 2> ends{};
    if (mesh != nullptr)
        fetch_each<&korvane_mesh_s::vertex_coordinates>(
            mesh, set.key(static_cast<int32_t>(index)), ends.data());
    *length = edge_length(ends[0], ends[1]);
    return STATUS_OK;
}

/// The 2 vertices of the edge of that number. STATUS_OK always.
inline korvane_status_t quality_edge_vertices(
    const korvane_mesh_t *, int32_t index, int32_t *vertices, const vertex_pair_set_t &set)
{
    std::ranges::copy(set.key(index), vertices);
    return STATUS_OK;
}

} // namespace korvane
