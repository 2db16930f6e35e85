#include <array>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "io/gmf_fixture.h"

namespace korvane::testing {
namespace {

const std::string header = "MeshVersionFormatted 2\nDimension 3\n";

class GmfText : public GmfEncoding {
  protected:
    GmfText() : GmfEncoding("a.mesh") {}

    /// The integers of a block of lines of `width` integers.
    std::vector<int32_t> integers(int32_t index, int32_t code, int32_t width)
    {
        const int32_t count = gmf_keyword_count(index, code);
        std::vector<int32_t> values(static_cast<std::size_t>(count * width), -7);
        const GmfInput column = {width, values.data(), nullptr};
        EXPECT_EQ(gmf_seek_keyword(index, code), 0);
        gmf_read_lines(index, code, count, {&column, 1});
        return values;
    }

    /// The required vertices that a block with this text lists.
    std::vector<int32_t> listed(const std::string &block)
    {
        const int32_t index = open(header + "RequiredVertices\n" + block);
        const std::vector<int32_t> values = integers(index, gmf_required_vertices, 1);
        gmf_close_file(index);
        return values;
    }
};

using Integers = std::vector<int32_t>;

TEST_F(GmfText, WritesTheExactLayout)
{
    const std::string name = folder.name("a.sol");
    const int32_t index = gmf_open_file(name.c_str(), gmf_write_mode, 2, 3);
    const std::array<double, 3> xyz = {0.1, -2, 1e-7};
    const std::array<int32_t, 3> integers = {5, -6, 7};
    const std::array<int32_t, 2> types = {1, 2};
    const std::array<double, 4> solution = {1. / 3, 2, 3.5, -0.0};
    EXPECT_EQ(gmf_write_keyword_header(index, gmf_vertices, 2), 2);
    EXPECT_EQ(gmf_write_line(index, gmf_vertices, integers.data(), xyz.data()), 1);
    EXPECT_EQ(gmf_write_line(index, gmf_vertices, integers.data(), xyz.data()), 1);
    EXPECT_EQ(gmf_write_keyword_header(index, gmf_edges, 1), 1);
    EXPECT_EQ(gmf_write_line(index, gmf_edges, integers.data(), nullptr), 1);
    EXPECT_EQ(gmf_write_keyword_header(index, 78, 12), 1); // "Time", without count
    EXPECT_EQ(gmf_write_line(index, 78, nullptr, xyz.data()), 1);
    EXPECT_EQ(gmf_write_keyword_header(index, gmf_sol_at_vertices, 1, 2, types.data()), 1);
    EXPECT_EQ(gmf_write_line(index, gmf_sol_at_vertices, nullptr, solution.data()), 1);
    EXPECT_EQ(gmf_finish_file(index), 1);
    EXPECT_EQ(gmf_finish_file(index), 1);
    EXPECT_EQ(gmf_close_file(index), 1);
    EXPECT_EQ(read_file(name), "MeshVersionFormatted 2\n\nDimension 3\n"
                               "\nVertices\n2\n0.1 -2 1e-07 5 \n0.1 -2 1e-07 5 \n"
                               "\nEdges\n1\n5 -6 7 \n"
                               "\nTime\n0.1 \n"
                               "\nSolAtVertices\n1\n2 1 2 \n\n0.333333333333333 2 3.5 -0 \n"
                               "\nEnd\n");
}

TEST_F(GmfText, WritesSinglePrecisionInVersion1)
{
    const std::string name = folder.name("a.mesh");
    const int32_t index = gmf_open_file(name.c_str(), gmf_write_mode, 1, 2);
    const std::array<double, 2> xy = {1. / 3, 123456789};
    const int32_t tag = 1;
    EXPECT_EQ(gmf_write_keyword_header(index, gmf_vertices, 1), 1);
    EXPECT_EQ(gmf_write_line(index, gmf_vertices, &tag, xy.data()), 1);
    EXPECT_EQ(gmf_close_file(index), 1);
    EXPECT_EQ(read_file(name),
        "MeshVersionFormatted 1\n\nDimension 2\n\nVertices\n1\n0.333333 1.23457e+08 1 \n\nEnd\n");
}

TEST_F(GmfText, TheBodyBlockDisagreesOnItsCount)
{
    // Kept on purpose: a writer takes and writes a line count, a reader takes none and finds one line.
    const std::string name = folder.name("a.mesh");
    int32_t index = gmf_open_file(name.c_str(), gmf_write_mode, 2, 3);
    EXPECT_EQ(gmf_write_keyword_header(index, 51, 3), 3);
    EXPECT_EQ(gmf_write_line(index, 51, nullptr, nullptr), 1);
    EXPECT_EQ(gmf_close_file(index), 1);
    EXPECT_EQ(read_file(name), "MeshVersionFormatted 2\n\nDimension 3\n\nBody\n3\n\n\nEnd\n");
    index = gmf_open_file(name.c_str(), gmf_read_mode, &version, &dimension);
    EXPECT_EQ(gmf_keyword_count(index, 51), 1);
    EXPECT_EQ(gmf_held_lines(index, 51), 1);
    EXPECT_EQ(gmf_seek_keyword(index, 51), 0);
    EXPECT_EQ(gmf_read_line(index, 51, nullptr, nullptr), 1);
    EXPECT_EQ(gmf_close_file(index), 1);
}

TEST_F(GmfText, ReadsTheHeader)
{
    EXPECT_TRUE(opens("MeshVersionFormatted 1 Dimension 2"));
    EXPECT_EQ(version, 1);
    EXPECT_EQ(dimension, 2);
    EXPECT_TRUE(
        opens("#MeshVersionFormatted 7\n  MeshVersionFormatted\n#\n3 # Dimension 4\n\r\nDimension # x\n\n3"));
    EXPECT_EQ(version, 3);
    EXPECT_EQ(dimension, 3);
    EXPECT_TRUE(opens("junk 1 2 Vertices MeshVersionFormatted 2 more junk 3 Dimension 3 End"));
    for (const char *text : {"", "MeshVersionFormatted", "MeshVersionFormatted 2",
             "MeshVersionFormatted 2 Dimension", "MeshVersionFormatted 2 Dimension x",
             "MeshVersionFormatted x Dimension 3", "Dimension 3 MeshVersionFormatted 2",
             "MeshVersionFormatted 0 Dimension 3", "MeshVersionFormatted 4 Dimension 3",
             "MeshVersionFormatted -1 Dimension 3", "MeshVersionFormatted 2 Dimension 1",
             "MeshVersionFormatted 2 Dimension 4", "xMeshVersionFormatted 2 Dimension 3",
             "MeshVersionFormatted 2 #Dimension 3", "meshversionformatted 2 Dimension 3"})
        EXPECT_FALSE(opens(text)) << text;
}

TEST_F(GmfText, IndexesKeywords)
{
    const int32_t index = open(header + "Vertices 2 0 0 0 1 1 1 1 2 # Edges 9\nEdges\n#\n1 1 2 3 Triangles x "
                                        "Reserved Quadrilaterals -4 Tetrahedra 0\n"
                                        "Time 0.5 ISolAtVertices 1 8 vertices 7 Hexahedra");
    EXPECT_EQ(gmf_keyword_count(index, gmf_vertices), 2);
    EXPECT_EQ(gmf_keyword_count(index, gmf_edges), 1);
    EXPECT_EQ(gmf_keyword_count(index, gmf_triangles), 0);
    EXPECT_EQ(gmf_keyword_count(index, 2), 1);
    EXPECT_EQ(gmf_keyword_count(index, gmf_quadrilaterals), 0);
    EXPECT_EQ(gmf_keyword_count(index, gmf_tetrahedra), 0);
    EXPECT_EQ(gmf_keyword_count(index, gmf_hexahedra), 0);
    EXPECT_EQ(gmf_keyword_count(index, 78), 1);
    EXPECT_EQ(gmf_keyword_count(index, 70), 1);
    EXPECT_EQ(integers(index, gmf_edges, 3), (Integers{1, 2, 3}));
    EXPECT_EQ(integers(index, 70, 1), Integers{8});
    gmf_close_file(index);
}

TEST_F(GmfText, TheLastOccurrenceOfAKeywordCounts)
{
    const int32_t index =
        open(header + "RequiredEdges 3 1 2 3 RequiredEdges 2 7 8\nRequiredVertices 1 1 RequiredVertices 0");
    EXPECT_EQ(integers(index, gmf_required_edges, 1), (Integers{7, 8}));
    EXPECT_EQ(gmf_keyword_count(index, gmf_required_vertices), 0);
    gmf_close_file(index);
}

TEST_F(GmfText, ReadsSolutionHeaders)
{
    const int32_t index =
        open(header + "SolAtVertices\n2\n3 1 # scalar\n3 9\n\n1 2 3 4 5 6 7 8 9 10 11 12 13 14");
    int32_t types = 0;
    int32_t values = 0;
    std::array<int32_t, GMF_MAX_TYPES> codes{};
    EXPECT_EQ(gmf_keyword_count(index, gmf_sol_at_vertices, &types, &values, codes.data()), 2);
    EXPECT_EQ(types, 3);
    EXPECT_EQ(values, 7);
    EXPECT_EQ(codes[1], 3);
    std::array<double, 7> reals{};
    gmf_seek_keyword(index, gmf_sol_at_vertices);
    EXPECT_EQ(gmf_read_line(index, gmf_sol_at_vertices, nullptr, reals.data()), 1);
    EXPECT_EQ(gmf_read_line(index, gmf_sol_at_vertices, nullptr, reals.data()), 1);
    EXPECT_EQ(reals, (std::array<double, 7>{8, 9, 10, 11, 12, 13, 14}));
    EXPECT_EQ(gmf_read_line(index, gmf_sol_at_vertices, nullptr, reals.data()), 0);
    EXPECT_EQ(reals, (std::array<double, 7>{}));
    gmf_close_file(index);
}

TEST_F(GmfText, AWrongTypeHeaderFailsTheOpen)
{
    for (const char *types :
        {"", "x", "-1", "21", "2147483648", "99999999999999999999", "3 1 2", "2 1 x", "1 End"})
        EXPECT_FALSE(opens(header + "SolAtVertices 1 " + types)) << types;
    EXPECT_TRUE(opens(header + "SolAtVertices 1 0"));
    EXPECT_TRUE(opens(header + "SolAtVertices 1 20 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1"));
}

TEST_F(GmfText, WhatIsMissingReadsAsZeros)
{
    EXPECT_EQ(listed("5 1 2 3"), (Integers{1, 2, 3, 0, 0}));
    EXPECT_EQ(listed("3"), (Integers{0, 0, 0}));
    EXPECT_EQ(listed("4 1 2 Edges 3 4"), (Integers{1, 2, 0, 0}));
    EXPECT_EQ(listed("4 1 2 x 4"), (Integers{1, 2, 0, 0}));
    EXPECT_EQ(listed("3 1 nan 2"), (Integers{1, 0, 0}));
    EXPECT_EQ(listed("4 1.5 2 -3+4"), (Integers{1, 2, -3, 4}));
    EXPECT_EQ(listed("3 99999999999 -99999999999 1#2"), (Integers{INT32_MAX, INT32_MIN, 1}));

    const int32_t index = open(header + "Vertices 3 1 2 3 4 5 6");
    const ReadVertices<3> vertices(index);
    EXPECT_EQ(vertices.whole_lines, 1);
    EXPECT_EQ(vertices.xyz, (std::array<double, 9>{1, 2, 3, 5, 6}));
    EXPECT_EQ(vertices.tags, (std::array<int32_t, 3>{4}));
    gmf_close_file(index);
}

TEST_F(GmfText, ColumnsBehindTheEndOfTheFileAreZeros)
{
    for (const std::size_t comment : {0u, 100u, 1000u, 262'000u, 262'100u, 262'144u, 300'000u})
        for (const char *cut :
            {"4", "4 ", "4 5", "4 5\n", "4 5 6", "4 5 6 ", "4 5 x", "4 5 x 7 ", "\n #", " "}) {
            const int32_t index =
                open(header + '#' + std::string(comment, 'c') + "\nVertices 2 1 2 3 9\n" + cut);
            const ReadVertices<2> vertices(index);
            EXPECT_EQ(vertices.whole_lines, 1) << cut;
            const std::string text = cut;
            const auto held = [&](char digit) { return text.find(digit) == text.npos ? 0. : digit - '0'; };
            EXPECT_EQ(vertices.xyz, (std::array<double, 6>{1, 2, 3, held('4'), held('5'), held('6')})) << cut;
            EXPECT_EQ(vertices.tags, (std::array<int32_t, 2>{9, 0})) << cut;
            EXPECT_EQ(ReadVertices<1>(index).whole_lines, 1);
            gmf_close_file(index);
        }
}

TEST_F(GmfText, ABlockThatEndedStaysEnded)
{
    // "inf" is no integer, so the first line is cut; it is a real, which the next line must not take.
    const int32_t index = open(header + "Vertices 2 1 2 3 inf 5 6 7");
    std::array<double, 3> xyz{};
    int32_t tag = -7;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(gmf_seek_keyword(index, gmf_vertices), 0);
        EXPECT_EQ(gmf_read_line(index, gmf_vertices, &tag, xyz.data()), 0);
        EXPECT_EQ(xyz, (std::array<double, 3>{1, 2, 3}));
        EXPECT_EQ(tag, 0);
        EXPECT_EQ(gmf_read_line(index, gmf_vertices, &tag, xyz.data()), 0);
        EXPECT_EQ(xyz, (std::array<double, 3>{}));
    }
    gmf_close_file(index);
}

TEST_F(GmfText, AFileHoldsNoMoreLinesThanItHasRoomFor)
{
    const int32_t index = open(header + "Vertices 2000000000 1 2 3 4 5");
    EXPECT_EQ(gmf_keyword_count(index, gmf_vertices), 2'000'000'000);
    EXPECT_EQ(gmf_held_lines(index, gmf_vertices), 2);
    gmf_close_file(index);
    EXPECT_EQ(gmf_held_lines(open(header + "RequiredEdges 2147483647"), gmf_required_edges), 0);
    gmf_close_file(1);
    EXPECT_EQ(gmf_held_lines(open(header + "RequiredEdges 3 1 2 3"), gmf_required_edges), 3);
    gmf_close_file(1);
}

TEST_F(GmfText, RealsAreReadInThePrecisionOfTheVersion)
{
    for (const int32_t stated : {1, 2, 3}) {
        const int32_t index = open("MeshVersionFormatted " + std::to_string(stated) +
                                   " Dimension 2 Vertices 2 0.1 3.4e38 0 0x1p-3 -inf 1");
        std::array<double, 2> xy{};
        int32_t tag = 0;
        gmf_seek_keyword(index, gmf_vertices);
        EXPECT_EQ(gmf_read_line(index, gmf_vertices, &tag, xy.data()), 1);
        EXPECT_EQ(xy[0], stated == 1 ? double{0.1f} : 0.1);
        EXPECT_EQ(gmf_read_line(index, gmf_vertices, &tag, xy.data()), 1);
        EXPECT_EQ(xy[0], 0.125);
        EXPECT_EQ(xy[1], -HUGE_VAL);
        EXPECT_EQ(tag, 1);
        gmf_close_file(index);
    }
}

TEST_F(GmfText, LinesMayBeLaidOutInAnyWay)
{
    EXPECT_EQ(listed("3 1\n\n\n2\t\t\v3"), (Integers{1, 2, 3}));
    EXPECT_EQ(listed("3\r\n1\r\n2\r\n3\r\n"), (Integers{1, 2, 3}));
    EXPECT_EQ(listed("# c\n3 # c 9\n# c 8\n1 # c 7\n2#\n#\n3# c"), (Integers{1, 2, 3}));
}

} // namespace
} // namespace korvane::testing
