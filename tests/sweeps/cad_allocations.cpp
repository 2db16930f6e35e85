// Failing allocations in CAD models: their faces, edges and points, what is derived from them, what is
// periodic, and their discretizations.
#include "sweeps/allocation_sweep.h"

namespace korvane::testing {

namespace {

// -- Lists without room for one more

void fill_model(Objects &objects)
{
    for (int i = 1; i < 128; ++i)
        korvane_cad_face_new(objects.cad, 11, some_surface, nullptr);
}

void fill_face(Objects &objects)
{
    for (int i = 1; i < 5; ++i)
        korvane_cad_edge_new(objects.face, 21, 0, 1, some_curve, nullptr);
}

void add_original_ids(Objects &objects)
{
    korvane_cad_face_add_original_id(objects.face, 1);
    korvane_cad_edge_add_original_id(objects.edge, 1);
}

// -- Attaching, which changes the object that is attached

/// What is attached belongs to its owner from then on.
template <class Object>
korvane_status_t attach(Object *&object, korvane_status_t status)
{
    if (status == STATUS_OK)
        object = nullptr;
    return status;
}

korvane_status_t attach_face(Objects &o)
{
    return attach(o.spare_face, korvane_cad_face_attach(o.spare_face, o.cad));
}

korvane_status_t attach_edge(Objects &o)
{
    return attach(o.spare_edge, korvane_cad_edge_attach(o.spare_edge, o.face));
}

// -- Support vertices

/// The free edge shares those of the edge.
void share_support_vertices(Objects &objects)
{
    korvane_cad_edge_delete(objects.free_edge);
    objects.free_edge = korvane_cad_edge_new_copy(objects.edge);
}

/// The edge leaves the others' vertices behind, so that it has none to set.
void sweep_shared_support_vertex(AllocationFault &fault)
{
    Objects objects;
    share_support_vertices(objects);
    const std::string before = objects.describe();
    fault.arm();
    const korvane_status_t status =
        korvane_cad_edge_set_support_vertex(objects.edge, 1, 0.5, some_reals.data(), some_reals.data());
    const bool failed = fault.disarm();
    EXPECT_EQ(status, failed ? STATUS_NOMEM : STATUS_ERROR);
    EXPECT_EQ(objects.describe() == before, failed);
    EXPECT_EQ(korvane_cad_edge_set_support_vertex_count(objects.edge, 1), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_set_support_vertex(objects.edge, 1, 0.5, some_reals.data(), some_reals.data()),
        STATUS_OK);
    int32_t count = 0;
    EXPECT_EQ(korvane_cad_edge_get_support_vertices(objects.free_edge, &count, nullptr, nullptr, nullptr),
        STATUS_OK);
    EXPECT_EQ(count, 3);
}

} // namespace

AllocationEntries cad_allocations()
{
    const auto new_face = [](Objects &o) { return korvane_cad_face_new(o.cad, 1, some_surface, nullptr); };
    const auto new_edge = [](Objects &o) {
        return korvane_cad_edge_new(o.face, 1, 0, 1, some_curve, nullptr);
    };
    const auto new_point = [](Objects &o) { return korvane_cad_point_new(o.face, 1, some_reals.data()); };
    const auto add_face_id = [](Objects &o) { return korvane_cad_face_add_original_id(o.face, 2); };
    const auto add_edge_id = [](Objects &o) { return korvane_cad_edge_add_original_id(o.edge, 2); };
    const auto set_vertex_count = [](int32_t count) {
        return [count](Objects &o) { return korvane_cad_edge_set_support_vertex_count(o.edge, count); };
    };
    return {
        {"korvane_cad_new",
            sweep_attaching_constructor([](Objects &o) { return korvane_cad_new(o.context); })},
        {"korvane_cad_calloc_generic_buffer",
            sweep_constructor([](Objects &o) { return korvane_cad_calloc_generic_buffer(o.cad); })},
        {"korvane_cad_face_new", sweep_constructor(new_face)},
        {"korvane_cad_face_new", sweep_constructor(new_face, fill_model)},
        {"korvane_cad_edge_new", sweep_constructor(new_edge)},
        {"korvane_cad_edge_new", sweep_constructor(new_edge, fill_face)},
        {"korvane_cad_point_new", sweep_constructor(new_point)}, // a face has room for one, which is there
        {"korvane_cad_face_attach", sweep_status(STATUS_NOMEM, Remainder::nothing, attach_face, fill_model)},
        {"korvane_cad_edge_attach", sweep_status(STATUS_NOMEM, Remainder::nothing, attach_edge, fill_face)},
        {"korvane_cad_face_add_original_id", sweep_status(STATUS_NOMEM, Remainder::nothing, add_face_id)},
        {"korvane_cad_face_add_original_id",
            sweep_status(STATUS_NOMEM, Remainder::nothing, add_face_id, add_original_ids)},
        {"korvane_cad_edge_add_original_id", sweep_status(STATUS_NOMEM, Remainder::nothing, add_edge_id)},
        {"korvane_cad_edge_add_original_id",
            sweep_status(STATUS_NOMEM, Remainder::nothing, add_edge_id, add_original_ids)},
        {"korvane_cad_edge_set_support_vertex_count",
            sweep_status(STATUS_NOMEM, Remainder::part, set_vertex_count(2))},
        {"korvane_cad_edge_set_support_vertex_count",
            sweep_status(STATUS_NOMEM, Remainder::part, set_vertex_count(0), share_support_vertices)},
        {"korvane_cad_edge_set_support_vertex", sweep_shared_support_vertex},
    };
}

// -- Derived geometry

namespace {

void add_points(Objects &objects)
{
    for (int i = 0; i < 3; ++i)
        korvane_cad_point_new(objects.face, 32, some_reals.data());
}

/// Takes over a reference, which it gets here.
korvane_cad_face_t *new_transformed_face(korvane_cad_face_t *source, korvane_cad_t *cad)
{
    korvane_cad_face_clone(source);
    korvane_cad_face_t *face =
        korvane_cad_face_new_pafftrans(cad, source, 1, some_reals.data() + 3, some_reals.data(), nullptr, 1);
    if (face == nullptr)
        korvane_cad_face_delete(source);
    return face;
}

korvane_cad_edge_t *new_polyline_with_runs(Objects &o)
{
    const std::array<korvane_cad_edge_t *, 3> edges = {o.edge, o.edge, o.free_edge};
    return korvane_cad_edge_new_newton1_with_ea(
        o.face, 1, 3, some_reals.data(), edges.data(), some_reals.data());
}

} // namespace

AllocationEntries derived_allocations()
{
    const auto transformed_face = [](Objects &o) { return new_transformed_face(o.face, nullptr); };
    // Of a free source, a reference that is counted wrongly would show as a block.
    const auto transformed_free_face = [](Objects &o) { return new_transformed_face(o.free_face, nullptr); };
    const auto transformed_face_in_model = [](Objects &o) { return new_transformed_face(o.face, o.cad); };
    const auto transformed_edge = [](Objects &o) {
        return korvane_cad_edge_new_afftrans(nullptr, o.edge, 1, some_reals.data(), some_reals.data());
    };
    const auto transformed_edge_on_face = [](Objects &o) {
        return korvane_cad_edge_new_afftrans(o.face, o.edge, 1, some_reals.data(), some_reals.data());
    };
    const auto segment = [](Objects &o) {
        return korvane_cad_edge_new_segment(o.face, 1, some_reals.data(), some_reals.data() + 3);
    };
    const auto polyline = [](Objects &o) {
        return korvane_cad_edge_new_newton1(o.face, 1, 3, some_reals.data());
    };
    const auto finite_difference = [](Objects &o) {
        return korvane_cad_edge_new0(o.face, 1, 0, 1, some_curve, nullptr);
    };
    return {
        {"korvane_cad_face_new_pafftrans", sweep_constructor(transformed_face)},
        {"korvane_cad_face_new_pafftrans", sweep_constructor(transformed_face, add_original_ids)},
        {"korvane_cad_face_new_pafftrans", sweep_constructor(transformed_free_face)},
        {"korvane_cad_face_new_pafftrans", sweep_constructor(transformed_face_in_model, fill_model)},
        {"korvane_cad_edge_new_afftrans", sweep_constructor(transformed_edge, add_original_ids)},
        {"korvane_cad_edge_new_afftrans", sweep_constructor(transformed_edge_on_face, fill_face)},
        {"korvane_cad_edge_new_segment", sweep_constructor(segment, fill_face)},
        {"korvane_cad_edge_new_newton1", sweep_constructor(polyline, fill_face)},
        {"korvane_cad_edge_new_newton1_with_ea", sweep_constructor(new_polyline_with_runs, fill_face)},
        {"korvane_cad_edge_new0", sweep_constructor(finite_difference, fill_face)},
        {"korvane_cad_face_new_copy",
            sweep_constructor(
                [](Objects &o) { return korvane_cad_face_new_copy(o.face); }, add_original_ids)},
        {"korvane_cad_face_new_copy",
            sweep_constructor([](Objects &o) { return korvane_cad_face_new_copy(o.free_face); },
                [](Objects &o) {
                    korvane_cad_face_delete(
                        std::exchange(o.free_face, new_transformed_face(o.face, nullptr)));
                })},
        {"korvane_cad_edge_new_copy",
            sweep_constructor(
                [](Objects &o) { return korvane_cad_edge_new_copy(o.edge); }, add_original_ids)},
        {"korvane_cad_edge_new_copy",
            sweep_constructor([](Objects &o) { return korvane_cad_edge_new_copy(o.free_edge); })},
        {"korvane_cad_edge_new_copy", // of a polyline
            sweep_constructor([](Objects &o) { return korvane_cad_edge_new_copy(o.edge); },
                [](Objects &o) { o.edge = new_polyline_with_runs(o); })},
        {"korvane_cad_face_clone_points",
            sweep_status(
                STATUS_NOMEM, Remainder::nothing,
                [](Objects &o) { return korvane_cad_face_clone_points(o.face, o.free_face); }, add_points),
            true},
    };
}

// -- Periodicity

namespace {

/// Tables grow at the second hundred of records; one call of many records meets all their allocations.
template <class Add>
auto sweep_periodicity(Add add)
{
    return sweep_status(STATUS_ERROR, Remainder::part, [add](Objects &o) {
        for (int32_t identifier = 1; identifier <= 400; ++identifier)
            if (const korvane_status_t status = add(o.cad, identifier); status != STATUS_OK)
                return status;
        return korvane_status_t{STATUS_OK};
    });
}

using AddLists = korvane_status_t (*)(korvane_cad_t *, const int32_t *, int32_t, const int32_t *, int32_t,
    korvane_cad_transformation_t, void *);
using AddListsByPoints = korvane_status_t (*)(korvane_cad_t *, const int32_t *, int32_t, const int32_t *,
    int32_t, const double *, int32_t, const double *, int32_t);
using GetListCount = korvane_status_t (*)(const korvane_cad_t *, int32_t *);
using GetLists = korvane_status_t (*)(const korvane_cad_t *, int32_t, int32_t *, int32_t *, int32_t *,
    int32_t *, korvane_cad_transformation_t *, void **);

/// Both lists of declarations have no room for one more.
void fill_lists(Objects &o)
{
    for (int i = 1; i < 10; ++i) {
        for (const AddLists add : {korvane_cad_add_edge_multiple_periodicity_with_transformation_function,
                 korvane_cad_add_face_multiple_periodicity_with_transformation_function})
            add(o.cad, some_integers.data(), 3, some_integers.data(), 2, nullptr, nullptr);
    }
}

template <AddLists add>
korvane_status_t add_lists(Objects &o)
{
    return add(o.cad, some_integers.data(), 6, some_integers.data(), 7, some_transformation, nullptr);
}

/// Nothing is declared, or the lists without a transformation.
template <AddListsByPoints add, GetListCount get_count, GetLists get>
void sweep_lists_by_points(AllocationFault &fault)
{
    Objects objects;
    fill_lists(objects);
    const auto call = [&] {
        return add(objects.cad, some_integers.data(), 3, some_integers.data(), 2, some_reals.data(), 4,
            some_reals.data(), 4);
    };
    const auto last_transformation = [&](int32_t count) {
        std::array<int32_t, 8> ids{};
        std::array<int32_t, 2> counts{};
        korvane_cad_transformation_t transformation = nullptr;
        void *user_data = nullptr;
        EXPECT_EQ(get(objects.cad, count, ids.data(), &counts[0], ids.data(), &counts[1], &transformation,
                      &user_data),
            STATUS_OK);
        EXPECT_EQ(counts, (std::array<int32_t, 2>{3, 2}));
        return transformation;
    };
    int32_t before = 0;
    int32_t after = 0;
    get_count(objects.cad, &before);
    fault.arm();
    const korvane_status_t status = call();
    const bool failed = fault.disarm();
    EXPECT_EQ(status, failed ? STATUS_NOMEM : STATUS_OK);
    get_count(objects.cad, &after);
    EXPECT_TRUE(after == before + 1 || (after == before && failed));
    if (after == before + 1) {
        EXPECT_EQ(last_transformation(after) == nullptr, failed);
    }
    EXPECT_EQ(call(), STATUS_OK);
    EXPECT_NE(last_transformation(after + 1), nullptr);
}

} // namespace

AllocationEntries periodicity_allocations()
{
    return {
        {"korvane_cad_add_point_periodicity", sweep_periodicity([](korvane_cad_t *cad, int32_t identifier) {
             return korvane_cad_add_point_periodicity(cad, 1, identifier, 2, identifier + 1);
         })},
        {"korvane_cad_add_edge_periodicity", sweep_periodicity([](korvane_cad_t *cad, int32_t identifier) {
             return korvane_cad_add_edge_periodicity(cad, 1, identifier, 2, identifier + 1, 1);
         })},
        {"korvane_cad_add_face_periodicity", sweep_periodicity([](korvane_cad_t *cad, int32_t identifier) {
             return korvane_cad_add_face_periodicity(cad, identifier, identifier + 1);
         })},
        {"korvane_cad_add_edge_multiple_periodicity_with_transformation_function",
            sweep_status(STATUS_NOMEM, Remainder::nothing,
                add_lists<korvane_cad_add_edge_multiple_periodicity_with_transformation_function>,
                fill_lists)},
        {"korvane_cad_add_face_multiple_periodicity_with_transformation_function",
            sweep_status(STATUS_NOMEM, Remainder::nothing,
                add_lists<korvane_cad_add_face_multiple_periodicity_with_transformation_function>,
                fill_lists)},
        {"korvane_cad_add_edge_multiple_periodicity_with_transformation_function_by_points",
            sweep_lists_by_points<
                korvane_cad_add_edge_multiple_periodicity_with_transformation_function_by_points,
                korvane_cad_get_edge_multiple_periodicity_count, korvane_cad_get_edge_multiple_periodicity>},
        {"korvane_cad_add_face_multiple_periodicity_with_transformation_function_by_points",
            sweep_lists_by_points<
                korvane_cad_add_face_multiple_periodicity_with_transformation_function_by_points,
                korvane_cad_get_face_multiple_periodicity_count, korvane_cad_get_face_multiple_periodicity>},
    };
}

// -- Discrete CAD

namespace {

/// The output is null, and the edge has no discretization, until the call succeeds.
void sweep_edge_discretization(AllocationFault &fault)
{
    Objects objects;
    std::vector<korvane_cad_edge_t *> edges;
    for (int i = 0; i < 60; ++i) // more than the map has room for
        edges.push_back(korvane_cad_edge_new(objects.face, 1, 0, 1, some_curve, nullptr));
    fault.arm();
    std::vector<korvane_dcad_edge_discretization_t *> made;
    for (korvane_cad_edge_t *edge : edges) {
        korvane_dcad_edge_discretization_t *discretization = objects.discretization;
        const korvane_status_t status =
            korvane_dcad_get_edge_discretization(objects.dcad, edge, &discretization);
        EXPECT_EQ(status, discretization == nullptr ? STATUS_NOMEM : STATUS_OK);
        made.push_back(discretization);
    }
    fault.disarm();
    for (std::size_t i = 0; i < edges.size(); ++i) {
        korvane_dcad_edge_discretization_t *discretization = nullptr;
        korvane_dcad_query_edge_discretization(objects.dcad, edges[i], &discretization);
        EXPECT_EQ(discretization, made[i]);
        EXPECT_EQ(korvane_dcad_get_edge_discretization(objects.dcad, edges[i], &discretization), STATUS_OK);
        EXPECT_EQ(korvane_dcad_edge_discretization_set_vertex_count(discretization, 1), STATUS_OK);
    }
}

} // namespace

AllocationEntries dcad_allocations()
{
    const auto set_vertex_count = [](int32_t count) {
        return [count](Objects &o) {
            return korvane_dcad_edge_discretization_set_vertex_count(o.discretization, count);
        };
    };
    return {
        {"korvane_dcad_new", sweep_constructor([](Objects &o) { return korvane_dcad_new(o.cad); })},
        {"korvane_dcad_new", sweep_constructor([](Objects &o) { return korvane_dcad_new(o.spare_cad); })},
        {"korvane_dcad_get_edge_discretization", sweep_edge_discretization},
        {"korvane_dcad_edge_discretization_set_vertex_count",
            sweep_status(STATUS_NOMEM, Remainder::nothing, set_vertex_count(9))},
        {"korvane_dcad_edge_discretization_set_vertex_count",
            sweep_status(STATUS_NOMEM, Remainder::nothing, set_vertex_count(1))},
    };
}

} // namespace korvane::testing
