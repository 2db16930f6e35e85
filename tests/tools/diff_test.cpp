#include "command_fixture.h"

namespace {

using namespace korvane::tests;

class Diff : public Command {
  protected:
    void SetUp() override
    {
        Command::SetUp();
        write("a.mesh", head + "Vertices 4 0 0 0 0 1 0 0 0 1 1 0 0 0 1 0 0 Triangles 2 1 2 3 5 1 3 4 6 End");
    }
    const std::string head = "MeshVersionFormatted 2 Dimension 3 ";
};

TEST_F(Diff, FindsNoDifferenceBetweenEncodings)
{
    ASSERT_EQ(run("convert " + sample + " same.meshb").exit_status, 0);
    const Outcome outcome = run("diff " + sample + " same.meshb");
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_EQ(outcome.output, sample + ", same.meshb: equal\n");
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(Diff, TellsEveryAttributeThatDiffers)
{
    write("b.mesh", head + "Vertices 4 0 0 0 1 1 0 0 0 1 1 0 0 0 1.5 0 0 Triangles 2 1 2 3 5 1 4 3 7 "
                           "RequiredTriangles 1 1 Edges 1 1 2 0 End");
    const Outcome outcome = run("diff a.mesh b.mesh");
    EXPECT_EQ(outcome.exit_status, 1);
    EXPECT_EQ(outcome.output, "a.mesh, b.mesh: different\n"
                              "  vertex.coordinates : 1\n"
                              "    4 : [0.0,1.0,0.0] against [0.0,1.5,0.0]\n"
                              "  vertex.tag : 1\n"
                              "    1 : 0 against 1\n"
                              "  edge.count : 0 against 1\n"
                              "  triangle.vertices : 1\n"
                              "    2 : [1,3,4] against [1,4,3]\n"
                              "  triangle.tag : 1\n"
                              "    2 : 6 against 7\n"
                              "  triangle.required : 1\n"
                              "    1 : false against true\n");
    const Outcome quiet = run("diff -q a.mesh b.mesh");
    EXPECT_EQ(quiet.exit_status, 1);
    EXPECT_EQ(quiet.output + quiet.errors, "");
}

TEST_F(Diff, ComparesCoordinatesWithinATolerance)
{
    write("b.mesh", head + "Vertices 4 0 0 0 0 1 0 0.25 0 1 1 0 0 0 1 0 0 Triangles 2 1 2 3 5 1 3 4 6 End");
    EXPECT_EQ(run("diff a.mesh b.mesh").exit_status, 1);
    EXPECT_EQ(run("diff a.mesh b.mesh --tolerance 0.2499").exit_status, 1);
    EXPECT_EQ(run("diff a.mesh b.mesh --tolerance 0.25").exit_status, 0);
    EXPECT_EQ(run("diff a.mesh b.mesh --tolerance -1").exit_status, 2);
    EXPECT_EQ(run("diff a.mesh b.mesh --tolerance nan").exit_status, 2);
}

TEST_F(Diff, ShowsTheFirstDifferencesAndHowManyThereAre)
{
    std::string one = head + "Vertices 7", other = one;
    for (int i = 1; i <= 7; ++i) {
        one += " 0 0 0 " + std::to_string(i);
        other += " 0 0 0 " + std::to_string(-i);
    }
    write("one.mesh", one + " End");
    write("other.mesh", other + " End");
    const std::string shown = run("diff one.mesh other.mesh").output;
    EXPECT_TRUE(holds(shown, "  vertex.tag : 7\n    1 : 1 against -1\n")) << shown;
    EXPECT_TRUE(holds(shown, "    5 : 5 against -5\n    ...\n")) << shown;
    const std::string all = run("diff -v one.mesh other.mesh").output;
    EXPECT_TRUE(all.ends_with("    7 : 7 against -7\n")) << all;
}

TEST_F(Diff, NeedsTwoFiles)
{
    EXPECT_EQ(run("diff a.mesh").exit_status, 2);
    EXPECT_EQ(run("diff a.mesh a.mesh a.mesh").exit_status, 2);
}

} // namespace
