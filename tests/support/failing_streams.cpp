// The wrapped stream functions of the test executables.
#include "support/failing_streams.h"

#include <cstddef>
#include <cstdio>
#include <sys/types.h>

namespace {

using korvane::testing::Manner;
using korvane::testing::StreamCall;
using korvane::testing::StreamFault;

const StreamFault *armed = nullptr;
korvane::testing::FailureCountdown countdown;
std::int64_t open_streams = 0;

bool fails_now(StreamCall call)
{
    return armed != nullptr && armed->call == call && countdown.fails_now();
}

/// How many of the items are read or written by a call that may be made to fail.
std::size_t allowed(StreamCall call, std::size_t count)
{
    if (!fails_now(call))
        return count;
    return armed->manner == Manner::stops_short ? count / 2 : 0;
}

} // namespace

extern "C" {

std::FILE *__real_fopen(const char *name, const char *mode);
int __real_setvbuf(std::FILE *stream, char *buffer, int mode, std::size_t size);
std::size_t __real_fread(void *items, std::size_t size, std::size_t count, std::FILE *stream);
std::size_t __real_fwrite(const void *items, std::size_t size, std::size_t count, std::FILE *stream);
int __real_fseeko(std::FILE *stream, off_t offset, int origin);
off_t __real_ftello(std::FILE *stream);
int __real_fclose(std::FILE *stream);

std::FILE *__wrap_fopen(const char *name, const char *mode);
int __wrap_setvbuf(std::FILE *stream, char *buffer, int mode, std::size_t size);
std::size_t __wrap_fread(void *items, std::size_t size, std::size_t count, std::FILE *stream);
std::size_t __wrap_fwrite(const void *items, std::size_t size, std::size_t count, std::FILE *stream);
int __wrap_fseeko(std::FILE *stream, off_t offset, int origin);
off_t __wrap_ftello(std::FILE *stream);
int __wrap_fclose(std::FILE *stream);

std::FILE *__wrap_fopen(const char *name, const char *mode)
{
    std::FILE *stream = fails_now(StreamCall::open) ? nullptr : __real_fopen(name, mode);
    open_streams += stream != nullptr;
    return stream;
}

int __wrap_setvbuf(std::FILE *stream, char *buffer, int mode, std::size_t size)
{
    return fails_now(StreamCall::set_buffer) ? -1 : __real_setvbuf(stream, buffer, mode, size);
}

std::size_t __wrap_fread(void *items, std::size_t size, std::size_t count, std::FILE *stream)
{
    return __real_fread(items, size, allowed(StreamCall::read, count), stream);
}

std::size_t __wrap_fwrite(const void *items, std::size_t size, std::size_t count, std::FILE *stream)
{
    return __real_fwrite(items, size, allowed(StreamCall::write, count), stream);
}

int __wrap_fseeko(std::FILE *stream, off_t offset, int origin)
{
    return fails_now(StreamCall::seek) ? -1 : __real_fseeko(stream, offset, origin);
}

off_t __wrap_ftello(std::FILE *stream)
{
    return fails_now(StreamCall::tell) ? -1 : __real_ftello(stream);
}

int __wrap_fclose(std::FILE *stream)
{
    --open_streams;
    const int closed = __real_fclose(stream);
    return fails_now(StreamCall::close) ? EOF : closed;
}

} // extern "C"

namespace korvane::testing {

StreamFault::StreamFault(
    StreamCall failing_call, Manner failing_manner, Failure kind, std::int64_t failing_ordinal)
    : call(failing_call), manner(failing_manner), failure(kind), ordinal(failing_ordinal)
{}

StreamFault::~StreamFault()
{
    disarm();
}

void StreamFault::arm()
{
    armed = this;
    countdown.arm(ordinal, failure);
}

bool StreamFault::disarm()
{
    armed = nullptr;
    return countdown.disarm();
}

std::ostream &operator<<(std::ostream &stream, const StreamFault &fault)
{
    constexpr const char *names[] = {"fopen", "setvbuf", "fread", "fwrite", "fseeko", "ftello", "fclose"};
    return stream << names[static_cast<std::size_t>(fault.call)] << " number " << fault.ordinal
                  << (fault.failure == Failure::persistent ? " and all after it" : "")
                  << (fault.manner == Manner::fails ? " failing" : " stopping short");
}

std::int64_t open_stream_count()
{
    return open_streams;
}

void stream_sweep(const std::function<bool(StreamFault &)> &body)
{
    for (const StreamCall call : {StreamCall::open, StreamCall::set_buffer, StreamCall::read,
             StreamCall::write, StreamCall::seek, StreamCall::tell, StreamCall::close}) {
        for (const Manner manner : {Manner::fails, Manner::stops_short}) {
            if (manner == Manner::stops_short && call != StreamCall::read && call != StreamCall::write)
                continue;
            for (const Failure failure : {Failure::transient, Failure::persistent}) {
                bool failed = true;
                for (std::int64_t ordinal = 1; failed; ++ordinal) {
                    StreamFault fault(call, manner, failure, ordinal);
                    failed = body(fault);
                }
            }
        }
    }
}

} // namespace korvane::testing
