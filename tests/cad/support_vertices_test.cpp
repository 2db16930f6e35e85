#include "cad/support_vertices.h"

#include <vector>

#include "cad/records.h"
#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

class SupportVertex : public Cad {
  protected:
    struct Vertices {
        korvane_status_t status;
        int32_t count;
        double *params, *uvs, *xyzs;
    };
    static Vertices vertices_of(const korvane_cad_edge_t *edge)
    {
        Vertices vertices{STATUS_ERROR, -1, nullptr, nullptr, nullptr};
        vertices.status = korvane_cad_edge_get_support_vertices(
            edge, &vertices.count, &vertices.params, &vertices.uvs, &vertices.xyzs);
        return vertices;
    }
    korvane_status_t set(korvane_cad_edge_t *target, int32_t index)
    {
        const double x = index;
        const Uv uv{x + 0.1, x + 0.2};
        const Xyz xyz{x + 0.3, x + 0.4, x + 0.5};
        return korvane_cad_edge_set_support_vertex(target, index, x, uv.data(), xyz.data());
    }
    static void expect_vertex(const Vertices &vertices, int32_t index)
    {
        const double x = index;
        EXPECT_EQ(vertices.params[index - 1], x);
        EXPECT_EQ(vertices.uvs[2 * index - 2], x + 0.1);
        EXPECT_EQ(vertices.uvs[2 * index - 1], x + 0.2);
        EXPECT_EQ(vertices.xyzs[3 * index - 3], x + 0.3);
        EXPECT_EQ(vertices.xyzs[3 * index - 2], x + 0.4);
        EXPECT_EQ(vertices.xyzs[3 * index - 1], x + 0.5);
    }
    void fill(int32_t count)
    {
        ASSERT_EQ(korvane_cad_edge_set_support_vertex_count(edge, count), STATUS_OK);
        for (int32_t index = 1; index <= count; ++index)
            ASSERT_EQ(set(edge, index), STATUS_OK);
    }

    korvane_cad_edge_t *edge = new_edge(new_face());
};

TEST_F(SupportVertex, AreAbsentUntilTheirNumberIsSet)
{
    EXPECT_EQ(vertices_of(edge).status, STATUS_ERROR);
    EXPECT_EQ(set(edge, 1), STATUS_ERROR);
    EXPECT_EQ(vertices_of(edge).status, STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_set_support_vertex_count(edge, 0), STATUS_OK);
    const Vertices none = vertices_of(edge);
    EXPECT_EQ(none.status, STATUS_OK);
    EXPECT_EQ(none.count, 0);
}

TEST_F(SupportVertex, AreReadAsTheyWereSet)
{
    fill(3);
    const Vertices vertices = vertices_of(edge);
    EXPECT_EQ(vertices.status, STATUS_OK);
    EXPECT_EQ(vertices.count, 3);
    for (int32_t index = 1; index <= 3; ++index)
        expect_vertex(vertices, index);
    int32_t count = 0;
    EXPECT_EQ(korvane_cad_edge_get_support_vertices(edge, &count, nullptr, nullptr, nullptr), STATUS_OK);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(edge->support_vertices->params.size(), 3u);
    EXPECT_EQ(edge->support_vertices->uvs.size(), 6u);
    EXPECT_EQ(edge->support_vertices->xyzs.size(), 9u);
}

TEST_F(SupportVertex, OutsideTheirNumberAreRefused)
{
    fill(3);
    for (const int32_t index : {0, -1, 4, INT32_MIN, INT32_MAX})
        EXPECT_EQ(set(edge, index), STATUS_ERROR);
}

TEST_F(SupportVertex, TheSameNumberAgainReallocatesNothing)
{
    fill(3);
    const Vertices before = vertices_of(edge);
    const int64_t allocations = allocation_count();
    EXPECT_EQ(korvane_cad_edge_set_support_vertex_count(edge, 3), STATUS_OK);
    EXPECT_EQ(allocation_count(), allocations);
    EXPECT_EQ(vertices_of(edge).params, before.params);
}

TEST_F(SupportVertex, KeepTheFirstOnesWhenTheirNumberChanges)
{
    fill(3);
    EXPECT_EQ(korvane_cad_edge_set_support_vertex_count(edge, 100), STATUS_OK);
    for (int32_t index = 1; index <= 3; ++index)
        expect_vertex(vertices_of(edge), index);
    EXPECT_EQ(set(edge, 100), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_set_support_vertex_count(edge, 2), STATUS_OK);
    for (int32_t index = 1; index <= 2; ++index)
        expect_vertex(vertices_of(edge), index);
    EXPECT_EQ(set(edge, 3), STATUS_ERROR);
}

TEST_F(SupportVertex, ANumberOfZeroFreesThem)
{
    fill(3);
    const int64_t blocks = live_block_count();
    EXPECT_EQ(korvane_cad_edge_set_support_vertex_count(edge, 0), STATUS_OK);
    EXPECT_EQ(live_block_count(), blocks - 3);
    const Vertices none = vertices_of(edge);
    EXPECT_EQ(none.status, STATUS_OK);
    EXPECT_EQ(none.count, 0);
    EXPECT_EQ(none.params, nullptr);
    EXPECT_EQ(none.uvs, nullptr);
    EXPECT_EQ(none.xyzs, nullptr);
}

