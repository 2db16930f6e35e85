// Meshes on flat arrays: what the benchmarks fill the library's meshes from, and what the plain loops run on.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <korvane.h>

namespace korvane::benchmarks {

/// One kind of elements, under its names in files and with its setters.
struct ElementKind {
    int corners;
    const char *keyword; // of mesh files
    int32_t code;        // the same, in binary
    const char *card;    // of bulk data
    korvane_status_t (*set_count)(korvane_mesh_t *, int32_t);
    korvane_status_t (*set_vertices)(korvane_mesh_t *, int32_t, const int32_t *);
    korvane_status_t (*set_tag)(korvane_mesh_t *, int32_t, const int32_t *);
};

inline constexpr ElementKind triangle = {3, "Triangles", 6, "CTRIA3", korvane_mesh_set_triangle_count,
    korvane_mesh_set_triangle_vertices, korvane_mesh_set_triangle_tag};
inline constexpr ElementKind tetrahedron = {4, "Tetrahedra", 8, "CTETRA", korvane_mesh_set_tetrahedron_count,
    korvane_mesh_set_tetrahedron_vertices, korvane_mesh_set_tetrahedron_tag};
inline constexpr ElementKind hexahedron = {8, "Hexahedra", 10, "CHEXA", korvane_mesh_set_hexahedron_count,
    korvane_mesh_set_hexahedron_vertices, korvane_mesh_set_hexahedron_tag};
inline constexpr const ElementKind *element_kinds[] = {&triangle, &tetrahedron, &hexahedron};

struct FlatMesh {
    const ElementKind *kind = &triangle;
    std::vector<double> coordinates;   // 3 per vertex
    std::vector<int32_t> vertex_tags;  // 1 per vertex
    std::vector<int32_t> vertices;     // `kind->corners` per element, numbered from 1
    std::vector<int32_t> element_tags; // 1 per element

    [[nodiscard]] int32_t vertex_count() const { return static_cast<int32_t>(vertex_tags.size()); }
    [[nodiscard]] int32_t element_count() const { return static_cast<int32_t>(element_tags.size()); }
    [[nodiscard]] std::size_t width() const { return static_cast<std::size_t>(kind->corners); }
};

enum class Order { natural, shuffled };

/// Six tetrahedra in every cell of a cube of `cells` cells per side, with coordinates of full precision.
FlatMesh grid_of_tetrahedra(int32_t cells);

/// One hexahedron in every cell of the same cube.
FlatMesh grid_of_hexahedra(int32_t cells);

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
    explicit TemporaryFile(const char *extension);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    [[nodiscard]] const char *name() const { return path.c_str(); }

  private:
    std::string path;
};

} // namespace korvane::benchmarks
