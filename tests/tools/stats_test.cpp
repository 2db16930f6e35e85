#include "command_fixture.h"

namespace {

using namespace korvane::tests;

class Stats : public Command {
  protected:
    void SetUp() override
    {
        Command::SetUp();
        // A right triangle, one four times as long, and one without area.
        write("three.mesh", "MeshVersionFormatted 2 Dimension 3 Vertices 4 0 0 0 0 1 0 0 0 0 1 0 0 4 0 0 0 "
                            "Triangles 3 1 2 3 7 1 4 3 8 1 2 4 8 End");
    }
};

TEST_F(Stats, ShowsHowValuesAreSpreadBehindTheReport)
{
    const std::string report = run("stats three.mesh").output;
    const Outcome outcome = run("stats three.mesh --histogram");
    EXPECT_EQ(outcome.exit_status, 0);
    ASSERT_TRUE(outcome.output.starts_with(report));
    const std::string spread = outcome.output.substr(report.size());
    // sqrt(3) / 12 * longest * perimeter / area: 1.39385, 3.61... and infinite.
    EXPECT_TRUE(spread.starts_with("  triangle.aspect_ratio : 3\n    min  : 1.39385\n    max  : inf\n"))
        << spread;
    EXPECT_TRUE(holds(spread, "      1 % up to 1.39385\n")) << spread;
    EXPECT_TRUE(holds(spread, "     99 % up to inf\n")) << spread;
    EXPECT_TRUE(holds(spread, "  triangle.angles : 9\n    min  : 0\n    max  : 180\n")) << spread;
}

TEST_F(Stats, ReportsByTag)
{
    const std::string spread = run("stats three.mesh --by-tag").output;
    EXPECT_TRUE(holds(spread, "  triangle.aspect_ratio, tag 7 : 1\n    min  : 1.39385\n    max  : 1.39385\n"))
        << spread;
    EXPECT_TRUE(holds(spread, "  triangle.angles, tag 8 : 6\n")) << spread;
    EXPECT_FALSE(holds(spread, "#")) << spread;
    // The triangle of tag 7 has angles of 90, 45 and 45 degrees.
    const std::string histograms = run("stats three.mesh --by-tag --histogram").output;
    EXPECT_TRUE(
        holds(histograms, "  triangle.angles, tag 7 : 3\n    min  : 45\n    max  : 90\n    mean : 60\n"
                          "      1 % up to 45\n      5 % up to 45\n     25 % up to 45\n     50 % up to 45\n"
                          "     75 % up to 90\n     95 % up to 90\n     99 % up to 90\n"
                          "        45 .. 49.5              2   66.7 %  ##"))
        << histograms;
}

TEST_F(Stats, ShowsTheWorstElementsTheWorstFirst)
{
    const std::string shown = run("stats three.mesh --worst 2").output;
    const std::size_t worst =
        shown.find("  worst by triangle.aspect_ratio\n    3 : inf\n"
                   "      vertex 1 : 0 0 0\n      vertex 2 : 1 0 0\n      vertex 4 : 4 0 0\n"
                   "    2 : ");
    EXPECT_NE(worst, std::string::npos) << shown;
    EXPECT_FALSE(holds(shown, "    1 : 1.39385\n"));
    EXPECT_TRUE(holds(run("stats three.mesh --worst 9").output, "    1 : 1.39385\n"));
}

TEST_F(Stats, IsQuiet)
{
    const Outcome outcome = run("stats -q three.mesh --histogram");
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_EQ(outcome.output + outcome.errors, "");
    EXPECT_EQ(run("stats -q missing.mesh").exit_status, 1);
}

} // namespace
