#include "io/gmf_keywords.h"

#include <string>

#include <gtest/gtest.h>

namespace korvane::testing {
namespace {

void expect_row(int32_t code, std::string_view name, std::string_view entity, std::string_view count,
    std::string_view format)
{
    const gmf_keyword_row_t &row = gmf_row(code);
    EXPECT_EQ(row.name, name);
    EXPECT_EQ(row.entity, entity);
    EXPECT_EQ(row.count, count);
    EXPECT_EQ(row.format, format);
    EXPECT_EQ(gmf_find_keyword(name), code);
}

TEST(GmfKeywords, HaveTheirRows)
{
    expect_row(1, "MeshVersionFormatted", "", "", "i");
    expect_row(4, "Vertices", "Vertex", "i", "dri");
    expect_row(10, "Hexahedra", "Hexahedron", "i", "iiiiiiiii");
    expect_row(33, "HexahedraQ2", "HexahedronQ2", "i", std::string(28, 'i'));
    expect_row(46, "Polyhedra", "Polyhedron", "i", std::string(33, 'i'));
    expect_row(50, "BoundingBox", "", "", "drdr");
    expect_row(51, "Body", "i", "drdrdrdr", "");
    expect_row(54, "End", "", "", "");
    expect_row(62, "SolAtVertices", "SolAtVertex", "i", "sr");
    expect_row(78, "Time", "", "", "r");
}

TEST(GmfKeywords, AreReservedWhereTheyHaveNoName)
{
    int32_t reserved = 0;
    for (int32_t code = 0; code <= GMF_MAX_KEYWORDS; ++code) {
        const gmf_keyword_row_t &row = gmf_row(code);
        if (row.name != "Reserved")
            continue;
        ++reserved;
        EXPECT_TRUE(row.entity.empty() && row.count.empty() && row.format.empty()) << code;
    }
    EXPECT_EQ(reserved, 26);
    EXPECT_EQ(gmf_find_keyword("Reserved"), 2);
}

TEST(GmfKeywords, AreFoundByTheirExactNameOnly)
{
    for (int32_t code = 1; code <= GMF_MAX_KEYWORDS; ++code)
        EXPECT_EQ(gmf_find_keyword(gmf_row(code).name), gmf_row(code).name == "Reserved" ? 2 : code);
    for (const char *name : {"", "vertices", "Vertice", "Verticess", "VERTICES", "nan", "zzz", "Aaa"})
        EXPECT_EQ(gmf_find_keyword(name), 0) << name;
}

TEST(GmfKeywords, HaveCodesFrom1To79)
{
    EXPECT_FALSE(gmf_is_code(0));
    EXPECT_TRUE(gmf_is_code(1));
    EXPECT_TRUE(gmf_is_code(79));
    EXPECT_FALSE(gmf_is_code(80));
    EXPECT_FALSE(gmf_is_code(-1));
}

} // namespace
} // namespace korvane::testing
