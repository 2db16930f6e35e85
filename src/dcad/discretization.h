// The discretization of an edge: its vertices, and property bits.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvane.h>

#include "common/array.h"

namespace korvane {

/// The arrays hold at least `vertex_count` vertices; what they hold beyond is zero.
struct EdgeVertices {
    int32_t vertex_count;
    Array<double> parameters; // 1 per vertex
    Array<double> uv;         // 2 per vertex
    Array<double> xyz;        // 3 per vertex
    Array<int32_t> tags;      // 1 per vertex
};

} // namespace korvane

struct korvane_dcad_edge_discretization_s : korvane::EdgeVertices {
    uint32_t properties;
};
