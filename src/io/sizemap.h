// The record of a size map.
#pragma once

#include <cstddef>
#include <type_traits>

#include <korvane.h>

struct korvane_sizemap_s {
    korvane_context_t *context; // first, as in all objects of a context
    const korvane_mesh_t *mesh; // of type KORVANE_SIZEMAP_ISO_MESH_VERTEX
    const void *support_object; // of all other types
    int32_t type;
    korvane_sizemap_function_t function;
    void *user_data;
    korvane_user_data_delete_t delete_function; // of the user data; may be null
};

namespace korvane {

static_assert(std::is_standard_layout_v<korvane_sizemap_s>);
static_assert(offsetof(korvane_sizemap_s, context) == 0);

} // namespace korvane
