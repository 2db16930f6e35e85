// The record of a periodicity between lists of faces or edges.
#pragma once

#include <cstdint>

#include "common/array.h"

namespace korvane {

struct MultiplePeriodicity {
    Array<int32_t> source_ids;
    Array<int32_t> target_ids;
};

} // namespace korvane
