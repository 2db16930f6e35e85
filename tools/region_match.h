// The isometry that carries one set of points to another, found without knowing which goes with which.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <korvane.h>

#include "isometry.h"

namespace korvane::tools {

struct RegionPoint {
    int32_t vertex;
    Vec3 position;
};

struct RegionMatch {
    Matrix3 matrix; // of x -> matrix x + offset
    Vec3 offset;
    Isometry isometry;
    std::vector<std::pair<int32_t, int32_t>> pairs; // of vertices
    double residual = 0;                            // the largest distance between partners
    std::vector<int32_t> unmatched_source;
    std::vector<int32_t> unmatched_target;
};

/// The match with the most pairs, and among those the simplest one. Nothing if no map pairs at least half of
/// the points of the smaller set, or if the points lie in one line.
std::optional<RegionMatch> match_regions(korvane_context_t *context, const std::vector<RegionPoint> &source,
    const std::vector<RegionPoint> &target, double tolerance);

/// The diagonal of the box around points.
double size_of(const std::vector<RegionPoint> &points);

} // namespace korvane::tools
