#include "io/text_masks.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace korvane::testing {
namespace {

std::uint64_t naive_mask(const std::string &text, std::string_view wanted)
{
    std::uint64_t mask = 0;
    for (std::size_t i = 0; i < 64; ++i)
        if (wanted.find(text[i]) != std::string_view::npos)
            mask |= std::uint64_t{1} << i;
    return mask;
}

void expect_exact_masks(const std::string &text)
{
    const std::uint64_t blanks = naive_mask(text, " \t\n\v\f\r");
    ASSERT_EQ(blank_mask(text.data()), blanks) << text;
    ASSERT_EQ(portable_blank_mask(text.data()), blanks) << text;
    const std::uint64_t points = naive_mask(text, ".");
    ASSERT_EQ(point_mask(text.data()), points) << text;
    ASSERT_EQ(portable_point_mask(text.data()), points) << text;
}

TEST(TextMasks, MarkExactlyTheirCharacters)
{
    for (int character = 0; character < 256; ++character) {
        std::string text(64, 'x');
        for (std::size_t i = 0; i < 64; i += 3)
            text[i] = static_cast<char>(character);
        ASSERT_NO_FATAL_FAILURE(expect_exact_masks(text)) << character;
    }
    std::mt19937 random(1);
    for (int i = 0; i < 20'000; ++i) {
        std::string text(64, ' ');
        for (char &character : text)
            character = static_cast<char>(i % 2 == 0 ? random() : random() % 48);
        ASSERT_NO_FATAL_FAILURE(expect_exact_masks(text));
    }
}

} // namespace
} // namespace korvane::testing
