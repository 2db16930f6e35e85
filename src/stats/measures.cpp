// Constants keep the digits that they are stored with, beside their derivation.
#include "stats/measures.h"

namespace korvane {

namespace {

/// A new value that cannot be compared with the one before takes its place.
constexpr double latest_maximum(double next, double previous)
{
    return next < previous ? previous : next;
}

double angle_between(Vec3 a, Vec3 b)
{
    const double d = dot(a, a) * dot(b, b);
    // Kept on purpose: the cosine is not clamped, because a rounding past 1 is to show as not-a-number.
    const double cosine = d > 0 ? dot(a, b) / std::sqrt(d) : 0;
    // Kept on purpose: pi has six decimals, because this defines the reported numbers.
    return std::acos(cosine) * 180.0 / 3.141593;
}

/// The angle of a corner between the ones before and after it.
double corner_angle(Vec3 before, Vec3 corner, Vec3 after)
{
    return angle_between(before - corner, after - corner);
}

/// A vector of length 0 stays as it is.
Vec3 normalized(Vec3 a)
{
    const double length = norm(a);
    return length > 0 ? Vec3{a.x / length, a.y / length, a.z / length} : a;
}

Vec3 unit_normal(Vec3 p, Vec3 q, Vec3 r)
{
    return normalized(cross(r - p, q - p));
}

} // namespace

std::array<double, 3> triangle_angles(const TriangleCorners &p)
{
    return {corner_angle(p[0], p[1], p[2]), corner_angle(p[1], p[2], p[0]), corner_angle(p[2], p[0], p[1])};
}

double quadrangle_aspect_ratio(const QuadrangleCorners &p)
{
    double worst = triangle_aspect_ratio({p[0], p[1], p[2]});
    worst = latest_maximum(triangle_aspect_ratio({p[1], p[2], p[3]}), worst);
    worst = latest_maximum(triangle_aspect_ratio({p[2], p[3], p[0]}), worst);
    worst = latest_maximum(triangle_aspect_ratio({p[3], p[0], p[1]}), worst);
    // The reciprocal of the ratio of a right isosceles triangle: 1 / (sqrt(3)/6 * sqrt(2) * (2 + sqrt(2))).
    constexpr double normalisation = 0.7174389352143008;
    return normalisation * worst;
}

std::array<double, 4> quadrangle_angles(const QuadrangleCorners &p)
{
    return {corner_angle(p[0], p[1], p[2]), corner_angle(p[1], p[2], p[3]), corner_angle(p[2], p[3], p[0]),
        corner_angle(p[3], p[0], p[1])};
}

double quadrangle_planarity(const QuadrangleCorners &p)
{
    const double along_first_diagonal = dot(unit_normal(p[0], p[1], p[2]), unit_normal(p[0], p[2], p[3]));
    const double along_second_diagonal = dot(unit_normal(p[0], p[1], p[3]), unit_normal(p[1], p[2], p[3]));
    return scan_minimum((1 + along_first_diagonal) / 2, (1 + along_second_diagonal) / 2);
}

double hexahedron_aspect_ratio(const HexahedronCorners &p)
{
    double length = 0.0;
    for (const auto &[a, b] : hexahedron_edges)
        length += norm(p[b] - p[a]);
    double smallest = HUGE_VAL;
    for (const auto &[a, b, c, d] : hexahedron_tetrahedra)
        smallest = scan_minimum(tetrahedron_volume(p[a], p[b], p[c], p[d]), smallest);
    constexpr double normalisation = 0.024056261216234408; // 1 / 12^1.5
    // Adding 0 makes a zero volume positive, so that flat is infinite and never minus infinite.
    return length * std::sqrt(length) * normalisation / (smallest + 0.0);
}

} // namespace korvane
