// Reading meshes in hot loops, with exactly the results and side effects of the accessors.
//
// The first argument of every template is a slot as a pointer to member, such as
// `fetch<&korvane_mesh_s::triangle_vertices>(mesh, index, vertices)`. A slot whose getter is that of the
// in-memory storage is read without the indirect call: the getter is known then, and the compiler expands it
// in place. Nothing is kept from one call to the next, so clients may replace callbacks, set counts and write
// to the mesh between calls, also from within their own callbacks. The mesh must not be null.
//
// Cost for an in-memory slot: a few predictable comparisons and the copy, once per element or per block.
#pragma once

#include <array>
#include <bit>
#include <span>

#include "mesh/memory_mesh.h"

namespace korvane {

/// True if all these slots are read from the in-memory storage, so that reading them runs no client code.
template <auto... slots>
bool are_stored(const korvane_mesh_t *mesh)
{
    return (((mesh->*slots).get == Stored<slots>::get) && ...);
}

/// Calls the getter of a slot with the arguments of its accessor: `count` for counts, `index, values` for
/// coordinates and values, `index, count, vertices` for extra vertices.
template <auto slot, class... Arguments>
inline korvane_status_t fetch(const korvane_mesh_t *mesh, Arguments... arguments)
{
    const auto &source = mesh->*slot;
    if (are_stored<slot>(mesh)) [[likely]]
        return Stored<slot>::get(arguments..., source.user_data);
    return source.get(arguments..., source.user_data);
}

/// Fetches the elements of these indices, in order, and drops the statuses: what a getter does not write is
/// zero, be it a whole element or part of one. An `Element` is anything that holds the values of one.
template <auto slot, class Element>
inline void fetch_each(const korvane_mesh_t *mesh, std::span<const int32_t> indices, Element *elements)
{
    using Values = std::array<typename Stored<slot>::value_type, Stored<slot>::values_per_element>;
    if (are_stored<slot>(mesh)) [[likely]] {
        Stored<slot>::get_each(indices, elements, (mesh->*slot).user_data);
        return;
    }
    for (const int32_t index : indices) {
        Values values{};
        fetch<slot>(mesh, index, values.data());
        *elements++ = std::bit_cast<Element>(values);
    }
}

/**
 * Fetches `count` elements from `first` on, in this order, into the consecutive elements of `values`, up to
 * the first that fails; first + count - 1 must not exceed INT32_MAX. As with single elements, what a getter
 * does not write stays as it was: that holds for the elements after a failing one, and for the values of any
 * that a getter left out.
 *
 * The calls for one slot come in one run. A client can tell that from its own callbacks, so where the order
 * among several slots matters use blocks only if `are_stored` holds for all of them.
 */
template <auto slot, class Value>
Fetched fetch_block(const korvane_mesh_t *mesh, int32_t first, int32_t count, Value *values)
{
    if (are_stored<slot>(mesh))
        return Stored<slot>::get_block(first, count, values, (mesh->*slot).user_data);
    for (int32_t done = 0; done < count; ++done) {
        const korvane_status_t status = fetch<slot>(mesh, first + done, values);
        if (status != STATUS_OK)
            return {done, status};
        values += Stored<slot>::values_per_element;
    }
    return {count, STATUS_OK};
}

/// As `fetch_block` for elements whose failing is no error: asks for all of them, and makes those that fail
/// zeros.
template <auto slot, class Value>
void fetch_block_or_zeros(const korvane_mesh_t *mesh, int32_t first, int32_t count, Value *values)
{
    constexpr int width = Stored<slot>::values_per_element;
    for (int32_t done = 0; done < count;) {
        const int32_t got = fetch_block<slot>(mesh, first + done, count - done, values).count;
        values += static_cast<std::size_t>(got) * width;
        done += got;
        if (done < count) {
            values = std::fill_n(values, width, Value{});
            ++done;
        }
    }
}

} // namespace korvane
