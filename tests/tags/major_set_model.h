// The shapes of major sets that are tested, and what they promise.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tags/keys_support.h"
#include "tags/major_set.h"

namespace korvane::testing {

using Singles = tuple_major_set_t<ordered_key<1>>;
using Doubles = tuple_major_set_t<ordered_key<2>>;
using Pairs = tuple_major_set_t<unordered_pair>;

/// What a major set promises, written the slow way.
template <class Set>
class Model {
  public:
    using value_type = typename Set::value_type;

    Model(int32_t bucket_count, int32_t capacity)
        : chains(static_cast<std::size_t>(bucket_count)), room(capacity)
    {}

    int32_t insert(const value_type &key)
    {
        if (const auto known = numbers.find(canonical(key)); known != numbers.end())
            return known->second;
        if (std::ssize(keys) == room)
            room += std::max(room / 17, 21);
        keys.push_back(key);
        const auto number = static_cast<int32_t>(keys.size());
        chains[naive_bucket(key, chains.size())].push_back(number);
        return numbers[canonical(key)] = number;
    }

    void expect_same(const Set &set) const
    {
        ASSERT_EQ(set.count, std::ssize(keys));
        EXPECT_EQ(set.capacity, room);
        std::vector<int32_t> expected;
        for (const std::vector<int32_t> &chain : chains)
            expected.insert(expected.end(), chain.begin(), chain.end());
        EXPECT_EQ(identifiers_by_bucket(set), expected);
        for (int32_t number = 1; number <= set.count; ++number) {
            EXPECT_EQ(set.key(number), keys[static_cast<std::size_t>(number - 1)]);
            EXPECT_EQ(set.find(set.key(number)), number);
        }
    }

  private:
    static value_type canonical(value_type key)
    {
        if constexpr (std::is_same_v<Set, Pairs>) {
            if (key[0] > key[1])
                std::swap(key[0], key[1]);
        }
        return key;
    }

    std::map<value_type, int32_t> numbers;
    std::vector<value_type> keys;
    std::vector<std::vector<int32_t>> chains;
    int32_t room;
};

} // namespace korvane::testing
