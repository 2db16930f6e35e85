// Size maps: a callback of the client, or of a solution file that was read, with its data.
//
// A size map never touches the object that it is made on but to query or write it, so either may be deleted
// first. The context releases size maps that are left.
#include "io/sizemap.h"

#include "common/memory.h"

namespace korvane {

namespace {

void release_sizemap(void *object)
{
    auto *sizemap = static_cast<korvane_sizemap_t *>(object);
    if (sizemap->delete_function != nullptr && sizemap->user_data != nullptr)
        sizemap->delete_function(sizemap->user_data);
    destroy(sizemap);
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_sizemap_t *korvane_sizemap_new(
    const void *object, int32_t type, korvane_sizemap_function_t function, void *user_data)
{
    if (object == nullptr || function == nullptr)
        return nullptr;
    if (type < 1 || type > 6)
        return nullptr;
    korvane_context_t *context = nullptr;
    korvane_mesh_get_context(static_cast<const korvane_mesh_t *>(object), &context);
    auto *sizemap = create<korvane_sizemap_t>();
    if (sizemap == nullptr)
        return nullptr;
    sizemap->context = context;
    if (type == KORVANE_SIZEMAP_ISO_MESH_VERTEX)
        sizemap->mesh = static_cast<const korvane_mesh_t *>(object);
    else
        sizemap->support_object = object;
    sizemap->type = type;
    sizemap->function = function;
    sizemap->user_data = user_data;
    korvane_context_attach_object(context, sizemap, release_sizemap);
    return sizemap;
}

void korvane_sizemap_delete(korvane_sizemap_t *sizemap)
{
    if (sizemap == nullptr)
        return;
    korvane_context_delete_attached_object(sizemap->context, sizemap);
    release_sizemap(sizemap);
}

korvane_status_t korvane_sizemap_set_delete_function(
    korvane_sizemap_t *sizemap, korvane_user_data_delete_t function)
{
    if (sizemap == nullptr)
        return STATUS_ERROR;
    sizemap->delete_function = function;
    return STATUS_OK;
}

korvane_status_t korvane_sizemap_get_function(
    const korvane_sizemap_t *sizemap, korvane_sizemap_function_t *function)
{
    if (sizemap == nullptr || function == nullptr)
        return STATUS_ERROR;
    *function = sizemap->function;
    return STATUS_OK;
}

korvane_status_t korvane_sizemap_get_user_data(const korvane_sizemap_t *sizemap, void **user_data)
{
    if (sizemap == nullptr || user_data == nullptr)
        return STATUS_ERROR;
    *user_data = sizemap->user_data;
    return STATUS_OK;
}

korvane_status_t korvane_sizemap_get_type(const korvane_sizemap_t *sizemap, int32_t *type)
{
    if (sizemap == nullptr)
        return STATUS_ERROR;
    *type = sizemap->type;
    return STATUS_OK;
}

korvane_status_t korvane_sizemap_iso_mesh_vertex_get_size(
    const korvane_sizemap_t *sizemap, int32_t vertex, double *size)
{
    if (sizemap == nullptr || size == nullptr || sizemap->type != KORVANE_SIZEMAP_ISO_MESH_VERTEX ||
        sizemap->function == nullptr)
        return STATUS_ERROR;
    return sizemap->function(vertex, size, sizemap->user_data);
}

} // extern "C"
