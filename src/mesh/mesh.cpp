// The life of a mesh, and what it holds besides its slots.
//
// A mesh owns its tag system and, through data_release, the storage that serves it. It is complete before it
// is attached to its context, so that the context can release it at any time.
#include "mesh/mesh.h"

#include <algorithm>

#include "tags/tag_system.h"

namespace korvane {

namespace {

/// What korvane_mesh_delete does but for the detaching; the context calls it for meshes still attached.
void release_mesh(void *object)
{
    Owned<korvane_mesh_t> mesh(static_cast<korvane_mesh_t *>(object));
    if (mesh->data_release != nullptr && mesh->data_release_user_data != nullptr)
        mesh->data_release(mesh->data_release_user_data);
    korvane_tag_system_delete(mesh->tag_system);
}

} // namespace

korvane_mesh_t *attach_to_context(Owned<korvane_mesh_t> mesh)
{
    korvane_context_attach_object(mesh->context, mesh.get(), release_mesh);
    return mesh.release();
}

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_mesh_t *korvane_mesh_new(korvane_context_t *context)
{
    if (context == nullptr)
        return nullptr;
    Owned<korvane_mesh_t> mesh = create_owned<korvane_mesh_t>();
    if (!mesh)
        return nullptr;
    mesh->context = context;
    install_default_callbacks(*mesh);
    return attach_to_context(std::move(mesh));
}

void korvane_mesh_delete(korvane_mesh_t *mesh)
{
    if (mesh == nullptr)
        return;
    korvane_context_delete_attached_object(mesh->context, mesh);
    release_mesh(mesh);
}

korvane_status_t korvane_mesh_check_consistency(const korvane_mesh_t *)
{
    return STATUS_OK;
}

korvane_status_t korvane_mesh_set_tag_system(korvane_mesh_t *mesh, korvane_tag_system_t *tag_system)
{
    if (mesh == nullptr)
        return STATUS_ERROR;
    // Kept on purpose: the one set before is not deleted, because the client may still hold it.
    mesh->tag_system = tag_system;
    return STATUS_OK;
}

korvane_status_t korvane_mesh_get_tag_system(const korvane_mesh_t *mesh, korvane_tag_system_t **tag_system)
{
    if (mesh == nullptr)
        return STATUS_ERROR;
    *tag_system = mesh->tag_system;
    return STATUS_OK;
}

korvane_status_t korvane_mesh_get_composite_tag_list(
    const korvane_mesh_t *mesh, int32_t *count, int32_t *list)
{
    if (mesh == nullptr || count == nullptr || list == nullptr)
        return STATUS_ERROR;
    return list_composite_tags(mesh->tag_system, count, list);
}

korvane_status_t korvane_mesh_get_composite_tag_definition(
    const korvane_mesh_t *mesh, int32_t tag, int32_t *count, int32_t *base_tags)
{
    if (mesh == nullptr || count == nullptr || base_tags == nullptr)
        return STATUS_ERROR;
    return list_definition(mesh->tag_system, tag, count, base_tags);
}

void *korvane_mesh_calloc_generic_buffer(const korvane_mesh_t *mesh)
{
    int32_t bytes = 80;
    if (mesh->tag_system != nullptr)
        bytes = std::max(bytes, korvane_tag_system_get_buffer_size(mesh->tag_system));
    return allocate_zeroed(static_cast<std::size_t>(bytes));
}

void korvane_mesh_free_generic_buffer(void *buffer)
{
    free_block(buffer);
}

} // extern "C"
