// What the tests of sets of keys have in common: random keys, the bucket of a key the slow way, and the
// chains of a set.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <random>
#include <vector>

namespace korvane::testing {

/// Random integers, of which most are small and some are as large as can be.
class Integers {
  public:
    static constexpr int32_t extremes[] = {INT32_MIN, INT32_MIN + 1, INT32_MAX, INT32_MAX - 1, 1 << 30};

    /// From -bound to bound, or an extreme one.
    int32_t operator()(int32_t bound)
    {
        if (engine() % 8 == 0)
            return extremes[engine() % std::size(extremes)];
        return static_cast<int32_t>(engine() % static_cast<uint32_t>(2 * bound + 1)) - bound;
    }

  private:
    std::mt19937 engine{20110803};
};

/// A tuple of random integers.
template <class Key>
Key random_key(Integers &integers, int32_t bound)
{
    Key key;
    for (int32_t &integer : key)
        integer = integers(bound);
    return key;
}

/// The absolute value of the sum in 32 bits, as a remainder.
template <class Key>
std::size_t naive_bucket(const Key &key, std::size_t bucket_count)
{
    int64_t sum = 0;
    for (const int32_t integer : key)
        sum += integer;
    sum %= int64_t{1} << 32;
    if (sum > INT32_MAX)
        sum -= int64_t{1} << 32;
    if (sum < INT32_MIN)
        sum += int64_t{1} << 32;
    return static_cast<std::size_t>(std::abs(sum)) % bucket_count;
}

/// All identifiers of a major set, bucket by bucket and along each bucket's chain.
template <class Set>
std::vector<int32_t> identifiers_by_bucket(const Set &set)
{
    std::vector<int32_t> identifiers;
    for (const int32_t head : set.buckets)
        for (int32_t identifier = head; identifier != 0; identifier = set.next(identifier))
            identifiers.push_back(identifier);
    return identifiers;
}

} // namespace korvane::testing
