// The kinds of mesh entities, as a table for whoever walks over all of them.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include <korvane.h>

namespace korvane::tools {

/// Corners of an element, numbered from 0.
/// @{
using CornerPair = uint8_t[2];
using CornerTetrahedron = uint8_t[4];
/// @}

constexpr std::size_t most_vertices = 8; // of an element

using ElementVertices = std::array<int32_t, most_vertices>; // 0 behind the last

struct MeshKind {
    const char *singular; // as keyed reports have it
    const char *plural;
    int32_t corners;                              // of an element, 0 for vertices
    int32_t dimension;                            // of the space that an element fills
    uint8_t vtk_type;                             // of its cells in VTK files
    std::span<const CornerPair> edges;            // of an element
    std::span<const CornerTetrahedron> sub_parts; // which are all of positive volume in a good element
    korvane_status_t (*get_count)(const korvane_mesh_t *, int32_t *);
    korvane_status_t (*get_vertices)(const korvane_mesh_t *, int32_t, int32_t *); // null for vertices
    korvane_status_t (*get_tag)(const korvane_mesh_t *, int32_t, int32_t *);
    korvane_status_t (*get_required_status)(const korvane_mesh_t *, int32_t, int32_t *);
};

/// All seven kinds, in the order of the library.
std::span<const MeshKind> mesh_kinds();

/// All but the vertices.
std::span<const MeshKind> element_kinds();

const MeshKind &vertex_kind();

/// Null if there is no such kind.
const MeshKind *find_kind(std::string_view singular);

/// The number of entities of a kind, never below 0.
int32_t count_of(const MeshKind &kind, const korvane_mesh_t *mesh);

/// What cannot be told is 0.
/// @{
ElementVertices vertices_of(const MeshKind &kind, const korvane_mesh_t *mesh, int32_t number);
int32_t tag_of(const MeshKind &kind, const korvane_mesh_t *mesh, int32_t number);
bool is_required(const MeshKind &kind, const korvane_mesh_t *mesh, int32_t number);
std::array<double, 3> position_of(const korvane_mesh_t *mesh, int32_t vertex);
/// @}

/// The vertices that an element of the kind has.
inline std::span<const int32_t> used(const MeshKind &kind, const ElementVertices &vertices)
{
    return {vertices.data(), static_cast<std::size_t>(kind.corners)};
}

} // namespace korvane::tools
