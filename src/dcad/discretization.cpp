// Edge discretizations: the number of their vertices, and access to each.
//
// Access is hot and not checked: neither the discretization nor the index. Whatever allocation fails, the
// arrays hold the vertices that the count promises: growing is done in place, array by array, shrinking on
// copies. Cost: one reallocation per array and change of the count.
#include "dcad/discretization.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace korvane {

namespace {

/// The arrays that grow before one fails keep their new size, but the count does not say so.
[[nodiscard]] korvane_status_t grow(EdgeVertices &vertices, int32_t count)
{
    const auto size = static_cast<std::size_t>(count);
    if (!vertices.parameters.try_resize_zeroed(size) || !vertices.uv.try_resize_zeroed(2 * size) ||
        !vertices.xyz.try_resize_zeroed(3 * size) || !vertices.tags.try_resize_zeroed(size))
        return STATUS_NOMEM;
    vertices.vertex_count = count;
    return STATUS_OK;
}

/// Shrinks all arrays or none.
[[nodiscard]] korvane_status_t shrink(EdgeVertices &vertices, int32_t count)
{
    const auto size = static_cast<std::size_t>(count);
    EdgeVertices shrunk{};
    if (!try_assign(shrunk.parameters, vertices.parameters.data(), size) ||
        !try_assign(shrunk.uv, vertices.uv.data(), 2 * size) ||
        !try_assign(shrunk.xyz, vertices.xyz.data(), 3 * size) ||
        !try_assign(shrunk.tags, vertices.tags.data(), size))
        return STATUS_NOMEM;
    shrunk.vertex_count = count;
    vertices = std::move(shrunk);
    return STATUS_OK;
}

/// The place of a vertex in the arrays.
[[nodiscard]] std::size_t position_of(int32_t index)
{
    return static_cast<std::size_t>(index) - 1;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_status_t korvane_dcad_edge_discretization_set_vertex_count(
    korvane_dcad_edge_discretization_t *discretization, int32_t count)
{
    if (discretization == nullptr || count < 0)
        return STATUS_ERROR;
    if (count == discretization->vertex_count)
        return STATUS_OK;
    return count > discretization->vertex_count ? grow(*discretization, count)
                                                : shrink(*discretization, count);
}

korvane_status_t korvane_dcad_edge_discretization_get_vertex_count(
    const korvane_dcad_edge_discretization_t *discretization, int32_t *count)
{
    if (discretization == nullptr)
        return STATUS_ERROR;
    *count = discretization->vertex_count;
    return STATUS_OK;
}

korvane_status_t korvane_dcad_edge_discretization_set_vertex_coordinates(
    korvane_dcad_edge_discretization_t *discretization, int32_t index, double t, const double uv[2],
    const double xyz[3])
{
    const std::size_t position = position_of(index);
    discretization->parameters[position] = t;
    if (uv != nullptr)
        std::copy_n(uv, 2, &discretization->uv[2 * position]);
    if (xyz != nullptr)
        std::copy_n(xyz, 3, &discretization->xyz[3 * position]);
    return STATUS_OK;
}

korvane_status_t korvane_dcad_edge_discretization_get_vertex_coordinates(
    const korvane_dcad_edge_discretization_t *discretization, int32_t index, double *t, double uv[2],
    double xyz[3])
{
    const std::size_t position = position_of(index);
    if (t != nullptr)
        *t = discretization->parameters[position];
    if (uv != nullptr)
        std::copy_n(&discretization->uv[2 * position], 2, uv);
    if (xyz != nullptr)
        std::copy_n(&discretization->xyz[3 * position], 3, xyz);
    return STATUS_OK;
}

korvane_status_t korvane_dcad_edge_discretization_set_vertex_tag(
    korvane_dcad_edge_discretization_t *discretization, int32_t index, int32_t tag)
{
    discretization->tags[position_of(index)] = tag;
    return STATUS_OK;
}

korvane_status_t korvane_dcad_edge_discretization_get_vertex_tag(
    const korvane_dcad_edge_discretization_t *discretization, int32_t index, int32_t *tag)
{
    if (tag != nullptr)
        *tag = discretization->tags[position_of(index)];
    return STATUS_OK;
}

korvane_status_t korvane_dcad_edge_discretization_set_property(
    korvane_dcad_edge_discretization_t *discretization, uint32_t bits)
{
    if (discretization == nullptr)
        return STATUS_ERROR;
    discretization->properties |= bits;
    return STATUS_OK;
}

korvane_status_t korvane_dcad_edge_discretization_query_property(
    const korvane_dcad_edge_discretization_t *discretization, uint32_t bits, int32_t *flag)
{
    if (discretization == nullptr || flag == nullptr)
        return STATUS_ERROR;
    *flag = (discretization->properties & bits) != 0;
    return STATUS_OK;
}

} // extern "C"