TEST_F(SupportVertex, RefuseANegativeNumberAndANullEdge)
{
    int32_t count = 0;
    EXPECT_EQ(korvane_cad_edge_set_support_vertex_count(edge, -1), STATUS_ERROR);
    EXPECT_EQ(vertices_of(edge).status, STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_set_support_vertex_count(nullptr, 1), STATUS_ERROR);
    EXPECT_EQ(
        korvane_cad_edge_get_support_vertices(nullptr, &count, nullptr, nullptr, nullptr), STATUS_ERROR);
}

TEST_F(SupportVertex, AreSharedByACopyUntilItSetsTheirNumber)
{
    fill(3);
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    EXPECT_EQ(vertices_of(copy).params, vertices_of(edge).params);
    EXPECT_EQ(korvane_cad_edge_set_support_vertex_count(copy, 3), STATUS_OK);
    EXPECT_NE(vertices_of(copy).params, vertices_of(edge).params);
    EXPECT_EQ(vertices_of(copy).count, 3);
    for (int32_t index = 1; index <= 3; ++index)
        expect_vertex(vertices_of(edge), index);
    korvane_cad_edge_delete(copy);
    expect_vertex(vertices_of(edge), 1);
}

TEST_F(SupportVertex, AreLeftByWhoeverSetsOneFirstAndMustBeCountedAnew)
{
    fill(2);
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    EXPECT_EQ(set(edge, 1), STATUS_ERROR);
    EXPECT_EQ(vertices_of(edge).status, STATUS_OK);
    EXPECT_EQ(vertices_of(edge).count, 0);
    EXPECT_EQ(vertices_of(copy).count, 2);
    expect_vertex(vertices_of(copy), 2);
    EXPECT_EQ(set(copy, 1), STATUS_OK) << "no longer shared";
    korvane_cad_edge_delete(copy);
}

TEST_F(SupportVertex, OutliveTheEdgeThatMadeThem)
{
    korvane_cad_edge_t *first = korvane_cad_edge_new_copy(edge);
    korvane_cad_edge_set_support_vertex_count(first, 2);
    set(first, 2);
    korvane_cad_edge_t *second = korvane_cad_edge_new_copy(first);
    korvane_cad_edge_delete(first);
    expect_vertex(vertices_of(second), 2);
    korvane_cad_edge_delete(second);
}

TEST_F(SupportVertex, GoWithTheLastEdgeThatSharesThem)
{
    fill(2);
    const int64_t blocks = live_block_count();
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    EXPECT_EQ(live_block_count(), blocks + 1) << "only the edge itself";
    EXPECT_EQ(korvane_cad_edge_set_support_vertex_count(edge, 0), STATUS_OK); // a record without arrays
    EXPECT_EQ(live_block_count(), blocks + 2);
    korvane_cad_edge_delete(copy); // with the record and its arrays
    EXPECT_EQ(live_block_count(), blocks - 3);
}

TEST_F(SupportVertex, AFailedGrowthKeepsTheNumberAndTheVertices)
{
    oom_sweep([this](AllocationFault &fault) {
        fill(2);
        fault.arm();
        const korvane_status_t status = korvane_cad_edge_set_support_vertex_count(edge, 5000);
        const bool failed = fault.disarm();
        EXPECT_EQ(status, failed ? STATUS_NOMEM : STATUS_OK);
        EXPECT_EQ(vertices_of(edge).count, failed ? 2 : 5000);
        expect_vertex(vertices_of(edge), 2);
        EXPECT_EQ(set(edge, 3), failed ? STATUS_ERROR : STATUS_OK);
        korvane_cad_edge_set_support_vertex_count(edge, 0);
    });
}

TEST_F(SupportVertex, AFailedReductionNeverLeavesANumberThatTheArraysDoNotHold)
{
    oom_sweep([this](AllocationFault &fault) {
        fill(5);
        fault.arm();
        const korvane_status_t status = korvane_cad_edge_set_support_vertex_count(edge, 2);
        EXPECT_EQ(status, fault.disarm() ? STATUS_NOMEM : STATUS_OK);
        const Vertices vertices = vertices_of(edge);
        EXPECT_GE(vertices.count, 2);
        for (int32_t index = 1; index <= vertices.count; ++index)
            expect_vertex(vertices, index); // under the address sanitizer: inside the arrays
        korvane_cad_edge_set_support_vertex_count(edge, 0);
    });
}

TEST_F(SupportVertex, StaySharedWhenLeavingThemFails)
{
    fill(2);
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    for (int attempt = 0; attempt < 2; ++attempt) {
        AllocationFault fault(1, Failure::transient);
        fault.arm();
        EXPECT_EQ(
            attempt == 0 ? korvane_cad_edge_set_support_vertex_count(copy, 7) : set(copy, 1), STATUS_NOMEM);
        EXPECT_TRUE(fault.disarm());
        EXPECT_EQ(vertices_of(copy).params, vertices_of(edge).params);
    }
    korvane_cad_edge_delete(copy);
    expect_vertex(vertices_of(edge), 2);
}

} // namespace
} // namespace korvane::testing
