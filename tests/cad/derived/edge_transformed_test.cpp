#include "cad/records.h"
#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

class EdgeTransformed : public Cad {
  protected:
    korvane_cad_edge_t *derive(korvane_cad_face_t *owner, korvane_cad_edge_t *from)
    {
        return korvane_cad_edge_new_afftrans(owner, from, 77, factors.data(), offsets.data());
    }

    const Uv factors{2, -3};
    const Uv offsets{0.5, 1};
    korvane_cad_face_t *face = new_face();
    korvane_cad_edge_t *source = korvane_cad_edge_new(face, 12, 0.25, 2.5, polynomial_curve, nullptr);
};

TEST_F(EdgeTransformed, EvaluatesTheImageOfTheSource)
{
    const double t = 0.7;
    const CurveValues values = evaluate(derive(face, source), t);
    ASSERT_EQ(values.status, STATUS_OK);
    EXPECT_DOUBLE_EQ(values.uv[0], 2 * t * t * t + 0.5);
    EXPECT_DOUBLE_EQ(values.uv[1], -3 * (1 - t * t) + 1);
    EXPECT_DOUBLE_EQ(values.dt[0], 2 * (3 * t * t));
    EXPECT_DOUBLE_EQ(values.dt[1], -3 * (-2 * t));
    EXPECT_DOUBLE_EQ(values.dtt[0], 4 * (6 * t)) << "the square of the factor";
    EXPECT_DOUBLE_EQ(values.dtt[1], 9 * -2.0);
}

TEST_F(EdgeTransformed, KeepsTheSignOfDerivativesThatAreZero)
{
    const auto standing = [](double, double *uv, double *dt, double *dtt, void *) {
        write(uv, 0, 0);
        write(dt, -0.0, 0);
        write(dtt, 0, -0.0);
        return korvane_status_t{STATUS_OK};
    };
    const CurveValues values =
        evaluate(derive(face, korvane_cad_edge_new(face, 1, 0, 1, standing, nullptr)), 0);
    EXPECT_TRUE(std::signbit(values.dt[0]) && std::signbit(values.dt[1]));
    EXPECT_FALSE(std::signbit(values.dtt[0]));
    EXPECT_TRUE(std::signbit(values.dtt[1]));
}

TEST_F(EdgeTransformed, WritesOnlyWhatIsAskedFor)
{
    Uv dt{};
    EXPECT_EQ(korvane_cad_edge_curve(derive(face, source), 0.7, nullptr, dt.data(), nullptr), STATUS_OK);
    EXPECT_DOUBLE_EQ(dt[0], 2 * (3 * 0.7 * 0.7));
}

TEST_F(EdgeTransformed, ReturnsTheStatusOfTheSourceAtOnce)
{
    const auto failing = [](double, double *uv, double *, double *, void *) {
        write(uv, 1, 1);
        return korvane_status_t{99};
    };
    const CurveValues values =
        evaluate(derive(face, korvane_cad_edge_new(face, 1, 0, 1, failing, nullptr)), 0);
    EXPECT_EQ(values.status, 99);
    EXPECT_EQ(values.uv, (Uv{1, 1})) << "not transformed";
}

TEST_F(EdgeTransformed, TakesOverTheStatedFieldsOnly)
{
    korvane_cad_edge_set_tag(source, 5);
    korvane_cad_edge_set_orientation(source, -1);
    korvane_cad_edge_set_coorientation(source, -2);
    korvane_cad_edge_set_property(source, 0x81);
    korvane_cad_edge_set_extremities(source, 3, 4);
    korvane_cad_edge_set_degenerated(source, 1);
    korvane_cad_edge_set_curve3d(
        source, [](double, double *, void *) { return korvane_status_t{STATUS_OK}; }, nullptr);
    korvane_cad_edge_set_support_vertex_count(source, 2);
    korvane_cad_edge_t *edge = derive(face, source);
    EXPECT_EQ(range_of(edge), (std::array<double, 2>{0.25, 2.5}));
    EXPECT_EQ(got(korvane_cad_edge_get_id, edge), 77u);
    EXPECT_EQ(got(korvane_cad_edge_get_tag, edge), 5u);
    EXPECT_EQ(got(korvane_cad_edge_get_orientation, edge), -1);
    EXPECT_EQ(edge->properties, 0x81u);
    EXPECT_EQ(got(korvane_cad_edge_get_coorientation, edge), 0);
    EXPECT_EQ(edge->extremities[0], 0);
    EXPECT_EQ(got(korvane_cad_edge_get_degenerated, edge), 0);
    EXPECT_EQ(got(korvane_cad_edge_has_curve3d, edge), 0);
    int32_t count = 0;
    EXPECT_EQ(korvane_cad_edge_get_support_vertices(edge, &count, nullptr, nullptr, nullptr), STATUS_ERROR);
    EXPECT_EQ(got(korvane_cad_edge_get_wdef, edge), 1);
    korvane_cad_edge_t *approximate = korvane_cad_edge_new0(face, 1, 0, 1, blank_curve, nullptr);
    EXPECT_EQ(got(korvane_cad_edge_get_wdef, derive(face, approximate)), 0);
}

