// The shapes of the tuple sets and of the one-level sets, named by their use.
#pragma once

#include "tags/major_set.h"
#include "tags/tuple_set.h"

namespace korvane {

/// (tag, base tag) and the reverse.
using tag_pair_set_t = tuple_set_t<1, 1>;

/// Under the identifier of a face, edge or point, its periodic images: (other face), (companion 1, companion
/// 2, other edge, orientation), (companion 1, companion 2, other point).
using face_periodicity_set_t = tuple_set_t<1, 1>;
using edge_periodicity_set_t = tuple_set_t<1, 4>;
using point_periodicity_set_t = tuple_set_t<1, 3>;

/// The edges of elements, by their vertices in either order.
using vertex_pair_set_t = tuple_major_set_t<unordered_pair>;

} // namespace korvane
