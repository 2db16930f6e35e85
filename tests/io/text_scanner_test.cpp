#include "io/text_scanner.h"

#include <cmath>
#include <cstdlib>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/memory.h"
#include "support/temporary_folder.h"

namespace korvane::testing {
namespace {

constexpr std::size_t block_size = FileStream::block_size;

/// Numbers and keywords of a text, taken one by one.
class Scanned {
  public:
    explicit Scanned(const std::string &text)
    {
        EXPECT_TRUE(stream->try_open_for_reading(folder.write("text", text).c_str()));
        scanner.emplace(*stream);
    }

    TextScanner *operator->() { return &*scanner; }

    /// All integers up to one that is missing, some of them by the quick way.
    std::vector<int32_t> integers()
    {
        std::vector<int32_t> all;
        for (;;) {
            int32_t values[7] = {};
            PlainNumbers<false> plain = scanner->plain_numbers<false>();
            const std::size_t taken = plain.take(values, std::size(values));
            all.insert(all.end(), values, values + taken);
            scanner->resume(plain);
            int32_t value = 0;
            if (!scanner->next_number(value))
                return all;
            all.push_back(value);
        }
    }

    double real()
    {
        double value = -77;
        return scanner->next_number(value) ? value : -77;
    }

  private:
    TemporaryFolder folder;
    Owned<FileStream> stream = create_owned<FileStream>();
    std::optional<TextScanner> scanner;
};

using Integers = std::vector<int32_t>;

TEST(TextScanner, TakesNumbersBetweenBlanksOfAllKinds)
{
    EXPECT_EQ(Scanned("1 2\t3\n4\v5\f6\r\n7").integers(), (Integers{1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(Scanned("  \n 8").integers(), Integers{8});
    EXPECT_EQ(Scanned("").integers(), Integers{});
    EXPECT_EQ(Scanned(" \n\n ").integers(), Integers{});
    EXPECT_EQ(Scanned("-1 +2 -3").integers(), (Integers{-1, 2, -3}));
}

TEST(TextScanner, PassesOverCommentsAnywhere)
{
    EXPECT_EQ(Scanned("# one 1\n2 # three 3\n#\n##\n4#5\n6").integers(), (Integers{2, 4, 6}));
    EXPECT_EQ(Scanned("1 # no end of line 2").integers(), Integers{1});
    EXPECT_EQ(Scanned("#").integers(), Integers{});
    EXPECT_EQ(Scanned("1 #" + std::string(3 * block_size, '2') + "\n3").integers(), (Integers{1, 3}));
}

TEST(TextScanner, StopsAtWhatIsNoNumberAndStaysThere)
{
    Scanned scanned("1 2 x 3");
    EXPECT_EQ(scanned.integers(), (Integers{1, 2}));
    EXPECT_EQ(scanned.integers(), Integers{});
    EXPECT_EQ(scanned.real(), -77);
}

TEST(TextScanner, TakesTheNumberThatATokenBeginsWith)
{
    EXPECT_EQ(Scanned("1.5 2e3 3x4 0x5 6").integers(), (Integers{1, 2, 3, 0, 6}));
    EXPECT_EQ(Scanned("1-2+3").integers(), (Integers{1, -2, 3}));
    EXPECT_EQ(Scanned("1- 2").integers(), Integers{1});
    Scanned reals("1.0-2.0 1e5-3 0.5.5 inf nanx 1e400");
    for (const double expected : {1.0, -2.0, 1e5, -3.0, 0.5, HUGE_VAL})
        EXPECT_EQ(reals.real(), expected);
    EXPECT_TRUE(std::isnan(reals.real()));
    EXPECT_EQ(reals.real(), HUGE_VAL);
    EXPECT_EQ(reals.real(), -77);
}

TEST(TextScanner, TokensMayBeLongerThanABlock)
{
    EXPECT_EQ(Scanned(std::string(5 * block_size, '0') + "1 2").integers().size(), 2u);
    EXPECT_EQ(Scanned("1 2" + std::string(5 * block_size, 'x') + " 3").integers(), (Integers{1, 2, 3}));
    EXPECT_EQ(
        Scanned("0." + std::string(block_size / 2, '0') + "1e" + std::to_string(block_size / 2 + 3)).real(),
        100);
}

TEST(TextScanner, FindsNumbersWhereverABlockEnds)
{
    for (std::size_t shift = 0; shift < 40; ++shift) {
        const std::string blanks(block_size - 20 + shift - 20, ' ');
        Scanned scanned(blanks + "12345 -678901 2.5 1e-3 # 7\n8 0x1p4");
        EXPECT_EQ(scanned.real(), 12345) << shift;
        EXPECT_EQ(scanned.real(), -678901) << shift;
        EXPECT_EQ(scanned.real(), 2.5) << shift;
        EXPECT_EQ(scanned.real(), 1e-3) << shift;
        EXPECT_EQ(scanned.real(), 8) << shift;
        EXPECT_EQ(scanned.real(), 16) << shift;
        EXPECT_EQ(Scanned(blanks + "12345 -678901 25 13 # 7\n8 99999999 1").integers(),
            (Integers{12345, -678901, 25, 13, 8, 99999999, 1}))
            << shift;
    }
}

TEST(TextScanner, FindsKeywordsAtTheBeginOfTokensOnly)
{
    Scanned scanned(
        "Vertices 1 2.5e3 xEdges 1Edges #Edges\n#\nEdges#Triangles\n\tTriangles Edgesx edges nan\n"
        "Reserved -Edges _Edges End");
    for (const int32_t code : {4, 6, 2, 54, 0, 0})
        EXPECT_EQ(scanned->next_keyword(), code);
}

TEST(TextScanner, OnlyATokenBeginsAComment)
{
    Scanned scanned("Vertices 1#c Edges\n 3#c Triangles\n x# Tetrahedra # Edges\n #c Edges\n 5 #\nEnd");
    EXPECT_EQ(scanned->next_keyword(), 4);
    int32_t count = 0;
    EXPECT_TRUE(scanned->next_number(count)); // which leaves the "#" as the next token
    for (const int32_t code : {6, 8, 54, 0})
        EXPECT_EQ(scanned->next_keyword(), code);
}

TEST(TextScanner, KeywordsAndNumbersMayAlternate)
{
    Scanned scanned("Vertices 3 1 2 3 Edges Triangles\n4");
    int32_t count = 0;
    EXPECT_EQ(scanned->next_keyword(), 4);
    EXPECT_TRUE(scanned->next_number(count));
    EXPECT_EQ(count, 3);
    EXPECT_EQ(scanned->position(), 10);
    EXPECT_EQ(scanned->next_keyword(), 5);
    EXPECT_FALSE(scanned->next_number(count)); // and the keyword is not passed over
    EXPECT_EQ(scanned->next_keyword(), 6);
    EXPECT_TRUE(scanned->next_number(count));
    EXPECT_EQ(count, 4);
    EXPECT_EQ(scanned->next_keyword(), 0);
}

TEST(TextScanner, FindsKeywordsWhereverABlockEnds)
{
    for (std::size_t shift = 0; shift < 40; ++shift) {
        Scanned scanned(
            std::string(block_size - 20 + shift - 20, '7') + " 1 xVertices #\nRequiredVertices Edges#x\nEnd");
        for (const int32_t code : {15, 54, 0})
            EXPECT_EQ(scanned->next_keyword(), code) << shift;
    }
}

TEST(TextScanner, WhatFollowsALongTokenWithoutBlankIsNoKeyword)
{
    for (const std::size_t length : {block_size - 1, block_size, block_size + 1, 3 * block_size})
        EXPECT_EQ(Scanned(std::string(length, 'x') + "Vertices Edges")->next_keyword(), 5);
}

/// The integers of a text as a reader of lines would see them who splits at blanks.
Integers naive_integers(const std::string &text)
{
    Integers all;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream tokens(line.substr(0, line.find('#')));
        for (std::string token; tokens >> token;) {
            char *end = nullptr;
            all.push_back(static_cast<int32_t>(std::strtol(token.c_str(), &end, 10)));
            if (end == token.c_str()) {
                all.pop_back();
                return all;
            }
        }
    }
    return all;
}

TEST(TextScanner, AgreesWithANaiveSplitterOnRandomText)
{
    std::mt19937 random(1);
    for (int round = 0; round < 60; ++round) {
        std::string text;
        const std::size_t size = round % 10 == 0 ? 2 * block_size : random() % 2000;
        while (text.size() < size) {
            switch (random() % 16) {
            case 0:
                text += "# a comment 12\n";
                break;
            case 1:
                text += "\r\n";
                break;
            case 2:
                text += std::to_string(static_cast<int32_t>(random())) + ".25 ";
                break;
            case 3:
                text += std::string(random() % 100, ' ');
                break;
            case 4:
                text += std::string(random() % 100, '0') + "5\t";
                break;
            default:
                text += std::to_string(static_cast<int32_t>(random()) >> (random() % 32)) + " ";
            }
        }
        if (round % 3 == 0)
            text.insert(random() % text.size(), " x ");
        ASSERT_EQ(Scanned(text).integers(), naive_integers(text)) << round;
    }
}

} // namespace
} // namespace korvane::testing
