// The callbacks that serve the slots of an in-memory mesh from its storage, which is their user data.
//
// Every slot has its own pair of functions, so that the address of a getter tells which storage member it
// reads.
#pragma once

#include "mesh/mesh.h"
#include "mesh/storage.h"

namespace korvane {

using Storage = korvane_mesh_storage_t;

/// How many elements of a block were got before one failed, and the status of that one or STATUS_OK.
struct Fetched {
    int32_t count;
    korvane_status_t status;
};

template <int32_t Storage::*count>
struct StoredCount {
    static korvane_status_t get(int32_t *value, void *user_data)
    {
        if (user_data == nullptr)
            return STATUS_ERROR;
        *value = static_cast<const Storage *>(user_data)->*count;
        return STATUS_OK;
    }

    static korvane_status_t set(int32_t value, void *user_data)
    {
        if (user_data == nullptr)
            return STATUS_ERROR;
        static_cast<Storage *>(user_data)->*count = value;
        return STATUS_OK;
    }
};

template <int32_t Storage::*count, auto attribute>
struct StoredAttribute;

template <int32_t Storage::*count, class Value, int width, class Size,
    Attribute<Value, width, Size> Storage::*attribute>
struct StoredAttribute<count, attribute> {
    using value_type = Value;
    static constexpr int values_per_element = width;

    static Attribute<Value, width, Size> &in(void *storage)
    {
        return static_cast<Storage *>(storage)->*attribute;
    }

    static korvane_status_t get(int32_t index, Value *element, void *user_data)
    {
        const auto *storage = static_cast<const Storage *>(user_data);
        if (storage == nullptr || index < 1 || index > storage->*count)
            return STATUS_ERROR;
        (storage->*attribute).read(index, element);
        return STATUS_OK;
    }

    /// What `get` does for `wanted` elements from `first` on, one after the other until one fails.
    static Fetched get_block(int32_t first, int32_t wanted, Value *elements, void *user_data)
    {
        if (wanted < 1)
            return {0, STATUS_OK};
        const auto *storage = static_cast<const Storage *>(user_data);
        if (storage == nullptr || first < 1 || first > storage->*count)
            return {0, STATUS_ERROR};
        const int32_t got = std::min(wanted, storage->*count - (first - 1));
        (storage->*attribute).read_block(first, got, elements);
        return {got, got == wanted ? STATUS_OK : STATUS_ERROR};
    }

    /// The elements of these indices, with zeros where `get` fails.
    template <class Element>
    static void get_each(std::span<const int32_t> indices, Element *elements, void *user_data)
    {
        if (const auto *storage = static_cast<const Storage *>(user_data); storage != nullptr)
            (storage->*attribute).read_each(indices, storage->*count, elements);
        else
            std::fill_n(elements, indices.size(), Element{});
    }

    static korvane_status_t set(int32_t index, const Value *element, void *user_data)
    {
        auto *storage = static_cast<Storage *>(user_data);
        if (storage == nullptr)
            return STATUS_ERROR;
        return (storage->*attribute).write(storage->*count, index, element);
    }
};

template <int32_t Storage::*count, ExtraVertices Storage::*extra_vertices>
struct StoredAttribute<count, extra_vertices> {
    static korvane_status_t get(int32_t index, int32_t *list_count, int32_t *vertices, void *user_data)
    {
        const auto *storage = static_cast<const Storage *>(user_data);
        if (storage == nullptr || index < 1 || index > storage->*count)
            return STATUS_ERROR;
        (storage->*extra_vertices).read(index, list_count, vertices);
        return STATUS_OK;
    }

    static korvane_status_t set(int32_t index, int32_t list_count, const int32_t *vertices, void *user_data)
    {
        auto *storage = static_cast<Storage *>(user_data);
        if (storage == nullptr)
            return STATUS_ERROR;
        return (storage->*extra_vertices).write(storage->*count, index, list_count, vertices);
    }
};

/// `Stored<slot>::get` and `Stored<slot>::set` are the callbacks of a slot, given as a pointer to member.
template <auto slot>
struct Stored;

#define STORED_COUNT(count)                                                                                  \
    template <>                                                                                              \
    struct Stored<&korvane_mesh_s::count> : StoredCount<&Storage::count> {};
#define STORED(slot, count, attribute)                                                                       \
    template <>                                                                                              \
    struct Stored<&korvane_mesh_s::slot> : StoredAttribute<&Storage::count, &Storage::attribute> {};

STORED_COUNT(vertex_count)
STORED(vertex_coordinates, vertex_count, coordinates)
STORED(vertex_tag, vertex_count, vertex_tags)
STORED(vertex_periodic_id, vertex_count, vertex_periodic_ids)
STORED(vertex_required_status, vertex_count, vertex_required_status)

STORED_COUNT(edge_count)
STORED(edge_vertices, edge_count, edge_vertices)
STORED(edge_tag, edge_count, edge_tags)
STORED(edge_periodic_id, edge_count, edge_periodic_ids)
STORED(edge_required_status, edge_count, edge_required_status)
STORED(edge_extra_vertices, edge_count, edge_extra_vertices)

STORED_COUNT(triangle_count)
STORED(triangle_vertices, triangle_count, triangle_vertices)
STORED(triangle_tag, triangle_count, triangle_tags)
STORED(triangle_periodic_id, triangle_count, triangle_periodic_ids)
STORED(triangle_required_status, triangle_count, triangle_required_status)
STORED(triangle_extra_vertices, triangle_count, triangle_extra_vertices)

STORED_COUNT(quadrangle_count)
STORED(quadrangle_vertices, quadrangle_count, quadrangle_vertices)
STORED(quadrangle_tag, quadrangle_count, quadrangle_tags)
STORED(quadrangle_periodic_id, quadrangle_count, quadrangle_periodic_ids)
STORED(quadrangle_required_status, quadrangle_count, quadrangle_required_status)
STORED(quadrangle_extra_vertices, quadrangle_count, quadrangle_extra_vertices)

STORED_COUNT(tetrahedron_count)
STORED(tetrahedron_vertices, tetrahedron_count, tetrahedron_vertices)
STORED(tetrahedron_tag, tetrahedron_count, tetrahedron_tags)
STORED(tetrahedron_required_status, tetrahedron_count, tetrahedron_required_status)
STORED(tetrahedron_extra_vertices, tetrahedron_count, tetrahedron_extra_vertices)

STORED_COUNT(hexahedron_count)
STORED(hexahedron_vertices, hexahedron_count, hexahedron_vertices)
STORED(hexahedron_tag, hexahedron_count, hexahedron_tags)
STORED(hexahedron_required_status, hexahedron_count, hexahedron_required_status)

STORED_COUNT(pyramid_count)
STORED(pyramid_vertices, pyramid_count, pyramid_vertices)
STORED(pyramid_tag, pyramid_count, pyramid_tags)
STORED(pyramid_required_status, pyramid_count, pyramid_required_status)

#undef STORED
#undef STORED_COUNT

/// The attribute that serves a slot, for the readers that fill a mesh of korvane_mesh_new_in_memory which no
/// client has seen yet.
template <auto slot>
auto &stored_attribute(korvane_mesh_t &mesh)
{
    return Stored<slot>::in((mesh.*slot).user_data);
}

} // namespace korvane
