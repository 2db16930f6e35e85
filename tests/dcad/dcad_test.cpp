#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "cad/cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

/// A model and a discrete CAD of it, which `make` makes when the model is complete.
class DiscreteCad : public Cad {
  protected:
    ~DiscreteCad() override { korvane_dcad_delete(dcad); }

    void make()
    {
        dcad = korvane_dcad_new(cad);
        ASSERT_NE(dcad, nullptr);
    }

    /// With an empty model, and without a discrete CAD.
    void start_anew()
    {
        korvane_dcad_delete(std::exchange(dcad, nullptr));
        korvane_context_delete(context);
        context = korvane_context_new();
        cad = korvane_cad_new(context);
    }

    korvane_dcad_edge_discretization_t *get(korvane_cad_edge_t *edge)
    {
        auto *discretization = none;
        EXPECT_EQ(korvane_dcad_get_edge_discretization(dcad, edge, &discretization), STATUS_OK);
        return discretization;
    }

    korvane_dcad_edge_discretization_t *query(const korvane_cad_edge_t *edge)
    {
        auto *discretization = none;
        EXPECT_EQ(korvane_dcad_query_edge_discretization(dcad, edge, &discretization), STATUS_OK);
        return discretization;
    }

    void expect_refused(korvane_cad_edge_t *edge)
    {
        auto *discretization = none;
        EXPECT_EQ(korvane_dcad_get_edge_discretization(dcad, edge, &discretization), STATUS_ERROR);
        EXPECT_EQ(discretization, nullptr);
    }

    /// What outputs hold before a call: no discretization, but not null either.
    korvane_dcad_edge_discretization_t *none = reinterpret_cast<korvane_dcad_edge_discretization_t *>(this);
    korvane_dcad_t *dcad = nullptr;
};

TEST_F(DiscreteCad, KnowsItsModel)
{
    make();
    korvane_cad_t *found = nullptr;
    EXPECT_EQ(korvane_dcad_get_cad(dcad, &found), STATUS_OK);
    EXPECT_EQ(found, cad);
}

TEST_F(DiscreteCad, IsNotToBeHadWithoutAModel)
{
    EXPECT_EQ(korvane_dcad_new(nullptr), nullptr);
    korvane_dcad_delete(nullptr);
}

TEST_F(DiscreteCad, IsNotAttachedToTheContextAndHoldsNoReference)
{
    const int64_t before = live_block_count();
    make();
    const int64_t blocks = live_block_count() - before;
    korvane_cad_delete(cad); // whose only reference this is
    delete_context();
    EXPECT_EQ(live_block_count(), blocks_before + blocks);
}

TEST_F(DiscreteCad, GoesWithItsDiscretizations)
{
    korvane_cad_face_t *face = new_face();
    korvane_cad_edge_t *edges[] = {new_edge(face), new_edge(face)};
    const int64_t before = live_block_count();
    make();
    for (korvane_cad_edge_t *edge : edges)
        ASSERT_EQ(korvane_dcad_edge_discretization_set_vertex_count(get(edge), 3), STATUS_OK);
    const int64_t filled = live_block_count();
    ASSERT_EQ(korvane_dcad_edge_discretization_set_vertex_count(get(edges[0]), 0), STATUS_OK);
    EXPECT_EQ(live_block_count(), filled - 4);
    korvane_dcad_delete(std::exchange(dcad, nullptr));
    EXPECT_EQ(live_block_count(), before);
}

TEST_F(DiscreteCad, GivesTheSameDiscretizationOnEveryRequest)
{
    korvane_cad_face_t *face = new_face();
    korvane_cad_edge_t *first = new_edge(face), *second = new_edge(face);
    make();
    EXPECT_EQ(query(first), nullptr);
    auto *discretization = get(first);
    ASSERT_NE(discretization, nullptr);
    EXPECT_EQ(get(first), discretization);
    EXPECT_EQ(query(first), discretization);
    EXPECT_EQ(query(second), nullptr);
    EXPECT_NE(get(second), discretization);
    EXPECT_EQ(got<int32_t>(korvane_dcad_edge_discretization_get_vertex_count, discretization), 0);
}

TEST_F(DiscreteCad, QueriesWhatItNeverSaw)
{
    make();
    EXPECT_EQ(query(nullptr), nullptr);
    EXPECT_EQ(query(reinterpret_cast<const korvane_cad_edge_t *>(this)), nullptr);
}

