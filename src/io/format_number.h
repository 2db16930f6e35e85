// Numbers as text, exactly as printf writes them in the C locale, whatever the locale of the client.
#pragma once

#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>

#include "io/decimal_digits.h"

namespace korvane {

/// The room that the functions below need: more than the longest text that they write.
inline constexpr std::size_t number_room = 48;

/// Writes as "%d" and gives the end of the text.
inline char *format_integer(char *text, int32_t value)
{
    if (value < 0 || value >= 100'000'000) [[unlikely]]
        return std::to_chars(text, text + number_room, value).ptr;
    const std::uint64_t digits = spread_digits(static_cast<std::uint32_t>(value));
    // The last digit stays even if it is zero.
    const int leading_zeros = std::countr_zero(digits | std::uint64_t{1} << 56) / 8;
    store_characters(text, to_characters(digits) >> (8 * leading_zeros));
    return text + 8 - leading_zeros;
}

/// Writes as "%.15lg" and gives the end of the text.
[[nodiscard]] char *format_real(char *text, double value);

/// Writes as "%g" and gives the end of the text.
[[nodiscard]] char *format_float(char *text, float value);

} // namespace korvane
