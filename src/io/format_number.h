// Texts, and numbers as text, exactly as printf writes them in the C locale, whatever the locale of the
// client.
#pragma once

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "io/decimal_digits.h"

namespace korvane {

/// The room that the functions below need: more than the longest text that they write.
inline constexpr std::size_t number_room = 48;

/// Writes a text and gives its end.
inline char *put_text(char *text, std::string_view piece)
{
    return std::copy(piece.begin(), piece.end(), text);
}

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

/// Writes as "%<width>d", of a width of 8 or more, and gives the end of the text.
template <int width>
char *format_integer_field(char *text, int64_t value)
{
    static_assert(width >= 8 && width <= static_cast<int>(number_room));
    if (value < 0 || value >= 100'000'000) [[unlikely]] {
        char digits[number_room];
        char *const end = std::to_chars(digits, digits + number_room, value).ptr;
        text = std::fill_n(text, std::max<std::ptrdiff_t>(width - (end - digits), 0), ' ');
        return std::copy(digits, end, text);
    }
    const std::uint64_t digits = spread_digits(static_cast<std::uint32_t>(value));
    const int leading_zeros = std::countr_zero(digits | std::uint64_t{1} << 56) / 8;
    const std::uint64_t blanks = ((std::uint64_t{1} << (8 * leading_zeros)) - 1) & 0x1010101010101010;
    text = std::fill_n(text, width - 8, ' ');
    store_characters(text, to_characters(digits) - blanks); // a blank is '0' - 0x10
    return text + 8;
}

/// Writes as "%16.8E" and gives the end of the text.
[[nodiscard]] char *format_scientific_field(char *text, double value);

/// Writes as "%.15lg" and gives the end of the text.
[[nodiscard]] char *format_real(char *text, double value);

/// Writes as "%g" and gives the end of the text.
[[nodiscard]] char *format_float(char *text, float value);

} // namespace korvane
