// What the library's jobs are measured against: the least code that moves the same bytes, or evaluates the
// same formulas, on flat arrays.
#pragma once

#include <string>

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

/// One write of the bytes given.
void write_raw(const std::string &bytes, const char *file_name);

/// The aspect ratios of all elements, and the angles of triangles, with their extremes, mean and running
/// variance; gives the variance.
double judge_elements(const FlatMesh &mesh);

/// The distinct edges, found by the hash that suits the order of the vertices, with the extremes, mean and
/// running variance of their lengths; gives the number of edges.
int32_t judge_edges(const FlatMesh &mesh, Order order);

/// Free and non-manifold edges of a surface by such a hash, its components by union-find; gives the sum of
/// all three.
int32_t count_topology(const FlatMesh &mesh, Order order);

} // namespace korvane::benchmarks
