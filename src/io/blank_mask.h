// Which of 64 characters are blank (space, tab, line feed, vertical tab, form feed, carriage return), as
// bits.
#pragma once

#include <bit>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#else
#include "io/byte_order.h"
#endif

namespace korvane {

namespace mask_detail {

#if defined(__SSE2__)

inline constexpr int piece = 16;

inline std::uint64_t blank_mask_of_piece(const char *text)
{
    const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text));
    const __m128i spaces = _mm_cmpeq_epi8(characters, _mm_set1_epi8(' '));
    const __m128i controls = _mm_and_si128(_mm_cmpgt_epi8(characters, _mm_set1_epi8('\t' - 1)),
        _mm_cmplt_epi8(characters, _mm_set1_epi8('\r' + 1)));
    return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_or_si128(spaces, controls)));
}

#else

inline constexpr int piece = 8;

/// The high bit of every byte says something of that character; the additions never carry between bytes.
inline std::uint64_t blank_mask_of_piece(const char *text)
{
    constexpr std::uint64_t each = 0x0101010101010101;
    constexpr std::uint64_t high = each * 0x80;
    const auto loaded = load<std::uint64_t>(text);
    const std::uint64_t characters = std::endian::native == std::endian::little ? loaded : reversed(loaded);
    const std::uint64_t low = characters & ~high;
    const std::uint64_t no_space = (low ^ (each * ' ')) + each * 0x7F;
    const std::uint64_t from_tab_on = low + each * (0x80 - '\t');
    const std::uint64_t above_return = low + each * (0x80 - '\r' - 1);
    const std::uint64_t blank = (~no_space | (from_tab_on & ~above_return)) & ~characters & high;
    return ((blank >> 7) * 0x0102040810204080) >> 56;
}

#endif

} // namespace mask_detail

/// Bit i tells of the character at text + i.
inline std::uint64_t blank_mask(const char *text)
{
    std::uint64_t mask = 0;
    for (int i = 0; i < 64; i += mask_detail::piece)
        mask |= mask_detail::blank_mask_of_piece(text + i) << i;
    return mask;
}

} // namespace korvane
