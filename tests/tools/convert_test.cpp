#include "command_fixture.h"

namespace {

using namespace korvane::tests;

using Convert = Command;

TEST_F(Convert, WritesSeveralOutputsOfOneRead)
{
    const Outcome outcome = run("convert -v " + sample + " a.mesh b.meshb c.vtu");
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, sample + " -> a.mesh\n" + sample + " -> b.meshb\n" + sample + " -> c.vtu\n");
    EXPECT_EQ(run("diff a.mesh b.meshb").exit_status, 0);
    EXPECT_EQ(files_besides({"a.mesh", "b.meshb", "c.vtu"}), std::vector<std::string>{});
}

TEST_F(Convert, OneOutputThatCannotBeWrittenDoesNotHideTheOthers)
{
    fs::create_directory(folder / "e.stl");
    const Outcome outcome = run("convert " + sample + " missing/a.vtu missing/c.mesh d.meshb e.stl");
    EXPECT_EQ(outcome.exit_status, 1);
    EXPECT_EQ(outcome.errors, "korvane: missing/a.vtu: No such file or directory\n"
                              "korvane: missing/c.mesh: No such file or directory\n"
                              "korvane: e.stl: Is a directory\n");
    EXPECT_EQ(run("diff " + sample + " d.meshb").exit_status, 0);
    EXPECT_EQ(run("convert " + sample + " f.meshb g.txt").exit_status, 2);
    EXPECT_EQ(files_besides({"d.meshb", "e.stl"}), std::vector<std::string>{});
}

TEST_F(Convert, TellsWhatSurfacesAndGridsDoNotCarry)
{
    write("mixed.mesh", "MeshVersionFormatted 2 Dimension 3 Vertices 4 0 0 0 1 1 0 0 0 0 1 0 0 0 0 1 0 "
                        "Triangles 2 1 2 3 1 2 3 5 2 Tetrahedra 1 1 2 3 4 0 End");
    const Outcome outcome = run("convert mixed.mesh a.stl b.vtu");
    EXPECT_EQ(outcome.exit_status, 0);
    const std::string stray = "elements of vertices that the mesh lacks (1)\n";
    EXPECT_EQ(outcome.errors, "korvane: mixed.mesh: not carried over to a.stl: Tetrahedra (1)\n"
                              "korvane: mixed.mesh: not carried over to a.stl: tags of vertices\n"
                              "korvane: mixed.mesh: not carried over to a.stl: " +
                                  stray + "korvane: mixed.mesh: not carried over to b.vtu: " + stray);
}

} // namespace
