#include "cad/records.h"
#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

class Edge : public Cad {
  protected:
    using PairSetter = korvane_status_t (*)(korvane_cad_edge_t *, int32_t, int32_t);
    using PairGetter = korvane_status_t (*)(const korvane_cad_edge_t *, int32_t *, int32_t *);

    void expect_pair(PairGetter getter, int32_t first, int32_t second) const
    {
        int32_t read_first = 99;
        int32_t read_second = 99;
        EXPECT_EQ(getter(edge, &read_first, &read_second), STATUS_OK);
        EXPECT_EQ(read_first, first);
        EXPECT_EQ(read_second, second);
    }

    korvane_cad_face_t *face = new_face();
    korvane_cad_edge_t *edge = korvane_cad_edge_new(face, 12, 0.25, 2.5, blank_curve, nullptr);
};

TEST_F(Edge, StartsWithWhatItWasGivenAndZeros)
{
    EXPECT_EQ(range_of(edge), (std::array<double, 2>{0.25, 2.5}));
    EXPECT_EQ(got(korvane_cad_edge_get_id, edge), 12u);
    EXPECT_EQ(got(korvane_cad_edge_get_uid, edge), 0u);
    EXPECT_EQ(got(korvane_cad_edge_get_tag, edge), 0u);
    EXPECT_EQ(got(korvane_cad_edge_get_orientation, edge), 0);
    EXPECT_EQ(got(korvane_cad_edge_get_coorientation, edge), 0);
    EXPECT_EQ(got(korvane_cad_edge_get_face, edge), face);
    EXPECT_EQ(got(korvane_cad_edge_get_degenerated, edge), 0);
    EXPECT_EQ(got(korvane_cad_edge_get_wdef, edge), 1);
    EXPECT_EQ(got(korvane_cad_edge_has_curve3d, edge), 0);
    expect_pair(korvane_cad_edge_get_extremities, 0, 0);
    expect_pair(korvane_cad_edge_get_extremities_tag, 0, 0);
    expect_pair(korvane_cad_edge_get_uv_extremities, 0, 0);
    EXPECT_EQ(edge->flags, EDGE_ATTACHED);
}

TEST_F(Edge, StoresWhatTheClientSets)
{
    EXPECT_EQ(korvane_cad_edge_set_id(edge, UINT32_MAX), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_set_uid(edge, 3), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_set_orientation(edge, -1), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_set_coorientation(edge, -2), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_set_range(edge, -3, -4), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_set_extremities(edge, 5, -6), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_set_uv_extremities(edge, 9, -10), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_set_degenerated(edge, 4), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_edge_get_id, edge), UINT32_MAX);
    EXPECT_EQ(got(korvane_cad_edge_get_uid, edge), 3u);
    EXPECT_EQ(got(korvane_cad_edge_get_orientation, edge), -1);
    EXPECT_EQ(got(korvane_cad_edge_get_coorientation, edge), -2);
    EXPECT_EQ(range_of(edge), (std::array<double, 2>{-3, -4}));
    expect_pair(korvane_cad_edge_get_extremities, 5, -6);
    expect_pair(korvane_cad_edge_get_uv_extremities, 9, -10);
    EXPECT_EQ(got(korvane_cad_edge_get_degenerated, edge), 1);
    EXPECT_EQ(korvane_cad_edge_set_degenerated(edge, 0), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_edge_get_degenerated, edge), 0);
    EXPECT_EQ(got(korvane_cad_get_use_vtag, cad), 0);
    EXPECT_EQ(got(korvane_cad_get_use_etag, cad), 0);
}

TEST_F(Edge, ItsTagsSetTheFlagsOfTheModel)
{
    EXPECT_EQ(korvane_cad_edge_set_tag(edge, 4), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_edge_get_tag, edge), 4u);
    EXPECT_EQ(got(korvane_cad_get_use_etag, cad), 1);
    EXPECT_EQ(got(korvane_cad_get_use_vtag, cad), 0);
    EXPECT_EQ(korvane_cad_edge_set_extremities_tag(edge, 7, -8), STATUS_OK);
    expect_pair(korvane_cad_edge_get_extremities_tag, 7, -8);
    EXPECT_EQ(got(korvane_cad_get_use_vtag, cad), 1);
    EXPECT_EQ(got(korvane_cad_get_use_ftag, cad), 0);
}

TEST_F(Edge, TakesTagsWithoutAFaceAndOnAFaceWithoutAModel)
{
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    EXPECT_EQ(korvane_cad_edge_set_tag(copy, 4), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_set_extremities_tag(copy, 1, 2), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_edge_get_tag, copy), 4u);
    korvane_cad_edge_delete(copy);

    korvane_cad_face_t *free_face = korvane_cad_face_new_copy(face);
    korvane_cad_edge_t *on_it = new_edge(free_face);
    EXPECT_EQ(korvane_cad_edge_set_tag(on_it, 5), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_set_extremities_tag(on_it, 1, 2), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_get_use_vtag, cad) + got(korvane_cad_get_use_etag, cad), 0);
    korvane_cad_face_delete(free_face);
    korvane_cad_edge_delete(on_it);
}

