// Disjoint sets of the members 1..n, which joins make fewer and larger.
//
// Every member leads, through others of its set, to the lowest one of it. Searches halve the ways that they
// go, so that a join takes nearly constant time on the average (R. E. Tarjan, J. van Leeuwen, "Worst-case
// analysis of set union algorithms", Journal of the ACM 31, 1984). A member costs 4 bytes, which are not
// touched before its first join.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "common/array.h"
#include "common/prefetch.h"

namespace korvane {

class DisjointSets {
  public:
    /// Makes `count` sets of one member each. False if memory runs out.
    [[nodiscard]] bool try_create(std::size_t count)
    {
        Array<int32_t> fresh;
        if (!fresh.try_resize_zeroed(count + 1))
            return false;
        leads_to = std::move(fresh);
        return true;
    }

    /// Makes the sets of two members one; false if they are one already.
    bool join(int32_t a, int32_t b)
    {
        a = lowest(a);
        b = lowest(b);
        if (a == b)
            return false;
        next(std::max(a, b)) = std::min(a, b);
        return true;
    }

    void prefetch_member(int32_t member) const { prefetch(&leads_to[static_cast<std::size_t>(member)]); }

  private:
    [[nodiscard]] int32_t &next(int32_t member) { return leads_to[static_cast<std::size_t>(member)]; }

    [[nodiscard]] int32_t lowest(int32_t member)
    {
        while (next(member) != 0) {
            const int32_t second = next(next(member));
            if (second == 0)
                return next(member);
            next(member) = second;
            member = second;
        }
        return member;
    }

    Array<int32_t> leads_to; // 0 for the lowest of a set
};

} // namespace korvane
