// The user data records of derived objects: how they are handed over, and what releases and copies them. Both
// functions are given for records that own nothing.
#pragma once

#include <type_traits>

#include "cad/records.h"
#include "common/memory.h"

namespace korvane {

inline void take_care(Care &care, korvane_user_data_delete_t release, korvane_user_data_clone_t clone)
{
    care.delete_function = release;
    care.clone_function = clone;
    care.library_deletes = true;
    care.library_clones = true;
}

template <class Record>
void release_record(void *user_data)
{
    destroy(static_cast<Record *>(user_data));
}

template <class Record>
void *copy_record(void *user_data)
{
    static_assert(std::is_trivially_copyable_v<Record>);
    auto *copy = create<Record>();
    if (copy != nullptr)
        *copy = *static_cast<const Record *>(user_data);
    return copy;
}

/// Gives an edge the function that evaluates a record, and the record.
template <class Record>
void give_curve(korvane_cad_edge_t &edge, korvane_cad_curve_t evaluate, Owned<Record> record,
    korvane_user_data_delete_t release = release_record<Record>,
    korvane_user_data_clone_t clone = copy_record<Record>)
{
    edge.curve = evaluate;
    edge.curve_user_data = record.release();
    take_care(edge, release, clone);
}

} // namespace korvane