TEST_F(Edge, KeepsPropertyBits)
{
    const auto query = [this](uint32_t mask) {
        int32_t result = -1;
        EXPECT_EQ(korvane_cad_edge_query_property(edge, mask, &result), STATUS_OK);
        return result;
    };
    EXPECT_EQ(query(UINT32_MAX), 0);
    EXPECT_EQ(korvane_cad_edge_set_property(edge, 0x4), STATUS_OK);
    EXPECT_EQ(query(0x6), 1);
    EXPECT_EQ(query(0x2), 0);
    EXPECT_EQ(korvane_cad_edge_set_property(edge, 0x80000000u), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_unset_property(edge, 0x4), STATUS_OK);
    EXPECT_EQ(query(0x6), 0);
    EXPECT_EQ(query(0x80000000u), 1);
}

TEST_F(Edge, PassesEverythingOnToItsCurveFunction)
{
    struct Call {
        double t;
        std::array<double *, 3> outputs;
    } call{};
    const auto curve = [](double t, double *uv, double *dt, double *dtt, void *user_data) {
        *static_cast<Call *>(user_data) = {t, {uv, dt, dtt}};
        return korvane_status_t{-77};
    };
    korvane_cad_edge_t *recording = korvane_cad_edge_new(face, 1, 0, 1, curve, &call);
    Uv dt{1, 2};
    EXPECT_EQ(korvane_cad_edge_curve(recording, 0.75, nullptr, dt.data(), nullptr), -77);
    EXPECT_EQ(call.t, 0.75);
    EXPECT_EQ(call.outputs, (std::array<double *, 3>{nullptr, dt.data(), nullptr}));
    EXPECT_EQ(dt, Uv{});
    Uv uv{1, 2};
    Uv dtt{3, 4};
    EXPECT_EQ(korvane_cad_edge_curve(recording, 0.75, uv.data(), nullptr, dtt.data()), -77);
    EXPECT_EQ(uv, Uv{});
    EXPECT_EQ(dtt, Uv{});
    korvane_cad_curve_t stored = nullptr;
    void *user_data = nullptr;
    EXPECT_EQ(korvane_cad_edge_get_curv(recording, &stored, &user_data), STATUS_OK);
    EXPECT_EQ(stored, static_cast<korvane_cad_curve_t>(curve));
    EXPECT_EQ(user_data, &call);
}

TEST_F(Edge, ZeroesNothingBeyondItsOutputs)
{
    Xyz outputs[3] = {{9, 9, 9}, {9, 9, 9}, {9, 9, 9}};
    EXPECT_EQ(
        korvane_cad_edge_curve(edge, 0, outputs[0].data(), outputs[1].data(), outputs[2].data()), STATUS_OK);
    for (const Xyz &output : outputs)
        EXPECT_EQ(output, (Xyz{0, 0, 9}));
    korvane_cad_edge_set_curve3d(
        edge, [](double, double *, void *) { return korvane_status_t{STATUS_OK}; }, nullptr);
    std::array<double, 4> xyz = {9, 9, 9, 9};
    EXPECT_EQ(korvane_cad_edge_curve3d(edge, 0, xyz.data()), STATUS_OK);
    EXPECT_EQ(xyz, (std::array<double, 4>{0, 0, 0, 9}));
}

TEST_F(Edge, WithoutACurveInSpaceDoesNotWrite)
{
    Xyz xyz{1, 2, 3};
    EXPECT_EQ(korvane_cad_edge_curve3d(edge, 0, xyz.data()), STATUS_ERROR);
    EXPECT_EQ(xyz, (Xyz{1, 2, 3}));
}

TEST_F(Edge, EvaluatesItsCurveInSpace)
{
    const auto curve3d = [](double t, double *xyz, void *user_data) {
        *static_cast<double *>(user_data) = t;
        if (xyz != nullptr)
            xyz[1] = t;
        return korvane_status_t{5};
    };
    double seen = 0;
    EXPECT_EQ(korvane_cad_edge_set_curve3d(edge, curve3d, &seen), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_edge_has_curve3d, edge), 1);
    Xyz xyz{1, 2, 3};
    EXPECT_EQ(korvane_cad_edge_curve3d(edge, 0.5, xyz.data()), 5);
    EXPECT_EQ(xyz, (Xyz{0, 0.5, 0}));
    EXPECT_EQ(korvane_cad_edge_curve3d(edge, 0.75, nullptr), 5);
    EXPECT_EQ(seen, 0.75);
    korvane_cad_curve3d_t stored = nullptr;
    void *user_data = nullptr;
    EXPECT_EQ(korvane_cad_edge_get_curve3d(edge, &stored, &user_data), STATUS_OK);
    EXPECT_EQ(stored, static_cast<korvane_cad_curve3d_t>(curve3d));
    EXPECT_EQ(user_data, &seen);
    EXPECT_EQ(korvane_cad_edge_set_curve3d(edge, nullptr, nullptr), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_edge_has_curve3d, edge), 0);
}

