#include <cstdlib>

#include "cad/records.h"
#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

class Copy : public Cad {
  protected:
    korvane_cad_face_t *face = new_face(12);
    korvane_cad_edge_t *edge = korvane_cad_edge_new(face, 13, 0.25, 2.5, polynomial_curve, nullptr);
};

TEST_F(Copy, OfAFaceHasItsValuesButNeitherEdgesNorPointsNorModel)
{
    const Uv urange{1, 2};
    const Uv vrange{3, 4};
    korvane_cad_point_new(face, 1, urange.data());
    korvane_cad_face_set_surface_parametric_range(face, urange.data(), vrange.data());
    korvane_cad_face_set_surface_periodicity(face, 1, 1, 5, 6);
    korvane_cad_face_set_tag(face, 7);
    korvane_cad_face_set_uid(face, 8);
    korvane_cad_face_set_orientation(face, -9);
    for (const uint32_t id : {40u, 41u, 42u})
        korvane_cad_face_add_original_id(face, id);
    korvane_cad_face_t *copy = korvane_cad_face_new_copy(face);
    EXPECT_EQ(got(korvane_cad_face_get_cad, copy), nullptr);
    EXPECT_EQ(got(korvane_cad_face_get_edge_count, copy), 0);
    EXPECT_EQ(got(korvane_cad_face_get_point_count, copy), 0);
    EXPECT_EQ(copy->edge_capacity, 5);
    EXPECT_EQ(copy->point_capacity, 1);
    EXPECT_EQ(got(korvane_cad_face_get_id, copy), 12u);
    EXPECT_EQ(got(korvane_cad_face_get_tag, copy), 7u);
    EXPECT_EQ(got(korvane_cad_face_get_uid, copy), 8u);
    EXPECT_EQ(got(korvane_cad_face_get_orientation, copy), -9);
    EXPECT_EQ(copy->flags, face->flags & ~FACE_ATTACHED);
    EXPECT_EQ(ranges_of(copy), (Ranges{urange, vrange}));
    EXPECT_EQ(periods_of(copy), (Periods{1, 1, 5, 6}));
    EXPECT_EQ(got(korvane_cad_face_get_original_id_count, copy), 3);
    EXPECT_EQ(copy->original_ids->capacity, 4);
    EXPECT_EQ(copy->original_ids->ids[2], 42u);
    EXPECT_EQ(copy->reference_count, 1);
    korvane_cad_face_delete(copy);
}

TEST_F(Copy, OfAnEdgeHasItsValuesButNotItsFace)
{
    const auto curve3d = [](double, double *, void *) { return korvane_status_t{8}; };
    korvane_cad_edge_set_curve3d(edge, curve3d, nullptr);
    korvane_cad_edge_set_extremities(edge, 1, 2);
    korvane_cad_edge_set_extremities_tag(edge, 3, 4);
    korvane_cad_edge_set_uv_extremities(edge, 5, 6);
    korvane_cad_edge_set_property(edge, 0x11);
    korvane_cad_edge_set_coorientation(edge, -3);
    korvane_cad_edge_set_degenerated(edge, 1);
    korvane_cad_edge_add_original_id(edge, 40);
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    korvane_cad_face_t *found = face;
    EXPECT_EQ(korvane_cad_edge_get_face(copy, &found), STATUS_OK);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(got(korvane_cad_edge_get_id, copy), 13u);
    EXPECT_EQ(copy->extremities, edge->extremities);
    EXPECT_EQ(copy->extremities_tag, edge->extremities_tag);
    EXPECT_EQ(copy->uv_extremities, edge->uv_extremities);
    EXPECT_EQ(copy->properties, 0x11u);
    EXPECT_EQ(copy->coorientation, -3);
    EXPECT_EQ(copy->flags, EDGE_DEGENERATED);
    EXPECT_EQ(korvane_cad_edge_curve3d(copy, 0, nullptr), 8);
    EXPECT_EQ(evaluate(copy, 0.7).dtt, evaluate(edge, 0.7).dtt);
    uint32_t id = 0;
    EXPECT_EQ(korvane_cad_edge_get_original_id(copy, 1, &id), STATUS_OK);
    EXPECT_EQ(id, 40u);
    EXPECT_EQ(got(korvane_cad_edge_get_original_id_count, copy), 1);
    korvane_cad_edge_delete(copy);
}

