#include <algorithm>
#include <limits>
#include <random>

#include "cad/records.h"
#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

class EdgePolyline : public Cad {
  protected:
    korvane_cad_edge_t *polyline(const std::vector<Uv> &points)
    {
        return korvane_cad_edge_new_newton1(face, 77, static_cast<int32_t>(points.size()), points[0].data());
    }
    korvane_cad_edge_t *polyline(const std::vector<Uv> &points,
        const std::vector<korvane_cad_edge_t *> &edges, const std::vector<double> &params)
    {
        return korvane_cad_edge_new_newton1_with_ea(face, 77, static_cast<int32_t>(points.size()),
            points[0].data(), edges.empty() ? nullptr : edges.data(),
            params.empty() ? nullptr : params.data());
    }
    struct Origin {
        korvane_status_t status = STATUS_OK;
        korvane_cad_edge_t *edge = nullptr;
        double t = -9, tmin = -9, tmax = -9;
        bool operator==(const Origin &) const = default;
    };
    static Origin origin(korvane_cad_edge_t *edge, double t)
    {
        Origin found;
        found.status =
            korvane_cad_edge_get_original_geometry(edge, t, &found.edge, &found.t, &found.tmin, &found.tmax);
        return found;
    }
    static void expect_near(Uv value, Uv expected)
    {
        EXPECT_NEAR(value[0], expected[0], 1e-14);
        EXPECT_NEAR(value[1], expected[1], 1e-14);
    }

    korvane_cad_face_t *face = new_face();
    korvane_cad_edge_t *e1 = new_edge(face, 1);
    korvane_cad_edge_t *e2 = new_edge(face, 2);
};

TEST_F(EdgePolyline, IsParametrisedByChordLength)
{
    korvane_cad_edge_t *edge = polyline({{0, 0}, {3, 4}, {3, 10}});
    EXPECT_EQ(range_of(edge), (Uv{0, 11}));
    EXPECT_EQ(evaluate(edge, 5).uv, (Uv{3, 4}));
    EXPECT_EQ(evaluate(edge, 5).dt, (Uv{0, 1})) << "of the second segment";
    const CurveValues values = evaluate(edge, 2.5);
    EXPECT_EQ(values.status, STATUS_OK);
    expect_near(values.uv, {1.5, 2});
    expect_near(values.dt, {0.6, 0.8});
    expect_near(values.dtt, {-0.12, 0.04});
    EXPECT_EQ(korvane_cad_edge_curve(edge, 1, nullptr, nullptr, nullptr), STATUS_OK);
}

TEST_F(EdgePolyline, IsContinuedStraightBeyondItsEnds)
{
    korvane_cad_edge_t *edge = polyline({{0, 0}, {3, 4}, {3, 10}});
    expect_near(evaluate(edge, -5).uv, {-3, -4});
    expect_near(evaluate(edge, 12).uv, {3, 11});
}

TEST_F(EdgePolyline, OfTwoPointsHasNoCurvature)
{
    korvane_cad_edge_t *edge = polyline({{0, 0}, {3, 4}});
    for (const double t : {-1.0, 0.0, 2.5, 5.0, 7.0})
        EXPECT_EQ(evaluate(edge, t).dtt, Uv{});
}

TEST_F(EdgePolyline, OfOnePointStaysThere)
{
    korvane_cad_edge_t *edge = polyline({{3, 4}});
    EXPECT_EQ(range_of(edge), (Uv{0, 0}));
    for (const double t : {-1.0, 0.0, 2.5}) {
        const CurveValues values = evaluate(edge, t);
        EXPECT_EQ(values.status, STATUS_OK);
        EXPECT_EQ(values.uv, (Uv{3, 4}));
        EXPECT_EQ(values.dt, Uv{});
        EXPECT_EQ(values.dtt, Uv{});
    }
}

TEST_F(EdgePolyline, HasAFixedFactorOnSegmentsWithoutLength)
{
    korvane_cad_edge_t *coinciding = polyline({{1, 2}, {1, 2}, {2, 2}});
    const CurveValues values = evaluate(coinciding, -0.5);
    EXPECT_EQ(values.uv, (Uv{1, 2})) << "t is before the segment of no length, whose fraction is 0";
    EXPECT_EQ(values.dt, Uv{});
    expect_near(values.dtt, {10000, 0});

    // No length is counted between different edges, although the points are apart.
    korvane_cad_edge_t *apart = polyline({{0, 0}, {1, 2}, {2, 2}}, {e1, e2, e2}, {});
    EXPECT_EQ(range_of(apart), (Uv{0, 1}));
    EXPECT_EQ(evaluate(apart, -0.5).uv, (Uv{0, 0}));
    EXPECT_EQ(evaluate(apart, -0.5).dt, (Uv{10000, 20000}));
}

