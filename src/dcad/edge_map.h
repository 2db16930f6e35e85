// The map from the edges of a CAD model to their discretizations, by the addresses of the edges.
//
// The edges are numbered by a major set, and the values lie in an array by those numbers. Invariants: every
// numbered edge has a discretization, which the map owns; nothing is removed. Cost: a search walks one
// bucket, or asks the finder of the major set once a bucket is long, because the number of buckets never
// grows.
#pragma once

#include <cstdint>

#include <korvane.h>

#include "common/array.h"
#include "common/memory.h"
#include "dcad/discretization.h"
#include "tags/major_set.h"

namespace korvane {

/// Edge handles as keys of a major set.
struct edge_handle {
    using value_type = const korvane_cad_edge_t *;

    /// Kept on purpose: only the low 32 bits of an address count, because they tell edges apart that lie less
    /// than 4 GiB from each other.
    static uint32_t low_bits(value_type edge)
    {
        return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(edge));
    }
    /// Addresses are multiples of 8.
    template <class Count>
    static uint32_t bucket(value_type edge, Count bucket_count)
    {
        return (low_bits(edge) >> 3) % bucket_count;
    }
    static bool equal(value_type a, value_type b) { return low_bits(a) == low_bits(b); }
    static uint64_t packed(value_type edge) { return low_bits(edge); }
};

struct EdgeMap {
    // To be read only.
    tuple_major_set_t<edge_handle> edges;
    Array<korvane_dcad_edge_discretization_t *> values; // by number; owned

    EdgeMap() = default;
    EdgeMap(const EdgeMap &) = delete;
    EdgeMap &operator=(const EdgeMap &) = delete;
    ~EdgeMap();

    /// Makes an empty map with as many buckets as room for entries. To be called once.
    [[nodiscard]] bool try_create(int32_t capacity);

    /// The discretization of an edge, or null.
    [[nodiscard]] korvane_dcad_edge_discretization_t *find(const korvane_cad_edge_t *edge) const;

    /// Adds an empty discretization for an edge that has none, and gives it; null, without change, if memory
    /// runs out.
    [[nodiscard]] korvane_dcad_edge_discretization_t *try_add(const korvane_cad_edge_t *edge);

  private:
    [[nodiscard]] bool try_make_place();
};

} // namespace korvane
