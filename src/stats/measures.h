// The quality measures as pure functions of an element's corners, in the order in which the element lists
// them. Infinite means HUGE_VAL; angles are in degrees. Degenerate elements are no errors.
//
// The expressions are fixed to the order of their operations, and so is what becomes of not-a-number: a
// maximum or minimum is one of the two named pairs below.
#pragma once

#include <array>
#include <cmath>

#include "common/vec3.h"
#include "stats/shapes.h"

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

/// The area of a triangle from p x q + q x r + r x p.
inline double area(Vec3 cross_sum)
{
    return 0.5 * norm(cross_sum);
}

inline double triangle_area(Vec3 p, Vec3 q, Vec3 r)
{
    return area(cross(p, q) + cross(q, r) + cross(r, p));
}

inline double tetrahedron_volume(Vec3 p, Vec3 q, Vec3 r, Vec3 s)
{
    constexpr double sixth = 0.16666666666666666;
    return parallelepiped_volume(p, q, r, s) * sixth;
}

inline double edge_length(Vec3 p, Vec3 q)
{
    return norm(q - p);
}

/// Longest side times perimeter over area: 1 if equilateral, infinite without area.
inline double triangle_aspect_ratio(const TriangleCorners &p)
{
    const double l1 = norm(p[0] - p[1]);
    const double l2 = norm(p[1] - p[2]);
    const double l3 = norm(p[2] - p[0]);
    const double hmax = scan_maximum(l3, scan_maximum(l2, l1));
    const double area = triangle_area(p[0], p[1], p[2]);
    constexpr double normalisation = 0.14433756729740646; // sqrt(3) / 12
    return area > 0 ? normalisation * hmax * (l1 + l2 + l3) / area : HUGE_VAL;
}

/// Longest edge times surface over volume: 1 if regular, infinite if flat or inverted.
inline double tetrahedron_aspect_ratio(const TetrahedronCorners &p)
{
    double longest = 0.0; // squared, because the largest square has the largest root
    for (const auto &[a, b] : tetrahedron_edges)
        longest = scan_maximum(dot(p[b] - p[a], p[b] - p[a]), longest);
    const double hmax = std::sqrt(longest);
    // Each edge belongs to two faces, and q x p is -(p x q) to the last bit.
    const Vec3 p12 = cross(p[0], p[1]);
    const Vec3 p13 = cross(p[0], p[2]);
    const Vec3 p14 = cross(p[0], p[3]);
    const Vec3 p23 = cross(p[1], p[2]);
    const Vec3 p24 = cross(p[1], p[3]);
    const Vec3 p34 = cross(p[2], p[3]);
    const double surface =
        area(p12 + p23 - p13) + area(p12 + p24 - p14) + area(p13 + p34 - p14) + area(p23 + p34 - p24);
    const double volume = tetrahedron_volume(p[0], p[1], p[2], p[3]);
    constexpr double normalisation = 0.06804138174397717; // sqrt(6) / 36
    return volume > 0 ? normalisation * hmax * surface / volume : HUGE_VAL;
}

/// The angles at the second, the third and the first corner.
std::array<double, 3> triangle_angles(const TriangleCorners &p);

/// The worst of the four corner triangles: 1 for a square.
double quadrangle_aspect_ratio(const QuadrangleCorners &p);

/// The angles at the second, the third, the fourth and the first corner.
std::array<double, 4> quadrangle_angles(const QuadrangleCorners &p);

/// 1 if planar and convex, towards 0 if folded along both diagonals.
double quadrangle_planarity(const QuadrangleCorners &p);

/// Edge lengths over the smallest of ten sub-volumes: 6 for a cube, negative if inverted.
double hexahedron_aspect_ratio(const HexahedronCorners &p);

} // namespace korvane
