// The record of a periodicity between two lists of faces or edges under a transformation.
#pragma once

#include <cstdint>

#include <korvane.h>

#include "common/array.h"

namespace korvane {

struct MultiplePeriodicity {
    Array<int32_t> source_ids;
    Array<int32_t> target_ids;
    void *transformation_data;
    korvane_cad_transformation_t transformation; // null: none
    int32_t owns_data; // 1: transformation_data is an AffineMap of the record; 0: the client's

    ~MultiplePeriodicity();
};

/// The capacity that a full list of records grows to, which can be beyond what 32 bits hold.
[[nodiscard]] constexpr int64_t grown_multiple_periodicity_capacity(int32_t capacity)
{
    return int64_t{capacity} + 7;
}

/// The bytes that a list of identifiers takes.
[[nodiscard]] constexpr int64_t id_list_bytes(int32_t count)
{
    return int64_t{count} * int64_t{sizeof(int32_t)};
}

} // namespace korvane
