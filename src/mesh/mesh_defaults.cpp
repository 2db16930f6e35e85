// The callbacks of a mesh until others are registered: getters that succeed and yield one zero, setters that
// fail.
#include "mesh/mesh.h"

namespace korvane {

namespace {

korvane_status_t get_no_count(int32_t *count, void *)
{
    if (count == nullptr)
        return STATUS_ERROR;
    *count = 0;
    return STATUS_OK;
}

/// Kept on purpose: only the first value is written, because a slot does not know how many it has.
template <class Value>
korvane_status_t get_zero(int32_t, Value *values, void *)
{
    if (values == nullptr)
        return STATUS_ERROR;
    *values = 0;
    return STATUS_OK;
}

korvane_status_t get_no_extra_vertices(int32_t, int32_t *count, int32_t *vertices, void *)
{
    if (*count != 0) // Kept on purpose: a count that is 0 already is not written, because it may be read-only
        *count = 0;
    if (vertices == nullptr)
        return STATUS_ERROR;
    *vertices = 0;
    return STATUS_OK;
}

void install_default(CountSlot &slot)
{
    slot = {get_no_count, refuse, nullptr};
}

void install_default(CoordinatesSlot &slot)
{
    slot = {get_zero, refuse, nullptr};
}

void install_default(ValuesSlot &slot)
{
    slot = {get_zero, refuse, nullptr};
}

void install_default(ExtraVerticesSlot &slot)
{
    slot = {get_no_extra_vertices, refuse, nullptr};
}

} // namespace

void install_default_callbacks(korvane_mesh_t &mesh)
{
    MeshSlots::for_each([&]<auto slot>() { install_default(mesh.*slot); });
}

} // namespace korvane
