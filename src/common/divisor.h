// Exact remainders by a divisor that is fixed once and used often: two multiplications instead of a division
// (D. Lemire, O. Kaser, N. Kurz, "Faster remainder by direct computation", 2019).
#pragma once

#include <cstdint>

namespace korvane {

class Divisor {
  public:
    constexpr Divisor() = default;
    /// `divisor` is at least 1.
    explicit constexpr Divisor(uint32_t divisor) : number(divisor), reciprocal(UINT64_MAX / divisor + 1) {}

    /// Exact for every dividend and divisor of 32 bits.
    friend constexpr uint32_t operator%(uint32_t dividend, const Divisor &divisor)
    {
        // The fraction of the quotient, in units of 2^-64; its product with the divisor overflows by the
        // remainder.
        const uint64_t fraction = divisor.reciprocal * dividend;
        const uint64_t low = (fraction & UINT32_MAX) * divisor.number;
        return static_cast<uint32_t>(((fraction >> 32) * divisor.number + (low >> 32)) >> 32);
    }

  private:
    uint32_t number = 1;
    uint64_t reciprocal = 0;
};

} // namespace korvane
