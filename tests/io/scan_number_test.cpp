#include "io/scan_number.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "common/file_stream.h"

namespace korvane::testing {
namespace {

template <class Value>
struct Scanned {
    Value value;
    std::size_t length;
};

/// What scan_number takes from the begin of a text.
template <class Value>
std::optional<Scanned<Value>> scan(const std::string &text)
{
    const std::string padded = text + std::string(FileStream::overhang, '\0');
    Value value = 77;
    const char *end = scan_number(padded.data(), padded.data() + text.size(), value);
    if (end == nullptr)
        return std::nullopt;
    return Scanned<Value>{value, static_cast<std::size_t>(end - padded.data())};
}

template <class Value>
Value value_of(const std::string &text)
{
    const auto scanned = scan<Value>(text);
    EXPECT_TRUE(scanned.has_value()) << text;
    return scanned.has_value() ? scanned->value : Value{-12345};
}

template <class Real>
void expect_same(Real value, Real expected, const std::string &text)
{
    if (std::isnan(expected))
        ASSERT_TRUE(std::isnan(value)) << text;
    else
        ASSERT_EQ(value, expected) << text;
    ASSERT_EQ(std::signbit(value), std::signbit(expected)) << text;
}

/// True for the two texts that the standard library treats in its own way: hexadecimal without digits, and
/// names of infinity that are cut in their middle.
bool is_contested(const std::string &text)
{
    std::string lower;
    for (const char character : text)
        lower += static_cast<char>(character | 0x20);
    return lower.find("0x.") != std::string::npos || lower.find("infi") != std::string::npos;
}

void expect_as_scanf(const std::string &text)
{
    if (is_contested(text))
        return;
    double real = 0;
    float single = 0;
    int integer = 0;
    const bool is_real = std::sscanf(text.c_str(), "%lf", &real) == 1;
    ASSERT_EQ(scan<double>(text).has_value(), is_real) << text;
    ASSERT_EQ(std::sscanf(text.c_str(), "%f", &single) == 1, is_real) << text;
    if (is_real) {
        expect_same(value_of<double>(text), real, text);
        expect_same(value_of<float>(text), single, text);
    }
    const bool is_integer = std::sscanf(text.c_str(), "%d", &integer) == 1;
    ASSERT_EQ(scan<int32_t>(text).has_value(), is_integer) << text;
    if (is_integer && scan<int32_t>(text)->length <= 9) {
        ASSERT_EQ(value_of<int32_t>(text), integer) << text;
    }
}

TEST(ScanNumber, ReadsRandomNumbersAsScanf)
{
    std::mt19937_64 random(1);
    const char *const formats[] = {
        "%.17g", "%.15g", "%.16e", "%g", "%f", "%.3f", "%a", "%.20g", "%.0f", "%.25f"};
    for (int i = 0; i < 60'000; ++i) {
        double value = std::bit_cast<double>(random());
        if (i % 3 == 0)
            value = static_cast<double>(static_cast<int64_t>(random())) *
                    std::pow(10.0, static_cast<double>(random() % 40) - 30);
        if (i % 5 == 0)
            value = static_cast<double>(static_cast<float>(value));
        char text[400];
        std::snprintf(text, sizeof text, formats[random() % std::size(formats)], value);
        ASSERT_NO_FATAL_FAILURE(expect_as_scanf(text));
    }
}

TEST(ScanNumber, ReadsJunkAsScanf)
{
    std::mt19937 random(2);
    const std::string alphabet = "01234567890123456789012345.+-eExXpPinfaNy ";
    for (int i = 0; i < 100'000; ++i) {
        std::string text;
        for (auto length = 1 + random() % 12; length > 0; --length)
            text += alphabet[random() % alphabet.size()];
        if (text[0] != ' ') {
            ASSERT_NO_FATAL_FAILURE(expect_as_scanf(text));
        }
    }
}

TEST(ScanNumber, RoundsFloatsOnce)
{
    // Decimals that are, or nearly are, in the middle between two floats.
    std::mt19937 random(3);
    for (int i = 0; i < 20'000; ++i) {
        const float below = std::bit_cast<float>(static_cast<std::uint32_t>(random() % 0x7F000000u));
        const double middle =
            (static_cast<double>(below) + static_cast<double>(std::nextafter(below, 1e38f))) / 2;
        for (const double value : {middle, std::nextafter(middle, 0.0), std::nextafter(middle, 1e38)}) {
            char text[64];
            std::snprintf(text, sizeof text, i % 2 == 0 ? "%.15g" : "%.17g", value);
            ASSERT_NO_FATAL_FAILURE(expect_as_scanf(text));
        }
    }
}

TEST(ScanNumber, TellsOverflowFromUnderflow)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const std::string zeros(400, '0');
    const std::string many_digits(400, '7');
    const std::pair<std::string, double> expected[] = {
        {"1e400", infinity},
        {"-1e400", -infinity},
        {"1e-400", 0},
        {"-1e-400", -0.0},
        {"1e99999999999999999999999", infinity},
        {"1e-99999999999999999999999", 0},
        {"0e99999999999999999999999", 0},
        {many_digits, infinity},
        {"-" + many_digits + ".5", -infinity},
        {"0." + zeros + "1", 0},
        {"0." + zeros + "1e10", 0},
        {"0." + zeros + "1e500", 1e99},
        {"." + zeros + "1e1000", infinity},
        {"1" + zeros + "e-1000", 0},
        {"1" + zeros + "e-390", 1e10},
        {"0x1p2000", infinity},
        {"-0x1p2000", -infinity},
        {"0x1p-2000", 0},
        {"0x." + zeros + "1p100", 0},
        {"0x1" + zeros + "p-10", infinity},
        {"0x1p+99999999999999999999999", infinity},
        {"4.9e-324", 4.9406564584124654e-324},
        {"2e-324", 0},
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
        {"1.7976931348623159e308", infinity},
    };
    for (const auto &[text, value] : expected) {
        ASSERT_NO_FATAL_FAILURE(expect_same(value_of<double>(text), value, text));
        EXPECT_EQ(scan<double>(text)->length, text.size()) << text;
    }
    EXPECT_EQ(value_of<float>("1e39"), std::numeric_limits<float>::infinity());
    EXPECT_EQ(value_of<float>("-1e39"), -std::numeric_limits<float>::infinity());
    EXPECT_EQ(value_of<float>("1e-46"), 0);
    EXPECT_EQ(value_of<float>("1e-45"), std::numeric_limits<float>::denorm_min());
}

TEST(ScanNumber, KeepsIntegersInside32Bits)
{
    EXPECT_EQ(value_of<int32_t>("2147483647"), INT32_MAX);
    EXPECT_EQ(value_of<int32_t>("-2147483648"), INT32_MIN);
    EXPECT_EQ(value_of<int32_t>("2147483648"), INT32_MAX);
    EXPECT_EQ(value_of<int32_t>("-2147483649"), INT32_MIN);
    EXPECT_EQ(value_of<int32_t>("99999999999999999999999999"), INT32_MAX);
    EXPECT_EQ(value_of<int32_t>("-99999999999999999999999999"), INT32_MIN);
    EXPECT_EQ(value_of<int32_t>("18446744073709551617"), INT32_MAX);
    EXPECT_EQ(value_of<int32_t>(std::string(100, '0') + "12"), 12);
    EXPECT_EQ(value_of<int32_t>("+7"), 7);
    EXPECT_EQ(value_of<int32_t>("-0"), 0);
}

TEST(ScanNumber, TakesTheBeginOfATokenThatIsANumber)
{
    EXPECT_EQ(value_of<int32_t>("1.5"), 1);
    EXPECT_EQ(scan<int32_t>("1.5")->length, 1u);
    EXPECT_EQ(scan<double>("1.5-2.5")->length, 3u);
    EXPECT_EQ(scan<double>("1e")->length, 1u);
    EXPECT_EQ(scan<double>("1e+x")->length, 1u);
    EXPECT_EQ(scan<double>("1.")->length, 2u);
    EXPECT_EQ(scan<double>("infinity")->length, 8u);
    for (const char *text : {"", "abc", "-", "+", ".", "--5", "+-5", "-+5", "e5", "#", "0x", "-0x"}) {
        EXPECT_FALSE(scan<double>(text).has_value()) << text;
    }
    for (const char *text : {"", "abc", "-", "+", ".", "--5", "+-5", "-+5", "e5", "#", "x1", "inf", "nan"}) {
        EXPECT_FALSE(scan<int32_t>(text).has_value()) << text;
    }
}

TEST(ScanNumber, StopsAtTheLimit)
{
    std::string text = "123456";
    text += std::string(FileStream::overhang, '\0');
    int32_t integer = 0;
    EXPECT_EQ(scan_number(text.data(), text.data() + 6, integer), text.data() + 6);
    EXPECT_EQ(integer, 123456);
}

} // namespace
} // namespace korvane::testing
