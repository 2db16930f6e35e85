// Sizing the arrays of an in-memory mesh.
#include "mesh/storage.h"

#include <limits>

#include "common/memory.h"

namespace korvane {

namespace {

/// The number of values of `count` elements, or a number that no allocation meets if it is out of range.
constexpr std::size_t value_count(int32_t count, int width)
{
    const std::uint64_t wanted = static_cast<std::uint64_t>(count) * static_cast<std::uint64_t>(width);
    constexpr std::size_t most = std::numeric_limits<std::size_t>::max();
    return wanted < most ? static_cast<std::size_t>(wanted) : most;
}

} // namespace

template <class Value, int width, class Size>
korvane_status_t Attribute<Value, width, Size>::fit(int32_t count)
{
    if (count < 0)
        return STATUS_ERROR;
    if (!values.try_resize_zeroed(value_count(count, width)))
        return STATUS_NOMEM;
    size = static_cast<Size>(count);
    return STATUS_OK;
}

template <class Value, int width, class Size>
Value *Attribute<Value, width, Size>::try_open(int32_t count)
{
    if (count < 1 || !values.try_resize(value_count(count, width)))
        return nullptr;
    size = static_cast<Size>(count);
    return values.data();
}

template <class Value, int width, class Size>
void Attribute<Value, width, Size>::truncate(int32_t count)
{
    count = std::max(count, 0);
    const std::size_t kept = value_count(count, width);
    if (kept >= values.size())
        return;
    if (values.try_resize(kept))
        size = static_cast<Size>(count);
    else // the array keeps its length, and the end of it reads as if it were gone
        std::fill(values.begin() + kept, values.end(), Value{});
}

template class Attribute<double, 3, double>;
template class Attribute<int32_t, 1>;
template class Attribute<int32_t, 2>;
template class Attribute<int32_t, 3>;
template class Attribute<int32_t, 4>;
template class Attribute<int32_t, 5>;
template class Attribute<int32_t, 8>;

void release_storage(void *storage)
{
    destroy(static_cast<korvane_mesh_storage_t *>(storage));
}

} // namespace korvane
