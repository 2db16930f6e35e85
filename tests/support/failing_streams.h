// Makes operations on streams of the library fail on purpose, and counts the streams that are open. Only the
// library's own streams are concerned: those of the tests are of the C++ library.
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>

#include "support/failure.h"

namespace korvane::testing {

enum class StreamCall { open, set_buffer, read, write, seek, tell, close };

enum class Manner {
    fails,      // without having done anything; but closing, which closes the stream
    stops_short // reads or writes the first half
};

/// The failure of the N-th call of a kind between `arm` and `disarm`.
class StreamFault {
  public:
    StreamFault(StreamCall failing_call, Manner failing_manner, Failure kind, std::int64_t failing_ordinal);
    ~StreamFault();
    StreamFault(const StreamFault &) = delete;
    StreamFault &operator=(const StreamFault &) = delete;

    void arm();
    /// True if a call was made to fail since `arm`.
    bool disarm();

    const StreamCall call;
    const Manner manner;
    const Failure failure;
    const std::int64_t ordinal;
};

std::ostream &operator<<(std::ostream &stream, const StreamFault &fault);

/// The number of streams that the library has open.
std::int64_t open_stream_count();

/**
 * Runs `body` with faults of every kind of call in every manner that it has, transient and persistent, of
 * ordinal 1, 2, ... until no call failed. `body` arms the fault once, around the call under test, and gives
 * what `disarm` gave.
 */
void stream_sweep(const std::function<bool(StreamFault &fault)> &body);

} // namespace korvane::testing
