// Reversal of the bytes of words, and words at any address.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace korvane {

constexpr std::uint32_t reversed(std::uint32_t word)
{
    return (word >> 24) | ((word >> 8) & 0xFF00u) | ((word << 8) & 0xFF0000u) | (word << 24);
}

constexpr std::uint64_t reversed(std::uint64_t word)
{
    return (static_cast<std::uint64_t>(reversed(static_cast<std::uint32_t>(word))) << 32) |
           reversed(static_cast<std::uint32_t>(word >> 32));
}

static_assert(reversed(std::uint32_t{0x01020304}) == 0x04030201);
static_assert(reversed(std::uint64_t{0x0102030405060708}) == 0x0807060504030201);

template <class Word>
Word load(const void *bytes)
{
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

/// The value of 4 or 8 bytes, of either byte order.
template <class Value, bool opposite>
Value load_value(const void *bytes)
{
    static_assert(sizeof(Value) == 4 || sizeof(Value) == 8);
    if constexpr (opposite) {
        using Word = std::conditional_t<sizeof(Value) == 4, std::uint32_t, std::uint64_t>;
        return std::bit_cast<Value>(reversed(load<Word>(bytes)));
    } else {
        return load<Value>(bytes);
    }
}

} // namespace korvane
