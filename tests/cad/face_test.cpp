#include <cmath>
#include <limits>

#include "cad/records.h"
#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

class Face : public Cad {
  protected:
    void set_unit_range()
    {
        const Uv unit{0, 1};
        ASSERT_EQ(korvane_cad_face_set_surface_parametric_range(face, unit.data(), unit.data()), STATUS_OK);
    }

    struct Clamped {
        Uv uv;
        int32_t count;
        bool operator==(const Clamped &) const = default;
    };
    Clamped clamp(Uv uv) const
    {
        Clamped clamped{uv, -1};
        EXPECT_EQ(korvane_cad_face_check_point_parametric_range(face, clamped.uv.data(), &clamped.count),
            STATUS_OK);
        return clamped;
    }

    korvane_cad_face_t *face = new_face(12);
};

TEST_F(Face, StartsWithItsIdentifierAndZeros)
{
    EXPECT_EQ(got(korvane_cad_face_get_id, face), 12u);
    EXPECT_EQ(got(korvane_cad_face_get_uid, face), 0u);
    EXPECT_EQ(got(korvane_cad_face_get_tag, face), 0u);
    EXPECT_EQ(got(korvane_cad_face_get_orientation, face), 0);
    EXPECT_EQ(got(korvane_cad_face_get_cad, face), cad);
    EXPECT_EQ(got(korvane_cad_face_get_edge_count, face), 0);
    EXPECT_EQ(got(korvane_cad_face_get_point_count, face), 0);
    EXPECT_EQ(got(korvane_cad_face_has_surface_parametric_range, face), 0);
    EXPECT_EQ(got(korvane_cad_face_has_surface_periodicity, face), 0);
    EXPECT_EQ(face->flags, FACE_ATTACHED);
    EXPECT_EQ(face->edge_capacity, 5);
    EXPECT_EQ(face->point_capacity, 1);
}

TEST_F(Face, StoresWhatTheClientSets)
{
    EXPECT_EQ(korvane_cad_face_set_id(face, UINT32_MAX), STATUS_OK);
    EXPECT_EQ(korvane_cad_face_set_uid(face, 3), STATUS_OK);
    EXPECT_EQ(korvane_cad_face_set_orientation(face, -1), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_get_use_ftag, cad), 0);
    EXPECT_EQ(korvane_cad_face_set_tag(face, 4), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_face_get_id, face), UINT32_MAX);
    EXPECT_EQ(got(korvane_cad_face_get_uid, face), 3u);
    EXPECT_EQ(got(korvane_cad_face_get_orientation, face), -1);
    EXPECT_EQ(got(korvane_cad_face_get_tag, face), 4u);
    EXPECT_EQ(got(korvane_cad_get_use_ftag, cad), 1);
    EXPECT_EQ(got(korvane_cad_get_use_vtag, cad), 0);
    EXPECT_EQ(got(korvane_cad_get_use_etag, cad), 0);
}

TEST_F(Face, TakesATagWithoutAModel)
{
    korvane_cad_face_t *copy = korvane_cad_face_new_copy(face);
    EXPECT_EQ(korvane_cad_face_set_tag(copy, 4), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_face_get_tag, copy), 4u);
    EXPECT_EQ(got(korvane_cad_get_use_ftag, cad), 0);
    korvane_cad_face_delete(copy);
}

