// The library's heap: every object and every buffer comes from here, zeroed, and goes back through here.
// Nothing in this file throws; what can fail returns null.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace korvane {

/// A zeroed block, or null. Released with `free_block`.
[[nodiscard]] inline void *allocate_zeroed(std::size_t bytes)
{
    return std::calloc(1, bytes);
}

inline void free_block(void *block)
{
    std::free(block);
}

/// A value-initialised object, or null.
template <class T>
[[nodiscard]] T *create()
{
    static_assert(std::is_nothrow_default_constructible_v<T>);
    static_assert(alignof(T) <= alignof(std::max_align_t));
    void *block = allocate_zeroed(sizeof(T));
    return block == nullptr ? nullptr : ::new (block) T();
}

template <class T>
void destroy(T *object)
{
    if (object == nullptr)
        return;
    object->~T();
    free_block(object);
}

struct Destroyer {
    template <class T>
    void operator()(T *object) const
    {
        destroy(object);
    }
};

/// An object of `create` that is destroyed with its owner; `release()` hands it on.
template <class T>
using Owned = std::unique_ptr<T, Destroyer>;

template <class T>
[[nodiscard]] Owned<T> create_owned()
{
    return Owned<T>(create<T>());
}

} // namespace korvane
