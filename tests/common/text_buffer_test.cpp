#include "common/text_buffer.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(TextBuffer, FormatsAsPrintf)
{
    for (const double value : {0.0, -0.0, 1.0, -1.5, 1e-300, 1.7976931348623157e308, 5e-324, 0.1, HUGE_VAL,
             -HUGE_VAL, std::numeric_limits<double>::quiet_NaN()}) {
        char expected[128];
        std::snprintf(expected, sizeof expected, "%e %.3e", value, value);
        TextBuffer<128> text;
        text.append_scientific(value, 6).append(" ").append_scientific(value, 3);
        EXPECT_STREQ(text.c_str(), expected);
    }
    TextBuffer<64> text;
    text.append("a").append(int32_t{-2147483647 - 1}).append("b").append(int32_t{0});
    EXPECT_STREQ(text.c_str(), "a-2147483648b0");
    EXPECT_STREQ(text.append(" ").append(INT64_MIN).c_str(), "a-2147483648b0 -9223372036854775808");
}

TEST(TextBuffer, CutsWhatDoesNotFit)
{
    TextBuffer<6> text;
    EXPECT_STREQ(text.append("abc").c_str(), "abc");
    EXPECT_STREQ(text.append("defg").c_str(), "abcde");
    EXPECT_STREQ(text.append("h").c_str(), "abcde");
}

} // namespace
} // namespace korvane
