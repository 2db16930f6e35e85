#include "cad/records.h"
#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

class FaceTransformed : public Cad {
  protected:
    korvane_cad_face_t *derive(korvane_cad_t *owner, korvane_cad_face_t *from, int32_t clone_points = 0)
    {
        return korvane_cad_face_new_pafftrans(
            owner, from, 77, scale.data(), translation.data(), nullptr, clone_points);
    }
    std::vector<uint32_t> original_ids(const korvane_cad_face_t *face) const
    {
        std::vector<uint32_t> found;
        for (int32_t index = 1; index <= got(korvane_cad_face_get_original_id_count, face); ++index) {
            uint32_t id = 0;
            EXPECT_EQ(korvane_cad_face_get_original_id(face, index, &id), STATUS_OK);
            found.push_back(id);
        }
        return found;
    }

    Uv scale{2, 4};
    Uv translation{0.5, -1};
    korvane_cad_face_t *source = korvane_cad_face_new(cad, 12, polynomial_surface, nullptr);
};

TEST_F(FaceTransformed, EvaluatesTheSourceByTheChainRule)
{
    korvane_cad_face_t *face = derive(cad, source);
    const Uv uv{0.3, 0.7};
    // The composition, differentiated by hand: u' = u / 2 + 0.5, v' = v / 4 - 1.
    const double u = uv[0] / 2 + 0.5;
    const double v = uv[1] / 4 - 1;
    const SurfaceValues values = evaluate(face, uv);
    ASSERT_EQ(values.status, STATUS_OK);
    const auto expect_near = [](const Xyz &value, const Xyz &expected) {
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(value[i], expected[i], 1e-15);
    };
    expect_near(values.xyz, {u * u * v, u + 3 * v * v, u * v});
    expect_near(values.du, {u * v, 0.5, v / 2});
    expect_near(values.dv, {u * u / 4, 1.5 * v, u / 4});
    expect_near(values.duu, {v / 2, 0, 0});
    expect_near(values.duv, {u / 4, 0, 0.125});
    expect_near(values.dvv, {0, 0.375, 0});
}

TEST_F(FaceTransformed, WritesOnlyWhatIsAskedFor)
{
    korvane_cad_face_t *face = derive(cad, source);
    const Uv uv{0.3, 0.7};
    Xyz duv{};
    EXPECT_EQ(
        korvane_cad_face_surface(face, uv.data(), nullptr, nullptr, nullptr, nullptr, duv.data(), nullptr),
        STATUS_OK);
    EXPECT_EQ(duv, evaluate(face, uv).duv);
}

TEST_F(FaceTransformed, ReturnsTheStatusOfTheSourceAtOnce)
{
    const auto failing = [](const double *, double *xyz, double *du, double *, double *, double *, double *,
                             void *) {
        write(xyz, 1, 1, 1);
        write(du, 1, 1, 1);
        return korvane_status_t{99};
    };
    korvane_cad_face_t *face = derive(cad, korvane_cad_face_new(cad, 1, failing, nullptr));
    const SurfaceValues values = evaluate(face, {0, 0});
    EXPECT_EQ(values.status, 99);
    EXPECT_EQ(values.du, (Xyz{1, 1, 1})) << "not scaled";
}

TEST_F(FaceTransformed, ScalesRangeAndPeriodsWithoutTranslating)
{
    const Uv unit{0, 1};
    korvane_cad_face_set_surface_parametric_range(source, unit.data(), unit.data());
    korvane_cad_face_set_surface_periodicity(source, 1, 0, 1, 0);
    korvane_cad_face_set_tag(source, 5);
    korvane_cad_face_set_orientation(source, -1);
    korvane_cad_face_set_uid(source, 6);
    korvane_cad_face_t *face = derive(cad, source);
    EXPECT_EQ(ranges_of(face), (Ranges{{0, 2}, {0, 4}}));
    EXPECT_EQ(periods_of(face), (Periods{1, 0, 2, 0}));
    EXPECT_EQ(got(korvane_cad_face_get_tag, face), 5u);
    EXPECT_EQ(got(korvane_cad_face_get_orientation, face), -1);
    EXPECT_EQ(got(korvane_cad_face_get_uid, face), 0u);
    EXPECT_EQ(got(korvane_cad_face_get_id, face), 77u);
}

