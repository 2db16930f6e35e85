// The tag system record.
#pragma once

#include <korvane.h>

#include "common/memory.h"
#include "tags/tuple_shapes.h"

struct korvane_tag_system_s {
    korvane::Owned<korvane::tag_pair_set_t> definitions; // (tag, base tag); a base tag defines itself
    korvane::Owned<korvane::tag_pair_set_t> memberships; // (base tag, tag), the reverse
    int32_t next_composite_tag = 0;                      // the last number handed out
};

namespace korvane {

// The answers of meshes and CAD models, which may have no tag system (null): then no tag is composite, and
// every tag is its own definition. The outputs are not tested.

/// The composite tags; without a tag system a count of 0 and one 0.
korvane_status_t list_composite_tags(const korvane_tag_system_t *tag_system, int32_t *count, int32_t *list);

/// The base tags of a tag.
korvane_status_t list_definition(
    const korvane_tag_system_t *tag_system, int32_t tag, int32_t *count, int32_t *base_tags);

} // namespace korvane
