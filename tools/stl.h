// Surfaces as binary stereolithography files.
#pragma once

#include <string>

#include <korvane.h>

namespace korvane::tools {

/// Writes the triangles, and the quadrangles in two each, as far as the mesh has their vertices. False if the
/// file could not be written.
bool write_stl(const korvane_mesh_t *mesh, const std::string &file);

} // namespace korvane::tools
