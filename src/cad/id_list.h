// The list of the original identifiers of a face or edge.
#pragma once

#include <cstdint>

#include "common/array.h"
#include "common/memory.h"

struct korvane_id_list_t {
    int32_t capacity;
    int32_t count;
    korvane::Array<uint32_t> ids; // in the order added; unused places are zero
};

namespace korvane {

/// An empty list with room for one identifier, or null.
[[nodiscard]] Owned<korvane_id_list_t> try_create_id_list();

/// False, without change, if memory runs out.
[[nodiscard]] bool try_append(korvane_id_list_t &list, uint32_t id);

/// A list of the same capacity and identifiers, or null.
[[nodiscard]] Owned<korvane_id_list_t> try_copy(const korvane_id_list_t &list);

/// The list of an object that is derived from one with the list `source` (null for none) and the identifier
/// `source_id`, or null if memory runs out.
[[nodiscard]] Owned<korvane_id_list_t> try_derive(const korvane_id_list_t *source, uint32_t source_id);

} // namespace korvane
