#include "io/decimal_digits.h"

#include <cstdio>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace korvane::testing {
namespace {

std::string eight_digits(std::uint32_t number)
{
    char text[16];
    std::snprintf(text, sizeof text, "%08u", number);
    return text;
}

void expect_both_ways(std::uint32_t number)
{
    const std::string text = eight_digits(number);
    ASSERT_EQ(join_digits(to_digits(load_characters(text.data()))), number);
    char stored[8];
    store_characters(stored, to_characters(spread_digits(number)));
    ASSERT_EQ(std::string(stored, 8), text);
}

TEST(DecimalDigits, GoBothWaysForAllFoursAndForRandomNumbers)
{
    for (std::uint32_t four = 0; four < 10'000; ++four) {
        expect_both_ways(four);
        expect_both_ways(four * 10'000 + 9'999 - four);
    }
    std::mt19937 random(1);
    std::uniform_int_distribution<std::uint32_t> numbers(0, 99'999'999);
    for (int i = 0; i < 100'000; ++i)
        expect_both_ways(numbers(random));
}

TEST(DecimalDigits, TheFirstCharacterThatIsNoDigitIsMarked)
{
    std::mt19937 random(2);
    for (int i = 0; i < 100'000; ++i) {
        std::string text = eight_digits(static_cast<std::uint32_t>(random() % 100'000'000));
        std::size_t first = 8;
        for (int changes = static_cast<int>(random() % 3); changes > 0; --changes)
            text[random() % 8] = static_cast<char>(random());
        first = std::min(text.find_first_not_of("0123456789"), std::size_t{8});
        const std::uint64_t others = mark_others(load_characters(text.data()));
        ASSERT_EQ(static_cast<std::size_t>(std::countr_zero(others)) / 8, first) << text;
    }
}

} // namespace
} // namespace korvane::testing
