// The model: a list of faces, flags and what the model owns beside them.
//
// A model is complete before it is attached to its context, so that the context can end it at any time. Its
// counting and its end are the business of lifetime.cpp.
#include "cad/accessors.h"
#include "cad/lifetime.h"

namespace korvane {

namespace {

constexpr int32_t initial_face_capacity = 128;
constexpr int32_t initial_multiple_periodicity_capacity = 10;
constexpr int32_t initial_generic_buffer_size = 35;

/// An empty periodicity table for some identifiers, of three images each and in three buckets each.
template <class Set>
[[nodiscard]] bool try_create(Set *&table, int32_t identifiers)
{
    table = tuple_set_new<Set>(identifiers, identifiers, 3, 3).release();
    return table != nullptr;
}

[[nodiscard]] Owned<korvane_cad_t> try_create_model()
{
    Owned<korvane_cad_t> cad = create_owned<korvane_cad_t>();
    if (!cad || !cad->faces.try_resize_zeroed(initial_face_capacity) ||
        !try_create(cad->face_id_periodicity, 20) || !try_create(cad->edge_id_periodicity, 100) ||
        !try_create(cad->point_id_periodicity, 100) ||
        !cad->face_multiple_periodicities.try_resize_zeroed(initial_multiple_periodicity_capacity) ||
        !cad->edge_multiple_periodicities.try_resize_zeroed(initial_multiple_periodicity_capacity))
        return nullptr;
    cad->face_capacity = initial_face_capacity;
    cad->face_multiple_periodicity_capacity = initial_multiple_periodicity_capacity;
    cad->edge_multiple_periodicity_capacity = initial_multiple_periodicity_capacity;
    cad->generic_buffer_size = initial_generic_buffer_size;
    return cad;
}

} // namespace

} // namespace korvane

using namespace korvane;

korvane_cad_s::~korvane_cad_s()
{
    korvane_tag_system_delete(tag_system);
    tuple_set_delete(face_id_periodicity);
    tuple_set_delete(edge_id_periodicity);
    tuple_set_delete(point_id_periodicity);
    for (MultiplePeriodicity *record : face_multiple_periodicities)
        destroy(record);
    for (MultiplePeriodicity *record : edge_multiple_periodicities)
        destroy(record);
}

extern "C" {

korvane_cad_t *korvane_cad_new(korvane_context_t *context)
{
    if (context == nullptr)
        return nullptr;
    Owned<korvane_cad_t> created = try_create_model();
    if (!created)
        return nullptr;
    created->context = context;
    korvane_cad_t *cad = place(std::move(created));
    korvane_context_attach_object(context, cad, korvane_cad_release);
    return cad;
}

void korvane_cad_delete(korvane_cad_t *cad)
{
    if (cad != nullptr)
        release(*cad);
}

korvane_status_t korvane_cad_get_face_count(const korvane_cad_t *cad, int32_t *count)
{
    return get_field(cad, &korvane_cad_t::face_count, count);
}

korvane_status_t korvane_cad_get_face(const korvane_cad_t *cad, int32_t index, korvane_cad_face_t **face)
{
    if (cad == nullptr)
        return STATUS_ERROR;
    return get_element(cad->faces, cad->face_count, index, face);
}

korvane_status_t korvane_cad_get_use_vtag(const korvane_cad_t *cad, int32_t *flag)
{
    return get_flag(cad, CAD_USE_VTAG, flag);
}

korvane_status_t korvane_cad_get_use_etag(const korvane_cad_t *cad, int32_t *flag)
{
    return get_flag(cad, CAD_USE_ETAG, flag);
}

korvane_status_t korvane_cad_get_use_ftag(const korvane_cad_t *cad, int32_t *flag)
{
    return get_flag(cad, CAD_USE_FTAG, flag);
}

korvane_status_t korvane_cad_set_thread_safety(korvane_cad_t *cad, int32_t flag)
{
    if (cad == nullptr)
        return STATUS_ERROR;
    put_flag(cad->flags, CAD_THREAD_SAFE, flag != 0);
    return STATUS_OK;
}

korvane_status_t korvane_cad_get_thread_safety(const korvane_cad_t *cad, int32_t *flag)
{
    if (flag == nullptr)
        return STATUS_ERROR;
    return get_flag(cad, CAD_THREAD_SAFE, flag);
}

korvane_status_t korvane_cad_merge_edges(korvane_cad_t *, ...)
{
    return STATUS_OK;
}

} // extern "C"
