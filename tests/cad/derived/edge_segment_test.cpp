#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

class EdgeSegment : public Cad {
  protected:
    const Uv start{0, 0};
    const Uv end{2, 1};
    korvane_cad_face_t *face = new_face();
    korvane_cad_edge_t *edge = korvane_cad_edge_new_segment(face, 77, start.data(), end.data());
};

TEST_F(EdgeSegment, RunsStraightAndOnBeyondItsEnds)
{
    EXPECT_EQ(evaluate(edge, 0.5).uv, (Uv{1, 0.5}));
    EXPECT_EQ(evaluate(edge, 2).uv, (Uv{4, 2}));
    EXPECT_EQ(evaluate(edge, -1).uv, (Uv{-2, -1}));
    for (const double t : {-1.0, 0.0, 0.25, 1.0, 3.0}) {
        const CurveValues values = evaluate(edge, t);
        EXPECT_EQ(values.status, STATUS_OK);
        EXPECT_EQ(values.dt, (Uv{2, 1}));
        EXPECT_EQ(values.dtt, Uv{});
    }
    EXPECT_EQ(korvane_cad_edge_curve(edge, 0.5, nullptr, nullptr, nullptr), STATUS_OK);
}

TEST_F(EdgeSegment, MeetsItsEndPointsExactly)
{
    const Uv from{0.1, 0.7};
    const Uv to{-1e6, 1e-3};
    korvane_cad_edge_t *other = korvane_cad_edge_new_segment(face, 1, from.data(), to.data());
    EXPECT_EQ(evaluate(other, 0).uv, from);
    EXPECT_EQ(evaluate(other, 1).uv, to);
}

TEST_F(EdgeSegment, HasTheUnitIntervalAndItself)
{
    EXPECT_EQ(range_of(edge), (std::array<double, 2>{0, 1}));
    EXPECT_EQ(got(korvane_cad_edge_get_id, edge), 77u);
    EXPECT_EQ(got(korvane_cad_edge_get_wdef, edge), 1);
    korvane_cad_edge_t *original = nullptr;
    korvane_cad_edge_get_original_geometry(edge, 0, &original, nullptr, nullptr, nullptr);
    EXPECT_EQ(original, edge);
}

TEST_F(EdgeSegment, StandsFreeWithoutAFaceAndIsCopied)
{
    korvane_cad_edge_t *free_edge = korvane_cad_edge_new_segment(nullptr, 1, start.data(), end.data());
    EXPECT_EQ(got(korvane_cad_edge_get_face, free_edge), nullptr);
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(free_edge);
    korvane_cad_edge_delete(free_edge);
    EXPECT_EQ(evaluate(copy, 0.5).uv, (Uv{1, 0.5}));
    EXPECT_EQ(korvane_cad_edge_attach(copy, face), STATUS_OK);
    EXPECT_EQ(evaluate(copy, 0.5).uv, (Uv{1, 0.5}));
}

TEST_F(EdgeSegment, CreationAndCopySurviveFailingAllocations)
{
    oom_sweep([&](AllocationFault &fault) {
        const int32_t count = got(korvane_cad_face_get_edge_count, face);
        fault.arm();
        korvane_cad_edge_t *made = korvane_cad_edge_new_segment(face, 1, start.data(), end.data());
        EXPECT_EQ(made == nullptr, fault.disarm());
        EXPECT_EQ(got(korvane_cad_face_get_edge_count, face), count + (made == nullptr ? 0 : 1));
    });
    oom_sweep([&](AllocationFault &fault) {
        fault.arm();
        korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
        EXPECT_EQ(copy == nullptr, fault.disarm());
        korvane_cad_edge_delete(copy);
    });
}

} // namespace
} // namespace korvane::testing
