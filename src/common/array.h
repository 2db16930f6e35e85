// A growable array of plain values whose only fallible operation is resizing.
//
// Invariant: `data()` holds `size()` values, and is null exactly when the size is 0. There is no spare
// capacity: who grows step by step states the growth. A failed resize leaves the array as it was. Cost: one
// reallocation per resize; fresh zeroed blocks come untouched from the system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>
#include <utility>

namespace korvane {

template <class T>
class Array {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    // NOLINTNEXTLINE(bugprone-sizeof-expression): a value may be a pointer
    static constexpr std::size_t value_size = sizeof(T);

    Array() = default;
    Array(Array &&other) noexcept
        : values(std::exchange(other.values, nullptr)), count(std::exchange(other.count, 0))
    {}
    Array &operator=(Array &&other) noexcept
    {
        std::swap(values, other.values);
        std::swap(count, other.count);
        return *this;
    }
    ~Array() { std::free(values); }

    /// Keeps the values up to the smaller size; new ones are not initialised.
    [[nodiscard]] bool try_resize(std::size_t new_count)
    {
        if (new_count == count)
            return true;
        if (new_count == 0) {
            clear();
            return true;
        }
        if (new_count > PTRDIFF_MAX / value_size)
            return false;
        void *block = std::realloc(values, new_count * value_size);
        if (block == nullptr)
            return false;
        values = static_cast<T *>(block);
        count = new_count;
        return true;
    }

    /// As `try_resize`, with all bytes of new values zero. An array that at least doubles moves to a fresh
    /// block, so that a size which a file or a client merely claims costs no more than what is then used.
    [[nodiscard]] bool try_resize_zeroed(std::size_t new_count)
    {
        if (new_count / 2 >= count && new_count != 0) {
            if (new_count > PTRDIFF_MAX / value_size)
                return false;
            void *block = std::calloc(new_count, value_size);
            if (block == nullptr)
                return false;
            if (count > 0)
                std::memcpy(block, static_cast<const void *>(values), count * value_size);
            std::free(values);
            values = static_cast<T *>(block);
            count = new_count;
            return true;
        }
        const std::size_t old_count = count;
        if (!try_resize(new_count))
            return false;
        if (new_count > old_count)
            std::memset(static_cast<void *>(values + old_count), 0, (new_count - old_count) * value_size);
        return true;
    }

    void clear()
    {
        std::free(std::exchange(values, nullptr));
        count = 0;
    }

    [[nodiscard]] T *data() { return values; }
    [[nodiscard]] const T *data() const { return values; }
    [[nodiscard]] std::size_t size() const { return count; }
    [[nodiscard]] bool empty() const { return count == 0; }
    [[nodiscard]] T *begin() { return values; }
    [[nodiscard]] T *end() { return values + count; }
    [[nodiscard]] const T *begin() const { return values; }
    [[nodiscard]] const T *end() const { return values + count; }
    [[nodiscard]] T &operator[](std::size_t position) { return values[position]; }
    [[nodiscard]] const T &operator[](std::size_t position) const { return values[position]; }

  private:
    T *values = nullptr;
    std::size_t count = 0;
};

/// Makes `target` a copy of the `count` values at `source`; on failure `target` stays as it was.
template <class T>
[[nodiscard]] bool try_assign(Array<T> &target, const T *source, std::size_t count)
{
    Array<T> copy;
    if (!copy.try_resize(count))
        return false;
    if (count > 0)
        std::memcpy(static_cast<void *>(copy.data()), source, count * Array<T>::value_size);
    target = std::move(copy);
    return true;
}

} // namespace korvane