TEST_F(EdgePolyline, CountsNoLengthWhereTheOriginalEdgeChanges)
{
    const std::vector<Uv> points{{0, 0}, {3, 4}, {3, 10}, {4, 10}};
    korvane_cad_edge_t *edge = polyline(points, {e1, e1, e2, e2}, {});
    EXPECT_EQ(range_of(edge), (Uv{0, 6}));
    EXPECT_EQ(evaluate(edge, 5).uv, (Uv{3, 10})) << "of two points at 5 the later one";
    EXPECT_EQ(origin(edge, 5), (Origin{STATUS_OK, edge, 5, 5, 5})) << "without parameters it is itself";
}

TEST_F(EdgePolyline, RemembersWhereItsPointsComeFrom)
{
    const std::vector<Uv> points{{0, 0}, {3, 4}, {3, 10}, {4, 10}};
    korvane_cad_edge_t *edge = polyline(points, {e1, e1, e2, e2}, {0.25, 0.75, 9, 8});
    EXPECT_EQ(origin(edge, 2.5), (Origin{STATUS_OK, e1, 0.5, 0.25, 0.75}));
    EXPECT_EQ(origin(edge, 5.5), (Origin{STATUS_OK, e2, 8.5, 8, 9}));
    EXPECT_EQ(origin(edge, 5), (Origin{STATUS_OK, e2, 9, 8, 9}));
    EXPECT_EQ(origin(edge, 0).edge, e1);
    EXPECT_EQ(origin(edge, 7).t, 7) << "extrapolated";
    Origin partial;
    EXPECT_EQ(korvane_cad_edge_get_original_geometry(
                  edge, 2.5, &partial.edge, nullptr, &partial.tmin, &partial.tmax),
        STATUS_OK);
    EXPECT_EQ(partial, (Origin{STATUS_OK, e1, -9, -9, -9})) << "no interval without the parameter";
    EXPECT_EQ(
        korvane_cad_edge_get_original_geometry(edge, 2.5, nullptr, &partial.t, nullptr, nullptr), STATUS_OK);
    EXPECT_EQ(partial.t, 0.5);
}

TEST_F(EdgePolyline, ItsSecondRunBeginsAtItsFirstPoint)
{
    // The abscissas are 0, 1, 3, 3, 5, 9: no length is counted from the third point to the fourth.
    const std::vector<Uv> points{{0, 0}, {1, 0}, {3, 0}, {3, 5}, {3, 7}, {3, 11}};
    korvane_cad_edge_t *edge = polyline(points, {e1, e1, e1, e2, e2, e2}, {10, 20, 40, 7, 5, 1});
    EXPECT_EQ(range_of(edge), (Uv{0, 9}));
    EXPECT_EQ(origin(edge, -1), (Origin{STATUS_OK, e1, 0, 10, 20})) << "extrapolated";
    EXPECT_EQ(origin(edge, 0), (Origin{STATUS_OK, e1, 10, 10, 20}));
    EXPECT_EQ(origin(edge, 0.5), (Origin{STATUS_OK, e1, 15, 10, 20}));
    EXPECT_EQ(origin(edge, 1), (Origin{STATUS_OK, e1, 20, 20, 40}));
    EXPECT_EQ(origin(edge, 2), (Origin{STATUS_OK, e1, 30, 20, 40}));
    EXPECT_EQ(origin(edge, 2.5), (Origin{STATUS_OK, e1, 35, 20, 40}));
    EXPECT_EQ(origin(edge, 3), (Origin{STATUS_OK, e2, 7, 5, 7})) << "of two points at 3 the later one";
    EXPECT_EQ(origin(edge, 4), (Origin{STATUS_OK, e2, 6, 5, 7}));
    EXPECT_EQ(origin(edge, 5), (Origin{STATUS_OK, e2, 5, 1, 5}));
    EXPECT_EQ(origin(edge, 8), (Origin{STATUS_OK, e2, 2, 1, 5}));
    EXPECT_EQ(origin(edge, 9), (Origin{STATUS_OK, e2, 1, 1, 5}));
    EXPECT_EQ(origin(edge, 11), (Origin{STATUS_OK, e2, -1, 1, 5})) << "extrapolated";
}

