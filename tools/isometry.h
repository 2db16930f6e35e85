// What an affine map that keeps lengths is: a translation, a rotation, a mirror image, or else.
#pragma once

#include "common/matrix3.h"

namespace korvane::tools {

enum class IsometryKind { translation, rotation, mirror, general }; // the simple ones first

struct Isometry {
    IsometryKind kind;
    Vec3 direction; // of the translation with its length, of the axis, or normal to the mirror
    Vec3 point;     // on the axis or the mirror
    double angle;   // of the rotation in degrees, seen against the axis
};

/// Of x -> matrix x + offset. Coordinates count as equal within the tolerance in a region of so large a size.
Isometry classify(const Matrix3 &matrix, Vec3 offset, double size, double tolerance);

} // namespace korvane::tools