TEST_F(Face, PassesEverythingOnToItsSurfaceFunction)
{
    struct Call {
        const double *uv;
        std::array<double *, 6> outputs;
    } call{};
    const auto surface = [](const double *uv, double *xyz, double *du, double *dv, double *duu, double *duv,
                             double *dvv, void *user_data) {
        *static_cast<Call *>(user_data) = {uv, {xyz, du, dv, duu, duv, dvv}};
        return korvane_status_t{1234};
    };
    korvane_cad_face_t *recording = korvane_cad_face_new(cad, 1, surface, &call);
    const Uv uv{0.25, 0.5};
    Xyz du{1, 2, 3};
    Xyz dvv{4, 5, 6};
    EXPECT_EQ(korvane_cad_face_surface(
                  recording, uv.data(), nullptr, du.data(), nullptr, nullptr, nullptr, dvv.data()),
        1234);
    EXPECT_EQ(call.uv, uv.data());
    EXPECT_EQ(
        call.outputs, (std::array<double *, 6>{nullptr, du.data(), nullptr, nullptr, nullptr, dvv.data()}));
    EXPECT_EQ(du, Xyz{});
    EXPECT_EQ(dvv, Xyz{});
    korvane_cad_surface_t stored = nullptr;
    void *user_data = nullptr;
    EXPECT_EQ(korvane_cad_face_get_surf(recording, &stored, &user_data), STATUS_OK);
    EXPECT_EQ(stored, static_cast<korvane_cad_surface_t>(surface));
    EXPECT_EQ(user_data, &call);
}

TEST_F(Face, ReadsZerosWhereTheSurfaceFunctionWritesNothing)
{
    const auto only_point = [](const double *uv, double *xyz, double *, double *, double *, double *,
                                double *, void *) {
        write(xyz, uv[0], uv[1], 7);
        return korvane_status_t{STATUS_OK};
    };
    korvane_cad_face_t *plane = korvane_cad_face_new(cad, 1, only_point, nullptr);
    SurfaceValues values{STATUS_ERROR, {9, 9, 9}, {9, 9, 9}, {9, 9, 9}, {9, 9, 9}, {9, 9, 9}, {9, 9, 9}};
    const Uv uv{2, 3};
    EXPECT_EQ(korvane_cad_face_surface(plane, uv.data(), values.xyz.data(), values.du.data(),
                  values.dv.data(), values.duu.data(), values.duv.data(), values.dvv.data()),
        STATUS_OK);
    EXPECT_EQ(values.xyz, (Xyz{2, 3, 7}));
    for (const Xyz &derivative : {values.du, values.dv, values.duu, values.duv, values.dvv})
        EXPECT_EQ(derivative, Xyz{});
}

TEST_F(Face, ZeroesNothingBeyondTheOutputs)
{
    using Four = std::array<double, 4>;
    std::array<Four, 6> outputs;
    outputs.fill({9, 9, 9, 9});
    auto &[xyz, du, dv, duu, duv, dvv] = outputs;
    const Uv uv{};
    EXPECT_EQ(korvane_cad_face_surface(
                  face, uv.data(), xyz.data(), du.data(), dv.data(), duu.data(), duv.data(), dvv.data()),
        STATUS_OK);
    for (const Four &output : outputs)
        EXPECT_EQ(output, (Four{0, 0, 0, 9}));
}

TEST_F(Face, WithoutARangeIsUnbounded)
{
    EXPECT_EQ(ranges_of(face), (Ranges{{-HUGE_VAL, HUGE_VAL}, {-HUGE_VAL, HUGE_VAL}}));
}

TEST_F(Face, StoresItsRange)
{
    const Uv urange{-1, 2};
    const Uv vrange{3, -4};
    EXPECT_EQ(korvane_cad_face_set_surface_parametric_range(face, urange.data(), vrange.data()), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_face_has_surface_parametric_range, face), 1);
    EXPECT_EQ(ranges_of(face), (Ranges{urange, vrange}));
}

TEST_F(Face, ClampsIntoItsRange)
{
    set_unit_range();
    EXPECT_EQ(clamp({5, 5}), (Clamped{{1, 1}, 2}));
    EXPECT_EQ(clamp({-5, 0.5}), (Clamped{{0, 0.5}, 1}));
    EXPECT_EQ(clamp({0, 1}), (Clamped{{0, 1}, 0}));
    Uv uv{5, -5};
    EXPECT_EQ(korvane_cad_face_check_point_parametric_range(face, uv.data(), nullptr), STATUS_OK);
    EXPECT_EQ(uv, (Uv{1, 0}));
}