TEST_F(EdgePolyline, RunsOfSinglePointsAreFoundToo)
{
    // Only here does t lie on a segment between two edges: before the first or behind the last point.
    korvane_cad_edge_t *edge = polyline({{0, 0}, {1, 0}, {3, 0}, {5, 0}}, {e1, e2, e2, e1}, {4, 5, 6, 8});
    EXPECT_EQ(range_of(edge), (Uv{0, 2}));
    EXPECT_EQ(origin(edge, -1), (Origin{STATUS_OK, e1, 4, 4, 5})) << "of a segment of no length its start";
    EXPECT_EQ(origin(edge, 0), (Origin{STATUS_OK, e2, 5, 5, 6}));
    EXPECT_EQ(origin(edge, 1), (Origin{STATUS_OK, e2, 5.5, 5, 6}));
    EXPECT_EQ(origin(edge, 2), (Origin{STATUS_OK, e2, 6, 6, 8})) << "of a segment of no length its start";
}

TEST_F(EdgePolyline, WithOneRunComesFromOneEdge)
{
    korvane_cad_edge_t *edge = polyline({{0, 0}, {1, 0}, {2, 0}}, {e1, e1, e1}, {5, 6, 7});
    for (const double t : {-1.0, 0.0, 1.5, 2.0, 3.0})
        EXPECT_EQ(origin(edge, t).edge, e1);
}

TEST_F(EdgePolyline, DoesNotFollowTheOriginsOfItsEdges)
{
    const Uv one{1, 1};
    korvane_cad_edge_t *image = korvane_cad_edge_new_afftrans(face, e1, 3, one.data(), one.data());
    korvane_cad_edge_t *edge = polyline({{0, 0}, {1, 0}}, {image, image}, {0, 1});
    EXPECT_EQ(origin(edge, 0.5).edge, image);
}

TEST_F(EdgePolyline, ItsCopyHasThePointsButNotTheRuns)
{
    korvane_cad_edge_t *edge = polyline({{0, 0}, {3, 4}, {3, 10}}, {e1, e1, e2}, {0, 1, 2});
    const uint32_t references = cad->reference_count;
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    EXPECT_EQ(cad->reference_count, references);
    for (const double t : {-1.0, 2.5, 5.0, 6.0})
        EXPECT_EQ(evaluate(copy, t).dtt, evaluate(edge, t).dtt);
    EXPECT_EQ(origin(copy, 2.5).status, STATUS_ERROR);
    korvane_cad_edge_delete(copy);
    EXPECT_EQ(cad->reference_count, references);
}

TEST_F(EdgePolyline, TakesOneReferencePerRun)
{
    const uint32_t references = cad->reference_count;
    korvane_cad_edge_t *edge =
        polyline({{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}}, {e1, e1, e2, e1, e1}, {0, 1, 2, 3, 4});
    EXPECT_EQ(cad->reference_count, references + 1 + 3);
    EXPECT_EQ(origin(edge, 0.5).edge, e1);
    EXPECT_EQ(origin(edge, 2.5).edge, e1);
    EXPECT_EQ(range_of(edge), (Uv{0, 2}));
}

TEST_F(EdgePolyline, RefusesNullAndTooFewPoints)
{
    const uint32_t references = cad->reference_count;
    const Uv uv{};
    EXPECT_EQ(korvane_cad_edge_new_newton1(nullptr, 1, 1, uv.data()), nullptr);
    EXPECT_EQ(korvane_cad_edge_new_newton1(face, 1, 0, uv.data()), nullptr);
    EXPECT_EQ(korvane_cad_edge_new_newton1(face, 1, -5, uv.data()), nullptr);
    EXPECT_EQ(korvane_cad_edge_new_newton1(face, 1, 1, nullptr), nullptr);
    EXPECT_EQ(polyline({{0, 0}, {1, 0}, {2, 0}}, {e1, e2, nullptr}, {}), nullptr) << "a run without an edge";
    EXPECT_EQ(polyline({{0, 0}, {1, 0}}, {nullptr, nullptr}, {}), nullptr);
    EXPECT_EQ(cad->reference_count, references);
    EXPECT_EQ(face->edge_count, 2);
}

