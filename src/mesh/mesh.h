// The mesh record: 36 slots between the context and what the mesh owns.
#pragma once

#include <cstddef>
#include <type_traits>

#include <korvane.h>

#include "common/memory.h"
#include "mesh/slot.h"

struct korvane_mesh_s {
    korvane_context_t *context; // first, so that korvane_mesh_get_context finds it

    korvane::CountSlot vertex_count;
    korvane::CoordinatesSlot vertex_coordinates;
    korvane::ValuesSlot vertex_tag;
    korvane::ValuesSlot vertex_periodic_id;
    korvane::ValuesSlot vertex_required_status;

    korvane::CountSlot edge_count;
    korvane::ValuesSlot edge_vertices;
    korvane::ValuesSlot edge_tag;
    korvane::ValuesSlot edge_periodic_id;
    korvane::ValuesSlot edge_required_status;
    korvane::ExtraVerticesSlot edge_extra_vertices;

    korvane::CountSlot triangle_count;
    korvane::ValuesSlot triangle_vertices;
    korvane::ValuesSlot triangle_tag;
    korvane::ValuesSlot triangle_periodic_id;
    korvane::ValuesSlot triangle_required_status;
    korvane::ExtraVerticesSlot triangle_extra_vertices;

    korvane::CountSlot quadrangle_count;
    korvane::ValuesSlot quadrangle_vertices;
    korvane::ValuesSlot quadrangle_tag;
    korvane::ValuesSlot quadrangle_periodic_id;
    korvane::ValuesSlot quadrangle_required_status;
    korvane::ExtraVerticesSlot quadrangle_extra_vertices;

    korvane::CountSlot tetrahedron_count;
    korvane::ValuesSlot tetrahedron_vertices;
    korvane::ValuesSlot tetrahedron_tag;
    korvane::ValuesSlot tetrahedron_required_status;
    korvane::ExtraVerticesSlot tetrahedron_extra_vertices;

    korvane::CountSlot hexahedron_count;
    korvane::ValuesSlot hexahedron_vertices;
    korvane::ValuesSlot hexahedron_tag;
    korvane::ValuesSlot hexahedron_required_status;

    korvane::CountSlot pyramid_count;
    korvane::ValuesSlot pyramid_vertices;
    korvane::ValuesSlot pyramid_tag;
    korvane::ValuesSlot pyramid_required_status;

    korvane_tag_system_t *tag_system; // owned
    void (*data_release)(void *user_data);
    void *data_release_user_data; // owned, through data_release
};

namespace korvane {

static_assert(std::is_standard_layout_v<korvane_mesh_s>);
static_assert(offsetof(korvane_mesh_s, context) == 0);

template <auto... slots>
struct SlotList {
    static constexpr std::size_t size = sizeof...(slots);

    /// Calls `visit.operator()<slot>()` for each slot, in order.
    template <class Visitor>
    static void for_each(Visitor visit)
    {
        (visit.template operator()<slots>(), ...);
    }
};

/// The slots of a mesh, as pointers to members, in the order of the fields.
using MeshSlots = SlotList<                       //
    &korvane_mesh_s::vertex_count,                //
    &korvane_mesh_s::vertex_coordinates,          //
    &korvane_mesh_s::vertex_tag,                  //
    &korvane_mesh_s::vertex_periodic_id,          //
    &korvane_mesh_s::vertex_required_status,      //
    &korvane_mesh_s::edge_count,                  //
    &korvane_mesh_s::edge_vertices,               //
    &korvane_mesh_s::edge_tag,                    //
    &korvane_mesh_s::edge_periodic_id,            //
    &korvane_mesh_s::edge_required_status,        //
    &korvane_mesh_s::edge_extra_vertices,         //
    &korvane_mesh_s::triangle_count,              //
    &korvane_mesh_s::triangle_vertices,           //
    &korvane_mesh_s::triangle_tag,                //
    &korvane_mesh_s::triangle_periodic_id,        //
    &korvane_mesh_s::triangle_required_status,    //
    &korvane_mesh_s::triangle_extra_vertices,     //
    &korvane_mesh_s::quadrangle_count,            //
    &korvane_mesh_s::quadrangle_vertices,         //
    &korvane_mesh_s::quadrangle_tag,              //
    &korvane_mesh_s::quadrangle_periodic_id,      //
    &korvane_mesh_s::quadrangle_required_status,  //
    &korvane_mesh_s::quadrangle_extra_vertices,   //
    &korvane_mesh_s::tetrahedron_count,           //
    &korvane_mesh_s::tetrahedron_vertices,        //
    &korvane_mesh_s::tetrahedron_tag,             //
    &korvane_mesh_s::tetrahedron_required_status, //
    &korvane_mesh_s::tetrahedron_extra_vertices,  //
    &korvane_mesh_s::hexahedron_count,            //
    &korvane_mesh_s::hexahedron_vertices,         //
    &korvane_mesh_s::hexahedron_tag,              //
    &korvane_mesh_s::hexahedron_required_status,  //
    &korvane_mesh_s::pyramid_count,               //
    &korvane_mesh_s::pyramid_vertices,            //
    &korvane_mesh_s::pyramid_tag,                 //
    &korvane_mesh_s::pyramid_required_status>;

static_assert(sizeof(korvane_mesh_s) == MeshSlots::size * sizeof(CountSlot) + 4 * sizeof(void *));

/// Installs in all slots the callbacks of a mesh that reads as empty and refuses writes.
void install_default_callbacks(korvane_mesh_t &mesh);

/// Attaches a complete mesh to its context, which from then on may release it.
korvane_mesh_t *attach_to_context(Owned<korvane_mesh_t> mesh);

} // namespace korvane