TEST_F(Face, DoesNotClampInPeriodicDirections)
{
    set_unit_range();
    korvane_cad_face_set_surface_periodicity(face, 1, 0, 1, 0);
    EXPECT_EQ(clamp({5, 5}), (Clamped{{5, 1}, 1}));
    korvane_cad_face_set_surface_periodicity(face, 0, 1, 0, 1);
    EXPECT_EQ(clamp({5, 5}), (Clamped{{1, 5}, 1}));
}

TEST_F(Face, DoesNotClampWithoutARange)
{
    EXPECT_EQ(clamp({5, 5}), (Clamped{{5, 5}, -1}));
}

TEST_F(Face, ClampsTwiceIntoAnInvertedRange)
{
    const Uv inverted{1, 0};
    korvane_cad_face_set_surface_parametric_range(face, inverted.data(), inverted.data());
    EXPECT_EQ(clamp({0.5, 0.25}), (Clamped{{0, 0}, 4}));
}

TEST_F(Face, LeavesWhatIsNotANumber)
{
    set_unit_range();
    const Clamped clamped = clamp({std::numeric_limits<double>::quiet_NaN(), 2});
    EXPECT_TRUE(std::isnan(clamped.uv[0]));
    EXPECT_EQ(clamped.uv[1], 1);
    EXPECT_EQ(clamped.count, 1);
}

TEST_F(Face, WithoutPeriodicityReadsZeros)
{
    EXPECT_EQ(periods_of(face), (Periods{0, 0, 0, 0}));
}

TEST_F(Face, HasPeriodicityAlsoInNoDirection)
{
    EXPECT_EQ(korvane_cad_face_set_surface_periodicity(face, 0, 0, 3, 4), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_face_has_surface_periodicity, face), 1);
    EXPECT_EQ(face->period_u, 0);
    EXPECT_EQ(face->period_v, 0);
}

TEST_F(Face, KeepsThePeriodOfADirectionThatIsNoLongerPeriodic)
{
    korvane_cad_face_set_surface_periodicity(face, -1, 1, 3, 4);
    korvane_cad_face_set_surface_periodicity(face, 0, 1, 5, 6);
    EXPECT_EQ(periods_of(face), (Periods{0, 1, 0, 6}));
    EXPECT_EQ(face->period_u, 3);
    double period_v = 9;
    EXPECT_EQ(
        korvane_cad_face_get_surface_periodicity(face, nullptr, nullptr, nullptr, &period_v), STATUS_OK);
    EXPECT_EQ(period_v, 6);
}

TEST_F(Face, ListsItsEdgesAndPoints)
{
    korvane_cad_edge_t *edges[] = {new_edge(face), new_edge(face)};
    const Uv uv{};
    korvane_cad_point_t *point = korvane_cad_point_new(face, 1, uv.data());
    EXPECT_EQ(got(korvane_cad_face_get_edge_count, face), 2);
    EXPECT_EQ(got(korvane_cad_face_get_point_count, face), 1);
    korvane_cad_edge_t *edge = nullptr;
    EXPECT_EQ(korvane_cad_face_get_edge(face, 2, &edge), STATUS_OK);
    EXPECT_EQ(edge, edges[1]);
    korvane_cad_point_t *found = nullptr;
    EXPECT_EQ(korvane_cad_face_get_point(face, 1, &found), STATUS_OK);
    EXPECT_EQ(found, point);
    for (const int32_t index : {0, 3, -1}) {
        EXPECT_EQ(korvane_cad_face_get_edge(face, index, &edge), STATUS_ERROR);
        EXPECT_EQ(korvane_cad_face_get_point(face, index, &found), STATUS_ERROR);
    }
}