TEST_F(Edge, TheSixthDoublesTheListOfItsFace)
{
    while (face->edge_count < 5)
        new_edge(face);
    EXPECT_EQ(face->edge_capacity, 5);
    new_edge(face);
    EXPECT_EQ(face->edge_capacity, 10);
    EXPECT_EQ(face->edge_count, 6);
}

TEST_F(Edge, IsAttachedAsTheLastOneOfAFace)
{
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    korvane_cad_face_t *found = face;
    EXPECT_EQ(korvane_cad_edge_get_face(copy, &found), STATUS_OK);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(korvane_cad_edge_attach(copy, face), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_edge_get_face, copy), face);
    korvane_cad_edge_t *last = nullptr;
    EXPECT_EQ(korvane_cad_face_get_edge(face, 2, &last), STATUS_OK);
    EXPECT_EQ(last, copy);
    EXPECT_EQ(korvane_cad_edge_attach(copy, face), STATUS_ERROR) << "it has a face already";
    EXPECT_EQ(got(korvane_cad_face_get_edge_count, face), 2);
}

TEST_F(Edge, RefusesNull)
{
    uint32_t id = 0;
    int32_t number = 7;
    double real = 0;
    Xyz xyz{};
    void *user_data = nullptr;
    korvane_cad_curve_t curve = nullptr;
    korvane_cad_curve3d_t curve3d = nullptr;
    korvane_cad_face_t *found = face;
    korvane_cad_edge_t *const none = nullptr;
    korvane_cad_edge_delete(none);
    EXPECT_EQ(korvane_cad_edge_new(nullptr, 1, 0, 1, blank_curve, nullptr), nullptr);
    EXPECT_EQ(korvane_cad_edge_clone(none), nullptr);
    EXPECT_EQ(korvane_cad_edge_attach(none, face), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_attach(edge, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_get_face(edge, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_get_face(none, &found), STATUS_ERROR);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(korvane_cad_edge_get_wdef(edge, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_get_wdef(none, &number), STATUS_ERROR);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(korvane_cad_edge_curve(none, 0, nullptr, nullptr, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_get_curv(none, &curve, &user_data), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_set_curve3d(none, nullptr, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_has_curve3d(none, &number), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_has_curve3d(edge, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_get_curve3d(none, &curve3d, &user_data), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_curve3d(none, 0, xyz.data()), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_set_range(none, 0, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_get_range(none, &real, &real), STATUS_ERROR);
    for (const PairSetter setter : {korvane_cad_edge_set_extremities, korvane_cad_edge_set_extremities_tag,
             korvane_cad_edge_set_uv_extremities})
        EXPECT_EQ(setter(none, 1, 2), STATUS_ERROR);
    for (const PairGetter getter : {korvane_cad_edge_get_extremities, korvane_cad_edge_get_extremities_tag,
             korvane_cad_edge_get_uv_extremities})
        EXPECT_EQ(getter(none, &number, &number), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_set_degenerated(none, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_get_degenerated(none, &number), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_set_property(none, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_unset_property(none, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_query_property(none, 1, &number), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_get_orientation(none, &number), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_set_coorientation(none, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_get_coorientation(none, &number), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_set_id(none, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_get_id(none, &id), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_set_uid(none, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_get_uid(none, &id), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_set_tag(none, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_get_tag(none, &id), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_set_delete_function(none, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_edge_set_clone_function(none, nullptr), STATUS_ERROR);
}

TEST_F(Edge, CreationSurvivesFailingAllocationsAlsoWhereTheListGrows)
{
    while (face->edge_count < 5)
        new_edge(face);
    const uint32_t references = cad->reference_count;
    oom_sweep([&](AllocationFault &fault) {
        const int32_t count = face->edge_count;
        fault.arm();
        korvane_cad_edge_t *made = new_edge(face);
        EXPECT_EQ(made == nullptr, fault.disarm());
        EXPECT_EQ(face->edge_count, count + (made == nullptr ? 0 : 1));
        EXPECT_EQ(cad->reference_count, references + static_cast<uint32_t>(face->edge_count - 5));
    });
}

TEST_F(Edge, AttachingSurvivesFailingAllocations)
{
    while (face->edge_count < 5)
        new_edge(face);
    const uint32_t references = cad->reference_count;
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    AllocationFault fault(1, Failure::transient);
    fault.arm();
    EXPECT_EQ(korvane_cad_edge_attach(copy, face), STATUS_NOMEM);
    EXPECT_TRUE(fault.disarm());
    EXPECT_EQ(face->edge_count, 5);
    EXPECT_EQ(cad->reference_count, references);
    EXPECT_EQ(copy->reference_count, 1);
    EXPECT_EQ(korvane_cad_edge_attach(copy, face), STATUS_OK);
    EXPECT_EQ(copy->reference_count, 0);
}

} // namespace
} // namespace korvane::testing
