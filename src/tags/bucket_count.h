// A number of buckets, by which many numbers are divided: remainders by two multiplications.
//
// Source: D. Lemire, O. Kaser, N. Kurz, "Faster remainder by direct computation", Software: Practice and
// Experience 49 (2019); exact for all numbers and divisors of 32 bits.
#pragma once

#include <cstdint>

namespace korvane {

class BucketCount {
  public:
    constexpr BucketCount() = default;
    constexpr explicit BucketCount(uint32_t bucket_count)
        : count(bucket_count), reciprocal(UINT64_MAX / bucket_count + 1)
    {}

    constexpr operator uint32_t() const { return count; }

    friend constexpr uint32_t operator%(uint32_t number, BucketCount divisor)
    {
        __extension__ using wide = unsigned __int128;
        const uint64_t fraction = divisor.reciprocal * number; // of 2^64
        return static_cast<uint32_t>((static_cast<wide>(fraction) * divisor.count) >> 64);
    }

  private:
    uint32_t count = 0;
    uint64_t reciprocal = 0;
};

static_assert(UINT32_MAX % BucketCount(1) == 0 && UINT32_MAX % BucketCount(UINT32_MAX) == 0);
static_assert(UINT32_MAX % BucketCount(10) == 5 && 6u % BucketCount(7) == 6);

} // namespace korvane
