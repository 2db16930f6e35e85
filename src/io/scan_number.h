// Numbers in text, read as "%d", "%f" and "%lf" of the C locale read them, whatever the locale of the client.
//
// Each function takes a text that begins with the number (blanks were passed over), that ends at `limit`, and
// that is followed by zeros to read ahead in (see FileStream::overhang). It gives the end of the number, or
// null if there is none. Integers outside 32 bits give the nearest one that is inside; reals outside their
// range give an infinity or a zero. Usual numbers take a path without loops over digits: eight digits are
// converted at a time, and a decimal whose digits fit 53 bits and whose power of ten is exact needs one
// multiplication or division, which rounds correctly. Everything else is unusual.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "io/decimal_digits.h"

namespace korvane {

[[nodiscard]] const char *scan_unusual(const char *text, const char *limit, int32_t &value);
[[nodiscard]] const char *scan_unusual(const char *text, const char *limit, float &value);
[[nodiscard]] const char *scan_unusual(const char *text, const char *limit, double &value);

namespace scan_detail {

/// All powers of ten that are doubles.
inline constexpr double exact_powers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12,
    1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
inline constexpr int max_power = 22;

/// The first `count` of the digits, 1 to 8, at the end, behind zeros.
inline std::uint64_t keep_digits(std::uint64_t digits, int count)
{
    return digits << ((64 - 8 * count) & 63);
}

/// Appends the digits from `text` on to a number (modulo 2^64) and gives their end.
inline const char *scan_digits(const char *text, std::uint64_t &number)
{
    for (;;) {
        const std::uint64_t characters = load_characters(text);
        const int count = std::countr_zero(mark_others(characters)) / 8;
        if (count == 0)
            return text;
        number = number * powers_of_ten[count] + join_digits(keep_digits(to_digits(characters), count));
        text += count;
        if (count < 8)
            return text;
    }
}

inline bool is_sign(char character)
{
    return character == '-' || character == '+';
}

/// Appends a decimal exponent to `exponent` if there is one: its end, `text` itself if there is none, null if
/// it is too long for this path.
inline const char *scan_exponent(const char *text, int64_t &exponent)
{
    if ((*text | 0x20) != 'e')
        return text;
    const char *sign = text + 1;
    std::uint64_t magnitude = 0;
    const char *digits = sign + (is_sign(*sign) ? 1 : 0);
    const char *end = scan_digits(digits, magnitude);
    if (end == digits)
        return text;
    if (end - digits > 8)
        return nullptr;
    exponent += *sign == '-' ? -static_cast<int64_t>(magnitude) : static_cast<int64_t>(magnitude);
    return end;
}

} // namespace scan_detail

/// An integer of at most seven digits, or null.
[[nodiscard]] inline const char *scan_usual(const char *text, int32_t &value)
{
    using namespace scan_detail;
    const std::uint64_t characters = load_characters(text);
    const std::uint64_t others = mark_others(characters);
    const int count = std::countr_zero(others) / 8;
    if (others != 0 && count != 0) [[likely]] {
        value = static_cast<int32_t>(join_digits(keep_digits(to_digits(characters), count)));
        return text + count;
    }
    if (*text != '-' || text[1] == '-')
        return nullptr;
    int32_t magnitude = 0;
    const char *end = scan_usual(text + 1, magnitude);
    value = -magnitude;
    return end;
}

/// A decimal of few digits, or null.
[[nodiscard]] inline const char *scan_usual(const char *text, double &value)
{
    using namespace scan_detail;
    const bool negative = *text == '-';
    if (is_sign(*text))
        ++text;
    std::uint64_t mantissa = 0;
    const char *end = scan_digits(text, mantissa);
    int64_t digit_count = end - text;
    int64_t exponent = 0;
    if (*end == '.') {
        const char *fraction = end + 1;
        end = scan_digits(fraction, mantissa);
        exponent = fraction - end;
        digit_count += end - fraction;
    }
    // Twenty digits may be more than 64 bits; a number of no digit is none or has a name; "0x" starts a
    // hexadecimal one.
    if (digit_count == 0 || digit_count > 19 || (*end | 0x20) == 'x')
        return nullptr;
    end = scan_exponent(end, exponent);
    if (end == nullptr || mantissa > (std::uint64_t{1} << 53) || exponent < -max_power ||
        exponent > max_power)
        return nullptr;
    const auto whole = static_cast<double>(mantissa);
    const double magnitude = exponent < 0 ? whole / exact_powers[-exponent] : whole * exact_powers[exponent];
    value = negative ? -magnitude : magnitude;
    return end;
}

/// Rounds a decimal that was rounded to double to float. Rounding twice only differs from rounding once where
/// the double lies just between two floats; below the normal floats, these lie elsewhere. False there.
[[nodiscard]] inline bool round_again(double close, float &value)
{
    const bool between = (std::bit_cast<std::uint64_t>(close) & 0x1FFFFFFF) == 0x10000000;
    const bool normal = close == 0 || std::abs(close) >= double{std::numeric_limits<float>::min()};
    value = static_cast<float>(close);
    return !between && normal;
}

/// As above.
[[nodiscard]] inline const char *scan_usual(const char *text, float &value)
{
    double close = 0;
    const char *end = scan_usual(text, close);
    return end != nullptr && round_again(close, value) ? end : nullptr;
}

/// As "%d", "%f" and "%lf".
template <class Value>
[[nodiscard]] const char *scan_number(const char *text, const char *limit, Value &value)
{
    const char *end = scan_usual(text, value);
    return end != nullptr ? end : scan_unusual(text, limit, value);
}

} // namespace korvane