TEST_F(Copy, OfAnEdgeStartsWithItsCounter)
{
    EXPECT_EQ(edge->reference_count, 1);
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    EXPECT_EQ(copy->reference_count, 1);
    korvane_cad_edge_attach(copy, face);
    korvane_cad_edge_t *copy_of_attached = korvane_cad_edge_new_copy(copy);
    EXPECT_EQ(copy_of_attached->reference_count, 0);
    korvane_cad_edge_delete(copy_of_attached); // its one handle frees it
    korvane_cad_edge_t *twice = korvane_cad_edge_new_copy(edge);
    korvane_cad_edge_clone(twice);
    korvane_cad_edge_t *copy_of_cloned = korvane_cad_edge_new_copy(twice);
    EXPECT_EQ(copy_of_cloned->reference_count, 2);
    for (korvane_cad_edge_t *each : {twice, copy_of_cloned}) {
        korvane_cad_edge_delete(each);
        korvane_cad_edge_delete(each);
    }
}

TEST_F(Copy, OfAnAttachedEdgeClonedOnceGoesWithOneReference)
{
    korvane_cad_edge_t *attached = korvane_cad_edge_new_copy(edge);
    korvane_cad_edge_attach(attached, face);
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(attached);
    copy->curve_user_data = &counted;
    korvane_cad_edge_set_delete_function(copy, count_deletion);
    korvane_cad_edge_clone(copy);
    EXPECT_EQ(copy->reference_count, 1);
    korvane_cad_edge_delete(copy);
    EXPECT_EQ(counted.deleted, 1);
}

TEST_F(Copy, ClonesTheUserDataOrSharesThem)
{
    struct Data {
        int clones = 0;
        int deletions = 0;
        Data *made = nullptr;
    } original, made;
    original.made = &made;
    const auto clone = [](void *user_data) -> void * {
        auto *data = static_cast<Data *>(user_data);
        ++data->clones;
        return data->made;
    };
    const auto remove = [](void *user_data) { ++static_cast<Data *>(user_data)->deletions; };
    korvane_cad_face_t *with = korvane_cad_face_new(cad, 1, blank_surface, &original);
    korvane_cad_face_set_delete_function(with, remove);
    korvane_cad_face_t *sharing = korvane_cad_face_new_copy(with);
    korvane_cad_surface_t surface = nullptr;
    void *user_data = nullptr;
    korvane_cad_face_get_surf(sharing, &surface, &user_data);
    EXPECT_EQ(user_data, &original);
    korvane_cad_face_delete(sharing);
    EXPECT_EQ(original.deletions, 1) << "shared data are deleted once per copy";

    korvane_cad_face_set_clone_function(with, clone);
    korvane_cad_face_t *copy = korvane_cad_face_new_copy(with);
    korvane_cad_face_get_surf(copy, &surface, &user_data);
    EXPECT_EQ(user_data, &made);
    EXPECT_EQ(original.clones, 1);
    korvane_cad_face_delete(copy);
    EXPECT_EQ(made.deletions, 1);
    EXPECT_EQ(original.deletions, 1);
    delete_context();
    EXPECT_EQ(original.deletions, 2);
}

TEST_F(Copy, TakesTheUserDataThatTheCloneFunctionGivesEvenNone)
{
    korvane_cad_face_t *original_face = new_face(1, &counted);
    korvane_cad_edge_t *original_edge = new_edge(original_face, 1, &counted);
    const auto give_none = [](void *) -> void * { return nullptr; };
    korvane_cad_face_set_clone_function(original_face, give_none);
    korvane_cad_edge_set_clone_function(original_edge, give_none);
    korvane_cad_face_t *face_copy = korvane_cad_face_new_copy(original_face);
    korvane_cad_edge_t *edge_copy = korvane_cad_edge_new_copy(original_edge);
    korvane_cad_surface_t surface = nullptr;
    korvane_cad_curve_t curve = nullptr;
    void *user_data = &counted;
    EXPECT_EQ(korvane_cad_face_get_surf(face_copy, &surface, &user_data), STATUS_OK);
    EXPECT_EQ(user_data, nullptr);
    user_data = &counted;
    EXPECT_EQ(korvane_cad_edge_get_curv(edge_copy, &curve, &user_data), STATUS_OK);
    EXPECT_EQ(user_data, nullptr);
    korvane_cad_face_delete(face_copy);
    korvane_cad_edge_delete(edge_copy);
}

