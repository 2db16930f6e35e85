// Adding to the map and taking it down. What can fail comes before the edge is numbered, so that no edge is
// ever without its discretization.
#include "dcad/edge_map.h"

#include <cstddef>

namespace korvane {

EdgeMap::~EdgeMap()
{
    for (int32_t number = 1; number <= edges.count; ++number)
        destroy(values[static_cast<std::size_t>(number)]);
}

bool EdgeMap::try_create(int32_t capacity)
{
    return values.try_resize(static_cast<std::size_t>(capacity) + 1) && edges.try_create(capacity, capacity);
}

korvane_dcad_edge_discretization_t *EdgeMap::find(const korvane_cad_edge_t *edge) const
{
    const int32_t number = edges.find(edge);
    return number == 0 ? nullptr : values[static_cast<std::size_t>(number)];
}

bool EdgeMap::try_make_place()
{
    return edges.count < edges.capacity ||
           values.try_resize(static_cast<std::size_t>(grown_major_capacity(edges.capacity)) + 1);
}

korvane_dcad_edge_discretization_t *EdgeMap::try_add(const korvane_cad_edge_t *edge)
{
    Owned<korvane_dcad_edge_discretization_t> added = create_owned<korvane_dcad_edge_discretization_t>();
    if (!added || !try_make_place())
        return nullptr;
    const int32_t number = edges.insert(edge);
    if (number == 0)
        return nullptr;
    values[static_cast<std::size_t>(number)] = added.release();
    return values[static_cast<std::size_t>(number)];
}

} // namespace korvane
