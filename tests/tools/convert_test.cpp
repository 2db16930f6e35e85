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
    EXPECT_EQ(
        run("convert " + sample + " missing/a.vtu missing/b.stl missing/c.mesh d.meshb").exit_status, 1);
    EXPECT_EQ(run("diff " + sample + " d.meshb").exit_status, 0);
    EXPECT_EQ(files_besides({"d.meshb"}), std::vector<std::string>{});
    EXPECT_EQ(run("convert " + sample + " e.meshb f.txt").exit_status, 2);
    EXPECT_EQ(files_besides({"d.meshb"}), std::vector<std::string>{});
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

TEST_F(Convert, AnInterruptLeavesNothingBehind)
{
    // The command is interrupted at some point of reading or writing, or has finished.
    std::string big = "MeshVersionFormatted 2 Dimension 3 Vertices 100000 ";
    for (int i = 0; i < 100000; ++i)
        big += "0.123456789 0.23456789 0.3456789 1\n";
    write("big.mesh", big + "End");
    for (const char *delay : {"0.02", "0.05", "0.08", "0.1", "0.15"}) {
        const std::string line = "cd '" + folder.string() + "' && timeout -s INT " + delay +
                                 " '" KORVANE_COMMAND "' convert big.mesh a.mesh b.vtu c.bdf 2>errors";
        std::system(line.c_str());
        for (const std::string &file : files_besides({"big.mesh", "errors"})) {
            EXPECT_TRUE(file == "a.mesh" || file == "b.vtu" || file == "c.bdf") << file;
            const std::string whole = contents(folder / file);
            EXPECT_TRUE(holds(whole.substr(whole.size() - std::min<std::size_t>(whole.size(), 20)),
                file == "a.mesh"  ? "End"
                : file == "b.vtu" ? "</VTKFile>"
                                  : "ENDDATA"))
                << file;
            fs::remove(folder / file);
        }
    }
}

} // namespace
