// Eight decimal digits at a time, one per byte of a word, the first of them in the lowest byte.
//
// The conversions work on all bytes at once: pairs, then fours, then eights of digits, by multiplications
// that shift and add (or divide) in every part of the word.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "io/byte_order.h"

namespace korvane {

/// All powers of ten of 64 bits.
inline constexpr std::uint64_t powers_of_ten[] = {1, 10, 100, 1'000, 10'000, 100'000, 1'000'000, 10'000'000,
    100'000'000, 1'000'000'000, 10'000'000'000, 100'000'000'000, 1'000'000'000'000, 10'000'000'000'000,
    100'000'000'000'000, 1'000'000'000'000'000, 10'000'000'000'000'000, 100'000'000'000'000'000,
    1'000'000'000'000'000'000, 10'000'000'000'000'000'000u};

inline std::uint64_t load_characters(const char *text)
{
    const auto characters = load<std::uint64_t>(text);
    return std::endian::native == std::endian::little ? characters : reversed(characters);
}

inline void store_characters(char *text, std::uint64_t characters)
{
    if (std::endian::native != std::endian::little)
        characters = reversed(characters);
    std::memcpy(text, &characters, sizeof characters);
}

/// Digits out of characters; where a character is no digit, the bytes from it on are of no use.
constexpr std::uint64_t to_digits(std::uint64_t characters)
{
    return characters - 0x3030303030303030;
}

constexpr std::uint64_t to_characters(std::uint64_t digits)
{
    return digits + 0x3030303030303030;
}

/// The high bit of every byte that is no digit, true for the lowest such byte and those below it.
constexpr std::uint64_t mark_others(std::uint64_t characters)
{
    return ((characters + 0x4646464646464646) | to_digits(characters)) & 0x8080808080808080;
}

/// The number that eight digits are.
constexpr std::uint64_t join_digits(std::uint64_t digits)
{
    constexpr std::uint64_t every_other_pair = 0x000000FF000000FF;
    constexpr std::uint64_t pairs_0_2 = 100 + (std::uint64_t{1'000'000} << 32);
    constexpr std::uint64_t pairs_1_3 = 1 + (std::uint64_t{10'000} << 32);
    digits = digits * 10 + (digits >> 8);
    return ((digits & every_other_pair) * pairs_0_2 + ((digits >> 16) & every_other_pair) * pairs_1_3) >> 32;
}

/// The eight digits of a number below 10^8.
constexpr std::uint64_t spread_digits(std::uint32_t number)
{
    // 10486 / 2^20 and 103 / 2^10 are 1/100 and 1/10 closely enough for the four and two digits that they
    // divide.
    const std::uint64_t fours = number / 10'000 | std::uint64_t{number % 10'000} << 32;
    const std::uint64_t hundreds = ((fours * 10'486) >> 20) & 0x0000007F0000007F;
    const std::uint64_t pairs = hundreds | (fours - 100 * hundreds) << 16;
    const std::uint64_t tens = ((pairs * 103) >> 10) & 0x000F000F000F000F;
    return tens | (pairs - 10 * tens) << 8;
}

static_assert(spread_digits(12'345'678) == 0x0807060504030201);
static_assert(spread_digits(99'999'999) == 0x0909090909090909);
static_assert(join_digits(0x0807060504030201) == 12'345'678);

} // namespace korvane
