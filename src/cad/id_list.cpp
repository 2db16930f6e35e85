// Original identifiers in the order in which they were added.
//
// Invariants: `ids` holds `capacity` places, those from `count` on zero unless the list was emptied. Cost:
// the list doubles from one place on, so that adding is amortised constant time.
#include "cad/id_list.h"

#include "cad/list_growth.h"

namespace korvane {

Owned<korvane_id_list_t> try_create_id_list()
{
    Owned<korvane_id_list_t> list = create_owned<korvane_id_list_t>();
    if (!list || !list->ids.try_resize_zeroed(1))
        return nullptr;
    list->capacity = 1;
    return list;
}

bool try_append(korvane_id_list_t &list, uint32_t id)
{
    if (!try_make_place(list.ids, list.capacity, list.count))
        return false;
    list.ids[static_cast<std::size_t>(list.count++)] = id;
    return true;
}

Owned<korvane_id_list_t> try_copy(const korvane_id_list_t &list)
{
    Owned<korvane_id_list_t> copy = create_owned<korvane_id_list_t>();
    if (!copy || !try_assign(copy->ids, list.ids.data(), list.ids.size()))
        return nullptr;
    copy->capacity = list.capacity;
    copy->count = list.count;
    return copy;
}

Owned<korvane_id_list_t> try_derive(const korvane_id_list_t *source, uint32_t source_id)
{
    Owned<korvane_id_list_t> list = try_create_id_list();
    if (!list)
        return nullptr;
    if (source == nullptr)
        return try_append(*list, source_id) ? std::move(list) : nullptr;
    for (int32_t i = 0; i < source->count; ++i) {
        if (!try_append(*list, source->ids[static_cast<std::size_t>(i)]))
            return nullptr;
    }
    return list;
}

} // namespace korvane
