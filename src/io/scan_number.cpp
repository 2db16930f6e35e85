// The numbers that the quick paths leave: integers of many digits, reals that need more than 53 bits or have
// hexadecimal digits or names. They are rounded correctly by the standard library.
#include "io/scan_number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace korvane {

namespace {

using scan_detail::is_sign;

bool is_digit(char character)
{
    return character >= '0' && character <= '9';
}

bool is_hexadecimal_digit(char character)
{
    const char lower = static_cast<char>(character | 0x20);
    return is_digit(character) || (lower >= 'a' && lower <= 'f');
}

/// True if a number (in decimal or hexadecimal digits) that is no real of its type is too large, not too
/// small: that is, if the power of its first digit that counts is positive.
bool is_too_large(const char *text, const char *end, bool hexadecimal)
{
    int64_t power = 0;
    bool in_fraction = false;
    bool counts = false;
    for (; text != end && (*text == '.' || (hexadecimal ? is_hexadecimal_digit(*text) : is_digit(*text)));
         ++text) {
        if (*text == '.') {
            in_fraction = true;
            continue;
        }
        counts = counts || *text != '0';
        if (counts && !in_fraction)
            ++power;
        else if (!counts && in_fraction)
            --power;
    }
    power *= hexadecimal ? 4 : 1;
    if (text == end)
        return power > 0;
    ++text; // the letter of the exponent
    const bool negative = text != end && *text == '-';
    if (text != end && is_sign(*text))
        ++text;
    constexpr int64_t enough = int64_t{1} << 40; // more digits than a block holds
    int64_t exponent = 0;
    for (; text != end && exponent < enough; ++text)
        exponent = exponent * 10 + (*text - '0');
    return power + (negative ? -exponent : exponent) > 0;
}

/// Reads a number without sign in one notation; null if it is none.
template <class Real>
const char *scan_magnitude(const char *text, const char *limit, std::chars_format format, Real &magnitude)
{
    if (text == limit || is_sign(*text))
        return nullptr;
    const auto [end, failure] = std::from_chars(text, limit, magnitude, format);
    if (failure == std::errc::result_out_of_range) {
        const bool too_large = is_too_large(text, end, format == std::chars_format::hex);
        magnitude = too_large ? std::numeric_limits<Real>::infinity() : Real{0};
    } else if (failure != std::errc{}) {
        return nullptr;
    }
    return end;
}

template <class Real>
const char *scan_real(const char *text, const char *limit, Real &value)
{
    const bool negative = *text == '-';
    if (is_sign(*text))
        ++text;
    const bool hexadecimal = limit - text >= 2 && *text == '0' && (text[1] | 0x20) == 'x';
    Real magnitude = 0;
    const char *end = hexadecimal ? scan_magnitude(text + 2, limit, std::chars_format::hex, magnitude)
                                  : scan_magnitude(text, limit, std::chars_format::general, magnitude);
    if (end != nullptr)
        value = negative ? -magnitude : magnitude;
    return end;
}

} // namespace

const char *scan_unusual(const char *text, const char *, int32_t &value)
{
    const bool negative = *text == '-';
    if (is_sign(*text))
        ++text;
    if (!is_digit(*text))
        return nullptr;
    constexpr int64_t enough = int64_t{1} << 32;
    int64_t magnitude = 0;
    for (; is_digit(*text); ++text)
        magnitude = std::min(magnitude * 10 + (*text - '0'), enough);
    value = static_cast<int32_t>(std::clamp<int64_t>(negative ? -magnitude : magnitude,
        std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
    return text;
}

const char *scan_unusual(const char *text, const char *limit, double &value)
{
    return scan_real(text, limit, value);
}

const char *scan_unusual(const char *text, const char *limit, float &value)
{
    return scan_real(text, limit, value);
}

} // namespace korvane
