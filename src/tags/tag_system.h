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
