// The storage of an in-memory mesh: one block of attributes per kind of entity.
//
// Invariants: an attribute holds width values for each of the `size` elements that it was last sized for, and
// no array when that is 0; every value of it is either written or zero, unless a reader is filling it. The
// count of a kind is whatever was set, and tells nothing about the arrays: they are fitted to it on writing,
// and elements between size and count read as zeros. Cost: one reallocation per attribute and change of the
// count; reading is two comparisons and a copy.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

#include <korvane.h>

#include "common/array.h"
#include "common/try.h"
#include "mesh/extra_vertices.h"

namespace korvane {

/// The values of one attribute, `width` per element.
template <class Value, int width, class Size = int32_t>
class Attribute {
  public:
    using value_type = Value;
    static constexpr int values_per_element = width;

    /// Copies element `index`, from 1; zeros if the array ends below it.
    void read(int32_t index, Value *element) const
    {
        const std::uint64_t position = position_of(index);
        if (position < values.size())
            copy_element(values.data() + position, element);
        else
            std::fill_n(element, width, Value{});
    }

    /// The same for `count` elements from `first` on.
    void read_block(int32_t first, int32_t count, Value *elements) const
    {
        const std::uint64_t position = position_of(first);
        const std::uint64_t wanted = static_cast<std::uint64_t>(count) * width;
        const std::uint64_t held = position < values.size() ? std::min(wanted, values.size() - position) : 0;
        if (held > 0)
            std::copy_n(values.data() + position, held, elements);
        std::fill_n(elements + held, wanted - held, Value{});
    }

    /// Copies the elements of these indices, in order, and zeros for those outside 1..count. An `Element` is
    /// anything that holds the values of one element.
    template <class Element>
    void read_each(std::span<const int32_t> indices, int32_t count, Element *elements) const
    {
        static_assert(std::is_trivially_copyable_v<Element> && sizeof(Element) == width * sizeof(Value));
        const std::uint64_t held =
            std::min(static_cast<std::uint64_t>(std::max(count, 0)), std::uint64_t{values.size() / width});
        for (const int32_t index : indices) {
            const std::uint64_t before = std::uint64_t{static_cast<std::uint32_t>(index)} - 1;
            if (before < held) [[likely]]
                std::memcpy(elements, values.data() + before * width, sizeof(Element));
            else
                *elements = Element{};
            ++elements;
        }
    }

    /// Fits the array to `count` elements and copies into element `index`. STATUS_ERROR for an index outside
    /// 1..count, STATUS_NOMEM if memory runs out.
    [[nodiscard]] korvane_status_t write(int32_t count, int32_t index, const Value *element)
    {
        if (size != static_cast<Size>(count))
            TRY(fit(count));
        if (index < 1 || index > count)
            return STATUS_ERROR;
        copy_element(element, values.data() + position_of(index));
        return STATUS_OK;
    }

    /**
     * For readers that fill the array themselves: gives its first value after fitting it to `count` elements,
     * or null if memory runs out, the array then being as before, or if `count` is below 1. Elements above
     * the old size are not initialised; all must be written, or cut off with `truncate`, before anything else
     * reads the mesh. The count of the kind plays no part: elements up to it that the array lacks read as
     * zeros.
     */
    [[nodiscard]] Value *try_open(int32_t count);

    /// Drops the elements above `count`.
    void truncate(int32_t count);

  private:
    /// With memcpy, which compilers expand for any fixed size, as they do not with copies that may overlap.
    static void copy_element(const Value *source, Value *target)
    {
        std::memcpy(target, source, sizeof(Value) * width);
    }

    static constexpr std::uint64_t position_of(int32_t index)
    {
        return static_cast<std::uint64_t>(index - 1) * width;
    }

    /// Makes room for exactly `count` elements; new ones are zero. A negative count is refused.
    [[nodiscard]] korvane_status_t fit(int32_t count);

    Array<Value> values;
    Size size = 0;
};

struct korvane_mesh_storage_t {
    int32_t vertex_count = 0;
    // Kept on purpose: the size of this one is a double, because the layout says so
    Attribute<double, 3, double> coordinates;
    Attribute<int32_t, 1> vertex_tags;
    Attribute<int32_t, 1> vertex_periodic_ids;
    Attribute<int32_t, 1> vertex_required_status;

    int32_t edge_count = 0;
    Attribute<int32_t, 2> edge_vertices;
    Attribute<int32_t, 1> edge_tags;
    Attribute<int32_t, 1> edge_periodic_ids;
    Attribute<int32_t, 1> edge_required_status;
    ExtraVertices edge_extra_vertices;

    int32_t triangle_count = 0;
    Attribute<int32_t, 3> triangle_vertices;
    Attribute<int32_t, 1> triangle_tags;
    Attribute<int32_t, 1> triangle_periodic_ids;
    Attribute<int32_t, 1> triangle_required_status;
    ExtraVertices triangle_extra_vertices;

    int32_t quadrangle_count = 0;
    Attribute<int32_t, 4> quadrangle_vertices;
    Attribute<int32_t, 1> quadrangle_tags;
    Attribute<int32_t, 1> quadrangle_periodic_ids;
    Attribute<int32_t, 1> quadrangle_required_status;
    ExtraVertices quadrangle_extra_vertices;

    int32_t tetrahedron_count = 0;
    Attribute<int32_t, 4> tetrahedron_vertices;
    Attribute<int32_t, 1> tetrahedron_tags;
    Attribute<int32_t, 1> tetrahedron_required_status;
    ExtraVertices tetrahedron_extra_vertices;

    int32_t hexahedron_count = 0;
    Attribute<int32_t, 8> hexahedron_vertices;
    Attribute<int32_t, 1> hexahedron_tags;
    Attribute<int32_t, 1> hexahedron_required_status;

    int32_t pyramid_count = 0;
    Attribute<int32_t, 5> pyramid_vertices;
    Attribute<int32_t, 1> pyramid_tags;
    Attribute<int32_t, 1> pyramid_required_status;
};

/// Frees a storage record and all it holds; the `data_release` of its mesh.
void release_storage(void *storage);

} // namespace korvane
