// The content of a mesh as plain vectors, read and written through the public interface.
#pragma once

#include <array>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include <korvane.h>

namespace korvane::testing {

/// All entities of one kind. Vertices have coordinates, the others vertices.
struct EntityContent {
    std::vector<double> coordinates;
    std::vector<int32_t> vertices;
    std::vector<int32_t> tags;
    std::vector<int32_t> required;

    bool operator==(const EntityContent &) const = default;
    [[nodiscard]] int32_t count() const { return static_cast<int32_t>(tags.size()); }
};

/// Vertices, edges, triangles, quadrangles, tetrahedra, hexahedra, pyramids.
struct MeshContent {
    static constexpr std::size_t kinds = 7;
    std::array<EntityContent, kinds> entities;

    bool operator==(const MeshContent &) const = default;
};

std::ostream &operator<<(std::ostream &stream, const MeshContent &content);

/// How many vertices an element of a kind has; 0 for vertices.
std::size_t vertices_per_element(std::size_t kind);

MeshContent content_of(const korvane_mesh_t *mesh);

/// An in-memory mesh of this content; required flags are written only where they are not 0.
korvane_mesh_t *make_mesh(korvane_context_t *context, const MeshContent &content);

/// A mesh without anything required that has a few entities of every kind, all with different numbers.
MeshContent small_content();

/// Reads what the maker of the sample files says of one of them.
MeshContent read_expected(const std::string &name);

} // namespace korvane::testing
