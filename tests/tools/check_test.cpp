#include "command_fixture.h"

namespace {

using namespace korvane::tests;

class Check : public Command {
  protected:
    /// The verdict on a mesh of the text, whose findings go to a file of their own.
    std::string findings(const std::string &text, const std::string &options = "") const
    {
        write("judged.mesh", "MeshVersionFormatted 2 Dimension 3 " + text + " End");
        const Outcome outcome = run("check judged.mesh --bad-ids findings " + options);
        EXPECT_EQ(outcome.errors, "");
        const std::string found = contents(folder / "findings");
        EXPECT_EQ(outcome.exit_status, found.empty() ? 0 : 1) << outcome.output;
        return found;
    }
};

const std::string square = "Vertices 4 0 0 0 0 1 0 0 0 1 1 0 0 0 1 0 0 ";
const std::string corner = "Vertices 5 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1 0 0 0 -1 0 ";
const std::string cube = "Vertices 8 0 0 0 0 1 0 0 0 1 1 0 0 0 1 0 0 0 0 1 0 1 0 1 0 1 1 1 0 0 1 1 0 ";

TEST_F(Check, SoundMeshesAreValid)
{
    EXPECT_EQ(findings(square + "Triangles 2 1 2 3 0 1 3 4 0"), "");
    EXPECT_EQ(findings(corner + "Tetrahedra 2 1 2 3 4 0 1 3 2 5 0"), "");
    EXPECT_EQ(findings(cube + "Hexahedra 1 1 2 3 4 5 6 7 8 0"), "");
    const Outcome outcome = run("check " + sample);
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_EQ(outcome.output, sample + ": valid\n");
}

TEST_F(Check, VerticesOutOfRangeAreFound)
{
    EXPECT_EQ(findings(square + "Triangles 3 1 2 3 0 1 3 4 0 3 4 5 0 Edges 2 0 1 0 1 -2 0"),
        "edge 1 vertex_out_of_range\nedge 2 vertex_out_of_range\ntriangle 3 vertex_out_of_range\n");
    EXPECT_EQ(findings("Vertices 0 Triangles 1 1 2 3 0"), "triangle 1 vertex_out_of_range\n");
    EXPECT_EQ(findings(cube + "Hexahedra 2 1 2 3 4 5 6 7 8 0 1 2 3 4 5 6 7 2147483647 0"),
        "hexahedron 2 vertex_out_of_range\n");
}

TEST_F(Check, VerticesThatNoElementNamesAreFound)
{
    EXPECT_EQ(findings(square + "Triangles 1 1 2 3 0"), "vertex 4 unused_vertex\n");
    EXPECT_EQ(findings("Vertices 1 0 0 0 0"), "vertex 1 unused_vertex\n");
    EXPECT_EQ(findings(square + "Edges 2 1 2 0 3 4 0"), "");
}

TEST_F(Check, ElementsThatNameAVertexTwiceAreFoundOnce)
{
    EXPECT_EQ(findings(square + "Quadrilaterals 2 1 2 3 4 0 1 2 1 2 0 Edges 1 4 4 0",
                  "--limit 'quadrangle.angle>1'"),
        "edge 1 repeated_vertex\nquadrangle 2 repeated_vertex\n");
}

TEST_F(Check, LaterElementsWithTheSameVerticesAreDuplicates)
{
    EXPECT_EQ(findings(square + "Edges 3 1 2 0 3 4 0 2 1 5"), "edge 3 duplicate_element\n");
    EXPECT_EQ(findings(square + "Quadrilaterals 3 1 2 3 4 0 4 3 2 1 0 2 3 4 1 0"),
        "quadrangle 2 duplicate_element\nquadrangle 3 duplicate_element\n");
    // The same vertices in another kind are none.
    EXPECT_EQ(findings(corner + "Quadrilaterals 1 1 2 3 4 0 Tetrahedra 2 1 2 3 4 0 1 3 2 5 0"), "");
}

TEST_F(Check, ElementsOfNoPositiveVolumeAreInverted)
{
    EXPECT_EQ(findings(corner + "Tetrahedra 2 2 1 3 4 0 1 2 3 5 0"),
        "tetrahedron 1 inverted_element\ntetrahedron 2 inverted_element\n");
    EXPECT_EQ(findings(square + "Tetrahedra 1 1 2 3 4 0"), "tetrahedron 1 inverted_element\n");
    EXPECT_EQ(findings(cube + "Hexahedra 1 5 6 7 8 1 2 3 4 0"), "hexahedron 1 inverted_element\n");
    // One corner pressed in beyond its neighbours.
    std::string dented = cube;
    dented.replace(dented.find("1 1 1 0"), 7, ".2 .2 .2 0");
    EXPECT_EQ(findings(dented + "Hexahedra 1 1 2 3 4 5 6 7 8 0"), "hexahedron 1 inverted_element\n");
    const std::string tent = "Vertices 5 0 0 0 0 1 0 0 0 1 1 0 0 0 1 0 0 .5 .5 1 0 ";
    EXPECT_EQ(findings(tent + "Pyramids 1 1 2 3 4 5 0"), "");
    EXPECT_EQ(findings(tent + "Pyramids 1 4 3 2 1 5 0"), "pyramid 1 inverted_element\n");
}

TEST_F(Check, NeighboursThatGoAlongTheirSideInTheSameDirectionAreFound)
{
    EXPECT_EQ(findings(square + "Triangles 2 1 2 3 0 3 1 4 0"),
        "triangle 1 inconsistent_orientation\ntriangle 2 inconsistent_orientation\n");
    const std::string strip = "Vertices 5 0 0 0 0 1 0 0 0 1 1 0 0 0 1 0 0 2 .5 0 0 ";
    EXPECT_EQ(findings(strip + "Triangles 1 2 5 3 0 Quadrilaterals 1 1 2 3 4 0"), "");
    EXPECT_EQ(findings(strip + "Triangles 1 3 5 2 0 Quadrilaterals 1 1 2 3 4 0"),
        "triangle 1 inconsistent_orientation\nquadrangle 1 inconsistent_orientation\n");
    // Three triangles at one side have no common orientation.
    EXPECT_EQ(findings(corner + "Triangles 3 1 2 3 0 1 2 4 0 1 2 5 0"), "");
}

TEST_F(Check, LimitsHoldForEveryValueOfAnElement)
{
    const std::string two = square + "Triangles 2 1 2 3 0 1 3 4 0";
    EXPECT_EQ(findings(two, "--limit 'triangle.angle<=90.001' --limit 'triangle.angles >= 44.999'"), "");
    EXPECT_EQ(findings(two, "--limit 'triangle.angle<89' --limit 'triangle.aspect_ratio<=1e1'"),
        "triangle 1 triangle.angle<89\ntriangle 2 triangle.angle<89\n");
    EXPECT_EQ(findings(square + "Quadrilaterals 1 1 2 3 4 0",
                  "--limit 'quadrangle.planarity>1' --limit 'quadrangle.aspect_ratio > 0.5'"),
        "quadrangle 1 quadrangle.planarity>1\n");
    EXPECT_EQ(findings(corner + "Tetrahedra 2 1 2 3 4 0 1 3 2 5 0", "--limit 'tetrahedron.aspect_ratio<1'"),
        "tetrahedron 1 tetrahedron.aspect_ratio<1\ntetrahedron 2 tetrahedron.aspect_ratio<1\n");
    EXPECT_EQ(
        findings(cube + "Hexahedra 1 1 2 3 4 5 6 7 8 0", "--limit 'hexahedron.aspect_ratio<=6.001'"), "");
}

TEST_F(Check, LimitsComeFromAFile)
{
    write("limits", "# for solvers\n\n  triangle.angle < 89 # right angles\ntriangle.aspect_ratio<=1.3\r\n");
    EXPECT_EQ(findings(square + "Triangles 2 1 2 3 0 1 3 4 0", "--limits limits"),
        "triangle 1 triangle.angle<89\ntriangle 1 triangle.aspect_ratio<=1.3\n"
        "triangle 2 triangle.angle<89\ntriangle 2 triangle.aspect_ratio<=1.3\n");
    EXPECT_EQ(run("check " + sample + " --limits missing").exit_status, 3);
    write("bad", "triangle.angle<89\nnonsense<1\n");
    const Outcome outcome = run("check " + sample + " --limits bad");
    EXPECT_EQ(outcome.exit_status, 2);
    EXPECT_TRUE(holds(outcome.errors, "korvane: bad: line 2: \"nonsense<1\" names no measure"))
        << outcome.errors;
}

TEST_F(Check, LimitsThatSayNothingAreWrongUsage)
{
    for (const char *limit :
        {"", "triangle.aspect_ratio", "triangle.aspect_ratio<=", "triangle.aspect_ratio=1",
            "triangle.aspect_ratio<=1x", "triangle.aspect_ratio<nan", "triangle.aspect_ratio<inf",
            "triangle.aspect<1", "aspect_ratio<1", "<1", "pyramid.aspect_ratio<1", "triangle.angle<>1"}) {
        const Outcome outcome = run("check " + sample + " --limit '" + limit + "'");
        EXPECT_EQ(outcome.exit_status, 2) << limit;
        EXPECT_EQ(outcome.output, "") << limit;
        EXPECT_NE(outcome.errors, "") << limit;
    }
}

TEST_F(Check, EachFileHasItsVerdictAndTheWorstDecides)
{
    write("bad.mesh", "MeshVersionFormatted 2 Dimension 3 Vertices 2 0 0 0 0 1 1 1 0 End");
    EXPECT_EQ(run("check " + sample + " bad.mesh").exit_status, 1);
    const Outcome outcome = run("check bad.mesh missing.mesh " + sample);
    EXPECT_EQ(outcome.exit_status, 3);
    EXPECT_EQ(outcome.output, "bad.mesh: findings: 2 unused_vertex\n" + sample + ": valid\n");
    EXPECT_TRUE(holds(outcome.errors, "missing.mesh: No such file"));
}

TEST_F(Check, SaysLessOrMore)
{
    write("bad.mesh", "MeshVersionFormatted 2 Dimension 3 Vertices 1 0 0 0 0 End");
    const Outcome quiet = run("check -q bad.mesh");
    EXPECT_EQ(quiet.exit_status, 1);
    EXPECT_EQ(quiet.output + quiet.errors, "");
    EXPECT_EQ(
        run("check -v bad.mesh").output, "bad.mesh: findings: 1 unused_vertex\n  vertex 1 unused_vertex\n");
    EXPECT_EQ(run("check -q -v bad.mesh").exit_status, 2);
}

TEST_F(Check, FindingsOfOneFileGoToAFile)
{
    EXPECT_EQ(run("check " + sample + " " + sample + " --bad-ids ids").exit_status, 2);
    EXPECT_EQ(run("check " + sample + " " + sample + " --bad bad.vtu").exit_status, 2);
    EXPECT_EQ(run("check " + sample + " --bad bad.txt").exit_status, 2);
    EXPECT_EQ(run("check " + sample + " --bad missing/bad.vtu").exit_status, 3);
    EXPECT_EQ(run("check " + sample + " --bad-ids missing/ids").exit_status, 3);
    EXPECT_EQ(files_besides({}), std::vector<std::string>{});
}

} // namespace
