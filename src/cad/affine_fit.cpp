// Fitting an affine map to one, two, three, or four and more pairs of points: mathematics without any CAD.
//
// Three or four points span a frame of unit vectors: those along the edges that leave the first point and,
// for three points, the normal of the plane that they span. The map carries the first source point to the
// first target point and the frame of the source to that of the target, so lengths along the edges are kept
// even where those of source and target differ within the tolerance. Cost: constant.
//
// Every comparison lets pass what is not a number. Coordinates of that kind thus end in a map of such values,
// or in none if a pivot is 0.
#include "cad/affine_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace korvane {

namespace {

constexpr double offset_tolerance = 0.001; // of two offsets, relative to the second
constexpr double length_tolerance = 0.08;  // of corresponding edges, relative to the longer one
constexpr double largest_cosine = 0.99;    // between the two edges of three points
constexpr double smallest_volume = 0.02;   // of the frame of four points
constexpr double shape_tolerance = 0.2;    // of corresponding cosines or volumes

using Frame = std::array<Vec3, 3>;

/// The frame spanned by points of the source and that spanned by the corresponding points of the target.
struct Frames {
    Frame source, target;
};

/// Points packed as x, y, z, counted from 0.
struct PackedPoints {
    const double *coordinates;

    Vec3 operator[](std::size_t point) const
    {
        const double *xyz = coordinates + 3 * point;
        return {xyz[0], xyz[1], xyz[2]};
    }
};

struct PointPairs {
    PackedPoints source, target;
};

/// Makes two corresponding edges unit vectors. False if one has no length or the lengths do not agree.
[[nodiscard]] bool try_normalise(Vec3 &source, Vec3 &target)
{
    const double source_length = norm(source);
    const double target_length = norm(target);
    if (source_length == 0 || target_length == 0)
        return false;
    if (std::fabs(source_length - target_length) > length_tolerance * std::max(source_length, target_length))
        return false;
    source = source / source_length;
    target = target / target_length;
    return true;
}

/// Sets the first `count` vectors of the frames to the directions of the edges from the first points to the
/// next ones.
[[nodiscard]] bool try_span(PointPairs points, std::size_t count, Frames &frames)
{
    for (std::size_t i = 0; i < count; ++i) {
        frames.source[i] = points.source[i + 1] - points.source[0];
        frames.target[i] = points.target[i + 1] - points.target[0];
        if (!try_normalise(frames.source[i], frames.target[i]))
            return false;
    }
    return true;
}

/// Completes a frame by the normal of its first two vectors.
void add_normal(Frame &frame)
{
    const Vec3 normal = cross(frame[0], frame[1]);
    frame[2] = normal / norm(normal);
}

[[nodiscard]] bool try_frames_of_triangles(PointPairs points, Frames &frames)
{
    if (!try_span(points, 2, frames))
        return false;
    // Kept on purpose: angles of opposite cosines agree, because only magnitudes are compared.
    const double source_cosine = std::fabs(dot(frames.source[0], frames.source[1]));
    const double target_cosine = std::fabs(dot(frames.target[0], frames.target[1]));
    if (source_cosine > largest_cosine || target_cosine > largest_cosine ||
        std::fabs(source_cosine - target_cosine) > shape_tolerance)
        return false;
    add_normal(frames.source);
    add_normal(frames.target);
    return true;
}

Matrix3 matrix_of(const Frame &frame)
{
    return matrix_of_columns(frame[0], frame[1], frame[2]);
}

[[nodiscard]] bool try_frames_of_tetrahedra(PointPairs points, Frames &frames)
{
    if (!try_span(points, 3, frames))
        return false;
    // Kept on purpose: mirror images agree, because only magnitudes are compared.
    const double source_volume = std::fabs(determinant(matrix_of(frames.source)));
    const double target_volume = std::fabs(determinant(matrix_of(frames.target)));
    return !(source_volume < smallest_volume || target_volume < smallest_volume ||
             std::fabs(source_volume - target_volume) > shape_tolerance);
}

/// The matrix that carries the frame of the source to that of the target.
[[nodiscard]] bool try_fit_matrix(PointPairs points, int32_t pair_count, Matrix3 &matrix)
{
    Frames frames;
    if (!(pair_count == 3 ? try_frames_of_triangles(points, frames)
                          : try_frames_of_tetrahedra(points, frames)))
        return false;
    Matrix3 inverse;
    if (!try_invert(matrix_of(frames.source), inverse))
        return false;
    matrix = matrix_of(frames.target) * inverse;
    return true;
}

/// Two pairs agree if they are the same translation.
[[nodiscard]] bool is_translation(PointPairs points)
{
    const Vec3 first = points.target[0] - points.source[0];
    const Vec3 second = points.target[1] - points.source[1];
    return !(norm(first - second) > offset_tolerance * norm(second));
}

} // namespace

AffineFit fit_affine_map(
    const double *source_points, const double *target_points, int32_t pair_count, AffineMap &map)
{
    const PointPairs points{{source_points}, {target_points}};
    if (pair_count < 1)
        return AffineFit::impossible;
    if (pair_count == 2 && !is_translation(points))
        return AffineFit::none;
    // Kept on purpose: for one or two pairs the matrix stays zero, so that every point goes to the first
    // target point, because they do not determine a frame.
    Matrix3 matrix{};
    if (pair_count >= 3 && !try_fit_matrix(points, pair_count, matrix))
        return AffineFit::impossible;
    map = {matrix, points.source[0], points.target[0]};
    return AffineFit::found;
}

korvane_status_t apply_affine_map(const double source[3], double target[3], void *map)
{
    const auto &[matrix, centre, translation] = *static_cast<const AffineMap *>(map);
    const Vec3 offset = Vec3{source[0], source[1], source[2]} - centre;
    target[0] = dot(matrix.rows[0], offset) + translation.x;
    target[1] = dot(matrix.rows[1], offset) + translation.y;
    target[2] = dot(matrix.rows[2], offset) + translation.z;
    return STATUS_OK;
}

} // namespace korvane
