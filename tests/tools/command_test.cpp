#include "command_fixture.h"

namespace {

using namespace korvane::tests;

const char *const mixed = R"(MeshVersionFormatted 1
Dimension 3
Vertices
6
0 0 0 1
1 0 0 1
0 1 0 2
0 0 1 2
1 0 1 2
-0.5 1 1.25 2
Triangles
1
1 2 3 9
RequiredVertices
2
1 6
Prisms
1
1 2 3 4 5 6 8
Corners
1
1
End
)";

TEST_F(Command, WithoutArgumentsIsWrongUsage)
{
    for (const char *arguments :
        {"", "info", "stats", "convert", "convert a.mesh", "nonsense", "info --nonsense a.mesh",
            "stats --valid '' a.mesh", "convert a.mesh b.txt", "convert a.mesh b", "stats --valid",
            "stats --valid x --json a.mesh", "stats --worst -1 a.mesh", "sizes", "sizes a.mesh"}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exit_status, 2) << arguments;
        EXPECT_NE(outcome.errors, "") << arguments;
        EXPECT_EQ(outcome.output, "") << arguments;
    }
}

TEST_F(Command, WrongUsageLeadsToTheHelpAboutIt)
{
    EXPECT_EQ(run("nonsense a.mesh").errors,
        "korvane: nonsense: there is no such subcommand or option\nkorvane --help tells more.\n");
    EXPECT_EQ(run("diff a.mesh").errors, "korvane: B is required\nkorvane diff --help tells more.\n");
}

TEST_F(Command, TellsItsVersion)
{
    EXPECT_EQ(run("--version").output, "korvane 1.4.0\n");
}

TEST_F(Command, OneBadFileDoesNotHideTheOthers)
{
    write("good.mesh", mixed);
    const Outcome outcome = run("info missing.mesh good.mesh");
    EXPECT_EQ(outcome.exit_status, 1);
    EXPECT_TRUE(holds(outcome.output, "good.mesh"));
    EXPECT_TRUE(holds(outcome.errors, "missing.mesh"));
}

TEST_F(Command, InfoDescribesAFile)
{
    write("mixed.mesh", mixed);
    const Outcome outcome = run("info mixed.mesh");
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, "mixed.mesh\n"
                              "  format : text, version 1 (single precision), 3 dimensions\n"
                              "  keywords :\n"
                              "    Vertices                                6\n"
                              "    Triangles                               1\n"
                              "    Prisms                                  1  (not read)\n"
                              "    Corners                                 1  (not read)\n"
                              "    RequiredVertices                        2\n"
                              "  bounding box :\n"
                              "    x : -0.5 to 1\n"
                              "    y : 0 to 1\n"
                              "    z : 0 to 1.25\n"
                              "  required vertices : 2\n"
                              "  tags of vertices :\n"
                              "    1                   2\n"
                              "    2                   4\n"
                              "  tags of triangles :\n"
                              "    9                   1\n");
}

TEST_F(Command, InfoDescribesTheHeaderOfAFileInThePlane)
{
    write("plane.mesh", "MeshVersionFormatted 2 Dimension 2 Vertices 1 0.5 0.5 0 End");
    const Outcome outcome = run("info plane.mesh");
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_TRUE(holds(outcome.output, "2 dimensions"));
    EXPECT_TRUE(holds(outcome.output, "not three-dimensional"));
    EXPECT_EQ(run("stats plane.mesh").exit_status, 1);
}

TEST_F(Command, InfoTellsTheByteOrder)
{
    EXPECT_EQ(run("convert " + sample + " copy.meshb").exit_status, 0);
    EXPECT_TRUE(holds(run("info copy.meshb").output, "binary, little-endian, version 2"));
    const std::string real = KORVANE_REAL_FILES "/cube.meshb";
    if (!fs::exists(real))
        GTEST_SKIP() << "no file of another program here: " << real;
    EXPECT_TRUE(holds(run("info " + real).output, "binary, big-endian, version 1 (single precision)"));
}

TEST_F(Command, StatsReportsInReadableForm)
{
    const Outcome outcome = run("stats " + sample);
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_EQ(outcome.errors, "");
    for (const char *line : {"Mesh statistics : \n", "  number of hexahedra : 144 \n",
             "  number of pyramids : 180 \n", "  triangle angles:\n", "  Volume elements edges length:\n",
             "Mesh topological statistics : \n", "    Number of free edges :          0 (0 components) \n",
             "    Number of surface components (edge neighbourings) : 1 \n"})
        EXPECT_TRUE(holds(outcome.output, line)) << line;
}

