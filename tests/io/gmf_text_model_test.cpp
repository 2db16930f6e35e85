// Lines of text with all kinds of tokens, also where blocks of the stream end, against a naive reader.
#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "io/gmf.h"
#include "support/temporary_folder.h"

namespace korvane::testing {
namespace {

constexpr std::size_t block_size = FileStream::block_size;

/// What an array holds before it is read into.
constexpr int32_t untouched = -77;

struct Lines {
    int32_t whole = 0;
    std::vector<double> reals;
    std::vector<int32_t> integers;

    bool operator==(const Lines &other) const
    {
        const auto same = [](double a, double b) {
            return std::signbit(a) == std::signbit(b) && (a == b || (std::isnan(a) && std::isnan(b)));
        };
        return whole == other.whole && integers == other.integers &&
               std::equal(reals.begin(), reals.end(), other.reals.begin(), other.reals.end(), same);
    }
};

/// Takes numbers character by character, and converts them by the standard library.
class NaiveReader {
  public:
    NaiveReader(const std::string &all, bool single) : text(all), in_single(single) {}

    Lines read(int32_t count, std::size_t real_count, std::size_t integer_count)
    {
        Lines lines;
        const auto lines_held = static_cast<std::size_t>(count);
        lines.reals.assign(lines_held * real_count, 0);
        lines.integers.assign(lines_held * integer_count, 0);
        for (std::size_t line = 0; line < lines_held; ++line) {
            for (std::size_t i = 0; i < real_count; ++i)
                if (!next(lines.reals[line * real_count + i]))
                    return lines;
            for (std::size_t i = 0; i < integer_count; ++i)
                if (!next(lines.integers[line * integer_count + i]))
                    return lines;
            ++lines.whole;
        }
        return lines;
    }

  private:
    static bool is_blank(char character) { return std::isspace(static_cast<unsigned char>(character)) != 0; }

    template <class Value>
    bool next(Value &value)
    {
        while (at < text.size() && (is_blank(text[at]) || text[at] == '#')) {
            if (text[at] == '#')
                at = std::min(text.find('\n', at), text.size());
            else
                ++at;
        }
        std::size_t end = at;
        while (end < text.size() && !is_blank(text[end]) && text[end] != '#')
            ++end;
        const std::string token = text.substr(at, end - at);
        const std::size_t length = convert(token, value);
        if (length == 0)
            return false;
        at += length;
        if (at == end || (text[at] != '-' && text[at] != '+'))
            at = end;
        return true;
    }

