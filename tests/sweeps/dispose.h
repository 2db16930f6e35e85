// Gives back what a call of a constructor made, whatever it is.
#pragma once

#include <korvane.h>

namespace korvane::testing {

/// Statuses, and points, which go with their face.
template <class T>
void dispose(T)
{}

inline void dispose(korvane_context_t *context)
{
    korvane_context_delete(context);
}
inline void dispose(korvane_message_t *message)
{
    korvane_message_delete(message);
}
inline void dispose(korvane_tag_system_t *tag_system)
{
    korvane_tag_system_delete(tag_system);
}
inline void dispose(korvane_mesh_t *mesh)
{
    korvane_mesh_delete(mesh);
}
inline void dispose(korvane_sizemap_t *sizemap)
{
    korvane_sizemap_delete(sizemap);
}
inline void dispose(korvane_cad_t *cad)
{
    korvane_cad_delete(cad);
}
inline void dispose(korvane_cad_face_t *face)
{
    korvane_cad_face_delete(face);
}
inline void dispose(korvane_cad_edge_t *edge)
{
    korvane_cad_edge_delete(edge);
}
inline void dispose(korvane_dcad_t *dcad)
{
    korvane_dcad_delete(dcad);
}
inline void dispose(void *generic_buffer)
{
    korvane_mesh_free_generic_buffer(generic_buffer);
}

} // namespace korvane::testing