TEST_F(Command, StatsReportsInKeyedFormAndNothingElse)
{
    const Outcome outcome = run("stats --valid here " + sample);
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_TRUE(holds(outcome.output, "VALID.here.vertex.count = 526\n"));
    EXPECT_TRUE(holds(outcome.output, "VALID.here.surface_component_by_edge.count = 1\n"));
    for (std::size_t start = 0; start < outcome.output.size(); start = outcome.output.find('\n', start) + 1)
        EXPECT_EQ(outcome.output.compare(start, 11, "VALID.here."), 0);
}

TEST_F(Command, ConvertsThereAndBackWithoutChange)
{
    EXPECT_EQ(run("convert " + sample + " once.meshb").exit_status, 0);
    EXPECT_EQ(run("convert once.meshb twice.mesh").exit_status, 0);
    EXPECT_EQ(run("convert twice.mesh thrice.meshb").exit_status, 0);
    EXPECT_EQ(contents(folder / "once.meshb"), contents(folder / "thrice.meshb"));
    EXPECT_EQ(run("stats --valid x " + sample).output, run("stats --valid x twice.mesh").output);
}

TEST_F(Command, ConvertTellsWhatIsNotCarriedOver)
{
    write("mixed.mesh", mixed);
    const Outcome outcome = run("convert mixed.mesh out.meshb");
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_EQ(outcome.errors, "korvane: mixed.mesh: not carried over: Prisms (1)\n"
                              "korvane: mixed.mesh: not carried over: Corners (1)\n");
    EXPECT_FALSE(holds(run("info out.meshb").output, "not read"));
}

TEST_F(Command, ConvertsOntoItselfAndThroughLinks)
{
    write("self.mesh", mixed);
    fs::create_symlink("self.mesh", folder / "link.mesh");
    EXPECT_EQ(run("convert link.mesh link.mesh").exit_status, 0);
    EXPECT_TRUE(fs::is_symlink(folder / "link.mesh"));
    EXPECT_TRUE(holds(contents(folder / "self.mesh"), "MeshVersionFormatted 2"));
    EXPECT_EQ(files_besides({"self.mesh", "link.mesh"}), std::vector<std::string>{});
}

TEST_F(Command, InfoDescribesSolutions)
{
    write("mixed.sol", "MeshVersionFormatted 2 Dimension 3 SolAtVertices 2 2 1 2 0.5 1 2 3 -0.25 4 5 6 "
                       "SolAtTriangles 1 1 4 1 2 3 4 5 6 7 8 9 End");
    const Outcome outcome = run("info mixed.sol");
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, "mixed.sol\n"
                              "  format : text, version 2 (double precision), 3 dimensions\n"
                              "  keywords :\n"
                              "    SolAtVertices                           2\n"
                              "    SolAtTriangles                          1\n"
                              "  SolAtVertices : scalar, vector; values per line : 4\n"
                              "    value 1 : -0.25 to 0.5\n"
                              "    value 2 : 1 to 4\n"
                              "    value 3 : 2 to 5\n"
                              "    value 4 : 3 to 6\n"
                              "  SolAtTriangles : matrix; values per line : 9\n"
                              "    value 1 : 1 to 1\n"
                              "    value 2 : 2 to 2\n"
                              "    value 3 : 3 to 3\n"
                              "    value 4 : 4 to 4\n"
                              "    value 5 : 5 to 5\n"
                              "    value 6 : 6 to 6\n"
                              "    value 7 : 7 to 7\n"
                              "    value 8 : 8 to 8\n"
                              "    value 9 : 9 to 9\n");
    write("broken.sol", "MeshVersionFormatted 2 Dimension 3 SolAtVertices 2 21 1 2 0.5");
    EXPECT_EQ(run("info broken.sol").exit_status, 1);
}

TEST_F(Command, InfoReadsNoMoreThanTheHeaderIfAsked)
{
    // Nearly 2 GiB of vertices, all of them a hole in the file: version 2, 3 dimensions, 76,000,000 vertices.
    const std::array<int32_t, 8> begin = {1, 2, 3, 20, 3, 4, 0, 76'000'000};
    const std::uintmax_t size = sizeof begin + std::uintmax_t{76'000'000} * 28;
    std::ofstream(folder / "huge.meshb", std::ios::binary)
        .write(reinterpret_cast<const char *>(begin.data()), sizeof begin);
    fs::resize_file(folder / "huge.meshb", size);
    write("mixed.sol", "MeshVersionFormatted 2 Dimension 3 SolAtVertices 1 2 1 2 1 2 3 4 End");
    const Outcome outcome = run("info --header huge.meshb mixed.sol");
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, "huge.meshb\n"
                              "  format : binary, little-endian, version 2 (double precision), 3 dimensions\n"
                              "  keywords :\n"
                              "    Vertices                         76000000\n"
                              "mixed.sol\n"
                              "  format : text, version 2 (double precision), 3 dimensions\n"
                              "  keywords :\n"
                              "    SolAtVertices                           1\n"
                              "  SolAtVertices : scalar, vector\n");
}

