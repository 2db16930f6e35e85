#include "io/format_number.h"

#include <bit>
#include <climits>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace korvane::testing {
namespace {

template <class Value>
std::string formatted(char *(*format)(char *, Value), Value value)
{
    char text[number_room + 8];
    std::fill(std::begin(text), std::end(text), '!');
    const char *end = format(text, value);
    EXPECT_EQ(std::string(text + number_room, 8), "!!!!!!!!");
    return std::string(text, static_cast<std::size_t>(end - text));
}

void expect_as_printf(double value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.15lg", value);
    ASSERT_EQ(formatted(format_real, value), text);
    const auto single = static_cast<float>(value);
    std::snprintf(text, sizeof text, "%g", static_cast<double>(single));
    ASSERT_EQ(formatted(format_float, single), text);
    std::snprintf(text, sizeof text, "%16.8E", value);
    ASSERT_EQ(formatted(format_scientific_field, value), text);
}

void expect_both_signs(double value)
{
    ASSERT_NO_FATAL_FAILURE(expect_as_printf(value));
    ASSERT_NO_FATAL_FAILURE(expect_as_printf(-value));
}

TEST(FormatNumber, WritesSpecialRealsAsPrintf)
{
    using Limits = std::numeric_limits<double>;
    for (const double value :
        {0.0, 1.0, Limits::infinity(), Limits::quiet_NaN(), Limits::denorm_min(), Limits::min(),
            Limits::max(), Limits::epsilon(), 1e-4, 1e-5, 1e6, 1e15, 1e16, 0.1, 0.5, 2.5, 123456.5, 999999.5})
        expect_both_signs(value);
}

TEST(FormatNumber, WritesRealsAroundPowersOfTenAsPrintf)
{
    for (int power = -330; power <= 308; ++power) {
        double value = std::strtod(("1e" + std::to_string(power)).c_str(), nullptr);
        for (int step = 0; step < 20; ++step, value = std::nextafter(value, 0.0))
            ASSERT_NO_FATAL_FAILURE(expect_both_signs(value));
        ASSERT_NO_FATAL_FAILURE(expect_both_signs(value * 9.999999999999995));
        ASSERT_NO_FATAL_FAILURE(expect_both_signs(value * 9.9999949999999));
        ASSERT_NO_FATAL_FAILURE(expect_both_signs(value * 9.9999999949999));
    }
}

TEST(FormatNumber, RoundsHalvesToEvenAsPrintf)
{
    // Values whose sixteenth and last digit is 5, and others whose seventh is.
    for (int64_t digits = 100'000'000'000'000; digits < 100'000'000'002'000; ++digits)
        ASSERT_NO_FATAL_FAILURE(expect_both_signs(static_cast<double>(digits) + 0.5));
    for (int digits = 100'000; digits < 102'000; ++digits)
        ASSERT_NO_FATAL_FAILURE(expect_both_signs(digits + 0.5));
    for (int digits = 100'000'000; digits < 100'002'000; ++digits)
        ASSERT_NO_FATAL_FAILURE(expect_both_signs(digits + 0.5));
    for (int numerator = 1; numerator < 4096; ++numerator)
        ASSERT_NO_FATAL_FAILURE(expect_both_signs(std::ldexp(numerator, -40)));
}

TEST(FormatNumber, WritesRandomRealsAsPrintf)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 150'000; ++i) {
        ASSERT_NO_FATAL_FAILURE(expect_as_printf(std::bit_cast<double>(random())));
        const double fraction = std::ldexp(static_cast<double>(random() >> 11), -53);
        ASSERT_NO_FATAL_FAILURE(expect_as_printf(std::ldexp(fraction, static_cast<int>(random() % 70) - 16)));
        const double shorter = std::round(fraction * 1e6) / std::pow(10.0, static_cast<double>(random() % 8));
        ASSERT_NO_FATAL_FAILURE(expect_as_printf(shorter));
    }
}

TEST(FormatNumber, WritesIntegersAsPrintf)
{
    std::mt19937 random(2);
    const auto expect = [](int32_t value) {
        const std::string text = std::to_string(value);
        ASSERT_EQ(formatted(format_integer, value), text);
        const std::string blanks(16 - text.size(), ' ');
        ASSERT_EQ(formatted(format_integer_field<16>, int64_t{value}), blanks + text);
        ASSERT_EQ(formatted(format_integer_field<8>, int64_t{value}),
            (text.size() < 8 ? blanks.substr(8) : "") + text);
    };
    for (const int32_t value : {0, 1, -1, 9, 10, 99'999'999, 100'000'000, INT32_MAX, INT32_MIN})
        expect(value);
    for (int i = 0; i < 100'000; ++i)
        ASSERT_NO_FATAL_FAILURE(expect(static_cast<int32_t>(random()) >> (random() % 32)));
}

} // namespace
} // namespace korvane::testing
