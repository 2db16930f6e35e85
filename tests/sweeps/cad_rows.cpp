// Arguments of the functions of CAD models, their faces, edges and points.
#include "sweeps/probe.h"

namespace korvane::testing {

namespace {

void delete_nothing(void *) {}

void *share_user_data(void *user_data)
{
    return user_data;
}

/// With an argument behind the model, as a client may write it.
korvane_status_t merge_edges(korvane_cad_t *cad)
{
    return korvane_cad_merge_edges(cad, 3, nullptr);
}

} // namespace

Rows model_rows()
{
    Rows rows = {
        ROW(merge_edges, nullable(o.cad)),
        ALLOCATING_ROW(korvane_cad_new, handle(o.context)),
        ROW(korvane_cad_delete, taken(o.spare_cad)),
        ROW(korvane_cad_get_face_count, handle(o.cad), trusted_output<int32_t>()),
        ROW(korvane_cad_get_face, handle(o.cad), index(1, 1), trusted_output<korvane_cad_face_t *>()),
        ROW(korvane_cad_get_use_vtag, handle(o.cad), trusted_output<int32_t>()),
        ROW(korvane_cad_get_use_etag, handle(o.cad), trusted_output<int32_t>()),
        ROW(korvane_cad_get_use_ftag, handle(o.cad), trusted_output<int32_t>()),
        ROW(korvane_cad_set_thread_safety, handle(o.cad), any(1)),
        ROW(korvane_cad_get_thread_safety, handle(o.cad), output<int32_t>()),
        ROW(korvane_cad_set_tag_system, handle(o.spare_cad), taken(o.spare_tag_system)),
        ROW(korvane_cad_get_tag_system, handle(o.cad), trusted_output<korvane_tag_system_t *>()),
        ROW(korvane_cad_get_composite_tag_list, handle(o.cad), output<int32_t>(), output<int32_t>()),
        ROW(korvane_cad_get_composite_tag_list, handle(o.spare_cad), output<int32_t>(), output<int32_t>()),
        ROW(korvane_cad_get_composite_tag_definition, handle(o.cad), any(4), output<int32_t>(),
            output<int32_t>(2)),
        ROW(korvane_cad_get_composite_tag_definition, handle(o.spare_cad), any(4), output<int32_t>(),
            output<int32_t>()),
    };
    rows.front().function = "korvane_cad_merge_edges";
    return rows;
}

// clang-format off
/// A field of an object: setter and getter.
#define FIELD_ROWS(kind, name, Value, good) \
    ROW(korvane_cad_##kind##_set_##name, handle(o.kind), any(Value{good})), \
    ROW(korvane_cad_##kind##_get_##name, handle(o.kind), trusted_output<Value>())

/// A pair of fields of an edge.
#define PAIR_ROWS(name, Value) \
    ROW(korvane_cad_edge_set_##name, handle(o.edge), any(Value{1}), any(Value{2})), \
    ROW(korvane_cad_edge_get_##name, handle(o.edge), trusted_output<Value>(), trusted_output<Value>())

/// What faces and edges have alike. `o.free_...` got no original identifier yet.
#define COMMON_ROWS(kind) \
    ROW(korvane_cad_##kind##_delete, taken(o.spare_##kind)), \
    ROW(korvane_cad_##kind##_clone, handle(o.kind)), \
    FIELD_ROWS(kind, id, uint32_t, 1), \
    FIELD_ROWS(kind, uid, uint32_t, 1), \
    FIELD_ROWS(kind, tag, uint32_t, 1), \
    ROW(korvane_cad_##kind##_set_tag, handle(o.free_##kind), any(1u)), \
    ROW(korvane_cad_##kind##_set_delete_function, handle(o.kind), nullable(delete_nothing)), \
    ROW(korvane_cad_##kind##_set_clone_function, handle(o.kind), nullable(share_user_data)), \
    ALLOCATING_ROW(korvane_cad_##kind##_add_original_id, handle(o.kind), any(1u)), \
    ROW(korvane_cad_##kind##_get_original_id_count, handle(o.kind), output<int32_t>()), \
    ROW(korvane_cad_##kind##_get_original_id, handle(o.kind), index(1, 1), output<uint32_t>()), \
    ROW(korvane_cad_##kind##_reset_original_id, handle(o.kind))
// clang-format on

Rows face_rows()
{
    return {
        ALLOCATING_ROW(korvane_cad_face_new, handle(o.cad), any(1u), nullable(some_surface), nullable(&o)),
        COMMON_ROWS(face),
        FIELD_ROWS(face, orientation, int32_t, 1),
        ROW(korvane_cad_face_attach, handle(o.spare_face).taken_from(o.spare_face), handle(o.cad)),
        REFUSING_ROW(korvane_cad_face_attach, given(o.face), given(o.spare_cad)),
        ROW(korvane_cad_face_get_cad, handle(o.face), output<korvane_cad_t *>()),
        ROW(korvane_cad_face_surface, handle(o.face), nullable(some_reals.data()), optional_output<double>(3),
            optional_output<double>(3), optional_output<double>(3), optional_output<double>(3),
            optional_output<double>(3), optional_output<double>(3)),
        ROW(korvane_cad_face_get_surf, handle(o.face), trusted_output<korvane_cad_surface_t>(),
            trusted_output<void *>()),
        ROW(korvane_cad_face_set_surface_parametric_range, handle(o.face), input(some_reals.data()),
            input(some_reals.data())),
        ROW(korvane_cad_face_has_surface_parametric_range, handle(o.face), output<int32_t>()),
        ROW(korvane_cad_face_get_surface_parametric_range, handle(o.face), trusted_output<double>(2),
            trusted_output<double>(2)),
        ROW(korvane_cad_face_check_point_parametric_range, handle(o.face),
            given(std::vector<double>{5, 5}.data()), optional_output<int32_t>()),
        ROW(korvane_cad_face_check_point_parametric_range, handle(o.free_face),
            trusted_output<double>(2).silent(), optional_output<int32_t>().silent()),
        ROW(korvane_cad_face_set_surface_periodicity, handle(o.face), any(1), any(1), any(1.0), any(1.0)),
        ROW(korvane_cad_face_has_surface_periodicity, handle(o.face), output<int32_t>()),
        ROW(korvane_cad_face_get_surface_periodicity, handle(o.face), optional_output<int32_t>(),
            optional_output<int32_t>(), optional_output<double>(), optional_output<double>()),
        ROW(korvane_cad_face_get_edge_count, handle(o.face), trusted_output<int32_t>()),
        ROW(korvane_cad_face_get_edge, handle(o.face), index(1, 1), trusted_output<korvane_cad_edge_t *>()),
        ROW(korvane_cad_face_get_point_count, handle(o.face), trusted_output<int32_t>()),
        ROW(korvane_cad_face_get_point, handle(o.face), index(1, 1), trusted_output<korvane_cad_point_t *>()),
        ROW(korvane_cad_face_get_original_geometry, handle(o.face), given(some_reals.data()),
            optional_output<korvane_cad_face_t *>(), optional_output<double>(2), optional_output<int64_t>()),
        ROW(korvane_cad_face_get_original_geometry, handle(o.face), nullable(some_reals.data()),
            optional_output<korvane_cad_face_t *>(), given<double *>(nullptr), optional_output<int64_t>()),
    };
}

Rows edge_rows()
{
    return {
        ALLOCATING_ROW(korvane_cad_edge_new, handle(o.face), any(1u), any(0.0), any(1.0),
            nullable(some_curve), nullable(&o)),
        COMMON_ROWS(edge),
        ROW(korvane_cad_edge_set_orientation, given(o.edge), any(1)),
        ROW(korvane_cad_edge_get_orientation, handle(o.edge), trusted_output<int32_t>()),
        FIELD_ROWS(edge, coorientation, int32_t, 1),
        FIELD_ROWS(edge, degenerated, int32_t, 1),
        PAIR_ROWS(range, double),
        PAIR_ROWS(extremities, int32_t),
        PAIR_ROWS(extremities_tag, int32_t),
        PAIR_ROWS(uv_extremities, int32_t),
        ROW(korvane_cad_edge_set_extremities_tag, handle(o.free_edge), any(1), any(1)),
        ROW(korvane_cad_edge_attach, handle(o.spare_edge).taken_from(o.spare_edge), handle(o.face)),
        REFUSING_ROW(korvane_cad_edge_attach, given(o.edge), given(o.free_face)),
        ROW(korvane_cad_edge_get_face, handle(o.edge),
            output<korvane_cad_face_t *>().zero_for(Cause::null_handle)),
        ROW(korvane_cad_edge_curve, handle(o.edge), any(0.5), optional_output<double>(2),
            optional_output<double>(2), optional_output<double>(2)),
        ROW(korvane_cad_edge_get_curv, handle(o.edge), trusted_output<korvane_cad_curve_t>(),
            trusted_output<void *>()),
        ROW(korvane_cad_edge_set_curve3d, handle(o.edge), nullable(some_curve3d), nullable(&o)),
        ROW(korvane_cad_edge_has_curve3d, handle(o.edge), output<int32_t>()),
        ROW(korvane_cad_edge_get_curve3d, handle(o.edge), trusted_output<korvane_cad_curve3d_t>(),
            trusted_output<void *>()),
        ROW(korvane_cad_edge_curve3d, handle(o.edge), any(0.5), optional_output<double>(3)),
        REFUSING_ROW(korvane_cad_edge_curve3d, given(o.free_edge), given(0.5), trusted_output<double>(3)),
        ROW(korvane_cad_edge_get_wdef, handle(o.edge), output<int32_t>().zero_for(Cause::null_handle)),
        ROW(korvane_cad_edge_set_property, handle(o.edge), any(4u)),
        ROW(korvane_cad_edge_unset_property, handle(o.edge), any(4u)),
        ROW(korvane_cad_edge_query_property, handle(o.edge), any(4u), trusted_output<int32_t>()),
        ALLOCATING_ROW(korvane_cad_edge_set_support_vertex_count, handle(o.edge),
            refused(5, {INT32_MIN, -1}).also(STATUS_OK, {0, 3})),
        ROW(korvane_cad_edge_set_support_vertex, given(o.edge), index(2, 3), any(0.5),
            given(some_reals.data()), given(some_reals.data())),
        REFUSING_ROW(korvane_cad_edge_set_support_vertex, given(o.free_edge), given(1), given(0.5),
            given(some_reals.data()), given(some_reals.data())),
        ROW(korvane_cad_edge_get_support_vertices, handle(o.edge), trusted_output<int32_t>(),
            optional_output<double *>(), optional_output<double *>(), optional_output<double *>()),
        REFUSING_ROW(korvane_cad_edge_get_support_vertices, given(o.free_edge), trusted_output<int32_t>(),
            trusted_output<double *>(), trusted_output<double *>(), trusted_output<double *>()),
        ROW(korvane_cad_edge_get_original_geometry, handle(o.edge), any(0.5),
            optional_output<korvane_cad_edge_t *>(), optional_output<double>(), optional_output<double>(),
            optional_output<double>()),
        ALLOCATING_ROW(korvane_cad_point_new, handle(o.face), any(1u), given(some_reals.data())),
        ROW(korvane_cad_point_delete, taken(o.spare_point)),
        ROW(korvane_cad_point_get_uv, handle(o.point), trusted_output<double>(2)),
        ROW(korvane_cad_point_get_id, handle(o.point), trusted_output<uint32_t>()),
        ROW(korvane_cad_point_get_tag, handle(o.point), trusted_output<uint32_t>()),
        ROW(korvane_cad_point_set_tag, handle(o.point), any(1u)),
        ROW(korvane_cad_point_set_tag, handle(o.spare_point), any(1u)),
    };
}

} // namespace korvane::testing
