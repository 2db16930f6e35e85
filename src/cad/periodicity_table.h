// What is periodic to what, by identifier: under the identifier of a face, edge or point, the records of its
// periodic images.
//
// A table is a tuple set, whose major keys are the identifiers and whose minor keys are the records: one
// template over the shapes of records that there are. So a record is stored once per identifier, and the
// order in which records are listed is that of the buckets of the set, which depends on their values. Cost:
// storing and listing walk the records of one identifier.
#pragma once

#include <cstdint>

#include <korvane.h>

#include "tags/tuple_shapes.h"

namespace korvane {

/// What is stored under an identifier.
template <class Table>
struct PeriodicImage {
    int32_t identifier;
    typename Table::MinorKey record;
};

/// Stores a periodicity in both directions. If memory runs out, the first can be stored without the second.
template <class Table>
[[nodiscard]] korvane_status_t add_periodicity(
    Table &table, const PeriodicImage<Table> &first, const PeriodicImage<Table> &second)
{
    const bool stored = tuple_set_insert(table, {first.identifier}, first.record) != 0 &&
                        tuple_set_insert(table, {second.identifier}, second.record) != 0;
    // Kept on purpose: STATUS_ERROR where STATUS_NOMEM is meant, because a client may rely on it.
    return stored ? STATUS_OK : STATUS_ERROR;
}

/// The number of records under an identifier.
template <class Table>
[[nodiscard]] int32_t periodicity_count(const Table &table, int32_t identifier)
{
    return table.row_length(table.major.find({identifier}));
}

/// A record by its position in the list of an identifier, from 1, or null if the list does not reach there.
template <class Table>
[[nodiscard]] const typename Table::MinorKey *find_periodicity(
    const Table &table, int32_t identifier, int32_t index)
{
    int32_t position = 0;
    for (const int32_t number : table.row(table.major.find({identifier})))
        if (++position == index)
            return &table.minor_keys.key(number);
    return nullptr;
}

} // namespace korvane