TEST_F(EdgeTransformed, LeadsBackToItsOriginalThroughAllDerivations)
{
    korvane_cad_edge_t *first = derive(nullptr, source);
    korvane_cad_edge_t *second = derive(nullptr, first);
    korvane_cad_edge_t *original = nullptr;
    Xyz t{};
    EXPECT_EQ(korvane_cad_edge_get_original_geometry(second, 0.7, &original, &t[0], &t[1], &t[2]), STATUS_OK);
    EXPECT_EQ(original, source);
    EXPECT_EQ(t, (Xyz{0.7, 0.7, 0.7}));
    EXPECT_EQ(got(korvane_cad_edge_get_original_id_count, second), 1);
    uint32_t id = 0;
    EXPECT_EQ(korvane_cad_edge_get_original_id(second, 1, &id), STATUS_OK);
    EXPECT_EQ(id, 12u);
    korvane_cad_edge_delete(second);
    korvane_cad_edge_delete(first);
}

TEST_F(EdgeTransformed, TakesNoReferenceButItsCopiesTakeOneForGood)
{
    const uint32_t references = cad->reference_count;
    korvane_cad_edge_t *edge = derive(nullptr, source);
    EXPECT_EQ(cad->reference_count, references);
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    EXPECT_EQ(cad->reference_count, references + 1);
    EXPECT_EQ(evaluate(copy, 0.7).dtt, evaluate(edge, 0.7).dtt);
    korvane_cad_edge_delete(copy);
    korvane_cad_edge_delete(edge);
    EXPECT_EQ(cad->reference_count, references + 1);
}

TEST_F(EdgeTransformed, FailsWhenItsSourceIsGone)
{
    korvane_cad_edge_t *copy_of_source = korvane_cad_edge_new_copy(source);
    korvane_cad_edge_t *edge = derive(nullptr, copy_of_source);
    korvane_cad_edge_t *further = derive(nullptr, edge);
    EXPECT_EQ(evaluate(further, 0.7).status, STATUS_OK);
    korvane_cad_edge_delete(copy_of_source);
    const CurveValues values = evaluate(further, 0.7);
    EXPECT_EQ(values.status, STATUS_ERROR);
    EXPECT_EQ(values.uv, Uv{});
    korvane_cad_edge_t *original = nullptr;
    EXPECT_EQ(korvane_cad_edge_get_original_geometry(further, 0.7, &original, nullptr, nullptr, nullptr),
        STATUS_ERROR);
    EXPECT_EQ(original, nullptr);
    korvane_cad_edge_delete(edge);
    korvane_cad_edge_delete(further);
}

TEST_F(EdgeTransformed, RefusesNull)
{
    EXPECT_EQ(derive(face, nullptr), nullptr);
    EXPECT_EQ(korvane_cad_edge_new_afftrans(face, source, 1, nullptr, offsets.data()), nullptr);
    EXPECT_EQ(korvane_cad_edge_new_afftrans(face, source, 1, factors.data(), nullptr), nullptr);
}

TEST_F(EdgeTransformed, FailedCreationsAndCopiesLeaveNothingBehind)
{
    for (const uint32_t id : {40u, 41u, 42u})
        korvane_cad_edge_add_original_id(source, id);
    while (face->edge_count < 5)
        new_edge(face);
    for (korvane_cad_face_t *owner : {face, static_cast<korvane_cad_face_t *>(nullptr)}) {
        oom_sweep([&](AllocationFault &fault) {
            const uint32_t references = cad->reference_count;
            const int32_t count = face->edge_count;
            fault.arm();
            korvane_cad_edge_t *edge = derive(owner, source);
            const bool failed = fault.disarm();
            EXPECT_EQ(edge == nullptr, failed);
            EXPECT_EQ(face->edge_count, count + (owner != nullptr && !failed ? 1 : 0));
            EXPECT_EQ(cad->reference_count, references + (owner != nullptr && !failed ? 1 : 0));
            korvane_cad_edge_delete(edge);
        });
    }
    korvane_cad_edge_t *edge = derive(nullptr, source);
    oom_sweep([&](AllocationFault &fault) {
        const uint32_t references = cad->reference_count;
        fault.arm();
        korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
        EXPECT_EQ(copy == nullptr, fault.disarm());
        EXPECT_EQ(cad->reference_count, references + (copy == nullptr ? 0 : 1));
        korvane_cad_edge_delete(copy);
    });
    korvane_cad_edge_delete(edge);
}

} // namespace
} // namespace korvane::testing