TEST_F(DiscreteCad, RefusesEdgesThatAreNotOfItsModel)
{
    korvane_cad_t *other = korvane_cad_new(context);
    korvane_cad_edge_t *of_other = korvane_cad_edge_new(
        korvane_cad_face_new(other, 1, blank_surface, nullptr), 1, 0, 1, blank_curve, nullptr);
    korvane_cad_edge_t *copied = new_edge(new_face());
    korvane_cad_edge_t *alone = korvane_cad_edge_new_copy(copied);
    korvane_cad_face_t *free_face = korvane_cad_face_new_copy(new_face());
    korvane_cad_edge_t *on_free_face = new_edge(free_face);
    make();
    expect_refused(of_other);
    expect_refused(alone);
    expect_refused(on_free_face);
    expect_refused(nullptr);
    auto *discretization = none;
    EXPECT_EQ(korvane_dcad_get_edge_discretization(nullptr, copied, &discretization), STATUS_ERROR);
    EXPECT_EQ(discretization, nullptr);
    EXPECT_NE(get(copied), nullptr);
    korvane_cad_edge_delete(alone);
    korvane_cad_edge_delete(on_free_face);
    korvane_cad_face_delete(free_face);
}

TEST_F(DiscreteCad, TakesEdgesThatCameAfterIt)
{
    make();
    std::set<korvane_dcad_edge_discretization_t *> distinct;
    korvane_cad_face_t *face = new_face();
    for (uint32_t id = 1; id <= 20; ++id)
        distinct.insert(get(new_edge(face, id)));
    EXPECT_EQ(distinct.size(), 20u);
}

TEST_F(DiscreteCad, KeepsADiscretizationPerEdgeWhileItsMapGrows)
{
    korvane_cad_face_t *face = new_face();
    std::vector<korvane_cad_edge_t *> edges = {new_edge(face)};
    make(); // with room for two
    for (uint32_t id = 2; id <= 500; ++id)
        edges.push_back(new_edge(id % 7 == 0 ? face = new_face() : face, id));
    for (std::size_t i = 0; i < edges.size(); ++i) {
        auto *discretization = get(edges[i]);
        ASSERT_EQ(korvane_dcad_edge_discretization_set_vertex_count(discretization, static_cast<int32_t>(i)),
            STATUS_OK);
    }
    for (std::size_t i = 0; i < edges.size(); ++i)
        EXPECT_EQ(got<int32_t>(korvane_dcad_edge_discretization_get_vertex_count, query(edges[i])),
            static_cast<int32_t>(i));
}

/// The room that a map for so many edges begins with, as told by the allocations that it takes to leave it.
class RoomOfDiscreteCad : public DiscreteCad {
  protected:
    /// Requests discretizations until one takes more than its own allocation.
    std::size_t edges_until_growth(korvane_cad_face_t *face)
    {
        for (std::size_t requested = 0;; ++requested) {
            korvane_cad_edge_t *edge = new_edge(face);
            const int64_t before = allocation_count();
            get(edge);
            if (allocation_count() > before + 1)
                return requested;
        }
    }
};

TEST_F(RoomOfDiscreteCad, IsTwoForOneEdgeThen23)
{
    korvane_cad_face_t *face = new_face();
    new_edge(face);
    make();
    EXPECT_EQ(edges_until_growth(face), 2u);
    EXPECT_EQ(edges_until_growth(face), 23u - 3u);
}

TEST_F(RoomOfDiscreteCad, IsTheSumOfTheEdgesOfAllFaces)
{
    korvane_cad_face_t *face = nullptr;
    for (int faces = 0; faces < 3; ++faces) {
        face = new_face();
        for (int edges = 0; edges < 5; ++edges)
            new_edge(face);
    }
    make();
    EXPECT_EQ(edges_until_growth(face), 15u);
}

TEST_F(RoomOfDiscreteCad, IsFiftyThousandForNone)
{
    korvane_cad_face_t *face = nullptr;
    for (int faces = 0; faces < 2; ++faces) { // without any face at first, then with one that has no edges
        make();
        face = new_face();
        EXPECT_EQ(edges_until_growth(face), 50000u);
        start_anew();
        face = new_face();
    }
}

TEST_F(DiscreteCad, SurvivesFailingAllocations)
{
    oom_sweep([&](AllocationFault &fault) {
        korvane_cad_face_t *face = new_face();
        std::vector<korvane_cad_edge_t *> edges = {new_edge(face)};
        fault.arm();
        dcad = korvane_dcad_new(cad);
        EXPECT_EQ(dcad == nullptr, fault.disarm());
        if (dcad == nullptr)
            make();
        while (edges.size() < 50) // more than there is room for
            edges.push_back(new_edge(face));
        for (korvane_cad_edge_t *edge : edges) {
            auto *discretization = none;
            fault.arm();
            const korvane_status_t status = korvane_dcad_get_edge_discretization(dcad, edge, &discretization);
            if (fault.disarm()) {
                EXPECT_EQ(status, STATUS_NOMEM);
                EXPECT_EQ(discretization, nullptr);
                EXPECT_EQ(query(edge), nullptr);
            } else {
                EXPECT_EQ(status, STATUS_OK);
                EXPECT_NE(discretization, nullptr);
            }
            const auto *made = get(edge);
            EXPECT_EQ(query(edge), made);
        }
        start_anew();
    });
}

} // namespace
} // namespace korvane::testing
