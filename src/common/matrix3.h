// A matrix of 3 rows of 3, its determinant and its inverse.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

#include "common/vec3.h"

namespace korvane {

struct Matrix3 {
    std::array<Vec3, 3> rows;
};

[[nodiscard]] constexpr Matrix3 matrix_of_columns(Vec3 a, Vec3 b, Vec3 c)
{
    return {{{{a.x, b.x, c.x}, {a.y, b.y, c.y}, {a.z, b.z, c.z}}}};
}

[[nodiscard]] constexpr Matrix3 transposed(const Matrix3 &a)
{
    return matrix_of_columns(a.rows[0], a.rows[1], a.rows[2]);
}

constexpr Vec3 operator*(const Matrix3 &a, Vec3 v)
{
    return {dot(a.rows[0], v), dot(a.rows[1], v), dot(a.rows[2], v)};
}

constexpr Matrix3 operator*(const Matrix3 &a, const Matrix3 &b)
{
    const Matrix3 columns = transposed(b);
    return matrix_of_columns(a * columns.rows[0], a * columns.rows[1], a * columns.rows[2]);
}

/// Expanded along the first column.
[[nodiscard]] constexpr double determinant(const Matrix3 &a)
{
    const Matrix3 columns = transposed(a);
    return dot(columns.rows[0], cross(columns.rows[1], columns.rows[2]));
}

namespace elimination {

/// dot(left, unknowns) = right.
struct Equation {
    Vec3 left;
    double right;
};

/// `equation` less the multiple of `pivot` that cancels `coefficient` of it.
constexpr Equation eliminate(const Equation &equation, const Equation &pivot, double Vec3::*coefficient)
{
    const double factor = equation.left.*coefficient / pivot.left.*coefficient;
    return {equation.left - factor * pivot.left, equation.right - factor * pivot.right};
}

/// The row to take first: the one with the largest coefficient of x, of equal ones the last.
inline std::ptrdiff_t first_pivot(const std::array<Equation, 3> &rows)
{
    const double x[] = {std::fabs(rows[0].left.x), std::fabs(rows[1].left.x), std::fabs(rows[2].left.x)};
    if (x[0] > x[1] && x[0] > x[2])
        return 0;
    return x[1] > x[2] ? 1 : 2;
}

} // namespace elimination

/// Finds x with a x = b by Gaussian elimination with partial pivoting. False, without writing x, if the
/// determinant or a pivot is exactly 0; what is not a number is neither, and never a row's reason to go
/// first.
[[nodiscard]] inline bool try_solve(const Matrix3 &a, Vec3 b, Vec3 &x)
{
    using namespace elimination;
    if (determinant(a) == 0)
        return false;
    std::array<Equation, 3> rows{{{a.rows[0], b.x}, {a.rows[1], b.y}, {a.rows[2], b.z}}};
    const auto first = rows.begin() + first_pivot(rows);
    std::rotate(rows.begin(), first, first + 1); // the others stay in order, which decides between equals
    if (rows[0].left.x == 0)
        return false;
    rows[1] = eliminate(rows[1], rows[0], &Vec3::x);
    rows[2] = eliminate(rows[2], rows[0], &Vec3::x);
    if (!(std::fabs(rows[1].left.y) > std::fabs(rows[2].left.y)))
        std::swap(rows[1], rows[2]);
    if (rows[1].left.y == 0)
        return false;
    rows[2] = eliminate(rows[2], rows[1], &Vec3::y);
    if (rows[2].left.z == 0)
        return false;
    const double z = rows[2].right / rows[2].left.z;
    const double y = (rows[1].right - rows[1].left.z * z) / rows[1].left.y;
    x = {(rows[0].right - rows[0].left.y * y - rows[0].left.z * z) / rows[0].left.x, y, z};
    return true;
}

/// Column by column. False, without writing, if a column cannot be solved for.
[[nodiscard]] inline bool try_invert(const Matrix3 &a, Matrix3 &inverse)
{
    Vec3 x, y, z;
    if (!try_solve(a, {1, 0, 0}, x) || !try_solve(a, {0, 1, 0}, y) || !try_solve(a, {0, 0, 1}, z))
        return false;
    inverse = matrix_of_columns(x, y, z);
    return true;
}

} // namespace korvane
