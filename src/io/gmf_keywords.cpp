// The keyword table: the named rows, spread over the 80 codes; all other codes are "Reserved".
//
// Looking up a name is a binary search in an order that is made when the library is compiled.
#include "io/gmf_keywords.h"

#include <algorithm>
#include <utility>

namespace korvane {

namespace {

struct NamedRow {
    int32_t code;
    gmf_keyword_row_t row;
};

constexpr NamedRow named_rows[] = {
    {1, {"MeshVersionFormatted", "", "", "i"}},
    {3, {"Dimension", "", "", "i"}},
    {4, {"Vertices", "Vertex", "i", "dri"}},
    {5, {"Edges", "Edge", "i", "iii"}},
    {6, {"Triangles", "Triangle", "i", "iiii"}},
    {7, {"Quadrilaterals", "Quadrilateral", "i", "iiiii"}},
    {8, {"Tetrahedra", "Tetrahedron", "i", "iiiii"}},
    {9, {"Prisms", "Prism", "i", "iiiiiii"}},
    {10, {"Hexahedra", "Hexahedron", "i", "iiiiiiiii"}},
    {11, {"IterationsAll", "IterationAll", "", "i"}},
    {12, {"TimesAll", "TimeAll", "", "r"}},
    {13, {"Corners", "Corner", "i", "i"}},
    {14, {"Ridges", "Ridge", "i", "i"}},
    {15, {"RequiredVertices", "RequiredVertex", "i", "i"}},
    {16, {"RequiredEdges", "RequiredEdge", "i", "i"}},
    {17, {"RequiredTriangles", "RequiredTriangle", "i", "i"}},
    {18, {"RequiredQuadrilaterals", "RequiredQuadrilateral", "i", "i"}},
    {19, {"TangentAtEdgeVertices", "TangentAtEdgeVertex", "i", "iii"}},
    {20, {"NormalAtVertices", "NormalAtVertex", "i", "ii"}},
    {21, {"NormalAtTriangleVertices", "NormalAtTriangleVertex", "i", "iii"}},
    {22, {"NormalAtQuadrilateralVertices", "NormalAtQuadrilateralVertex", "i", "iiii"}},
    {23, {"AngleOfCornerBound", "", "", "r"}},
    {24, {"TrianglesP2", "TriangleP2", "i", "iiiiiii"}},
    {25, {"EdgesP2", "EdgeP2", "i", "iiii"}},
    {27, {"QuadrilateralsQ2", "QuadrilateralQ2", "i", "iiiiiiiiii"}},
    {30, {"TetrahedraP2", "TetrahedronP2", "i", "iiiiiiiiiii"}},
    {33, {"HexahedraQ2", "HexahedronQ2", "i", "iiiiiiiiiiiiiiiiiiiiiiiiiiii"}},
    {46, {"Polyhedra", "Polyhedron", "i", "iiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiii"}},
    {47, {"Polygons", "Polygon", "", "iiiiiiiii"}},
    {49, {"Pyramids", "Pyramid", "i", "iiiiii"}},
    {50, {"BoundingBox", "", "", "drdr"}},
    // Kept on purpose: the columns of "Body" are shifted, because its files were always written that way
    {51, {"Body", "i", "drdrdrdr", ""}},
    {52, {"PrivateTable", "PrivateTable", "i", "i"}},
    {54, {"End", "", "", ""}},
    {59, {"Tangents", "Tangent", "i", "dr"}},
    {60, {"Normals", "Normal", "i", "dr"}},
    {61, {"TangentAtVertices", "TangentAtVertex", "i", "ii"}},
    {62, {"SolAtVertices", "SolAtVertex", "i", "sr"}},
    {63, {"SolAtEdges", "SolAtEdge", "i", "sr"}},
    {64, {"SolAtTriangles", "SolAtTriangle", "i", "sr"}},
    {65, {"SolAtQuadrilaterals", "SolAtQuadrilateral", "i", "sr"}},
    {66, {"SolAtTetrahedra", "SolAtTetrahedron", "i", "sr"}},
    {67, {"SolAtPentahedra", "SolAtPentahedron", "i", "sr"}},
    {68, {"SolAtHexahedra", "SolAtHexahedron", "i", "sr"}},
    {69, {"DSolAtVertices", "DSolAtVertex", "i", "sr"}},
    {70, {"ISolAtVertices", "ISolAtVertex", "i", "i"}},
    {71, {"ISolAtEdges", "ISolAtEdge", "i", "ii"}},
    {72, {"ISolAtTriangles", "ISolAtTriangle", "i", "iii"}},
    {73, {"ISolAtQuadrilaterals", "ISolAtQuadrilateral", "i", "iiii"}},
    {74, {"ISolAtTetrahedra", "ISolAtTetrahedron", "i", "iiii"}},
    {75, {"ISolAtPentahedra", "ISolAtPentahedron", "i", "iiiiii"}},
    {76, {"ISolAtHexahedra", "ISolAtHexahedron", "i", "iiiiiiii"}},
    {77, {"Iterations", "", "", "i"}},
    {78, {"Time", "", "", "r"}},
};

constexpr std::size_t code_count = GMF_MAX_KEYWORDS + 1;

constexpr std::array<gmf_keyword_row_t, code_count> spread_rows()
{
    std::array<gmf_keyword_row_t, code_count> table{};
    table.fill({"Reserved", "", "", ""});
    for (const NamedRow &named : named_rows)
        table[static_cast<std::size_t>(named.code)] = named.row;
    return table;
}

} // namespace

constexpr std::array<gmf_keyword_row_t, code_count> gmf_keyword_table = spread_rows();

namespace {

constexpr bool comes_before(int32_t a, int32_t b)
{
    const std::string_view name_a = gmf_keyword_table[static_cast<std::size_t>(a)].name;
    const std::string_view name_b = gmf_keyword_table[static_cast<std::size_t>(b)].name;
    return name_a < name_b || (name_a == name_b && a < b);
}

/// The codes 1..79 in the order of their names, equal names by code.
constexpr std::array<int32_t, GMF_MAX_KEYWORDS> order_by_name()
{
    std::array<int32_t, GMF_MAX_KEYWORDS> codes{};
    for (int32_t code = 1; code <= GMF_MAX_KEYWORDS; ++code)
        codes[static_cast<std::size_t>(code - 1)] = code;
    std::sort(codes.begin(), codes.end(), comes_before);
    return codes;
}

constexpr std::array<int32_t, GMF_MAX_KEYWORDS> codes_by_name = order_by_name();

constexpr std::size_t count_runs(std::string_view format)
{
    std::size_t runs = 0;
    char last = '\0';
    for (const char letter : format) {
        if (letter == 'd' || letter == 's')
            continue;
        runs += letter != last ? 1 : 0;
        last = letter;
    }
    return runs;
}

static_assert(std::all_of(gmf_keyword_table.begin(), gmf_keyword_table.end(),
    [](const gmf_keyword_row_t &row) { return count_runs(row.format) <= gmf_max_runs; }));

constexpr bool is_named(gmf_code_t code, std::string_view name)
{
    return gmf_keyword_table[static_cast<std::size_t>(code)].name == name;
}

static_assert(is_named(gmf_mesh_version_formatted, "MeshVersionFormatted"));
static_assert(is_named(gmf_dimension, "Dimension"));
static_assert(is_named(gmf_vertices, "Vertices"));
static_assert(is_named(gmf_edges, "Edges"));
static_assert(is_named(gmf_triangles, "Triangles"));
static_assert(is_named(gmf_quadrilaterals, "Quadrilaterals"));
static_assert(is_named(gmf_tetrahedra, "Tetrahedra"));
static_assert(is_named(gmf_hexahedra, "Hexahedra"));
static_assert(is_named(gmf_required_vertices, "RequiredVertices"));
static_assert(is_named(gmf_required_edges, "RequiredEdges"));
static_assert(is_named(gmf_required_triangles, "RequiredTriangles"));
static_assert(is_named(gmf_required_quadrilaterals, "RequiredQuadrilaterals"));
static_assert(is_named(gmf_pyramids, "Pyramids"));
static_assert(is_named(gmf_end, "End"));
static_assert(is_named(gmf_sol_at_vertices, "SolAtVertices"));

} // namespace

int32_t gmf_find_keyword(std::string_view name)
{
    const auto found = std::lower_bound(
        codes_by_name.begin(), codes_by_name.end(), name, [](int32_t code, std::string_view wanted) {
            return gmf_keyword_table[static_cast<std::size_t>(code)].name < wanted;
        });
    if (found == codes_by_name.end() || gmf_keyword_table[static_cast<std::size_t>(*found)].name != name)
        return 0;
    return *found;
}

} // namespace korvane
