// Arguments of the functions of derived geometry, periodicity and discrete CAD.
#include "sweeps/probe.h"

namespace korvane::testing {

namespace {

/// Edges of two runs, and of a run that has none.
struct RunEdges {
    explicit RunEdges(const Objects &o)
        : edges{o.edge, o.edge, o.free_edge}, with_gap{o.free_edge, nullptr, o.edge}
    {}
    std::array<korvane_cad_edge_t *, 3> edges;
    std::array<korvane_cad_edge_t *, 3> with_gap;
};

Argument<korvane_cad_edge_t *const *> run_edges(const RunEdges &runs)
{
    return Argument<korvane_cad_edge_t *const *>{runs.edges.data()}
        .also(STATUS_OK, {nullptr})
        .also(STATUS_ERROR, {runs.with_gap.data()});
}

/// A number of points of a polyline.
Argument<int32_t> point_count()
{
    return refused(3, {INT32_MIN, -1, 0}).also(STATUS_OK, {1, 2});
}

} // namespace

Rows derived_rows()
{
    return {
        ALLOCATING_ROW(korvane_cad_face_new_pafftrans, nullable(o.cad), handle(o.face), any(1u),
            input(some_reals.data()), input(some_reals.data()), nullable<const void *>(&o), any(1)),
        ALLOCATING_ROW(korvane_cad_edge_new_afftrans, nullable(o.face), handle(o.edge), any(1u),
            input(some_reals.data()), input(some_reals.data())),
        ALLOCATING_ROW(korvane_cad_edge_new_segment, nullable(o.face), any(1u), given(some_reals.data()),
            given(some_reals.data())),
        ALLOCATING_ROW(
            korvane_cad_edge_new_newton1, handle(o.face), any(1u), point_count(), input(some_reals.data())),
        ALLOCATING_ROW(korvane_cad_edge_new_newton1_with_ea, handle(o.face), any(1u), point_count(),
            input(some_reals.data()), run_edges(RunEdges(o)), nullable(some_reals.data())),
        ALLOCATING_ROW(korvane_cad_edge_new0, handle(o.face), any(1u), any(0.0), any(1.0),
            nullable(some_curve), nullable(&o)),
        ALLOCATING_ROW(korvane_cad_face_new_copy, handle(o.face)),
        ALLOCATING_ROW(korvane_cad_edge_new_copy, handle(o.edge)),
        KORVANE_ROW(
            Heap::elidable, STATUS_OK, korvane_cad_face_clone_points, handle(o.face), nullable(o.free_face)),
    };
}

// clang-format off
/// Lists of identifiers of faces or edges that are the image of others.
#define LIST_ROWS(kind) \
    ALLOCATING_ROW(korvane_cad_add_##kind##_multiple_periodicity_with_transformation_function, handle(o.cad), \
        input(some_integers.data()), refused(3, {INT32_MIN, -1}).also(STATUS_OK, {0}), \
        input(some_integers.data()), refused(2, {INT32_MIN, -1}).also(STATUS_OK, {0}), \
        nullable(some_transformation), nullable(&o)), \
    ALLOCATING_ROW(korvane_cad_add_##kind##_multiple_periodicity_with_transformation_function_by_points, \
        handle(o.cad), input(some_integers.data()), refused(3, {INT32_MIN, -1}).also(STATUS_OK, {0}), \
        input(some_integers.data()), refused(2, {INT32_MIN, -1}).also(STATUS_OK, {0}), \
        input(some_reals.data()), given(4), input(some_reals.data()), given(4)), \
    ROW(korvane_cad_get_##kind##_multiple_periodicity_count, handle(o.cad), output<int32_t>()), \
    ROW(korvane_cad_get_##kind##_multiple_periodicity, handle(o.cad), index(1, 1), output<int32_t>(3), \
        output<int32_t>(), output<int32_t>(2), output<int32_t>(), output<korvane_cad_transformation_t>(), \
        output<void *>()), \
    REFUSING_ROW(korvane_cad_get_##kind##_multiple_periodicity, given(o.spare_cad), given(1), \
        output<int32_t>(3), output<int32_t>(), output<int32_t>(2), output<int32_t>(), \
        output<korvane_cad_transformation_t>(), output<void *>())

#define PERIODICITY_COUNT_ROW(kind) \
    ROW(korvane_cad_get_##kind##_id_periodicity_count, handle(o.cad), any(5), output<int32_t>())
// clang-format on

Rows periodicity_rows()
{
    return {
        ROW(korvane_cad_add_point_periodicity, handle(o.spare_cad), any(3), any(5), any(4), any(7)),
        ROW(korvane_cad_add_edge_periodicity, handle(o.spare_cad), any(3), any(5), any(4), any(7), any(-1)),
        ROW(korvane_cad_add_face_periodicity, handle(o.spare_cad), any(5), any(7)),
        PERIODICITY_COUNT_ROW(point),
        PERIODICITY_COUNT_ROW(edge),
        PERIODICITY_COUNT_ROW(face),
        ROW(korvane_cad_get_point_id_periodicity, handle(o.cad), refused(5, {INT32_MIN, -1, 0, INT32_MAX}),
            index(1, 1), output<int32_t>(), output<int32_t>(), output<int32_t>().zero_for(Cause::bad_value)),
        ROW(korvane_cad_get_edge_id_periodicity, handle(o.cad), refused(5, {INT32_MIN, -1, 0, INT32_MAX}),
            index(1, 1), output<int32_t>(), output<int32_t>(), output<int32_t>().zero_for(Cause::bad_value),
            output<int32_t>().zero_for(Cause::bad_value)),
        ROW(korvane_cad_get_face_id_periodicity, handle(o.cad), refused(5, {INT32_MIN, -1, 0, INT32_MAX}),
            index(1, 1), output<int32_t>().zero_for(Cause::bad_value)),
        LIST_ROWS(edge),
        LIST_ROWS(face),
        ALLOCATING_ROW(korvane_cad_calloc_generic_buffer, handle(o.cad)),
        ROW(korvane_cad_free_generic_buffer, taken(o.cad_buffer)),
    };
}

Rows dcad_rows()
{
    return {
        ALLOCATING_ROW(korvane_dcad_new, handle(o.cad)),
        ROW(korvane_dcad_delete, taken(o.spare_dcad)),
        ROW(korvane_dcad_get_cad, given(o.dcad), trusted_output<korvane_cad_t *>()),
        ALLOCATING_ROW(korvane_dcad_get_edge_discretization, handle(o.spare_dcad), handle(o.edge),
            trusted_output<korvane_dcad_edge_discretization_t *>().zero_for(Cause::null_handle)),
        ROW(korvane_dcad_query_edge_discretization, given(o.dcad),
            nullable<const korvane_cad_edge_t *>(o.edge),
            trusted_output<korvane_dcad_edge_discretization_t *>()),
        ALLOCATING_ROW(korvane_dcad_edge_discretization_set_vertex_count, handle(o.discretization),
            refused(5, {INT32_MIN, -1}).also(STATUS_OK, {0, 3})),
        ROW(korvane_dcad_edge_discretization_get_vertex_count, handle(o.discretization),
            trusted_output<int32_t>()),
        ROW(korvane_dcad_edge_discretization_set_vertex_coordinates, given(o.discretization), given(3),
            any(0.5), nullable(some_reals.data()), nullable(some_reals.data())),
        ROW(korvane_dcad_edge_discretization_get_vertex_coordinates, given(o.discretization), given(3),
            optional_output<double>(), optional_output<double>(2), optional_output<double>(3)),
        ROW(korvane_dcad_edge_discretization_set_vertex_tag, given(o.discretization), given(3), any(1)),
        ROW(korvane_dcad_edge_discretization_get_vertex_tag, given(o.discretization), given(3),
            optional_output<int32_t>()),
        ROW(korvane_dcad_edge_discretization_set_property, handle(o.discretization), any(4u)),
        ROW(korvane_dcad_edge_discretization_query_property, handle(o.discretization), any(4u),
            output<int32_t>()),
    };
}

} // namespace korvane::testing
