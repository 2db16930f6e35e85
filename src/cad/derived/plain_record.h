// The release and the copy of user data records that own nothing.
#pragma once

#include <type_traits>

#include "common/memory.h"

namespace korvane {

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

} // namespace korvane
