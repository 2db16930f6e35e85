#include <array>
#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "io/bytes.h"
#include "io/gmf_fixture.h"

namespace korvane::testing {
namespace {

class GmfBinary : public GmfEncoding {
  protected:
    GmfBinary() : GmfEncoding("a.meshb") {}
};

TEST_F(GmfBinary, WritesTheExactLayout)
{
    for (const int32_t stated : {1, 2}) {
        const std::string name = folder.name("a.solb");
        const int32_t index = gmf_open_file(name.c_str(), gmf_write_mode, stated, 2);
        const std::array<double, 2> xy = {0.1, -2};
        const std::array<int32_t, 3> integers = {5, -6, 7};
        const std::array<int32_t, 2> types = {1, 1};
        EXPECT_EQ(gmf_write_keyword_header(index, gmf_vertices, 1), 1);
        EXPECT_EQ(gmf_write_line(index, gmf_vertices, integers.data(), xy.data()), 1);
        EXPECT_EQ(gmf_write_keyword_header(index, gmf_sol_at_vertices, 1, 2, types.data()), 1);
        EXPECT_EQ(gmf_write_line(index, gmf_sol_at_vertices, nullptr, xy.data()), 1);
        EXPECT_EQ(gmf_write_keyword_header(index, gmf_edges, 0), 0);
        EXPECT_EQ(gmf_close_file(index), 1);

        const auto reals = [&](Bytes &bytes) {
            if (stated == 1)
                bytes.add(0.1f).add(-2.0f);
            else
                bytes.add(0.1).add(-2.0);
        };
        const int32_t real_bytes = stated == 1 ? 4 : 8;
        const int32_t second = 20 + 12 + 2 * real_bytes + 4;
        const int32_t third = second + 24 + 2 * real_bytes;
        Bytes expected;
        expected.header(stated, 2).integers(4, second, 1);
        reals(expected);
        expected.integers(5, 62, third, 1, 2, 1, 1);
        reals(expected);
        expected.integers(5, third + 12, 0, 54, 0);
        EXPECT_EQ(read_file(name), expected.text()) << stated;
    }
}

TEST_F(GmfBinary, ReadsBothByteOrders)
{
    for (const bool opposite : {false, true}) {
        for (const int32_t stated : {1, 2}) {
            Bytes bytes(opposite);
            bytes.header(stated, 3).integers(4, 0, 1);
            for (const double real : {0.1, -2.0, 1e10})
                stated == 1 ? bytes.add(static_cast<float>(real)) : bytes.add(real);
            bytes.integers(0x01020304);
            const int32_t index = open(bytes);
            EXPECT_EQ(version, stated);
            EXPECT_EQ(dimension, 3);
            std::array<double, 3> xyz{};
            int32_t tag = 0;
            EXPECT_EQ(gmf_keyword_count(index, gmf_vertices), 1);
            gmf_seek_keyword(index, gmf_vertices);
            EXPECT_EQ(gmf_read_line(index, gmf_vertices, &tag, xyz.data()), 1);
            EXPECT_EQ(xyz[0], stated == 1 ? double{0.1f} : 0.1);
            EXPECT_EQ(xyz[1], -2);
            EXPECT_EQ(xyz[2], 1e10);
            EXPECT_EQ(tag, 0x01020304);
            gmf_close_file(index);
        }
    }
}

TEST_F(GmfBinary, RefusesOtherHeaders)
{
    EXPECT_TRUE(opens(Bytes().header(2, 3)));
    EXPECT_TRUE(opens(Bytes().header(1, 2).integers(54, 0)));
    EXPECT_FALSE(opens(Bytes().integers(2, 2, 3, 20, 3)));
    EXPECT_FALSE(opens(Bytes().integers(0, 2, 3, 20, 3)));
    EXPECT_FALSE(opens(Bytes().integers(1, 0, 3, 20, 3)));
    EXPECT_FALSE(opens(Bytes().integers(1, 3, 3, 20, 3)));
    EXPECT_FALSE(opens(Bytes().integers(1, 2, 4, 20, 3)));
    EXPECT_TRUE(opens(Bytes().integers(1, 2, 3, -20, 3))); // where the next block is, is known without
    EXPECT_TRUE(opens(Bytes().integers(1, 2, 3, 21, 3)));
    EXPECT_FALSE(opens(Bytes().integers(1, 2, 3, 20, 1)));
    EXPECT_FALSE(opens(Bytes().integers(1, 2, 3, 20, 4)));
    const std::string whole = Bytes().header(2, 3).text();
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(open(whole.substr(0, size)), 0) << size;
}

TEST_F(GmfBinary, FollowsTheChainInsideTheFile)
{
    const auto chained = [](int32_t next) { return Bytes().header(2, 3).integers(15, next, 1, 7, 54, 0); };
    EXPECT_TRUE(opens(chained(36)));
    EXPECT_TRUE(opens(chained(44))); // the end of the file
    EXPECT_TRUE(opens(chained(0)));
    EXPECT_FALSE(opens(chained(45)));
    EXPECT_FALSE(opens(chained(INT32_MAX)));
    EXPECT_FALSE(opens(chained(-1)));
    EXPECT_FALSE(opens(chained(INT32_MIN)));
}

TEST_F(GmfBinary, FollowsTheChainBackButNotInACircle)
{
    const Bytes back = Bytes().header(2, 3).integers(99, 44).integers(15, 0, 1, 7).integers(16, 28, 2, 8, 9);
    const int32_t index = open(back);
    EXPECT_EQ(gmf_keyword_count(index, gmf_required_edges), 2);
    EXPECT_EQ(gmf_keyword_count(index, gmf_required_vertices), 1);
    EXPECT_EQ(gmf_seek_keyword(index, gmf_required_vertices), 0);
    gmf_close_file(index);

    EXPECT_FALSE(opens(Bytes().header(2, 3).integers(15, 20, 1, 7))); // to itself
    EXPECT_FALSE(opens(Bytes().header(2, 3).integers(15, 8, 1, 7)));  // to the dimension
    EXPECT_FALSE(opens(Bytes().header(2, 3).integers(15, 36, 1, 7, 15, 20, 1, 7)));
}

TEST_F(GmfBinary, StepsBackAreAtMostOnePerCode)
{
    const auto with_steps_back = [](int32_t steps) {
        // Unknown blocks from the last to the first, each of 8 bytes.
        Bytes bytes = Bytes().header(2, 3).integers(99, 28 + 8 * steps);
        for (int32_t i = 0; i <= steps; ++i)
            bytes.integers(99, i == 0 ? 0 : 20 + 8 * i);
        return bytes;
    };
    EXPECT_TRUE(opens(with_steps_back(1)));
    EXPECT_TRUE(opens(with_steps_back(79)));
    EXPECT_FALSE(opens(with_steps_back(80)));
}

TEST_F(GmfBinary, PassesOverUnknownCodesAndStopsAtTheEnd)
{
    const Bytes bytes = Bytes()
                            .header(2, 3)
                            .integers(99, 32, 5)
                            .integers(0, 40)
                            .integers(15, 56, 1, 7)
                            .integers(-1, 64)
                            .integers(54, 72)
                            .integers(16, 0, 1, 8);
    const int32_t index = open(bytes);
    EXPECT_EQ(gmf_keyword_count(index, gmf_required_vertices), 1);
    EXPECT_EQ(gmf_keyword_count(index, gmf_required_edges), 0);
    gmf_close_file(index);
}

TEST_F(GmfBinary, TheLastOccurrenceOfAKeywordCounts)
{
    const int32_t index = open(Bytes().header(2, 3).integers(15, 36, 1, 7).integers(15, 0, 2, 8, 9));
    int32_t value = 0;
    EXPECT_EQ(gmf_keyword_count(index, gmf_required_vertices), 2);
    gmf_seek_keyword(index, gmf_required_vertices);
    EXPECT_EQ(gmf_read_line(index, gmf_required_vertices, &value, nullptr), 1);
    EXPECT_EQ(value, 8);
    gmf_close_file(index);
}

TEST_F(GmfBinary, AWrongTypeHeaderFailsTheOpen)
{
    const auto solution = [] { return Bytes().header(2, 3).integers(62, 0, 1); };
    EXPECT_TRUE(opens(solution().integers(0)));
    EXPECT_TRUE(opens(solution().integers(2, 1, 4)));
    EXPECT_FALSE(opens(solution()));
    EXPECT_FALSE(opens(solution().integers(-1)));
    EXPECT_FALSE(opens(solution().integers(21)));
    EXPECT_FALSE(opens(solution().integers(2, 1)));
    EXPECT_FALSE(opens(solution().integers(INT32_MAX)));
}

TEST_F(GmfBinary, ANegativeOrMissingCountIsNoBlock)
{
    for (const int32_t count : {-1, INT32_MIN, 0}) {
        const int32_t index = open(Bytes().header(2, 3).integers(15, 0, count, 7));
        EXPECT_NE(index, 0);
        EXPECT_EQ(gmf_keyword_count(index, gmf_required_vertices), 0);
        gmf_close_file(index);
    }
    const int32_t index = open(Bytes().header(2, 3).integers(15, 0));
    EXPECT_EQ(gmf_keyword_count(index, gmf_required_vertices), 0);
    gmf_close_file(index);
}

TEST_F(GmfBinary, WhatIsMissingReadsAsZeros)
{
    Bytes bytes =
        Bytes().header(2, 3).integers(4, 0, 1'000'000).add(1.0).add(2.0).add(3.0).integers(4).add(5.0);
    const int32_t index = open(bytes);
    EXPECT_EQ(gmf_keyword_count(index, gmf_vertices), 1'000'000);
    EXPECT_EQ(gmf_held_lines(index, gmf_vertices), 2);
    const ReadVertices<3> vertices(index);
    EXPECT_EQ(vertices.whole_lines, 1);
    EXPECT_EQ(vertices.xyz, (std::array<double, 9>{1, 2, 3, 5}));
    EXPECT_EQ(vertices.tags, (std::array<int32_t, 3>{4}));
    gmf_close_file(index);
}

TEST_F(GmfBinary, TheBodyBlockDisagreesOnItsCount)
{
    // Kept on purpose: a writer takes and writes a line count, a reader takes none and finds one line.
    const std::string name = folder.name("b.meshb");
    int32_t index = gmf_open_file(name.c_str(), gmf_write_mode, 2, 3);
    EXPECT_EQ(gmf_write_keyword_header(index, 51, 3), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(gmf_write_line(index, 51, nullptr, nullptr), 1);
    EXPECT_EQ(gmf_close_file(index), 1);
    EXPECT_EQ(read_file(name), Bytes().header(2, 3).integers(51, 32, 3, 54, 0).text());
    index = open(read_file(name));
    EXPECT_EQ(gmf_keyword_count(index, 51), 1);
    gmf_close_file(index);
}

TEST_F(GmfBinary, ABlockBeyondPositionsOf32BitsIsRefused)
{
    const std::string name = folder.name("b.meshb");
    const int32_t index = gmf_open_file(name.c_str(), gmf_write_mode, 2, 3);
    const int32_t most = (INT32_MAX - 32) / 4;
    EXPECT_EQ(gmf_write_keyword_header(index, gmf_required_vertices, most + 1), 0);
    EXPECT_EQ(gmf_write_keyword_header(index, gmf_vertices, INT32_MAX), 0);
    EXPECT_EQ(gmf_finish_file(index), 0);
    EXPECT_EQ(gmf_close_file(index), 0);
    EXPECT_EQ(read_file(name), Bytes().header(2, 3).integers(54, 0).text());

    const int32_t other = gmf_open_file(name.c_str(), gmf_write_mode, 2, 3);
    EXPECT_EQ(gmf_write_keyword_header(other, gmf_required_vertices, most), most);
    const int32_t number = 1;
    EXPECT_EQ(gmf_write_line(other, gmf_required_vertices, &number, nullptr), 1);
    const GmfOutput column = {1, &number, nullptr};
    EXPECT_EQ(gmf_write_lines(other, gmf_required_vertices, most, {&column, 1}), 0);
    EXPECT_EQ(gmf_close_file(other), 0);
    EXPECT_EQ(read_file(name), Bytes().header(2, 3).integers(15, 36, most, 1, 54, 0).text());
}

} // namespace
} // namespace korvane::testing
