// A hint to the processor that an address will be read soon. It does nothing where the compiler has no such
// hint.
#pragma once

namespace korvane {

inline void prefetch([[maybe_unused]] const void *address)
{
#if defined(__GNUC__)
    __builtin_prefetch(address);
#endif
}

} // namespace korvane
