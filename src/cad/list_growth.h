// The growth of the lists of a CAD model, whose capacity is stored beside their count.
#pragma once

#include <cstdint>

#include "common/array.h"

namespace korvane {

/// What most lists that are full grow to.
[[nodiscard]] constexpr int64_t doubled_capacity(int32_t capacity)
{
    return 2 * int64_t{capacity};
}

/// Makes room for one more than `count` values; new places are zero. What a full list grows to can be beyond
/// what 32 bits hold: then, and if memory runs out, the result is false and nothing has changed.
template <int64_t (*grown_capacity)(int32_t capacity) = doubled_capacity, class Value>
[[nodiscard]] bool try_make_place(Array<Value> &values, int32_t &capacity, int32_t count)
{
    if (count < capacity)
        return true;
    const int64_t grown = grown_capacity(capacity);
    if (grown <= count || grown > INT32_MAX || !values.try_resize_zeroed(static_cast<std::size_t>(grown)))
        return false;
    capacity = static_cast<int32_t>(grown);
    return true;
}

} // namespace korvane
