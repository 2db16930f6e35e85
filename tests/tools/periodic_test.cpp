#include <cmath>
#include <functional>
#include <numbers>

#include "command_fixture.h"

namespace {

using namespace korvane::tests;

struct Position {
    double x, y, z;
};
using Surface = std::function<Position(double u, double v)>;

/// Two regions of 5 x 5 vertices with the tags 1 and 2; `stray` vertices of the second are moved away.
class Periodic : public Command {
  protected:
    Outcome match(
        const Surface &source, const Surface &target, const std::string &options = "", int stray = 0) const
    {
        std::string vertices, quadrangles;
        for (int tag = 1; tag <= 2; ++tag) {
            const int base = (tag - 1) * size * size;
            for (int k = 0; k < size * size; ++k) {
                Position p = (tag == 1 ? source : target)(
                    2.0 * (k / size) / (size - 1), 1.0 * (k % size) / (size - 1));
                if (tag == 2 && k < stray)
                    p.z += 0.01;
                std::array<char, 100> line{};
                std::snprintf(line.data(), line.size(), "%.17g %.17g %.17g 0\n", p.x, p.y, p.z);
                vertices += line.data();
                if (k / size + 1 < size && k % size + 1 < size)
                    for (const int corner : {k + 1, k + 1 + size, k + 2 + size, k + 2, tag - base})
                        quadrangles += std::to_string(corner + base) + " ";
            }
        }
        write("pair.mesh", "MeshVersionFormatted 2 Dimension 3 Vertices 50 " + vertices +
                               "Quadrilaterals 32 " + quadrangles + "End");
        return run("periodic pair.mesh --tags 1,2 " + options);
    }

    static constexpr int size = 5;
};

Position flat(double u, double v)
{
    return {u, v, 0};
}

/// Without symmetry of its own.
Position bumpy(double u, double v)
{
    return {u, v, 0.3 * u * v * (1.2 - v) + 0.1 * u * u};
}

const std::string complete = "  pairs      : 25\n  unmatched  : 0 of tag 1\n  unmatched  : 0 of tag 2\n";

TEST_F(Periodic, FindsTranslations)
{
    for (const Surface &surface : {Surface(flat), Surface(bumpy)}) {
        const Outcome outcome = match(surface, [&](double u, double v) {
            const Position p = surface(u, v);
            return Position{p.x + 0.5, p.y, p.z + 3};
        });
        EXPECT_EQ(outcome.exit_status, 0);
        EXPECT_TRUE(outcome.output.starts_with("pair.mesh: tags 1 and 2: translation\n")) << outcome.output;
        EXPECT_TRUE(outcome.output.ends_with(complete)) << outcome.output;
    }
}

TEST_F(Periodic, FindsTheLeastRotation)
{
    const double c = std::cos(std::numbers::pi / 6), s = std::sin(std::numbers::pi / 6);
    const Outcome sector = match(
        [](double u, double v) {
            return Position{u + 1, 0, v};
        },
        [=](double u, double v) {
            return Position{(u + 1) * c, (u + 1) * s, v};
        });
    EXPECT_EQ(sector.exit_status, 0);
    EXPECT_TRUE(holds(sector.output, ": rotation\n")) << sector.output;
    EXPECT_TRUE(holds(sector.output, "  angle      : 30\n")) << sector.output;
    const Outcome half_turn = match(bumpy, [](double u, double v) {
        return Position{-u, 1 - v, bumpy(u, v).z};
    });
    EXPECT_TRUE(holds(half_turn.output, ": rotation\n  axis       : 0 0 1\n")) << half_turn.output;
    EXPECT_TRUE(holds(half_turn.output, "  angle      : 180\n")) << half_turn.output;
}

TEST_F(Periodic, FindsMirrorImages)
{
    const Outcome outcome = match(bumpy, [](double u, double v) {
        return Position{u, v, 4 - bumpy(u, v).z};
    });
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_TRUE(outcome.output.starts_with("pair.mesh: tags 1 and 2: mirror\n  normal     : 0 0 1\n"
                                           "  point      : 0 0 2\n"))
        << outcome.output;
    EXPECT_TRUE(outcome.output.ends_with(complete)) << outcome.output;
}

TEST_F(Periodic, CallsScrewsGeneral)
{
    const Outcome outcome = match(bumpy, [](double u, double v) {
        return Position{-v, u, 4 + bumpy(u, v).z};
    });
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_TRUE(holds(outcome.output, ": general\n  matrix     : ")) << outcome.output;
    EXPECT_TRUE(outcome.output.ends_with(complete)) << outcome.output;
}

TEST_F(Periodic, TellsVerticesWithoutPartner)
{
    const auto raised = [](double u, double v) { return Position{u, v, bumpy(u, v).z + 2}; };
    const Outcome outcome = match(bumpy, raised, "-v", 2);
    EXPECT_EQ(outcome.exit_status, 1);
    EXPECT_TRUE(outcome.output.ends_with("  pairs      : 23\n  unmatched  : 2 of tag 1\n    1\n    2\n"
                                         "  unmatched  : 2 of tag 2\n    26\n    27\n"))
        << outcome.output;
    EXPECT_TRUE(match(bumpy, raised, "--tolerance 0.02", 2).output.ends_with(complete));
}

TEST_F(Periodic, FindsNothingBetweenDifferentRegions)
{
    const Outcome outcome = match(bumpy, [](double u, double v) { return Position{2 * u, v * v, 1}; });
    EXPECT_EQ(outcome.exit_status, 1);
    EXPECT_EQ(outcome.output, "pair.mesh: tags 1 and 2: no transformation found\n");
    EXPECT_EQ(run("periodic pair.mesh --tags 1,3").exit_status, 1);
    EXPECT_EQ(run("periodic pair.mesh --tags 1").exit_status, 2);
    EXPECT_EQ(run("periodic pair.mesh").exit_status, 2);
    EXPECT_EQ(run("periodic missing.mesh --tags 1,2").exit_status, 3);
    // All vertices in one line fix no map.
    EXPECT_EQ(match(
                  [](double u, double) {
                      return Position{u, 0, 0};
                  },
                  [](double u, double) {
                      return Position{u, 1, 0};
                  })
                  .exit_status,
        1);
}

} // namespace