/// What is read after the end of the original shows under the address sanitizer.
TEST_F(Copy, MayBeMadeByACloneFunctionThatGivesBackTheOriginal)
{
    static korvane_cad_edge_t *original;
    original = korvane_cad_edge_new_copy(edge);
    const Uv one{1, 1};
    korvane_cad_edge_t *derived = korvane_cad_edge_new_afftrans(nullptr, original, 1, one.data(), one.data());
    korvane_cad_edge_delete(original); // stays as long as what is derived from it
    original = derived;
    korvane_cad_edge_set_clone_function(derived, [](void *user_data) {
        korvane_cad_edge_delete(original);
        return user_data;
    });
    korvane_cad_edge_set_delete_function(derived, nullptr);
    korvane_cad_curve_t curve = nullptr;
    void *record = nullptr;
    korvane_cad_edge_get_curv(derived, &curve, &record);
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(derived);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->reference_count, 1);
    korvane_cad_edge_delete(copy);
    std::free(record);
}

TEST_F(Copy, OfPointsIsKeptByNoFace)
{
    const Uv uv{1, 2};
    for (uint32_t id = 1; id <= 3; ++id)
        korvane_cad_point_new(face, id, uv.data());
    korvane_cad_face_t *target = new_face();
    const int64_t blocks = live_block_count();
    EXPECT_EQ(korvane_cad_face_clone_points(face, target), STATUS_OK);
    EXPECT_EQ(korvane_cad_face_clone_points(face, nullptr), STATUS_OK);
    EXPECT_EQ(live_block_count(), blocks);
    EXPECT_EQ(got(korvane_cad_face_get_point_count, face), 3);
    EXPECT_EQ(got(korvane_cad_face_get_point_count, target), 0);
    EXPECT_EQ(korvane_cad_face_clone_points(nullptr, target), STATUS_ERROR);
    oom_sweep([&](AllocationFault &fault) {
        fault.arm();
        const korvane_status_t status = korvane_cad_face_clone_points(face, target);
        EXPECT_EQ(status, fault.disarm() ? STATUS_NOMEM : STATUS_OK);
    });
}

TEST_F(Copy, OfPointsEndsAtAnEmptyPlace)
{
    const Uv uv{};
    korvane_cad_point_new(face, 1, uv.data());
    const std::size_t place = static_cast<std::size_t>(face->point_count) - 1;
    korvane_cad_point_t *taken_out = std::exchange(face->points[place], nullptr);
    EXPECT_EQ(korvane_cad_face_clone_points(face, new_face()), STATUS_NOMEM);
    face->points[place] = taken_out;
}

TEST_F(Copy, OfNullIsNull)
{
    EXPECT_EQ(korvane_cad_face_new_copy(nullptr), nullptr);
    EXPECT_EQ(korvane_cad_edge_new_copy(nullptr), nullptr);
}

TEST_F(Copy, SurvivesFailingAllocations)
{
    korvane_cad_face_t *counted_face = new_counted_face(counted);
    korvane_cad_edge_t *counted_edge = new_counted_edge(counted_face, counted);
    korvane_cad_face_add_original_id(counted_face, 1);
    korvane_cad_edge_add_original_id(counted_edge, 1);
    korvane_cad_edge_set_support_vertex_count(counted_edge, 2);
    const uint32_t references = cad->reference_count;
    int made = 0;
    oom_sweep([&](AllocationFault &fault) {
        fault.arm();
        korvane_cad_face_t *copy = korvane_cad_face_new_copy(counted_face);
        EXPECT_EQ(copy == nullptr, fault.disarm());
        made += copy != nullptr;
        korvane_cad_face_delete(copy);
    });
    oom_sweep([&](AllocationFault &fault) {
        fault.arm();
        korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(counted_edge);
        EXPECT_EQ(copy == nullptr, fault.disarm());
        EXPECT_EQ(counted_edge->support_vertices->share_count, copy == nullptr ? 1 : 2);
        made += copy != nullptr;
        korvane_cad_edge_delete(copy);
    });
    EXPECT_EQ(counted.deleted, made);
    EXPECT_EQ(cad->reference_count, references);
}

} // namespace
} // namespace korvane::testing
