// Meshes on flat arrays: what the benchmarks fill the library's meshes from, and what the plain loops run on.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <korvane.h>

namespace korvane::benchmarks {

struct FlatMesh {
    std::vector<double> coordinates;   // 3 per vertex
    std::vector<int32_t> vertex_tags;  // 1 per vertex
    int corners = 0;                   // vertices per element: 3 (triangles) or 4 (tetrahedra)
    std::vector<int32_t> vertices;     // `corners` per element, numbered from 1
    std::vector<int32_t> element_tags; // 1 per element

    [[nodiscard]] int32_t vertex_count() const { return static_cast<int32_t>(vertex_tags.size()); }
    [[nodiscard]] int32_t element_count() const { return static_cast<int32_t>(element_tags.size()); }
};

enum class Order { natural, shuffled };

/// Six tetrahedra in every cell of a cube of `cells` cells per side, with coordinates of full precision.
FlatMesh grid_of_tetrahedra(int32_t cells);

/// Two triangles in every cell of a wavy square of `cells` cells per side.
FlatMesh grid_of_triangles(int32_t cells);

/// The same mesh with its vertices numbered at random, the same way every time.
FlatMesh shuffled(const FlatMesh &natural);

/// About a million tetrahedra.
const FlatMesh &million_tetrahedra(Order order);

/// Two million triangles.
const FlatMesh &two_million_triangles(Order order);

struct MeshDeleter {
    void operator()(korvane_mesh_t *mesh) const { korvane_mesh_delete(mesh); }
};
using Mesh = std::unique_ptr<korvane_mesh_t, MeshDeleter>;

/// A silent context that lives as long as the process.
korvane_context_t *silent_context();

/// The flat mesh held in memory by the library.
Mesh in_memory(const FlatMesh &flat);

/// A file in the system's folder for temporary files, removed at the end of its life.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string &extension);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    [[nodiscard]] const char *name() const { return path.c_str(); }
    [[nodiscard]] int64_t size() const;

  private:
    std::string path;
};

} // namespace korvane::benchmarks
