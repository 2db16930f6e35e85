#include "io/gmf_format.h"

#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/memory.h"

namespace korvane::testing {
namespace {

struct Expanded {
    int32_t kind;
    std::string format;
    int32_t words;
    bool operator==(const Expanded &) const = default;
};

Expanded expand(int32_t code, int32_t version, int32_t dimension, const std::vector<int32_t> &types = {})
{
    const Owned<gmf_file_t> file = create_owned<gmf_file_t>();
    file->version = version;
    file->dimension = dimension;
    gmf_keyword_info_t &keyword = file->keyword(code);
    keyword.type_count = static_cast<int32_t>(types.size());
    std::copy(types.begin(), types.end(), keyword.types.begin());
    gmf_expand_format(*file, code);
    return {keyword.kind,
        std::string(keyword.format.data(), static_cast<std::size_t>(keyword.values_per_line)),
        keyword.words_per_line};
}

TEST(GmfFormat, RepeatsALetterOncePerDimension)
{
    EXPECT_EQ(expand(gmf_vertices, 1, 3), (Expanded{gmf_regular_keyword, "rrri", 4}));
    EXPECT_EQ(expand(gmf_vertices, 2, 3), (Expanded{gmf_regular_keyword, "rrri", 7}));
    EXPECT_EQ(expand(gmf_vertices, 3, 2), (Expanded{gmf_regular_keyword, "rri", 5}));
    EXPECT_EQ(expand(50, 2, 2), (Expanded{gmf_information_keyword, "rrrr", 8}));
}

TEST(GmfFormat, RepeatsALetterOncePerRealOfTheSolution)
{
    EXPECT_EQ(expand(gmf_sol_at_vertices, 2, 3, {1}), (Expanded{gmf_solution_keyword, "r", 2}));
    EXPECT_EQ(expand(gmf_sol_at_vertices, 1, 3, {3}), (Expanded{gmf_solution_keyword, "rrrrrr", 6}));
    EXPECT_EQ(expand(gmf_sol_at_vertices, 1, 2, {4}), (Expanded{gmf_solution_keyword, "rrrr", 4}));
    EXPECT_EQ(expand(gmf_sol_at_vertices, 1, 2, {3, 2}), (Expanded{gmf_solution_keyword, "rrrrr", 5}));
    EXPECT_EQ(
        expand(gmf_sol_at_vertices, 2, 3, {0, 5, -1, 1'000'000}), (Expanded{gmf_solution_keyword, "", 0}));
    const std::vector<int32_t> longest(GMF_MAX_TYPES, 4);
    EXPECT_EQ(expand(gmf_sol_at_vertices, 2, 3, longest),
        (Expanded{gmf_solution_keyword, std::string(180, 'r'), 360}));
}

TEST(GmfFormat, TellsTheKindsOfKeywordsApart)
{
    EXPECT_EQ(expand(gmf_dimension, 2, 3), (Expanded{gmf_information_keyword, "i", 1}));
    EXPECT_EQ(expand(gmf_end, 2, 3), (Expanded{gmf_information_keyword, "", 0}));
    EXPECT_EQ(expand(51, 2, 3), (Expanded{gmf_regular_keyword, "", 0}));
    EXPECT_EQ(expand(47, 2, 3), (Expanded{gmf_information_keyword, "iiiiiiiii", 9}));
    EXPECT_EQ(expand(70, 2, 3), (Expanded{gmf_regular_keyword, "i", 1}));
}

TEST(GmfFormat, ColumnsFitIfTheyAreTheLettersOfALine)
{
    const Owned<gmf_file_t> file = create_owned<gmf_file_t>();
    file->version = 2;
    file->dimension = 3;
    gmf_expand_format(*file, gmf_vertices);
    const gmf_keyword_info_t &keyword = file->keyword(gmf_vertices);
    double real = 0;
    int32_t integer = 0;
    const auto fit = [&](std::vector<GmfInput> columns) {
        return columns_fit<int32_t, double>(keyword, columns);
    };
    EXPECT_TRUE(fit({{3, nullptr, &real}, {1, &integer, nullptr}}));
    EXPECT_TRUE(
        fit({{1, nullptr, &real}, {2, nullptr, &real}, {0, &integer, nullptr}, {1, &integer, nullptr}}));
    EXPECT_FALSE(fit({}));
    EXPECT_FALSE(fit({{3, nullptr, &real}}));
    EXPECT_FALSE(fit({{3, nullptr, &real}, {2, &integer, nullptr}}));
    EXPECT_FALSE(fit({{4, nullptr, &real}}));
    EXPECT_FALSE(fit({{3, &integer, nullptr}, {1, &integer, nullptr}}));
    EXPECT_FALSE(fit({{3, nullptr, &real}, {1, nullptr, nullptr}}));
    EXPECT_FALSE(fit({{3, nullptr, &real}, {-1, &integer, nullptr}, {2, &integer, nullptr}}));
    EXPECT_FALSE(fit({{INT32_MAX, nullptr, &real}, {INT32_MAX, &integer, nullptr}}));
}

} // namespace
} // namespace korvane::testing
