// Which of 64 characters are blank (space, tab, line feed, vertical tab, form feed, carriage return), as
// bits.
#pragma once

#include <bit>
#include <cstdint>

#include "io/decimal_digits.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace korvane {

/// Bit i tells of the character at text + i. For any machine: the high bit of every byte of a word comes to
/// say something of that character, by additions that never carry from one byte to the next.
inline std::uint64_t portable_blank_mask(const char *text)
{
    constexpr std::uint64_t each = 0x0101010101010101;
    constexpr std::uint64_t high = each * 0x80;
    constexpr std::uint64_t gather = 0x0102040810204080; // bit 0 of every byte to the highest byte
    std::uint64_t mask = 0;
    for (int i = 0; i < 64; i += 8) {
        const std::uint64_t characters = load_characters(text + i);
        const std::uint64_t low = characters & ~high;
        const std::uint64_t no_space = (low ^ (each * ' ')) + each * 0x7F;
        const std::uint64_t tab_or_above = low + each * (0x80 - '\t');
        const std::uint64_t above_return = low + each * (0x80 - ('\r' + 1));
        const std::uint64_t blank = (~no_space | (tab_or_above & ~above_return)) & ~characters & high;
        mask |= (((blank >> 7) * gather) >> 56) << i;
    }
    return mask;
}

#if defined(__SSE2__)

inline std::uint64_t blank_mask(const char *text)
{
    std::uint64_t mask = 0;
    for (int i = 0; i < 64; i += 16) {
        const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text + i));
        const __m128i space = _mm_cmpeq_epi8(characters, _mm_set1_epi8(' '));
        const __m128i control = _mm_and_si128(_mm_cmpgt_epi8(characters, _mm_set1_epi8('\t' - 1)),
            _mm_cmplt_epi8(characters, _mm_set1_epi8('\r' + 1)));
        const auto blank = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_or_si128(space, control)));
        mask |= std::uint64_t{blank} << i;
    }
    return mask;
}

#else

inline std::uint64_t blank_mask(const char *text)
{
    return portable_blank_mask(text);
}

#endif

} // namespace korvane
