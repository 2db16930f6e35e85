// Where a face or edge comes from: its original identifiers, alike for both, and its original geometry.
//
// An object without a list has itself as its one original; one with a list has what the list holds.
#include <algorithm>

#include "cad/accessors.h"

namespace korvane {

namespace {

template <class Object>
korvane_status_t add_original_id(Object *object, uint32_t id)
{
    if (object == nullptr)
        return STATUS_ERROR;
    if (!object->original_ids)
        object->original_ids = try_create_id_list();
    return object->original_ids && try_append(*object->original_ids, id) ? STATUS_OK : STATUS_NOMEM;
}

template <class Object>
korvane_status_t get_original_id_count(const Object *object, int32_t *count)
{
    if (object == nullptr || count == nullptr)
        return STATUS_ERROR;
    *count = object->original_ids ? object->original_ids->count : 1;
    return STATUS_OK;
}

template <class Object>
korvane_status_t get_original_id(const Object *object, int32_t index, uint32_t *id)
{
    if (object == nullptr || id == nullptr)
        return STATUS_ERROR;
    // Kept on purpose: within a list the index is held against the places, not against the count, because
    // an index outside 1..count is the caller's error.
    const int32_t last = object->original_ids ? object->original_ids->capacity : 1;
    if (index < 1 || index > last)
        return STATUS_ERROR;
    *id = object->original_ids ? object->original_ids->ids[static_cast<std::size_t>(index - 1)] : object->id;
    return STATUS_OK;
}

template <class Object>
korvane_status_t reset_original_id(Object *object)
{
    if (object == nullptr)
        return STATUS_ERROR;
    if (object->original_ids)
        object->original_ids->count = 0;
    return STATUS_OK;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_status_t korvane_cad_face_add_original_id(korvane_cad_face_t *face, uint32_t id)
{
    return add_original_id(face, id);
}

korvane_status_t korvane_cad_edge_add_original_id(korvane_cad_edge_t *edge, uint32_t id)
{
    return add_original_id(edge, id);
}

korvane_status_t korvane_cad_face_get_original_id_count(const korvane_cad_face_t *face, int32_t *count)
{
    return get_original_id_count(face, count);
}

korvane_status_t korvane_cad_edge_get_original_id_count(const korvane_cad_edge_t *edge, int32_t *count)
{
    return get_original_id_count(edge, count);
}

korvane_status_t korvane_cad_face_get_original_id(const korvane_cad_face_t *face, int32_t index, uint32_t *id)
{
    return get_original_id(face, index, id);
}

korvane_status_t korvane_cad_edge_get_original_id(const korvane_cad_edge_t *edge, int32_t index, uint32_t *id)
{
    return get_original_id(edge, index, id);
}

korvane_status_t korvane_cad_face_reset_original_id(korvane_cad_face_t *face)
{
    return reset_original_id(face);
}

korvane_status_t korvane_cad_edge_reset_original_id(korvane_cad_edge_t *edge)
{
    return reset_original_id(edge);
}

korvane_status_t korvane_cad_face_get_original_geometry(korvane_cad_face_t *face, const double uv[2],
    korvane_cad_face_t **original_face, double original_uv[2], int64_t *aux)
{
    if (face == nullptr)
        return STATUS_ERROR;
    if (face->origin_function != nullptr)
        return face->origin_function(uv, original_face, original_uv, aux, face->surface_user_data);
    put_output(original_face, face);
    if (original_uv != nullptr)
        std::copy_n(uv, 2, original_uv);
    put_output(aux, int64_t{0});
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_get_original_geometry(korvane_cad_edge_t *edge, double t,
    korvane_cad_edge_t **original_edge, double *original_t, double *original_tmin, double *original_tmax)
{
    if (edge == nullptr)
        return STATUS_ERROR;
    if (edge->origin_function != nullptr)
        return edge->origin_function(
            t, original_edge, original_t, original_tmin, original_tmax, edge->curve_user_data);
    put_output(original_edge, edge);
    for (double *output : {original_t, original_tmin, original_tmax})
        put_output(output, t);
    return STATUS_OK;
}

} // extern "C"
