// The wrapped allocation functions of the test executables.
#include "support/failing_allocations.h"

#include <cstddef>
#include <cstdint>

namespace {

std::int64_t total = 0;
std::int64_t total_bytes = 0;
std::int64_t live = 0;
korvane::testing::FailureCountdown countdown;
bool met_in_body = false; // a failure since the start of a sweep's body, which can arm several times

std::size_t limit = SIZE_MAX; // bytes of one allocation
std::size_t refused_bytes = 0;

bool exceeds_limit(std::size_t size)
{
    if (size <= limit)
        return false;
    if (refused_bytes == 0)
        refused_bytes = size;
    return true;
}

bool fails_now(std::size_t size)
{
    ++total;
    total_bytes += static_cast<std::int64_t>(size);
    if (exceeds_limit(size))
        return true;
    const bool fails = countdown.fails_now();
    met_in_body = met_in_body || fails;
    return fails;
}

void *counted(void *fresh)
{
    live += fresh != nullptr;
    return fresh;
}

} // namespace

extern "C" {

void *__real_malloc(std::size_t size);
void *__real_calloc(std::size_t count, std::size_t size);
void *__real_realloc(void *block, std::size_t size);
void __real_free(void *block);
void *__wrap_malloc(std::size_t size);
void *__wrap_calloc(std::size_t count, std::size_t size);
void *__wrap_realloc(void *block, std::size_t size);
void __wrap_free(void *block);

__attribute__((visibility("default"))) const char *__lsan_default_suppressions();

/// The C library keeps a text when a test sets a locale from a folder of its own.
const char *__lsan_default_suppressions()
{
    return "leak:__argz_add_sep\n";
}

void *__wrap_malloc(std::size_t size)
{
    return fails_now(size) ? nullptr : counted(__real_malloc(size));
}

void *__wrap_calloc(std::size_t count, std::size_t size)
{
    return fails_now(count * size) ? nullptr : counted(__real_calloc(count, size));
}

void *__wrap_realloc(void *block, std::size_t size)
{
    if (fails_now(size))
        return nullptr;
    void *resized = __real_realloc(block, size);
    return block == nullptr ? counted(resized) : resized;
}

void __wrap_free(void *block)
{
    live -= block != nullptr;
    __real_free(block);
}

} // extern "C"

namespace korvane::testing {

AllocationFault::AllocationFault(std::int64_t failing_ordinal, Failure kind)
    : ordinal(failing_ordinal), failure(kind)
{}

AllocationFault::~AllocationFault()
{
    disarm();
}

void AllocationFault::arm()
{
    countdown.arm(ordinal, failure);
}

bool AllocationFault::disarm()
{
    return countdown.disarm();
}

AllocationLimit::AllocationLimit(std::size_t bytes)
{
    limit = bytes;
    refused_bytes = 0;
}

AllocationLimit::~AllocationLimit()
{
    limit = SIZE_MAX;
}

std::size_t AllocationLimit::refused() const
{
    return refused_bytes;
}

std::int64_t allocation_count()
{
    return total;
}

std::int64_t allocated_bytes()
{
    return total_bytes;
}

std::int64_t live_block_count()
{
    return live;
}

void oom_sweep(const std::function<void(AllocationFault &)> &body)
{
    for (const Failure failure : {Failure::transient, Failure::persistent}) {
        for (std::int64_t ordinal = 1;; ++ordinal) {
            met_in_body = false;
            AllocationFault fault(ordinal, failure);
            body(fault);
            if (!met_in_body)
                break;
        }
    }
}

} // namespace korvane::testing
