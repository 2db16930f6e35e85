// The support vertices of an edge: a record that the copies of an edge share with it.
#pragma once

#include <cstdint>
#include <memory>

#include "common/array.h"

namespace korvane {

/// The arrays hold at least `count` vertices.
struct SupportVertices {
    int32_t count;
    Array<double> params; // 1 per vertex
    Array<double> uvs;    // 2 per vertex
    Array<double> xyzs;   // 3 per vertex
    int32_t share_count;  // of edges that point to the record
};

/// Gives up one share; the record goes with the last one.
struct Unshare {
    void operator()(SupportVertices *record) const;
};

using SharedSupportVertices = std::unique_ptr<SupportVertices, Unshare>;

/// One more share in the record of another edge, which may be null.
[[nodiscard]] SharedSupportVertices share(const SharedSupportVertices &other);

} // namespace korvane
