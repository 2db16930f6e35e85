#include "tags/bucket_count.h"

#include <random>

#include <gtest/gtest.h>

namespace korvane::testing {
namespace {

TEST(BucketCount, GivesTheRemainder)
{
    std::mt19937 random(1);
    const auto expect = [](uint32_t number, uint32_t count) {
        ASSERT_EQ(number % BucketCount(count), number % count) << number << " % " << count;
    };
    for (int i = 0; i < 500'000; ++i) {
        const auto number = static_cast<uint32_t>(random() >> (random() % 32));
        const auto count = static_cast<uint32_t>(random() >> (random() % 31)) | 1u << (random() % 32);
        ASSERT_NO_FATAL_FAILURE(expect(number, count));
        ASSERT_NO_FATAL_FAILURE(expect(UINT32_MAX - number, count));
        for (uint32_t near = 0; near < 3; ++near) // around multiples
            ASSERT_NO_FATAL_FAILURE(expect(number / count * count + near - 1, count));
    }
    for (const uint32_t number : {0u, 1u, 1u << 31, UINT32_MAX})
        for (const uint32_t count : {1u, 2u, 3u, 1u << 31, UINT32_MAX - 1, UINT32_MAX})
            expect(number, count);
}

} // namespace
} // namespace korvane::testing
