// How models, faces and edges begin, who keeps them alive, and how they end. What is counted, and what is
// not, is told at the top of lifetime.cpp.
#pragma once

#include "cad/records.h"
#include "common/memory.h"

namespace korvane {

/// An object with its lists, and room for it in its owner (null for none). Null if either cannot be had.
/// Until it is placed, it goes without any effect.
[[nodiscard]] Owned<korvane_cad_face_t> try_begin_face(korvane_cad_t *cad);
[[nodiscard]] Owned<korvane_cad_edge_t> try_begin_edge(korvane_cad_face_t *face);

/// Gives a model its first reference.
korvane_cad_t *place(Owned<korvane_cad_t> cad);

/// Puts an object into its owner, in which there is room, or leaves it free-standing if that is null; then
/// its own counter is 1. From now on the sources that are set in it are pinned.
korvane_cad_face_t *place(Owned<korvane_cad_face_t> face, korvane_cad_t *cad);
korvane_cad_edge_t *place(Owned<korvane_cad_edge_t> edge, korvane_cad_face_t *face);

/// As above, free-standing, with the own counter of the edge that it was copied from.
korvane_cad_edge_t *place_copy(Owned<korvane_cad_edge_t> copy, const korvane_cad_edge_t &original);

/// Puts a free-standing object into an owner. STATUS_NOMEM if memory runs out, STATUS_ERROR if the object has
/// an owner or either is ending; nothing has changed then.
[[nodiscard]] korvane_status_t attach(korvane_cad_face_t &face, korvane_cad_t &cad);
[[nodiscard]] korvane_status_t attach(korvane_cad_edge_t &edge, korvane_cad_face_t &face);

/// One reference more, or less, on the unit that the object is in.
void retain(korvane_cad_face_t &face);
void retain(korvane_cad_edge_t &edge);
void release(korvane_cad_t &cad);
void release(korvane_cad_face_t &face);
void release(korvane_cad_edge_t &edge);

/// Ends a model whatever its references: what a context calls for a model that is still attached to it.
void korvane_cad_release(void *cad);

} // namespace korvane
