// The extra vertices of the elements of one kind: a list of vertex indices per element.
#pragma once

#include <cstdint>

#include <korvane.h>

#include "common/array.h"

namespace korvane {

/**
 * The lists live in two arrays that share one size: a block of indices, or null, and a count per element.
 *
 * Kept on purpose: the count of a list is stored and given back whole while only its remainder by 1000 says
 * how many indices are stored, because clients keep more than a number in it.
 */
class ExtraVertices {
  public:
    ExtraVertices() = default;
    ExtraVertices(const ExtraVertices &) = delete;
    ExtraVertices &operator=(const ExtraVertices &) = delete;
    ~ExtraVertices();

    /// Stores the list of element `index` after fitting the arrays to `element_count` elements. STATUS_ERROR
    /// for an index outside 1..element_count, STATUS_NOMEM if memory runs out: if it is for the list, the
    /// element is left with a count of 0.
    [[nodiscard]] korvane_status_t write(
        int32_t element_count, int32_t index, int32_t count, const int32_t *vertices);

    /// Gives the list of element `index`, from 1; an element above the arrays has a count of 0.
    void read(int32_t index, int32_t *count, int32_t *vertices) const;

  private:
    [[nodiscard]] korvane_status_t fit(int32_t element_count);
    [[nodiscard]] bool try_grow(std::size_t element_count);
    [[nodiscard]] bool try_shrink(std::size_t element_count);

    Array<int32_t *> lists; // never shorter than `counts`; null above its size
    Array<int32_t> counts;  // its size is that of the storage
};

} // namespace korvane
