// Where in 64 characters blanks (space, tab, line feed, vertical tab, form feed, carriage return) and points
// stand, as bits: bit i tells of the character at text + i.
#pragma once

#include <bit>
#include <cstdint>

#include "io/decimal_digits.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace korvane {

inline bool is_blank(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

/// For any machine: `mark` sets the high bit of the bytes of a word that it looks for, and no other bit.
template <class Mark>
std::uint64_t portable_mask(const char *text, Mark mark)
{
    constexpr std::uint64_t gather = 0x0102040810204080; // bit 0 of every byte to the highest byte
    std::uint64_t mask = 0;
    for (int i = 0; i < 64; i += 8)
        mask |= (((mark(load_characters(text + i)) >> 7) * gather) >> 56) << i;
    return mask;
}

namespace mask_detail {

constexpr std::uint64_t each = 0x0101010101010101;
constexpr std::uint64_t high = each * 0x80;

/// The high bit of every byte that is another character, whose own high bit is 0; by additions that never
/// carry from one byte to the next.
constexpr std::uint64_t is_not(std::uint64_t low, char character)
{
    return (low ^ (each * static_cast<unsigned char>(character))) + each * 0x7F;
}

} // namespace mask_detail

inline std::uint64_t portable_blank_mask(const char *text)
{
    using namespace mask_detail;
    return portable_mask(text, [](std::uint64_t characters) {
        const std::uint64_t low = characters & ~high;
        const std::uint64_t tab_or_above = low + each * (0x80 - '\t');
        const std::uint64_t above_return = low + each * (0x80 - ('\r' + 1));
        return (~is_not(low, ' ') | (tab_or_above & ~above_return)) & ~characters & high;
    });
}

inline std::uint64_t portable_point_mask(const char *text)
{
    using namespace mask_detail;
    return portable_mask(
        text, [](std::uint64_t characters) { return ~is_not(characters & ~high, '.') & ~characters & high; });
}

#if defined(__SSE2__)

/// `mark` sets all bits of the characters that it looks for.
template <class Mark>
[[gnu::always_inline]] inline std::uint64_t wide_mask(const char *text, Mark mark)
{
    const auto part = [&](int first) {
        const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text + first));
        return std::uint64_t{static_cast<std::uint32_t>(_mm_movemask_epi8(mark(characters)))} << first;
    };
    return part(0) | part(16) | part(32) | part(48);
}

inline std::uint64_t blank_mask(const char *text)
{
    return wide_mask(text, [](__m128i characters) {
        const __m128i space = _mm_cmpeq_epi8(characters, _mm_set1_epi8(' '));
        const __m128i control = _mm_and_si128(_mm_cmpgt_epi8(characters, _mm_set1_epi8('\t' - 1)),
            _mm_cmplt_epi8(characters, _mm_set1_epi8('\r' + 1)));
        return _mm_or_si128(space, control);
    });
}

inline std::uint64_t point_mask(const char *text)
{
    return wide_mask(text, [](__m128i characters) { return _mm_cmpeq_epi8(characters, _mm_set1_epi8('.')); });
}

#else

inline std::uint64_t blank_mask(const char *text)
{
    return portable_blank_mask(text);
}

inline std::uint64_t point_mask(const char *text)
{
    return portable_point_mask(text);
}

#endif

} // namespace korvane
