#include "io/scan_decimal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace korvane::testing {
namespace {

constexpr std::size_t room = 64; // before and behind a text

/// A text between others, and where it begins.
struct Placed {
    Placed() = default;
    explicit Placed(const std::string &text)
        : all(std::string(room, '7') + text + ' ' + std::string(room, '8'))
    {}
    [[nodiscard]] const char *text() const { return all.data() + room; }

    /// The text up to its first blank.
    [[nodiscard]] Token token() const
    {
        const std::string_view rest(text());
        const std::size_t length = rest.find(' ');
        return {text(), text() + std::min(rest.find('.'), length), text() + length};
    }

    std::string all;
};

/// Takes a token as the standard library does, or leaves it to slower paths, which it does only if allowed.
void expect_as_strtod(const std::string &token, bool may_be_left = false)
{
    const Placed placed(token);
    double value = -7;
    if (!scan_short_decimal(placed.token(), value)) {
#if defined(__SSE2__)
        ASSERT_TRUE(may_be_left) << token;
#endif
        return;
    }
    const double expected = std::strtod(token.c_str(), nullptr);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected)) << token;
}

TEST(ScanDecimal, ReadsShortDecimalsAsStrtod)
{
    for (const char *token : {"0", "-0", "0.0", "-0.0", "5.", ".5", "-.5", "1", "12345678", "123456789",
             "1234567890.12345", "0000000000000001", "000000000000000.1", ".0000000000000001",
             "9007199254740991", "900719925474099.1", "-9007199254740991", ".9007199254740991",
             "0.10000000000000", "0.0998334166468282", "-0.00998334166468282", "0.000000000000000000001",
             "00000000000000000000000005", "0000000000000000.5", "00000000000000000000000.1234567",
             "0.0000000000000000000001"})
        expect_as_strtod(token);
}

TEST(ScanDecimal, LeavesOtherTokens)
{
    for (const char *token : {"-", "+1", "--1", ".", "-.", "1.2.3", "..1", "1e5", "1e", "0x10", "inf", "nan",
             "1,5", "1-2", "1/2", "1:2", "a", "12345678901234567", "9007199254740992",
             "12345678901234567890123456789012345678901234567890", "1.5#", "5\x7f"}) {
        const Placed placed(token);
        double value = -7;
        EXPECT_FALSE(scan_short_decimal(placed.token(), value)) << token;
    }
}

TEST(ScanDecimal, ReadsRandomDecimalsAsStrtod)
{
    std::mt19937_64 random(3);
    for (int i = 0; i < 300'000; ++i) {
        char token[64];
        const double value = std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 40) - 60);
        const int precision = static_cast<int>(random() % 18);
        std::snprintf(token, sizeof token, random() % 2 == 0 ? "%.*g" : "%.*f", precision,
            random() % 2 == 0 ? value : -value);
        ASSERT_NO_FATAL_FAILURE(expect_as_strtod(token, true));
        std::snprintf(token, sizeof token, "%.*f", precision % 10, std::fmod(value, 1e6));
        ASSERT_NO_FATAL_FAILURE(expect_as_strtod(token));
    }
}

TEST(ScanDecimal, ReadsRandomCharactersAsStrtodOrLeavesThem)
{
    std::mt19937 random(4);
    const std::string characters = "0123456789.-+eE#/: x";
    for (int i = 0; i < 300'000; ++i) {
        std::string text;
        for (std::size_t length = random() % 24; text.size() < length;)
            text += characters[random() % (random() % 4 == 0 ? characters.size() : 11)];
        const std::string token = text.substr(0, text.find(' '));
        const Placed placed(text);
        double value = -7;
        if (token.empty() || !scan_short_decimal(placed.token(), value))
            continue;
        char *stop = nullptr;
        ASSERT_EQ(value, std::strtod(token.c_str(), &stop)) << token;
        ASSERT_EQ(*stop, '\0') << token;
    }
}

/// What a random generator makes into an integer of up to 10 digits, or spoils.
std::string random_integer(std::mt19937 &random)
{
    std::string token = std::to_string(random() >> (random() % 32));
    if (random() % 16 == 0)
        token[random() % token.size()] = "-+./:e"[random() % 6];
    return token;
}

bool is_short_integer(const std::string &token)
{
    return token.size() <= 8 && token.find_first_not_of("0123456789") == token.npos;
}

TEST(ScanDecimal, TakesFourIntegersOrLeavesThem)
{
    std::mt19937 random(5);
    int taken = 0;
    for (int i = 0; i < 200'000; ++i) {
        std::array<std::string, 4> texts;
        std::array<Placed, 4> placed;
        for (std::size_t k = 0; k < 4; ++k)
            placed[k] = Placed(texts[k] = random_integer(random));
        std::array<int32_t, 4> values = {-7, -7, -7, -7};
        const bool took = scan_four_integers(
            placed[0].token(), placed[1].token(), placed[2].token(), placed[3].token(), values.data());
#if defined(__SSE2__)
        ASSERT_EQ(took, std::all_of(texts.begin(), texts.end(), is_short_integer));
#endif
        for (std::size_t k = 0; took && k < 4; ++k)
            ASSERT_EQ(values[k], std::stoi(texts[k]));
        taken += took ? 1 : 0;
    }
#if defined(__SSE2__)
    EXPECT_GT(taken, 30'000);
#endif
}

TEST(ScanDecimal, ReadsIntegerTokensAsAWhole)
{
    std::mt19937 random(6);
    for (int i = 0; i < 200'000; ++i) {
        std::string text = std::to_string(static_cast<int32_t>(random()) >> (random() % 32));
        if (random() % 16 == 0)
            text[random() % text.size()] = "-+./:e"[random() % 6];
        const Placed placed(text);
        int32_t value = -7;
        const bool took = scan_token(placed.token(), value);
        const std::size_t digits = text.find_first_not_of('-');
        const bool whole = text.find_first_not_of("0123456789", digits) == text.npos && digits <= 1;
        ASSERT_TRUE(took || !is_short_integer(text)) << text;
        if (took) {
            ASSERT_TRUE(whole) << text;
            ASSERT_EQ(value, std::stoi(text));
        }
    }
}

} // namespace
} // namespace korvane::testing
