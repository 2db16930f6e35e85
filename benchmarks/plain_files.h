// What the library's readers and writers are measured against: the least code that moves the same bytes.
#pragma once

#include <cstdint>

#include "flat_mesh.h"

namespace korvane::benchmarks {

/// The whole file, through one block.
int64_t read_raw(const char *file_name);

/// One read of a binary file, version 2, of the machine's byte order, and its values put into flat
/// arrays; gives the number of lines.
int64_t read_and_decode(const char *file_name);

/// One fscanf per value of a text file that holds vertices and one kind of element.
FlatMesh read_with_fscanf(const char *file_name);

/// One buffer of the bytes of a binary file, and one write.
void encode_and_write(const FlatMesh &mesh, const char *file_name);

/// One fprintf per value.
void write_with_fprintf(const FlatMesh &mesh, const char *file_name);

/// Bulk data, with one fprintf per vertex and per field of an element.
void write_bulk_data_with_fprintf(const FlatMesh &mesh, const char *file_name);

} // namespace korvane::benchmarks
