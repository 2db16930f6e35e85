#include "common/divisor.h"

#include <random>

#include <gtest/gtest.h>

namespace korvane::testing {
namespace {

TEST(Divisor, GivesTheRemainderOfTheDivisionAtTheLimits)
{
    const uint32_t numbers[] = {0, 1, 2, 3, 5, 7, 641, 65535, 65536, 65537, 0x7ffffffe, 0x7fffffff,
        0x80000000, 0x80000001, 0xfffffffe, 0xffffffff};
    for (const uint32_t divisor : numbers) {
        if (divisor == 0)
            continue;
        for (const uint32_t dividend : numbers)
            EXPECT_EQ(dividend % Divisor(divisor), dividend % divisor) << dividend << " by " << divisor;
    }
}

TEST(Divisor, GivesTheRemainderOfTheDivisionOfRandomNumbers)
{
    std::mt19937 engine(9);
    for (int i = 0; i < 100000; ++i) {
        const auto divisor = static_cast<uint32_t>(engine() >> (engine() % 32)) | 1u;
        const auto dividend = static_cast<uint32_t>(engine());
        ASSERT_EQ(dividend % Divisor(divisor), dividend % divisor) << dividend << " by " << divisor;
    }
}

} // namespace
} // namespace korvane::testing
