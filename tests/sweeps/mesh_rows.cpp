// Arguments of the functions of meshes, but for those of their slots, and of size maps.
#include "sweeps/probe.h"

namespace korvane::testing {

Rows mesh_rows()
{
    return {
        ALLOCATING_ROW(korvane_mesh_new, handle(o.context)),
        ALLOCATING_ROW(korvane_mesh_new_in_memory, given(o.context)),
        ROW(korvane_mesh_delete, taken(o.spare_mesh)),
        ROW(korvane_mesh_check_consistency, nullable(o.mesh)),
        ROW(korvane_mesh_set_tag_system, handle(o.spare_mesh), taken(o.spare_tag_system)),
        ROW(korvane_mesh_get_tag_system, handle(o.tagged_mesh), trusted_output<korvane_tag_system_t *>()),
        ROW(korvane_mesh_get_composite_tag_list, handle(o.mesh), output<int32_t>(), output<int32_t>()),
        ROW(korvane_mesh_get_composite_tag_list, handle(o.tagged_mesh), output<int32_t>(), output<int32_t>()),
        ROW(korvane_mesh_get_composite_tag_definition, handle(o.mesh), any(4), output<int32_t>(),
            output<int32_t>()),
        ROW(korvane_mesh_get_composite_tag_definition, handle(o.tagged_mesh), any(4), output<int32_t>(),
            output<int32_t>(2)),
        ALLOCATING_ROW(korvane_mesh_calloc_generic_buffer, given(o.mesh)),
        ROW(korvane_mesh_free_generic_buffer, taken(o.mesh_buffer)),
        ALLOCATING_ROW(korvane_mesh_write_mesh, handle(o.mesh), input(scratch_file("row.mesh").c_str())),
        ALLOCATING_ROW(korvane_mesh_new_read_mesh, given(o.context), input(sample_mesh_file().c_str())),
        ROW(korvane_mesh_get_triangle_aspect_ratio, handle(o.mesh), given(1u), trusted_output<double>()),
        ROW(korvane_mesh_get_tetrahedron_aspect_ratio, handle(o.mesh), given(1u), trusted_output<double>()),
        ALLOCATING_ROW(korvane_mesh_compute_statistics, handle(o.mesh)),
        ALLOCATING_ROW(korvane_mesh_compute_statistics_valid, handle(o.mesh), input("name")),
        ALLOCATING_ROW(korvane_mesh_compute_topological_statistics, handle(o.mesh)),
    };
}

namespace {

/// A size map of a file, which goes with its context.
korvane_sizemap_t *read_sizemap(const Objects &o)
{
    return korvane_sizemap_new_read_sol(o.mesh, sample_solution_file().c_str());
}

/// A size map that is not per vertex.
korvane_sizemap_t *other_sizemap(const Objects &o)
{
    return korvane_sizemap_new(o.cad, 1, some_size, nullptr);
}

} // namespace

Rows sizemap_rows()
{
    return {
        ALLOCATING_ROW(korvane_sizemap_new, handle(o.mesh),
            refused(4, {INT32_MIN, -1, 0, 7, INT32_MAX}).also(STATUS_OK, {1, 2, 3, 5, 6}), input(some_size),
            nullable(&o)),
        ROW(korvane_sizemap_delete, taken(o.spare_sizemap)),
        ROW(korvane_sizemap_set_delete_function, handle(o.sizemap), nullable(note_release)),
        ROW(korvane_sizemap_get_function, handle(o.sizemap), output<korvane_sizemap_function_t>()),
        ROW(korvane_sizemap_get_user_data, handle(o.sizemap), output<void *>()),
        ROW(korvane_sizemap_get_type, handle(o.sizemap), trusted_output<int32_t>()),
        ROW(korvane_sizemap_iso_mesh_vertex_get_size, handle(o.sizemap), any(1), output<double>()),
        ROW(korvane_sizemap_iso_mesh_vertex_get_size, handle(read_sizemap(o)), index(1, entity_count),
            output<double>().zero_for(Cause::bad_value)),
        REFUSING_ROW(
            korvane_sizemap_iso_mesh_vertex_get_size, given(other_sizemap(o)), given(1), output<double>()),
        ALLOCATING_ROW(korvane_sizemap_write_sol, handle(o.sizemap), input(scratch_file("row.sol").c_str())),
        ALLOCATING_ROW(korvane_sizemap_new_read_sol, handle(o.mesh), input(sample_solution_file().c_str())),
        ALLOCATING_ROW(korvane_mesh_write_bdf, handle(o.mesh), input(scratch_file("row.bdf").c_str())),
    };
}

} // namespace korvane::testing
