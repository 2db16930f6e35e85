// The quality measures as pure functions of an element's corners, in the order in which the element lists
// them. Infinite means HUGE_VAL; angles are in degrees. Degenerate elements are no errors.
//
// The expressions are contract to the order of their operations, and so is what becomes of not-a-number: a
// maximum or minimum is one of the two named pairs below.
#pragma once

#include <array>
#include <cmath>

#include "common/vec3.h"

namespace korvane {

/// The extremes of a scan: a new value that cannot be compared with the one before is passed over.
constexpr double scan_maximum(double next, double previous)
{
    return next > previous ? next : previous;
}

constexpr double scan_minimum(double next, double previous)
{
    return next < previous ? next : previous;
}

using TriangleCorners = std::array<Vec3, 3>;
using QuadrangleCorners = std::array<Vec3, 4>;
using TetrahedronCorners = std::array<Vec3, 4>;
using HexahedronCorners = std::array<Vec3, 8>;

/// Longest side times perimeter over area: 1 if equilateral, infinite without area.
double triangle_aspect_ratio(const TriangleCorners &p);

/// The angles at the second, the third and the first corner.
std::array<double, 3> triangle_angles(const TriangleCorners &p);

/// The worst of the four corner triangles: 1 for a square.
double quadrangle_aspect_ratio(const QuadrangleCorners &p);

/// The angles at the second, the third, the fourth and the first corner.
std::array<double, 4> quadrangle_angles(const QuadrangleCorners &p);

/// 1 if planar and convex, towards 0 if folded along both diagonals.
double quadrangle_planarity(const QuadrangleCorners &p);

/// Longest edge times surface over volume: 1 if regular, infinite if flat or inverted.
double tetrahedron_aspect_ratio(const TetrahedronCorners &p);

/// Edge lengths over the smallest of ten sub-volumes: 6 for a cube, negative if inverted.
double hexahedron_aspect_ratio(const HexahedronCorners &p);

double edge_length(Vec3 p, Vec3 q);

} // namespace korvane
