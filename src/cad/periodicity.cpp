// Periodicity of faces, edges and points by identifier: the declarations and their lists.
//
// The three tables belong to the model; their records are (other face), (companion of this edge, companion of
// the other one, other edge, orientation) and (companion of this point, companion of the other one, other
// point). Every declaration is stored under both identifiers.
#include <cstdint>

#include <korvane.h>

#include "cad/periodicity_table.h"
#include "cad/records.h"

namespace korvane {

namespace {

/// One side of a declaration: an edge or point with its companion.
struct Side {
    int32_t companion;
    int32_t identifier;
    bool operator==(const Side &) const = default;
};

/// Whether there is nothing to store, because a side is missing or both are the same.
[[nodiscard]] bool is_void(const Side &first, const Side &second)
{
    return first == second || first.identifier == 0 || second.identifier == 0;
}

/// Companions count only as a pair.
void drop_single_companion(Side &first, Side &second)
{
    if (first.companion == 0 || second.companion == 0)
        first.companion = second.companion = 0;
}

template <auto table>
korvane_status_t get_count(const korvane_cad_t *cad, int32_t identifier, int32_t *count)
{
    if (cad == nullptr || count == nullptr)
        return STATUS_ERROR;
    *count = periodicity_count(*(cad->*table), identifier);
    return STATUS_OK;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_status_t korvane_cad_add_point_periodicity(
    korvane_cad_t *cad, int32_t companion1, int32_t point1, int32_t companion2, int32_t point2)
{
    if (cad == nullptr)
        return STATUS_ERROR;
    Side first{companion1, point1};
    Side second{companion2, point2};
    if (is_void(first, second))
        return STATUS_OK;
    drop_single_companion(first, second);
    return add_periodicity(*cad->point_id_periodicity, {point1, {first.companion, second.companion, point2}},
        {point2, {second.companion, first.companion, point1}});
}

korvane_status_t korvane_cad_add_edge_periodicity(korvane_cad_t *cad, int32_t companion1, int32_t edge1,
    int32_t companion2, int32_t edge2, int32_t orientation)
{
    if (cad == nullptr)
        return STATUS_ERROR;
    Side first{companion1, edge1};
    Side second{companion2, edge2};
    if (is_void(first, second))
        return STATUS_OK;
    drop_single_companion(first, second);
    // Kept on purpose: the orientation is not reversed for the second edge, because only the client knows
    // what it means.
    return add_periodicity(*cad->edge_id_periodicity,
        {edge1, {first.companion, second.companion, edge2, orientation}},
        {edge2, {second.companion, first.companion, edge1, orientation}});
}

korvane_status_t korvane_cad_add_face_periodicity(korvane_cad_t *cad, int32_t face1, int32_t face2)
{
    if (cad == nullptr)
        return STATUS_ERROR;
    if (is_void({0, face1}, {0, face2}))
        return STATUS_OK;
    return add_periodicity(*cad->face_id_periodicity, {face1, {face2}}, {face2, {face1}});
}

korvane_status_t korvane_cad_get_point_id_periodicity_count(
    const korvane_cad_t *cad, int32_t point, int32_t *count)
{
    return get_count<&korvane_cad_t::point_id_periodicity>(cad, point, count);
}

korvane_status_t korvane_cad_get_edge_id_periodicity_count(
    const korvane_cad_t *cad, int32_t edge, int32_t *count)
{
    return get_count<&korvane_cad_t::edge_id_periodicity>(cad, edge, count);
}

korvane_status_t korvane_cad_get_face_id_periodicity_count(
    const korvane_cad_t *cad, int32_t face, int32_t *count)
{
    return get_count<&korvane_cad_t::face_id_periodicity>(cad, face, count);
}

korvane_status_t korvane_cad_get_point_id_periodicity(const korvane_cad_t *cad, int32_t point, int32_t index,
    int32_t *companion1, int32_t *companion2, int32_t *other_point)
{
    if (cad == nullptr || companion1 == nullptr || companion2 == nullptr || other_point == nullptr)
        return STATUS_ERROR;
    const auto *record = find_periodicity(*cad->point_id_periodicity, point, index);
    if (record == nullptr) {
        *other_point = 0;
        return STATUS_ERROR;
    }
    *companion1 = (*record)[0];
    *companion2 = (*record)[1];
    *other_point = (*record)[2];
    return STATUS_OK;
}

korvane_status_t korvane_cad_get_edge_id_periodicity(const korvane_cad_t *cad, int32_t edge, int32_t index,
    int32_t *companion1, int32_t *companion2, int32_t *other_edge, int32_t *orientation)
{
    if (cad == nullptr || companion1 == nullptr || companion2 == nullptr || other_edge == nullptr ||
        orientation == nullptr)
        return STATUS_ERROR;
    const auto *record = find_periodicity(*cad->edge_id_periodicity, edge, index);
    if (record == nullptr) {
        *other_edge = 0;
        *orientation = 0;
        return STATUS_ERROR;
    }
    *companion1 = (*record)[0];
    *companion2 = (*record)[1];
    *other_edge = (*record)[2];
    *orientation = (*record)[3];
    return STATUS_OK;
}

korvane_status_t korvane_cad_get_face_id_periodicity(
    const korvane_cad_t *cad, int32_t face, int32_t index, int32_t *other_face)
{
    if (cad == nullptr || other_face == nullptr)
        return STATUS_ERROR;
    const auto *record = find_periodicity(*cad->face_id_periodicity, face, index);
    *other_face = record == nullptr ? 0 : (*record)[0];
    return record == nullptr ? STATUS_ERROR : STATUS_OK;
}

} // extern "C"
