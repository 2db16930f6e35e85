// The quality measures of the elements of a mesh, by their index: function objects that fetch the corners
// through the mesh's callbacks and leave the formula to measures.h.
//
// First the element's vertices are asked for, then the coordinates of each, in this order. Statuses are
// ignored, and what a callback leaves out is zero. A call gives STATUS_ERROR for a null mesh, else STATUS_OK;
// the results must not be null unless said otherwise. `fetch_corners` is the first half of a measurement, for
// elements in a row: they are fetched one by one as by single calls, but nothing waits for their corners, so
// that the accesses to memory overlap. `values` is the second half.
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
        Corners corners;
        fetch_corners(mesh, index, 1, &corners);
        const Values measured = values(corners);
        std::memcpy(results, &measured, sizeof measured);
        return STATUS_OK;
    }

    static void fetch_corners(const korvane_mesh_t *mesh, uint32_t first, uint32_t count, Corners *corners)
    {
        for (uint32_t i = 0; i < count; ++i) {
            std::array<int32_t, vertices_per_element> vertices{};
            fetch<vertices_slot>(mesh, static_cast<int32_t>(first + i), vertices.data());
            fetch_each<&korvane_mesh_s::vertex_coordinates>(mesh, vertices, corners[i].data());
        }
    }

    static Values values(const Corners &corners) { return formula(corners); }
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
    using Corners = std::array<Vec3, 2>;

    korvane_status_t operator()(
        const korvane_mesh_t *mesh, uint32_t index, double *length, const vertex_pair_set_t &set) const
    {
        *length = 0;
        if (mesh != nullptr) {
            Corners ends;
            fetch_corners(mesh, index, 1, &ends, set);
            *length = values(ends);
        }
        return STATUS_OK;
    }

    static void fetch_corners(const korvane_mesh_t *mesh, uint32_t first, uint32_t count, Corners *ends,
        const vertex_pair_set_t &set)
    {
        for (uint32_t i = 0; i < count; ++i)
            fetch_each<&korvane_mesh_s::vertex_coordinates>(
                mesh, set.key(static_cast<int32_t>(first + i)), ends[i].data());
    }

    static double values(const Corners &ends) { return edge_length(ends[0], ends[1]); }
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
