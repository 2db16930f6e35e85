// The affine map between two sets of points, fitted to corresponding points of them.
#pragma once

#include <cstdint>

#include <korvane.h>

#include "common/matrix3.h"

namespace korvane {

/// The image of a point is matrix * (point - centre) + translation.
struct AffineMap {
    Matrix3 matrix;
    Vec3 centre;
    Vec3 translation;
};
static_assert(sizeof(AffineMap) == 15 * sizeof(double));

enum class AffineFit : uint8_t {
    found,
    none,      // the points are accepted, but there is no map
    impossible // the points contradict each other, or do not determine a map
};

/// Fits a map to `pair_count` pairs of points (3 doubles each), of which the first four count. `map` is
/// written only if one is found.
[[nodiscard]] AffineFit fit_affine_map(
    const double *source_points, const double *target_points, int32_t pair_count, AffineMap &map);

/// Applies the AffineMap that `map` points to; `source` and `target` can be the same point. STATUS_OK.
korvane_status_t apply_affine_map(const double source[3], double target[3], void *map);

} // namespace korvane
