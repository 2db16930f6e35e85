// Makes allocations of the library fail on purpose, and counts them and what is released. Only the library's
// own allocations are concerned: those of the tests go through operator new.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "support/failure.h"

namespace korvane::testing {

/// The failure of the N-th allocation between `arm` and `disarm`.
class AllocationFault {
  public:
    AllocationFault(std::int64_t failing_ordinal, Failure kind);
    ~AllocationFault();
    AllocationFault(const AllocationFault &) = delete;
    AllocationFault &operator=(const AllocationFault &) = delete;

    void arm();
    /// True if an allocation was made to fail since `arm`.
    bool disarm();

  private:
    std::int64_t ordinal;
    Failure failure;
};

/// While it lives, allocations of more bytes fail.
class AllocationLimit {
  public:
    explicit AllocationLimit(std::size_t bytes);
    ~AllocationLimit();
    AllocationLimit(const AllocationLimit &) = delete;
    AllocationLimit &operator=(const AllocationLimit &) = delete;

    /// The bytes of the first allocation that failed, or 0.
    [[nodiscard]] std::size_t refused() const;
};

/// The number of allocations that the library asked for since the start of the process.
std::int64_t allocation_count();

/// The bytes that those allocations asked for; what was released is not taken off.
std::int64_t allocated_bytes();

/// The number of blocks that were allocated and not released since. What it was before and what it is after
/// tells what stayed; blocks that one side alone saw, because the C library allocated or released them, count
/// on that side only.
std::int64_t live_block_count();

/**
 * Runs `body` with faults of ordinal 1, 2, ... until no allocation failed, once transient and once
 * persistent. `body` makes ready what it needs, arms the fault around the call under test, disarms it, and
 * checks; it can do so several times.
 */
void oom_sweep(const std::function<void(AllocationFault &fault)> &body);

} // namespace korvane::testing
