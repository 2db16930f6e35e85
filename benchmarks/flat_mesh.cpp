#include "flat_mesh.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numeric>
#include <random>
#include <unistd.h>

namespace korvane::benchmarks {

FlatMesh shuffled(const FlatMesh &natural)
{
    FlatMesh mesh = natural;
    std::vector<int32_t> place(natural.vertex_tags.size());
    std::iota(place.begin(), place.end(), 0);
    std::shuffle(place.begin(), place.end(), std::mt19937(20110801));
    for (std::size_t i = 0; i < place.size(); ++i) {
        const auto target = static_cast<std::size_t>(place[i]);
        mesh.vertex_tags[target] = natural.vertex_tags[i];
        std::copy_n(&natural.coordinates[3 * i], 3, &mesh.coordinates[3 * target]);
    }
    for (int32_t &vertex : mesh.vertices)
        vertex = place[static_cast<std::size_t>(vertex - 1)] + 1;
    return mesh;
}

namespace {

/// The corners of a cell, of which corner c lies at the bits of c, make elements of these.
using Cell = std::vector<std::vector<int32_t>>;

/// The same elements in every cell of a bent cube of `cells` cells per side.
FlatMesh grid_of_cells(const ElementKind &kind, const Cell &elements, int32_t cells)
{
    FlatMesh mesh;
    mesh.kind = &kind;
    const int32_t side = cells + 1;
    for (int32_t k = 0; k < side; ++k) {
        for (int32_t j = 0; j < side; ++j) {
            for (int32_t i = 0; i < side; ++i) {
                const double bend = 0.01 * std::sin(i + 0.5 * j);
                mesh.coordinates.insert(
                    mesh.coordinates.end(), {i / 55.0 + bend, j / 55.0 - bend, k / 55.0 + bend / 3});
                mesh.vertex_tags.push_back(0);
            }
        }
    }
    for (int32_t cell = 0; cell < cells * cells * cells; ++cell) {
        const int32_t i = cell % cells, j = cell / cells % cells, k = cell / cells / cells;
        for (const std::vector<int32_t> &corners : elements) {
            for (const int32_t c : corners)
                mesh.vertices.push_back(1 + i + (c & 1) + side * (j + (c >> 1 & 1) + side * (k + (c >> 2))));
            mesh.element_tags.push_back(k);
        }
    }
    return mesh;
}

} // namespace

FlatMesh grid_of_tetrahedra(int32_t cells)
{
    // Around the diagonal from corner 0 to corner 7.
    return grid_of_cells(tetrahedron,
        {{0, 1, 3, 7}, {0, 3, 2, 7}, {0, 2, 6, 7}, {0, 6, 4, 7}, {0, 4, 5, 7}, {0, 5, 1, 7}}, cells);
}

FlatMesh grid_of_hexahedra(int32_t cells)
{
    return grid_of_cells(hexahedron, {{0, 1, 3, 2, 4, 5, 7, 6}}, cells);
}

FlatMesh grid_of_triangles(int32_t cells)
{
    FlatMesh mesh;
    mesh.kind = &triangle;
    const int32_t side = cells + 1;
    for (int32_t j = 0; j < side; ++j) {
        for (int32_t i = 0; i < side; ++i) {
            mesh.coordinates.insert(mesh.coordinates.end(),
                {i / 1000.0, j / 1000.0, 0.1 * std::sin(0.01 * i) * std::cos(0.02 * j)});
            mesh.vertex_tags.push_back(0);
        }
    }
    for (int32_t j = 0; j < cells; ++j) {
        for (int32_t i = 0; i < cells; ++i) {
            const int32_t corner = 1 + i + side * j;
            mesh.vertices.insert(mesh.vertices.end(),
                {corner, corner + 1, corner + side + 1, corner, corner + side + 1, corner + side});
            mesh.element_tags.insert(mesh.element_tags.end(), {j, j});
        }
    }
    return mesh;
}

namespace {

/// Fills through the public interface; benchmarks must not measure a mesh that was not filled.
void demand(korvane_status_t status)
{
    if (status != STATUS_OK)
        std::abort();
}

} // namespace

const FlatMesh &million_tetrahedra(Order order)
{
    static const FlatMesh natural = grid_of_tetrahedra(55);
    static const FlatMesh random = shuffled(natural);
    return order == Order::natural ? natural : random;
}

const FlatMesh &two_million_triangles(Order order)
{
    static const FlatMesh natural = grid_of_triangles(1000);
    static const FlatMesh random = shuffled(natural);
    return order == Order::natural ? natural : random;
}

korvane_context_t *silent_context()
{
    static const std::unique_ptr<korvane_context_t, void (*)(korvane_context_t *)> context(
        korvane_context_new(), korvane_context_delete);
    korvane_context_set_message_callback(context.get(), nullptr, nullptr);
    return context.get();
}

Mesh in_memory(const FlatMesh &flat)
{
    Mesh mesh(korvane_mesh_new_in_memory(silent_context()));
    demand(korvane_mesh_set_vertex_count(mesh.get(), flat.vertex_count()));
    for (int32_t i = 0; i < flat.vertex_count(); ++i) {
        const auto at = static_cast<std::size_t>(i);
        demand(korvane_mesh_set_vertex_coordinates(mesh.get(), i + 1, &flat.coordinates[3 * at]));
        demand(korvane_mesh_set_vertex_tag(mesh.get(), i + 1, &flat.vertex_tags[at]));
    }
    const ElementKind &kind = *flat.kind;
    demand(kind.set_count(mesh.get(), flat.element_count()));
    for (int32_t i = 0; i < flat.element_count(); ++i) {
        const auto at = static_cast<std::size_t>(i);
        demand(kind.set_vertices(mesh.get(), i + 1, &flat.vertices[flat.width() * at]));
        demand(kind.set_tag(mesh.get(), i + 1, &flat.element_tags[at]));
    }
    return mesh;
}

TemporaryFile::TemporaryFile(const char *extension)
{
    static int number = 0;
    const std::string name =
        "korvane-benchmark-" + std::to_string(getpid()) + "-" + std::to_string(++number) + extension;
    path = std::filesystem::temp_directory_path() / name;
}

TemporaryFile::~TemporaryFile()
{
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

} // namespace korvane::benchmarks