TEST_F(Face, IsAttachedAsTheLastOneOfAModel)
{
    korvane_cad_face_t *copy = korvane_cad_face_new_copy(face);
    EXPECT_EQ(got(korvane_cad_face_get_cad, copy), nullptr);
    EXPECT_EQ(korvane_cad_face_attach(copy, cad), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_face_get_cad, copy), cad);
    EXPECT_EQ(got(korvane_cad_get_face_count, cad), 2);
    korvane_cad_face_t *last = nullptr;
    EXPECT_EQ(korvane_cad_get_face(cad, 2, &last), STATUS_OK);
    EXPECT_EQ(last, copy);
    EXPECT_EQ(korvane_cad_face_attach(copy, cad), STATUS_ERROR) << "it has a model already";
    EXPECT_EQ(got(korvane_cad_get_face_count, cad), 2);
}

TEST_F(Face, RefusesNull)
{
    uint32_t id = 0;
    int32_t number = 0;
    double real = 0;
    Uv uv{};
    void *user_data = nullptr;
    korvane_cad_t *model = nullptr;
    korvane_cad_surface_t surface = nullptr;
    korvane_cad_edge_t *edge = nullptr;
    korvane_cad_point_t *point = nullptr;
    korvane_cad_face_t *const none = nullptr;
    korvane_cad_face_delete(none);
    EXPECT_EQ(korvane_cad_face_new(nullptr, 1, blank_surface, nullptr), nullptr);
    EXPECT_EQ(korvane_cad_face_clone(none), nullptr);
    EXPECT_EQ(korvane_cad_face_attach(none, cad), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_attach(face, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_cad(none, &model), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_cad(face, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_surface(none, uv.data(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
        STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_surf(none, &surface, &user_data), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_set_delete_function(none, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_set_clone_function(none, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_set_id(none, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_id(none, &id), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_set_uid(none, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_uid(none, &id), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_set_orientation(none, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_orientation(none, &number), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_set_tag(none, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_tag(none, &id), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_set_surface_parametric_range(none, uv.data(), uv.data()), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_set_surface_parametric_range(face, nullptr, uv.data()), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_set_surface_parametric_range(face, uv.data(), nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_has_surface_parametric_range(none, &number), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_has_surface_parametric_range(face, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_surface_parametric_range(none, uv.data(), uv.data()), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_check_point_parametric_range(none, uv.data(), &number), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_set_surface_periodicity(none, 0, 0, 0, 0), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_has_surface_periodicity(none, &number), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_has_surface_periodicity(face, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_surface_periodicity(none, &number, &number, &real, &real), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_edge_count(none, &number), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_edge(none, 1, &edge), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_point_count(none, &number), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_face_get_point(none, 1, &point), STATUS_ERROR);
}

TEST_F(Face, CreationSurvivesFailingAllocationsAlsoWhereTheListGrows)
{
    while (cad->face_count < 128)
        new_face();
    const uint32_t references = cad->reference_count;
    oom_sweep([&](AllocationFault &fault) {
        const int32_t count = cad->face_count;
        fault.arm();
        korvane_cad_face_t *made = new_face();
        EXPECT_EQ(made == nullptr, fault.disarm());
        EXPECT_EQ(cad->face_count, count + (made == nullptr ? 0 : 1));
        EXPECT_EQ(cad->reference_count, references + static_cast<uint32_t>(cad->face_count - 128));
    });
}

TEST_F(Face, AttachingSurvivesFailingAllocations)
{
    while (cad->face_count < 128)
        new_face();
    const uint32_t references = cad->reference_count;
    korvane_cad_face_t *copy = korvane_cad_face_new_copy(face);
    AllocationFault fault(1, Failure::transient);
    fault.arm();
    EXPECT_EQ(korvane_cad_face_attach(copy, cad), STATUS_NOMEM);
    EXPECT_TRUE(fault.disarm());
    EXPECT_EQ(cad->face_count, 128);
    EXPECT_EQ(cad->face_capacity, 128);
    EXPECT_EQ(cad->reference_count, references);
    EXPECT_EQ(copy->reference_count, 1);
    EXPECT_EQ(korvane_cad_face_attach(copy, cad), STATUS_OK);
    EXPECT_EQ(cad->face_capacity, 256);
}

} // namespace
} // namespace korvane::testing