    static std::size_t convert(const std::string &token, int32_t &value)
    {
        char *end = nullptr;
        const long number = std::strtol(token.c_str(), &end, 10);
        if (end == token.c_str())
            return 0;
        value = static_cast<int32_t>(std::clamp<long>(
            number, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
        return static_cast<std::size_t>(end - token.c_str());
    }

    std::size_t convert(const std::string &token, double &value) const
    {
        char *end = nullptr;
        const double number = in_single ? std::strtof(token.c_str(), &end) : std::strtod(token.c_str(), &end);
        if (end != token.c_str())
            value = number;
        return static_cast<std::size_t>(end - token.c_str());
    }

    const std::string &text;
    bool in_single;
    std::size_t at = 0;
};

/// A keyword and what its lines in space hold.
struct Layout {
    const char *head;
    int32_t code;
    std::size_t real_count;
    std::size_t integer_count;
};

const Layout layouts[] = {{"Vertices COUNT ", gmf_vertices, 3, 1}, {"Triangles COUNT ", gmf_triangles, 0, 4},
    {"RequiredEdges COUNT ", gmf_required_edges, 0, 1}, {"Hexahedra COUNT ", gmf_hexahedra, 0, 9},
    {"SolAtVertices COUNT 1 1 ", gmf_sol_at_vertices, 1, 0}, {"Tangents COUNT ", 59, 3, 0}};

class GmfTextModel : public ::testing::Test {
  protected:
    /// Compares the lines of a text as read by the engine, in one or two parts, with the naive reader.
    void expect_same_lines(const std::string &text, int32_t version, const Layout &layout, int32_t count)
    {
        std::string head = "MeshVersionFormatted " + std::to_string(version) + " Dimension 3 " + layout.head;
        head.replace(head.find("COUNT"), 5, std::to_string(count));
        int32_t read_version = 0;
        int32_t dimension = 0;
        const int32_t index = gmf_open_file(
            folder.write("a.mesh", head + text).c_str(), gmf_read_mode, &read_version, &dimension);
        ASSERT_NE(index, 0);
        const GmfFileGuard guard(index);
        ASSERT_EQ(gmf_keyword_count(index, layout.code), count);
        const Lines expected =
            NaiveReader(text, version == 1).read(count, layout.real_count, layout.integer_count);
        for (const int32_t first : {count, count / 3, 1})
            ASSERT_EQ(read_in_parts(index, layout, first, count - first), expected)
                << version << " " << layout.head << first << " of " << count;
    }

    TemporaryFolder folder;

  private:
    static Lines read_in_parts(int32_t index, const Layout &layout, int32_t first, int32_t others)
    {
        Lines lines;
        const auto count = static_cast<std::size_t>(first + others);
        lines.reals.assign(count * layout.real_count, untouched);
        lines.integers.assign(count * layout.integer_count, untouched);
        EXPECT_EQ(gmf_seek_keyword(index, layout.code), 0);
        std::size_t done = 0;
        for (const int32_t part : {first, others}) {
            std::vector<GmfInput> columns;
            if (layout.real_count > 0)
                columns.push_back({static_cast<int32_t>(layout.real_count), nullptr,
                    lines.reals.data() + done * layout.real_count});
            if (layout.integer_count > 0)
                columns.push_back({static_cast<int32_t>(layout.integer_count),
                    lines.integers.data() + done * layout.integer_count, nullptr});
            lines.whole += gmf_read_lines(index, layout.code, part, columns);
            done += static_cast<std::size_t>(part);
        }
        return lines;
    }
};

/// A token that begins with a number, most often a plain one, and what separates it from the next one.
std::string random_token(std::mt19937 &random)
{
    static const char *const odd[] = {"+7", "-0", "1.5", "2e3", "-3.25E-2", "1-2", "3+4", "5.5-6.5",
        "7#c 8\n", "0x1p3", "1x", "99999999", "-99999999", "123456789", "99999999999", "-99999999999",
        "00000000000012", "12\x80", "4\x7f", "0.1000000000000000055511151231257827", "9007199254740993",
        "1e30", "1e-30", ".5", "6.", "-.25", "1e", "1e+", "2.e1", "16777217", "16777219", "0.333333343267441",
        "8.", "1,5"};
    std::string token;
    switch (random() % 8) {
    case 0:
        token = odd[random() % std::size(odd)];
        break;
    case 1:
        token = std::to_string(static_cast<double>(static_cast<int32_t>(random())) / 1024);
        break;
    default:
        token = std::to_string(static_cast<int32_t>(random()) >> (random() % 32));
    }
    static const char *const separators[] = {"\n", "\t", "\r\n", "  ", "\v\f", " # c 1 2\n", "\n#\n"};
    return token + (random() % 8 == 0 ? separators[random() % std::size(separators)] : " ");
}

std::string random_tokens(std::mt19937 &random, std::size_t size)
{
    std::string text;
    while (text.size() < size)
        text += random_token(random);
    return text;
}

TEST_F(GmfTextModel, RandomTokensAreReadAsByANaiveReader)
{
    std::mt19937 random(1);
    for (int round = 0; round < 600; ++round) {
        std::string text = random_tokens(random, random() % 4000);
        if (round % 3 == 0) // something that is no number
            text.insert(random() % (text.size() + 1), round % 2 == 0 ? " x " : "-");
        if (round % 5 == 0)
            text.resize(random() % (text.size() + 1));
        const auto count = static_cast<int32_t>(3 + random() % 300);
        for (const Layout &layout : layouts)
            ASSERT_NO_FATAL_FAILURE(expect_same_lines(text, 1 + round % 3, layout, count)) << round;
    }
}

TEST_F(GmfTextModel, TokensAreTheSameWhereverABlockEnds)
{
    std::mt19937 random(2);
    const std::string fillings[] = {" ", "\n", "#"};
    for (std::size_t shift = 0; shift < 160; ++shift) {
        const std::string &filling = fillings[shift % std::size(fillings)];
        // The first block begins with the first line, as the one that the index was made with lies further
        // on.
        std::string text = filling == "#" ? std::string(block_size - 120 + shift, '#') + "\n"
                                          : "1 2 3 4" + std::string(block_size - 120 + shift, filling[0]);
        text += random_tokens(random, 400);
        if (shift % 4 != 0)
            text += std::string(block_size, ' ');
        const Layout &layout = layouts[shift % std::size(layouts)];
        for (const int32_t version : {1, 2})
            ASSERT_NO_FATAL_FAILURE(expect_same_lines(text, version, layout, 30)) << shift;
    }
}

TEST_F(GmfTextModel, LongTextsAreReadAsByANaiveReader)
{
    std::mt19937 random(3);
    for (int round = 0; round < 6; ++round) {
        const std::string text = random_tokens(random, 3 * block_size);
        for (const Layout &layout : layouts)
            ASSERT_NO_FATAL_FAILURE(expect_same_lines(text, 1 + round % 2, layout,
                static_cast<int32_t>(120'000 / (layout.real_count + layout.integer_count))));
    }
}

TEST_F(GmfTextModel, ATextThatEndsWithABlockIsReadWhole)
{
    std::mt19937 random(4);
    const std::size_t head = std::string("MeshVersionFormatted 2 Dimension 3 RequiredEdges 30").size();
    for (const std::size_t end : {block_size - 1, block_size, block_size + 1, 2 * block_size})
        for (const char *last : {"7", "7 ", "77777777", "-7\n", "7#", "7 #"}) {
            std::string text = random_tokens(random, 300);
            text.insert(0, end - head - 1 - text.size() - std::string(last).size(), ' ');
            text += last;
            ASSERT_NO_FATAL_FAILURE(expect_same_lines(text, 2, layouts[2], 30));
        }
}

} // namespace
} // namespace korvane::testing
