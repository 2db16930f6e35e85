// The kinds of mesh entities, as a table for whoever walks over all of them.
#pragma once

#include <span>

#include <korvane.h>

namespace korvane::tools {

using CornerPair = uint8_t[2]; // numbered from 0

struct MeshKind {
    const char *plural;
    std::span<const CornerPair> edges; // of an element
    korvane_status_t (*get_count)(const korvane_mesh_t *, int32_t *);
    korvane_status_t (*get_vertices)(const korvane_mesh_t *, int32_t, int32_t *); // null for vertices
    korvane_status_t (*get_tag)(const korvane_mesh_t *, int32_t, int32_t *);
    korvane_status_t (*get_required_status)(const korvane_mesh_t *, int32_t, int32_t *);
};

/// All seven kinds, in the order of the library.
std::span<const MeshKind> mesh_kinds();

/// The number of entities of a kind, never below 0.
int32_t count_of(const MeshKind &kind, const korvane_mesh_t *mesh);

} // namespace korvane::tools
