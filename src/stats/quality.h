// The quality measures of the elements of a mesh, by their index: function objects that fetch the corners
// through the mesh's callbacks and leave the formula to measures.h.
//
// First the element's vertices are asked for, then the coordinates of each, in this order. Statuses are
// ignored, and what a callback leaves out is zero. A call gives STATUS_ERROR for a null mesh, else STATUS_OK;
// the results must not be null unless said otherwise. `measure_block` measures elements in a row: their
// corners are fetched first, element by element as by single calls, so that the accesses to memory overlap.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include <korvane.h>

#include "mesh/fetch.h"
#include "stats/measures.h"
#include "tags/tuple_shapes.h"

namespace korvane {

/// How many elements `measure_block` takes at most.
constexpr uint32_t measure_block_size = 16;

enum class NullResults { not_tested, refused };

template <class Values>
inline constexpr std::size_t value_count = std::tuple_size_v<Values>;
template <>
inline constexpr std::size_t value_count<double> = 1;

/// A formula, which gives a double or an array of them, of the corners of the elements of one kind.
template <auto vertices_slot, auto formula, NullResults null_results = NullResults::not_tested>
struct ElementMeasure {
    static constexpr std::size_t vertices_per_element = Stored<vertices_slot>::values_per_element;
    using Corners = std::array<Vec3, vertices_per_element>;
    using Values = std::invoke_result_t<decltype(formula), const Corners &>;
    static constexpr std::size_t values_per_element = value_count<Values>;

    korvane_status_t operator()(const korvane_mesh_t *mesh, uint32_t index, double *results) const
    {
        if (mesh == nullptr)
            return STATUS_ERROR;
        if (null_results == NullResults::refused && results == nullptr)
            return STATUS_ERROR;
        measure_block(mesh, index, 1, results);
        return STATUS_OK;
    }

    static void measure_block(const korvane_mesh_t *mesh, uint32_t first, uint32_t count, double *results)
    {
        std::array<Corners, measure_block_size> corners;
        for (uint32_t i = 0; i < count; ++i) {
            std::array<int32_t, vertices_per_element> vertices{};
            fetch<vertices_slot>(mesh, static_cast<int32_t>(first + i), vertices.data());
            fetch_each<&korvane_mesh_s::vertex_coordinates>(mesh, vertices, corners[i].data());
        }
        for (uint32_t i = 0; i < count; ++i) {
            const Values values = formula(corners[i]);
            std::memcpy(results + i * values_per_element, &values, sizeof values);
        }
    }
};

inline constexpr ElementMeasure<&korvane_mesh_s::triangle_vertices, triangle_aspect_ratio>
    quality_triangle_aspect_ratio;
inline constexpr ElementMeasure<&korvane_mesh_s::triangle_vertices, triangle_angles> quality_triangle_angles;
inline constexpr ElementMeasure<&korvane_mesh_s::quadrangle_vertices, quadrangle_aspect_ratio>
    quality_quadrangle_aspect_ratio;
inline constexpr ElementMeasure<&korvane_mesh_s::quadrangle_vertices, quadrangle_angles>
    quality_quadrangle_angles;
inline constexpr ElementMeasure<&korvane_mesh_s::quadrangle_vertices, quadrangle_planarity,
    NullResults::refused>
    quality_quadrangle_planarity;
inline constexpr ElementMeasure<&korvane_mesh_s::tetrahedron_vertices, tetrahedron_aspect_ratio>
    quality_tetrahedron_aspect_ratio;
inline constexpr ElementMeasure<&korvane_mesh_s::hexahedron_vertices, hexahedron_aspect_ratio,
    NullResults::refused>
    quality_hexahedron_aspect_ratio;

/// The length of the edge that has a number in a set. STATUS_OK always: without mesh the length is 0.
struct EdgeMeasure {
    static constexpr std::size_t vertices_per_element = 2;
    static constexpr std::size_t values_per_element = 1;

    korvane_status_t operator()(
        const korvane_mesh_t *mesh, uint32_t index, double *length, const vertex_pair_set_t &set) const
    {
        *length = 0;
        if (mesh != nullptr)
            measure_block(mesh, index, 1, length, set);
        return STATUS_OK;
    }

    static void measure_block(const korvane_mesh_t *mesh, uint32_t first, uint32_t count, double *lengths,
        const vertex_pair_set_t &set)
    {
        std::array<std::array<Vec3, 2>, measure_block_size> ends;
        for (uint32_t i = 0; i < count; ++i)
            fetch_each<&korvane_mesh_s::vertex_coordinates>(
                mesh, set.key(static_cast<int32_t>(first + i)), ends[i].data());
        for (uint32_t i = 0; i < count; ++i)
            lengths[i] = edge_length(ends[i][0], ends[i][1]);
    }
};

inline constexpr EdgeMeasure quality_edge_length;

/// The 2 vertices of the edge of that number. STATUS_OK always.
inline korvane_status_t quality_edge_vertices(
    const korvane_mesh_t *, int32_t index, int32_t *vertices, const vertex_pair_set_t &set)
{
    const auto &pair = set.key(index);
    std::memcpy(vertices, pair.data(), sizeof pair);
    return STATUS_OK;
}

} // namespace korvane
