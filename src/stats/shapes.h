// The shapes of the mesh elements as tables of corners, which are numbered from 0.
#pragma once

#include <cstddef>
#include <cstdint>

#include "common/vec3.h"

namespace korvane {

/// The edges of the surface elements, all around.
inline constexpr uint8_t triangle_edges[3][2] = {{0, 1}, {1, 2}, {2, 0}};
inline constexpr uint8_t quadrangle_edges[4][2] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}};

/// In the order in which edge sets meet them.
inline constexpr uint8_t tetrahedron_edges[6][2] = {{0, 2}, {2, 1}, {1, 0}, {0, 3}, {3, 2}, {1, 3}};

/// Two opposite faces, then the edges that join them.
inline constexpr uint8_t hexahedron_edges[12][2] = {
    {0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};

/// A corner with its three neighbours, eight times; then the two tetrahedra on alternate corners.
inline constexpr uint8_t hexahedron_tetrahedra[10][4] = {{0, 1, 3, 4}, {1, 2, 0, 5}, {2, 3, 1, 6},
    {3, 0, 2, 7}, {4, 7, 5, 0}, {5, 4, 6, 1}, {6, 5, 7, 2}, {7, 6, 4, 3}, {0, 2, 7, 5}, {1, 3, 4, 6}};

/// Six times the volume of a tetrahedron: positive if p, q, r turn anticlockwise as seen from s.
constexpr double parallelepiped_volume(Vec3 p, Vec3 q, Vec3 r, Vec3 s)
{
    return dot(q - p, cross(r - p, s - p));
}

/// The hexahedron by which the tables above are oriented.
inline constexpr Vec3 unit_cube[8] = {
    {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};

constexpr bool unit_cube_has_positive_volumes()
{
    for (std::size_t i = 0; i < 10; ++i) {
        const auto &[p, q, r, s] = hexahedron_tetrahedra[i];
        const double expected = i < 8 ? 1 : 2;
        if (parallelepiped_volume(unit_cube[p], unit_cube[q], unit_cube[r], unit_cube[s]) != expected)
            return false;
    }
    return true;
}
static_assert(unit_cube_has_positive_volumes());

constexpr bool unit_cube_has_unit_edges()
{
    for (const auto &[a, b] : hexahedron_edges) {
        const Vec3 edge = unit_cube[b] - unit_cube[a];
        if (dot(edge, edge) != 1)
            return false;
    }
    return true;
}
static_assert(unit_cube_has_unit_edges());

} // namespace korvane
