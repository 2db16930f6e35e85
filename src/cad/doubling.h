// The growth of the lists of a CAD model: a full one doubles.
#pragma once

#include <cstdint>

#include "common/array.h"

namespace korvane {

/// The capacity that a full list grows to, or 0 if it cannot grow.
[[nodiscard]] constexpr int32_t doubled_capacity(int32_t capacity)
{
    return capacity > INT32_MAX / 2 ? 0 : 2 * capacity;
}

/// Makes room for one more than `count` values; new places are zero. False, without change, if that fails.
template <class Value>
[[nodiscard]] bool try_make_place(Array<Value> &values, int32_t &capacity, int32_t count)
{
    if (count < capacity)
        return true;
    const int32_t doubled = doubled_capacity(capacity);
    if (doubled == 0 || !values.try_resize_zeroed(static_cast<std::size_t>(doubled)))
        return false;
    capacity = doubled;
    return true;
}

} // namespace korvane