TEST_F(Command, SizesComparesEdgesWithTheSizesAtTheirEnds)
{
    // A unit square of two triangles, with an edge to a vertex that the mesh lacks.
    write("square.mesh",
        "MeshVersionFormatted 2 Dimension 3 Vertices 5 0 0 0 0 1 0 0 0 1 1 0 0 0 1 0 0 9 9 9 0 "
        "Edges 2 1 2 0 2 6 0 Triangles 2 1 2 3 0 1 3 4 0 End");
    write("square.sol", "MeshVersionFormatted 2 Dimension 3 SolAtVertices 5 1 1 1 1 3 -1 8 End");
    const Outcome outcome = run("sizes square.mesh square.sol");
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_EQ(outcome.errors, "");
    // 1-2: 1 of 1; 2-3: 1 of 2; 1-3: sqrt(2) of 2; 3-4: 1 of 1; 1-4: 1 of 0.
    EXPECT_EQ(outcome.output, "square.mesh, square.sol\n"
                              "  sizes at vertices : 5\n"
                              "    min  : -1\n"
                              "    max  : 8\n"
                              "    mean : 2.4\n"
                              "  edges, length / size : 4\n"
                              "    min  : 0.5\n"
                              "    max  : 1\n"
                              "    mean : 0.801777\n"
                              "           .. 0.25              0    0.0 %\n"
                              "      0.25 .. 0.5               0    0.0 %\n"
                              "       0.5 .. 0.7071            1   25.0 %  ##########\n"
                              "    0.7071 .. 0.9               1   25.0 %  ##########\n"
                              "       0.9 .. 1.111             2   50.0 %  ####################\n"
                              "     1.111 .. 1.414             0    0.0 %\n"
                              "     1.414 .. 2                 0    0.0 %\n"
                              "         2 .. 4                 0    0.0 %\n"
                              "         4 ..                   0    0.0 %\n"
                              "  edges without a positive size : 1\n"
                              "  edges of vertices that the mesh lacks : 1\n");
}

TEST_F(Command, SizesOfAnotherMeshAreAProblem)
{
    write("one.sol", "MeshVersionFormatted 2 Dimension 3 SolAtVertices 1 1 1 1 End");
    const Outcome outcome = run("sizes " + sample + " one.sol");
    EXPECT_EQ(outcome.exit_status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(
        outcome.errors, "korvane: one.sol: Error matching mesh and sizemap for solution file reading.\n");
    EXPECT_EQ(run("sizes " + sample + " missing.sol").exit_status, 1);
    EXPECT_EQ(run("sizes missing.mesh one.sol").exit_status, 1);
}

TEST_F(Command, ConvertWritesBulkDataAndTellsWhatItDoesNotCarry)
{
    write("small.mesh", "MeshVersionFormatted 2 Dimension 3 Vertices 2 1 2 3 5 4 5 6 0 Edges 1 1 2 7 "
                        "Pyramids 1 1 1 1 1 2 3 RequiredEdges 1 1 End");
    const Outcome outcome = run("convert small.mesh small.bdf");
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_EQ(outcome.errors, "korvane: small.mesh: not carried over: RequiredEdges (1)\n"
                              "korvane: small.mesh: not carried over: Pyramids (1)\n"
                              "korvane: small.mesh: not carried over: tags of vertices\n");
    EXPECT_EQ(contents(folder / "small.bdf"),
        "BEGIN BULK\n"
        "GRID*                  1               0  1.00000000E+00  2.00000000E+00*\n"
        "*         3.00000000E+00\n"
        "GRID*                  2               0  4.00000000E+00  5.00000000E+00*\n"
        "*         6.00000000E+00\n"
        "CBAR         1       7       1       2\n"
        "$\nENDDATA\n");
}

TEST_F(Command, AFullDiskIsAProblem)
{
    if (!fs::exists("/dev/full"))
        GTEST_SKIP() << "no /dev/full here";
    fs::create_symlink("/dev/full", folder / "full.mesh");
    const Outcome outcome = run("convert " + sample + " full.mesh");
    EXPECT_EQ(outcome.exit_status, 1);
    EXPECT_TRUE(holds(outcome.errors, "korvane: full.mesh: Error writing mesh file.")) << outcome.errors;
    EXPECT_TRUE(fs::is_symlink(folder / "full.mesh"));
    EXPECT_EQ(run("stats " + sample, "/dev/full").exit_status, 1);
}

} // namespace