TEST_F(FaceTransformed, ScalesEveryBoundAndPeriodByItsDirection)
{
    const Uv of_u{3, 5};
    const Uv of_v{7, 11};
    korvane_cad_face_set_surface_parametric_range(source, of_u.data(), of_v.data());
    korvane_cad_face_set_surface_periodicity(source, 1, 1, 13, 17);
    korvane_cad_face_t *face = derive(cad, source);
    EXPECT_EQ(ranges_of(face), (Ranges{{2 * 3, 2 * 5}, {4 * 7, 4 * 11}}));
    EXPECT_EQ(periods_of(face), (Periods{1, 1, 2 * 13, 4 * 17}));
}

TEST_F(FaceTransformed, HasNeitherRangeNorPeriodicityIfTheSourceHasNone)
{
    korvane_cad_face_t *face = derive(cad, source);
    EXPECT_EQ(got(korvane_cad_face_has_surface_parametric_range, face), 0);
    EXPECT_EQ(got(korvane_cad_face_has_surface_periodicity, face), 0);
}

TEST_F(FaceTransformed, HasNoPointsWhateverTheFlagSays)
{
    for (uint32_t id = 1; id <= 3; ++id)
        korvane_cad_point_new(source, id, translation.data());
    std::vector<int64_t> kept, allocated;
    for (const int32_t clone_points : {0, 1, -1}) {
        const int64_t kept_before = live_block_count(), allocated_before = allocation_count();
        korvane_cad_face_t *face = derive(cad, source, clone_points);
        EXPECT_EQ(got(korvane_cad_face_get_point_count, face), 0);
        kept.push_back(live_block_count() - kept_before);
        allocated.push_back(allocation_count() - allocated_before);
    }
    EXPECT_EQ(kept, std::vector<int64_t>(3, kept[0])) << "no copy of a point is kept anywhere";
    const int64_t copies = allocated[1] - allocated[0];
    EXPECT_TRUE(copies == 3 || copies == 0) << copies; // compilers may leave out what nobody keeps
    EXPECT_EQ(allocated[2], allocated[1]);
    EXPECT_EQ(got(korvane_cad_face_get_point_count, source), 3);
}

TEST_F(FaceTransformed, LeadsBackToItsOriginalThroughAllDerivations)
{
    korvane_cad_face_t *first = derive(cad, source);
    korvane_cad_face_t *second = derive(nullptr, korvane_cad_face_clone(first));
    const Uv uv{0.3, 0.7};
    korvane_cad_face_t *original = nullptr;
    Uv original_uv{};
    int64_t aux = 9;
    EXPECT_EQ(korvane_cad_face_get_original_geometry(second, uv.data(), &original, original_uv.data(), &aux),
        STATUS_OK);
    EXPECT_EQ(original, source);
    EXPECT_DOUBLE_EQ(original_uv[0], (uv[0] / 2 + 0.5) / 2 + 0.5);
    EXPECT_DOUBLE_EQ(original_uv[1], (uv[1] / 4 - 1) / 4 - 1);
    EXPECT_EQ(aux, 0);
    EXPECT_EQ(evaluate(second, uv).xyz, evaluate(source, original_uv).xyz);
    original = nullptr;
    EXPECT_EQ(
        korvane_cad_face_get_original_geometry(second, nullptr, &original, nullptr, nullptr), STATUS_OK);
    EXPECT_EQ(original, source);
    korvane_cad_face_delete(second);
}

