// Unstructured grids in VTK's XML format, with the data appended raw.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "mesh_kinds.h"

namespace korvane::tools {

/// A cell of a grid: an entity that names vertices of its mesh only, or a vertex by itself.
struct Cell {
    const MeshKind *kind;
    int32_t number;
};

/// True for elements all of whose vertices the mesh has, and for vertices.
bool can_be_cell(const korvane_mesh_t *mesh, const Cell &cell);

/// All elements that can be cells.
std::vector<Cell> cells_of(const korvane_mesh_t *mesh);

/// Writes the cells and their vertices, or all vertices. Cells carry number, tag, required flag and all
/// measures, not-a-number where their kind is not measured so; points carry number, tag and required flag.
/// False if the file could not be written.
bool write_vtu(
    const korvane_mesh_t *mesh, std::span<const Cell> cells, bool all_vertices, const std::string &file);

} // namespace korvane::tools
