// Which of the calls of a kind fail on purpose.
#pragma once

#include <cstdint>

namespace korvane::testing {

enum class Failure {
    transient, // only the N-th call fails
    persistent // the N-th and all after it fail
};

/// Counts the calls down to the N-th.
class FailureCountdown {
  public:
    void arm(std::int64_t ordinal, Failure kind)
    {
        left = ordinal;
        failure = kind;
        armed = true;
        met = false;
    }

    /// True if a call was made to fail since `arm`.
    bool disarm()
    {
        armed = false;
        return met;
    }

    /// Whether the call that is made now is to fail.
    bool fails_now()
    {
        if (!armed)
            return false;
        --left;
        const bool fails = left == 0 || (left < 0 && failure == Failure::persistent);
        met = met || fails;
        return fails;
    }

  private:
    std::int64_t left = 0;
    Failure failure = Failure::transient;
    bool armed = false;
    bool met = false;
};

} // namespace korvane::testing
