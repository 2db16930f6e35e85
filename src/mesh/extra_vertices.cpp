// Storage of extra vertices.
//
// Invariants: `lists` is at least as long as `counts`, and null above its size; the list of an element is
// null exactly when its count leaves no remainder above 0. The first makes either array resizable without
// the other: growing starts with the lists, shrinking with the counts, and where that fails nothing that can
// be read has changed. Cost: one allocation per list, and two reallocations when the number of elements
// changed.
#include "mesh/extra_vertices.h"

#include <cstring>
#include <utility>

#include "common/memory.h"
#include "common/try.h"

namespace korvane {

namespace {

/// How many indices are stored for a count: none if not above 0.
int32_t stored_count(int32_t count)
{
    return count % 1000;
}

void release_list(int32_t *&list)
{
    free_block(std::exchange(list, nullptr));
}

} // namespace

ExtraVertices::~ExtraVertices()
{
    for (int32_t *&list : lists)
        release_list(list);
}

korvane_status_t ExtraVertices::write(
    int32_t element_count, int32_t index, int32_t count, const int32_t *vertices)
{
    TRY(fit(element_count));
    if (index < 1 || index > element_count)
        return STATUS_ERROR;
    const auto element = static_cast<std::size_t>(index - 1);
    release_list(lists[element]);
    counts[element] = 0;
    if (const int32_t stored = stored_count(count); stored > 0) {
        const std::size_t bytes = static_cast<std::size_t>(stored) * sizeof(int32_t);
        void *list = allocate_zeroed(bytes);
        if (list == nullptr)
            return STATUS_NOMEM;
        std::memcpy(list, vertices, bytes);
        lists[element] = static_cast<int32_t *>(list);
    }
    counts[element] = count;
    return STATUS_OK;
}

void ExtraVertices::read(int32_t index, int32_t *count, int32_t *vertices) const
{
    const auto element = static_cast<std::size_t>(index - 1);
    if (element >= counts.size()) {
        *count = 0;
        return;
    }
    *count = counts[element];
    if (const int32_t stored = stored_count(counts[element]); stored > 0)
        std::memcpy(vertices, lists[element], static_cast<std::size_t>(stored) * sizeof(int32_t));
}

korvane_status_t ExtraVertices::fit(int32_t element_count)
{
    if (element_count < 0)
        return STATUS_ERROR;
    const auto size = static_cast<std::size_t>(element_count);
    const bool fits = size < counts.size() ? try_shrink(size) : try_grow(size);
    return fits ? STATUS_OK : STATUS_NOMEM;
}

bool ExtraVertices::try_grow(std::size_t element_count)
{
    if (lists.size() < element_count && !lists.try_resize_zeroed(element_count))
        return false;
    return counts.try_resize_zeroed(element_count);
}

bool ExtraVertices::try_shrink(std::size_t element_count)
{
    if (!counts.try_resize(element_count))
        return false;
    for (std::size_t element = element_count; element < lists.size(); ++element)
        release_list(lists[element]);
    static_cast<void>(lists.try_resize(element_count)); // else it stays too long, and null there
    return true;
}

} // namespace korvane
