#include "io/blank_mask.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace korvane::testing {
namespace {

std::uint64_t naive_mask(const std::string &text)
{
    std::uint64_t mask = 0;
    for (std::size_t i = 0; i < 64; ++i)
        if (std::string_view(" \t\n\v\f\r").find(text[i]) != std::string_view::npos)
            mask |= std::uint64_t{1} << i;
    return mask;
}

TEST(BlankMask, MarksExactlyTheBlanks)
{
    for (int character = 0; character < 256; ++character) {
        std::string text(64, 'x');
        for (std::size_t i = 0; i < 64; i += 3)
            text[i] = static_cast<char>(character);
        EXPECT_EQ(blank_mask(text.data()), naive_mask(text)) << character;
        EXPECT_EQ(portable_blank_mask(text.data()), naive_mask(text)) << character;
    }
    std::mt19937 random(1);
    for (int i = 0; i < 20'000; ++i) {
        std::string text(64, ' ');
        for (char &character : text)
            character = static_cast<char>(i % 2 == 0 ? random() : random() % 48);
        ASSERT_EQ(blank_mask(text.data()), naive_mask(text));
        ASSERT_EQ(portable_blank_mask(text.data()), naive_mask(text));
    }
}

} // namespace
} // namespace korvane::testing
