#include "isometry.h"

#include <cmath>
#include <numbers>

namespace korvane::tools {

namespace {

constexpr Matrix3 identity = {{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}};

Matrix3 sum(const Matrix3 &a, double factor, const Matrix3 &b)
{
    return {
        {{a.rows[0] + factor * b.rows[0], a.rows[1] + factor * b.rows[1], a.rows[2] + factor * b.rows[2]}}};
}

double largest_entry(const Matrix3 &a)
{
    double largest = 0;
    for (const Vec3 row : a.rows)
        largest =
            std::fmax(largest, std::fmax(std::fabs(row.x), std::fmax(std::fabs(row.y), std::fabs(row.z))));
    return largest;
}

/// Of a matrix whose rows are multiples of one vector: the unit vector of the longest row.
Vec3 common_direction(const Matrix3 &a)
{
    Vec3 longest = a.rows[0];
    for (const Vec3 row : a.rows)
        if (norm(row) > norm(longest))
            longest = row;
    return longest / norm(longest);
}

Matrix3 mirror_normal_to(Vec3 n)
{
    return sum(identity, -2, {{{n.x * n, n.y * n, n.z * n}}});
}

} // namespace

Isometry classify(const Matrix3 &matrix, Vec3 offset, double size, double tolerance)
{
    const double entry_tolerance = 4 * tolerance / size;
    const Matrix3 difference = sum(identity, -1, matrix);
    if (largest_entry(difference) <= entry_tolerance)
        return {IsometryKind::translation, offset, {}, 0};
    if (determinant(matrix) < 0) {
        const Vec3 normal = common_direction(difference);
        const Vec3 along = dot(offset, normal) * normal;
        const bool is_mirror = largest_entry(sum(matrix, -1, mirror_normal_to(normal))) <= entry_tolerance &&
                               norm(offset - along) <= 4 * tolerance;
        return {is_mirror ? IsometryKind::mirror : IsometryKind::general, normal, 0.5 * along, 0};
    }
    // Twice the sine times the axis, and twice the cosine.
    const auto &[x, y, z] = matrix.rows;
    const Vec3 turn = {z.y - y.z, x.z - z.x, y.x - x.y};
    const double angle = std::atan2(norm(turn), x.x + y.y + z.z - 1);
    // Near a half turn the matrix is close to 2 a a^T - I.
    Vec3 axis = angle > 3 ? common_direction(sum(matrix, 1, identity)) : turn / norm(turn);
    if (dot(axis, turn) < 0)
        axis = -1 * axis;
    const Vec3 along = dot(offset, axis) * axis, across = offset - along;
    const Vec3 point = 0.5 * (across + cross(axis, across) / std::tan(angle / 2));
    return {norm(along) <= 4 * tolerance ? IsometryKind::rotation : IsometryKind::general, axis, point,
        angle * 180 / std::numbers::pi};
}

} // namespace korvane::tools
