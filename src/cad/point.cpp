// Points: free vertices in the list of their face, which owns them. They take no part in counting.
//
// Cost: deleting a point searches the list of its face.
#include <algorithm>

#include "cad/accessors.h"
#include "cad/list_growth.h"
#include "common/memory.h"
#include "common/try.h"

namespace korvane {

namespace {

void take_out(korvane_cad_face_t &face, const korvane_cad_point_t *point)
{
    korvane_cad_point_t **end = face.points.begin() + face.point_count;
    korvane_cad_point_t **place = std::find(face.points.begin(), end, point);
    if (place == end)
        return;
    *place = end[-1];
    --face.point_count;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_cad_point_t *korvane_cad_point_new(korvane_cad_face_t *face, uint32_t id, const double uv[2])
{
    if (face == nullptr || !try_make_place(face->points, face->point_capacity, face->point_count))
        return nullptr;
    auto *point = create<korvane_cad_point_t>();
    if (point == nullptr)
        return nullptr;
    *point = {face, uv[0], uv[1], id, 0};
    face->points[static_cast<std::size_t>(face->point_count++)] = point;
    return point;
}

void korvane_cad_point_delete(korvane_cad_point_t *point)
{
    if (point != nullptr && point->face != nullptr)
        take_out(*point->face, point);
    destroy(point);
}

korvane_status_t korvane_cad_point_get_uv(const korvane_cad_point_t *point, double uv[2])
{
    if (point == nullptr)
        return STATUS_ERROR;
    uv[0] = point->u;
    uv[1] = point->v;
    return STATUS_OK;
}

korvane_status_t korvane_cad_point_get_id(const korvane_cad_point_t *point, uint32_t *id)
{
    return get_field(point, &korvane_cad_point_t::id, id);
}

korvane_status_t korvane_cad_point_get_tag(const korvane_cad_point_t *point, uint32_t *tag)
{
    return get_field(point, &korvane_cad_point_t::tag, tag);
}

korvane_status_t korvane_cad_point_set_tag(korvane_cad_point_t *point, uint32_t tag)
{
    TRY(set_field(point, &korvane_cad_point_t::tag, tag));
    note_in_model(point->face, CAD_USE_VTAG);
    return STATUS_OK;
}

} // extern "C"