TEST_F(EdgePolyline, FailedCreationsAndCopiesLeaveNothingBehind)
{
    while (face->edge_count < 5)
        new_edge(face);
    const std::vector<Uv> points{{0, 0}, {3, 4}, {3, 10}, {4, 10}};
    const std::vector<korvane_cad_edge_t *> edges{e1, e1, e2, e2};
    const std::vector<double> params{1, 2, 3, 4};
    oom_sweep([&](AllocationFault &fault) {
        const uint32_t references = cad->reference_count;
        const int32_t count = face->edge_count;
        fault.arm();
        korvane_cad_edge_t *edge = polyline(points, edges, params);
        const bool failed = fault.disarm();
        EXPECT_EQ(edge == nullptr, failed);
        EXPECT_EQ(face->edge_count, count + (failed ? 0 : 1));
        EXPECT_EQ(cad->reference_count, references + (failed ? 0 : 3));
    });
    korvane_cad_edge_t *edge = polyline(points, edges, params);
    oom_sweep([&](AllocationFault &fault) {
        fault.arm();
        korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
        EXPECT_EQ(copy == nullptr, fault.disarm());
        korvane_cad_edge_delete(copy);
    });
}

/// The evaluation as its definition reads, with a linear search.
CurveValues naive_polyline(const std::vector<Uv> &points, const std::vector<double> &s, double t)
{
    const std::size_t last = points.size() - 1;
    std::size_t lo = 0;
    while (lo + 2 <= last && !(s[lo + 1] > t))
        ++lo;
    const std::size_t hi = std::min(lo + 1, last);
    const auto factor = [](double length) { return length > 0 ? 1 / length : 10000.0; };
    const auto g = [&](std::size_t i, std::size_t j, std::size_t k) {
        return (points[j][k] - points[i][k]) * factor(s[j] - s[i]);
    };
    const double length = s[hi] - s[lo];
    const double a = length > 0 ? (t - s[lo]) / length : 0;
    CurveValues values;
    values.status = STATUS_OK;
    for (std::size_t k = 0; k < 2; ++k) {
        values.uv[k] = (1 - a) * points[lo][k] + a * points[hi][k];
        values.dt[k] = (points[hi][k] - points[lo][k]) * factor(length);
        if (points.size() <= 2)
            values.dtt[k] = 0;
        else if (lo == 0)
            values.dtt[k] = (g(hi, hi + 1, k) - g(lo, hi, k)) * factor(length);
        else if (hi != last)
            values.dtt[k] = (g(hi, hi + 1, k) - g(lo - 1, lo, k)) * factor(length);
        else
            values.dtt[k] = (g(lo, hi, k) - g(lo - 1, lo, k)) * factor(length);
    }
    return values;
}

TEST_F(EdgePolyline, AgreesWithItsDefinitionOnRandomPolylines)
{
    std::mt19937 random(20110805);
    std::uniform_int_distribution<int> coordinate(-2, 2); // small, so that points coincide
    std::uniform_real_distribution<double> unit(-0.1, 1.1);
    for (int round = 0; round < 400; ++round) {
        std::vector<Uv> points(1 + random() % 9);
        std::vector<korvane_cad_edge_t *> edges(points.size(), e1);
        for (std::size_t i = 0; i < points.size(); ++i) {
            points[i] = {coordinate(random) / 2.0, coordinate(random) / 2.0};
            edges[i] = i == 0 || random() % 3 == 0 ? (random() % 2 == 0 ? e1 : e2) : edges[i - 1];
        }
        std::vector<double> s(points.size(), 0);
        for (std::size_t i = 1; i < points.size(); ++i) {
            const double du = points[i][0] - points[i - 1][0];
            const double dv = points[i][1] - points[i - 1][1];
            s[i] = s[i - 1] + (edges[i] == edges[i - 1] ? std::sqrt(du * du + dv * dv) : 0);
        }
        korvane_cad_edge_t *edge = polyline(points, edges, {});
        ASSERT_EQ(range_of(edge), (Uv{0, s.back()}));
        std::vector<double> places(s);
        for (int i = 0; i < 10; ++i)
            places.push_back(unit(random) * (s.back() + 0.1));
        for (const double t : places) {
            const CurveValues expected = naive_polyline(points, s, t);
            const CurveValues values = evaluate(edge, t);
            ASSERT_EQ(values.status, STATUS_OK);
            ASSERT_EQ(values.uv, expected.uv);
            ASSERT_EQ(values.dt, expected.dt);
            ASSERT_EQ(values.dtt, expected.dtt);
        }
    }
}

TEST_F(EdgePolyline, StaysInsideItsPointsForAnyNumber)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    korvane_cad_edge_t *edge =
        polyline({{0, 0}, {nan, 1}, {inf, 2}, {3, 3}}, {e1, e1, e2, e2}, {1, 2, nan, 4});
    for (const double t : {nan, -inf, inf, 0.5}) {
        EXPECT_EQ(evaluate(edge, t).status, STATUS_OK);
        EXPECT_EQ(origin(edge, t).status, STATUS_OK);
    }
}

} // namespace
} // namespace korvane::testing
