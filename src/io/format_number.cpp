// Decimal texts of reals in a fixed number of significant digits.
//
// A magnitude up to 10^digits that is not too small is m * 2^-s with 53 bits of m, and its wanted digits are
// the whole part of m * 10^q * 2^-s with 0 <= q <= 19: that product fits 128 bits, so the digits and the part
// that is cut are exact, and rounding (half to even, as printf does) needs no estimate. Everything else, and
// infinities and the like, is left to the standard library, whose result is exact too.
#include "io/format_number.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace korvane {

namespace {

__extension__ using wide = unsigned __int128;

/// Significant digits as an integer, the first of them at power `power` of ten.
struct Decimal {
    std::uint64_t number;
    int power;
};

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

/// Writes digits without zeros at the end of a fraction.
template <int digit_count>
char *put_decimal(char *text, const Decimal &decimal)
{
    char digits[2 * 16] = {};
    const int power = decimal.power;
    const int significant = put_digits(digits, decimal.number, std::integral_constant<int, digit_count>());
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

/// Rounds a magnitude of 10^(digit_count - 19) or more by the exact path. False if it is too large for it.
template <int digit_count>
[[nodiscard]] bool round_usual(double magnitude, Decimal &decimal)
{
    if (!(magnitude < static_cast<double>(powers_of_ten[digit_count])))
        return false;
    const auto bits = std::bit_cast<std::uint64_t>(magnitude);
    const int exponent = static_cast<int>(bits >> 52) - 1023;
    const std::uint64_t mantissa = (bits & ((std::uint64_t{1} << 52) - 1)) | (std::uint64_t{1} << 52);
    int power = (exponent * 1233) >> 12; // of the first digit, or one less
    std::uint64_t number = scaled_and_rounded(mantissa, 52 - exponent, digit_count - 1 - power);
    if (number >= powers_of_ten[digit_count]) {
        ++power;
        if (power == digit_count)
            return false;
        number = scaled_and_rounded(mantissa, 52 - exponent, digit_count - 1 - power);
    }
    decimal = {number, power};
    return true;
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
    if (Decimal decimal; value >= 1e-4 && round_usual<digit_count>(value, decimal))
        return put_decimal<digit_count>(text, decimal);
    return std::to_chars(text, text + number_room, value, std::chars_format::general, digit_count).ptr;
}

/// Writes nine digits and a power of ten as "d.ddddddddE+dd".
char *put_scientific(char *text, const Decimal &decimal)
{
    const auto digits = static_cast<std::uint32_t>(decimal.number);
    const auto power = static_cast<unsigned>(std::abs(decimal.power));
    text[0] = static_cast<char>('0' + digits / 100'000'000);
    text[1] = '.';
    store_characters(text + 2, to_characters(spread_digits(digits % 100'000'000)));
    text[10] = 'E';
    text[11] = decimal.power < 0 ? '-' : '+';
    text[12] = static_cast<char>('0' + power / 10);
    text[13] = static_cast<char>('0' + power % 10);
    return text + 14;
}

} // namespace

char *format_scientific_field(char *text, double value)
{
    constexpr std::ptrdiff_t width = 16;
    constexpr std::size_t usual_length = 14;
    const double magnitude = std::fabs(value);
    Decimal decimal{};
    // The power of a smaller magnitude may be estimated one too low, hence 1e-9.
    if (magnitude == 0 || (magnitude >= 1e-9 && round_usual<9>(magnitude, decimal))) [[likely]] {
        text[0] = ' ';
        text[1] = std::signbit(value) ? '-' : ' ';
        return put_scientific(text + width - usual_length, decimal);
    }
    std::array<char, number_room> unusual;
    char *const begin = unusual.data();
    char *const end = std::to_chars(begin, begin + number_room, value, std::chars_format::scientific, 8).ptr;
    text = std::fill_n(text, width - (end - begin), ' ');
    return std::transform(begin, end, text, [](char c) { return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c; });
}

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
