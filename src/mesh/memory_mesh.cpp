// Creation of a mesh that is served by a storage record of its own.
#include "mesh/memory_mesh.h"

using namespace korvane;

extern "C" {

korvane_mesh_t *korvane_mesh_new_in_memory(korvane_context_t *context)
{
    Owned<korvane_mesh_t> mesh = create_owned<korvane_mesh_t>();
    Owned<Storage> owned_storage = create_owned<Storage>();
    if (!mesh || !owned_storage)
        return nullptr;
    Storage *storage = owned_storage.release();
    mesh->context = context;
    MeshSlots::for_each([&]<auto slot>() {
        (*mesh).*slot = {Stored<slot>::get, Stored<slot>::set, storage};
    });
    mesh->data_release = release_storage;
    mesh->data_release_user_data = storage;
    return attach_to_context(std::move(mesh));
}

} // extern "C"
