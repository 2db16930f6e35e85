// A slot of a mesh: the two callbacks that read and write one attribute, and the user data that both receive.
#pragma once

#include <korvane.h>

namespace korvane {

template <class Getter, class Setter>
struct Slot {
    Getter get;
    Setter set;
    void *user_data;
};

using CountSlot = Slot<korvane_mesh_count_getter_t, korvane_mesh_count_setter_t>;
using CoordinatesSlot = Slot<korvane_mesh_coordinates_getter_t, korvane_mesh_coordinates_setter_t>;
using ValuesSlot = Slot<korvane_mesh_values_getter_t, korvane_mesh_values_setter_t>;
using ExtraVerticesSlot = Slot<korvane_mesh_extra_vertices_getter_t, korvane_mesh_extra_vertices_setter_t>;

/// A callback of any signature that does nothing but fail.
template <class... Arguments>
korvane_status_t refuse(Arguments...)
{
    return STATUS_ERROR;
}

} // namespace korvane