TEST_F(FaceTransformed, CopiesTheOriginalIdentifiers)
{
    EXPECT_EQ(original_ids(derive(cad, source)), (std::vector<uint32_t>{12}));
    for (const uint32_t id : {40u, 41u, 42u})
        korvane_cad_face_add_original_id(source, id);
    korvane_cad_face_t *face = derive(cad, source);
    EXPECT_EQ(original_ids(face), (std::vector<uint32_t>{40, 41, 42}));
    EXPECT_EQ(face->original_ids->capacity, 4);
    korvane_cad_face_reset_original_id(source);
    EXPECT_EQ(original_ids(derive(cad, source)), (std::vector<uint32_t>{}));
    EXPECT_EQ(original_ids(face), (std::vector<uint32_t>{40, 41, 42}));
}

TEST_F(FaceTransformed, TakesAScaleOfZero)
{
    scale = {0, 1};
    korvane_cad_face_t *face = derive(cad, source);
    ASSERT_NE(face, nullptr);
    EXPECT_EQ(evaluate(face, {1, 1}).status, STATUS_OK);
}

TEST_F(FaceTransformed, TakesOverAReference)
{
    const uint32_t references = cad->reference_count;
    korvane_cad_face_t *face = derive(nullptr, source);
    EXPECT_EQ(cad->reference_count, references);
    korvane_cad_face_t *copy = korvane_cad_face_new_copy(face);
    EXPECT_EQ(cad->reference_count, references + 1);
    const Uv uv{0.3, 0.7};
    EXPECT_EQ(evaluate(copy, uv).dvv, evaluate(face, uv).dvv);
    korvane_cad_face_delete(face);
    EXPECT_EQ(cad->reference_count, references);
    EXPECT_EQ(evaluate(copy, uv).status, STATUS_OK);
    korvane_cad_face_delete(copy);
    EXPECT_EQ(cad->reference_count, references - 1);
}

TEST_F(FaceTransformed, RefusesNull)
{
    EXPECT_EQ(derive(cad, nullptr), nullptr);
    EXPECT_EQ(
        korvane_cad_face_new_pafftrans(cad, source, 1, nullptr, translation.data(), nullptr, 0), nullptr);
    EXPECT_EQ(korvane_cad_face_new_pafftrans(cad, source, 1, scale.data(), nullptr, nullptr, 0), nullptr);
}

TEST_F(FaceTransformed, FailedCreationsAndCopiesLeaveNothingBehind)
{
    for (const uint32_t id : {40u, 41u, 42u})
        korvane_cad_face_add_original_id(source, id);
    korvane_cad_point_new(source, 1, translation.data());
    while (cad->face_count < 128)
        new_face();
    const uint32_t references = cad->reference_count;
    for (korvane_cad_t *owner : {cad, static_cast<korvane_cad_t *>(nullptr)}) {
        oom_sweep([&](AllocationFault &fault) {
            const uint32_t before = cad->reference_count;
            const int32_t count = cad->face_count;
            fault.arm();
            korvane_cad_face_t *face = derive(owner, korvane_cad_face_clone(source), 1);
            const bool failed = fault.disarm();
            EXPECT_EQ(face == nullptr, failed);
            if (failed) {
                EXPECT_EQ(cad->reference_count, before + 1) << "the caller keeps its reference";
                EXPECT_EQ(cad->face_count, count);
                korvane_cad_face_delete(source);
            }
            korvane_cad_face_delete(face);
        });
    }
    korvane_cad_face_t *face = derive(nullptr, korvane_cad_face_clone(source));
    oom_sweep([&](AllocationFault &fault) {
        const uint32_t before = cad->reference_count;
        fault.arm();
        korvane_cad_face_t *copy = korvane_cad_face_new_copy(face);
        EXPECT_EQ(copy == nullptr, fault.disarm());
        EXPECT_EQ(cad->reference_count, before + (copy == nullptr ? 0 : 1));
        korvane_cad_face_delete(copy);
    });
    korvane_cad_face_delete(face);
    EXPECT_EQ(cad->reference_count, references + static_cast<uint32_t>(cad->face_count - 128));
}

} // namespace
} // namespace korvane::testing
