#include "io/scan_decimal.h"

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace korvane::testing {
namespace {

constexpr std::size_t room = 64; // before and behind a text

/// A text between others, and where it begins.
struct Placed {
    explicit Placed(const std::string &text)
        : all(std::string(room, '7') + text + ' ' + std::string(room, '8'))
    {}
    [[nodiscard]] const char *text() const { return all.data() + room; }
    std::string all;
};

/// Takes a token as the standard library does, or leaves it to slower paths, which it does only if allowed.
void expect_as_strtod(const std::string &token, bool may_be_left = false)
{
    const Placed placed(token);
    double value = -7;
    const char *end = scan_short_decimal(placed.text(), value);
    if (end == nullptr) {
#if defined(__SSE2__)
        ASSERT_TRUE(may_be_left) << token;
#endif
        return;
    }
    const double expected = std::strtod(token.c_str(), nullptr);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected)) << token;
    ASSERT_EQ(end, placed.text() + token.size()) << token;
}

TEST(ScanDecimal, ReadsShortDecimalsAsStrtod)
{
    for (const char *token : {"0", "-0", "0.0", "-0.0", "5.", ".5", "-.5", "1", "12345678", "123456789",
             "1234567890.12345", "0000000000000001", "000000000000000.1", ".0000000000000001",
             "9007199254740992", "900719925474099.2", "-9007199254740992", ".9007199254740992",
             "0.10000000000000", "0.0998334166468282", "-0.00998334166468282", "0.000000000000000000001",
             "00000000000000000000000005", "0000000000000000.5", "00000000000000000000000.1234567",
             "0.0000000000000000000001"})
        expect_as_strtod(token);
}

TEST(ScanDecimal, LeavesOtherTokens)
{
    for (const char *token : {"", "-", "+1", "--1", ".", "-.", "1.2.3", "..1", "1e5", "1e", "0x10", "inf",
             "nan", "1,5", "1-2", "1/2", "1:2", "a", "12345678901234567", "9007199254740993",
             "12345678901234567890123456789012345678901234567890", "1.5#", "5\x7f"}) {
        const Placed placed(token);
        double value = -7;
        EXPECT_EQ(scan_short_decimal(placed.text(), value), nullptr) << token;
    }
}

TEST(ScanDecimal, StopsAtWhatMayBeABlank)
{
    for (const char end : {' ', '\n', '\t', '\r', '\0', '\x1f', '\x80', '\xff'}) {
        Placed placed("1.25");
        placed.all[room + 4] = end;
        double value = -7;
        const char *stop = scan_short_decimal(placed.text(), value);
#if defined(__SSE2__)
        ASSERT_EQ(stop, placed.text() + 4) << static_cast<int>(end);
        EXPECT_EQ(value, 1.25);
#else
        EXPECT_EQ(stop, nullptr);
#endif
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
        const char *end = scan_short_decimal(placed.text(), value);
        if (end == nullptr)
            continue;
        char *stop = nullptr;
        ASSERT_EQ(value, std::strtod(token.c_str(), &stop)) << token;
        ASSERT_EQ(*stop, '\0') << token;
        ASSERT_EQ(end, placed.text() + token.size()) << token;
    }
}

TEST(ScanDecimal, TakesTwoIntegersOrLeavesThem)
{
    std::mt19937 random(5);
    const auto make_token = [&] {
        std::string token = std::to_string(random() >> (random() % 32));
        if (random() % 16 == 0)
            token[random() % token.size()] = "-+./:e"[random() % 6];
        return token;
    };
    int taken = 0;
    for (int i = 0; i < 200'000; ++i) {
        const std::string tokens[2] = {make_token(), make_token()};
        const Placed placed(tokens[0] + "  " + tokens[1]);
        const char *const first_end = placed.text() + tokens[0].size();
        const char *const ends[2] = {first_end, first_end + 2 + tokens[1].size()};
        const int lengths[2] = {static_cast<int>(tokens[0].size()), static_cast<int>(tokens[1].size())};
        bool plain = true;
        for (const std::string &token : tokens)
            plain = plain && token.size() <= 8 && token.find_first_not_of("0123456789") == token.npos;
        int32_t values[2] = {-7, -7};
        const bool took = scan_two_integers(ends, lengths, values);
#if defined(__SSE2__)
        ASSERT_EQ(took, plain) << tokens[0] << " " << tokens[1];
#endif
        if (took) {
            ++taken;
            ASSERT_EQ(values[0], std::stoi(tokens[0]));
            ASSERT_EQ(values[1], std::stoi(tokens[1]));
        }
    }
#if defined(__SSE2__)
    EXPECT_GT(taken, 50'000);
#endif
}

} // namespace
} // namespace korvane::testing
