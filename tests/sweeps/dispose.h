// Gives back what a call of a constructor made, whatever it is.
#pragma once

#include <tuple>

#include <korvane.h>

namespace korvane::testing {

/// What gives an object back, found by the type of the object; buffers of all kinds are alike.
inline constexpr auto deleters = std::make_tuple(korvane_context_delete, korvane_message_delete,
    korvane_tag_system_delete, korvane_mesh_delete, korvane_sizemap_delete, korvane_cad_delete,
    korvane_cad_face_delete, korvane_cad_edge_delete, korvane_dcad_delete, korvane_mesh_free_generic_buffer);

template <class Object>
void dispose(Object *made)
{
    std::get<void (*)(Object *)>(deleters)(made);
}

inline void dispose(korvane_cad_point_t *) {} // goes with its face

inline void dispose(korvane_status_t) {}

} // namespace korvane::testing
