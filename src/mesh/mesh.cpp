// The life of a mesh, and what it holds besides its slots.
//
// A mesh owns its tag system and, through data_release, the storage that serves it. It is complete before it
// is attached to its context, so that the context can release it at any time.
#include "mesh/mesh.h"

namespace korvane {

namespace {

/// What korvane_mesh_delete does but for the detaching; the context calls it for meshes still attached.
void release_mesh(void *object)
{
    Owned<korvane_mesh_t> mesh(static_cast<korvane_mesh_t *>(object));
    if (mesh->data_release != nullptr && mesh->data_release_user_data != nullptr)
        mesh->data_release(mesh->data_release_user_data);
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

} // extern "C"
