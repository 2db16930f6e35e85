// Decimal texts of reals in a fixed number of significant digits.
//
// A magnitude of 1e-4 up to 10^digits is m * 2^-s with 53 bits of m, and its wanted digits are the whole part
// of m * 10^q * 2^-s with 0 <= q <= 19: that product fits 128 bits, so the digits and the part that is cut
// are exact, and rounding (half to even, as printf does) needs no estimate. Everything else, with or without
// exponent, infinities and the like, is left to the standard library, whose result is exact too.
#include "io/format_number.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace korvane {

namespace {

__extension__ using wide = unsigned __int128;

/// The magnitude times 10^scale, rounded to an integer.
std::uint64_t scaled_and_rounded(std::uint64_t mantissa, int shift, int scale)
{
    const wide product = static_cast<wide>(mantissa) * powers_of_ten[scale];
    const auto whole = static_cast<std::uint64_t>(product >> shift);
    const wide cut = product & ((static_cast<wide>(1) << shift) - 1);
    const wide half = static_cast<wide>(1) << (shift - 1);
    return whole + (cut > half || (cut == half && (whole & 1) != 0) ? 1 : 0);
}

/// Writes the 15 digits of a number, in 16 characters, and gives how many remain without the zeros at its
/// end.
int put_digits(char *text, std::uint64_t number, std::integral_constant<int, 15>)
{
    const std::uint64_t first = spread_digits(static_cast<std::uint32_t>(number / 100'000'000)) >> 8;
    const std::uint64_t last = spread_digits(static_cast<std::uint32_t>(number % 100'000'000));
    store_characters(text, to_characters(first));
    store_characters(text + 7, to_characters(last));
    return last == 0 ? 8 - std::countl_zero(first) / 8 : 15 - std::countl_zero(last) / 8;
}

/// As above, of a number of 6 digits.
int put_digits(char *text, std::uint64_t number, std::integral_constant<int, 6>)
{
    const std::uint64_t digits = spread_digits(static_cast<std::uint32_t>(number)) >> 16;
    store_characters(text, to_characters(digits));
    return 8 - std::countl_zero(digits) / 8;
}

/// Writes digits, the first of them at power `power` of ten, without zeros at the end of a fraction.
template <int digit_count>
char *put_decimal(char *text, std::uint64_t number, int power)
{
    char digits[2 * 16] = {};
    const int significant = put_digits(digits, number, std::integral_constant<int, digit_count>());
    if (power < 0) {
        constexpr std::array<char, 5> zeros = {'0', '.', '0', '0', '0'};
        std::memcpy(text, zeros.data(), zeros.size());
        std::memcpy(text + 1 - power, digits, 16);
        return text + 1 - power + significant;
    }
    std::memcpy(text, digits, 16);
    if (significant <= power + 1)
        return text + power + 1;
    text[power + 1] = '.';
    std::memcpy(text + power + 2, digits + power + 1, 16);
    return text + significant + 1;
}

/// Writes a positive magnitude by the exact path, or gives null.
template <int digit_count>
char *format_usual(char *text, double magnitude)
{
    if (!(magnitude >= 1e-4 && magnitude < static_cast<double>(powers_of_ten[digit_count])))
        return nullptr;
    const auto bits = std::bit_cast<std::uint64_t>(magnitude);
    const int exponent = static_cast<int>(bits >> 52) - 1023;
    const std::uint64_t mantissa = (bits & ((std::uint64_t{1} << 52) - 1)) | (std::uint64_t{1} << 52);
    int power = (exponent * 1233) >> 12; // of the first digit, or one less
    std::uint64_t number = scaled_and_rounded(mantissa, 52 - exponent, digit_count - 1 - power);
    if (number >= powers_of_ten[digit_count]) {
        ++power;
        if (power == digit_count)
            return nullptr;
        number = scaled_and_rounded(mantissa, 52 - exponent, digit_count - 1 - power);
    }
    return put_decimal<digit_count>(text, number, power);
}

template <int digit_count, class Real>
char *format(char *text, Real value)
{
    if (value == 0) {
        if (std::signbit(value))
            *text++ = '-';
        *text = '0';
        return text + 1;
    }
    if (std::signbit(value) && !std::isnan(value)) {
        *text++ = '-';
        value = -value;
    }
    char *end = format_usual<digit_count>(text, value);
    if (end != nullptr)
        return end;
    return std::to_chars(text, text + number_room, value, std::chars_format::general, digit_count).ptr;
}

} // namespace

char *format_real(char *text, double value)
{
    return format<15>(text, value);
}

char *format_float(char *text, float value)
{
    // Every float is a double, and its decimal digits are the same.
    return format<6>(text, static_cast<double>(value));
}

} // namespace korvane
