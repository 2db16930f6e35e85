// A decimal that ends at a blank, all digits at once.
//
// Its characters are read so that the last of them are the last of 16; those before the point are read one
// place further on, over the point. What remains are 16 digits with zeros in front.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

#include "io/scan_number.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace korvane {

#if defined(__SSE2__)

namespace scan_detail {

/// Bit i tells whether the character at text + i is below "!", that is, may end a token, or is a point.
struct TokenMarks {
    std::uint32_t ends;
    std::uint32_t points;
};

inline TokenMarks mark_token(const char *text)
{
    TokenMarks marks{};
    for (int i = 0; i < 32; i += 16) {
        const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text + i));
        const __m128i ends = _mm_cmplt_epi8(characters, _mm_set1_epi8('!'));
        const __m128i points = _mm_cmpeq_epi8(characters, _mm_set1_epi8('.'));
        marks.ends |= static_cast<std::uint32_t>(_mm_movemask_epi8(ends)) << i;
        marks.points |= static_cast<std::uint32_t>(_mm_movemask_epi8(points)) << i;
    }
    return marks;
}

/// The 16 bytes from position i on have all bits of the last i set.
alignas(16) inline constexpr std::uint8_t bytes_to_keep[32] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255};

inline __m128i last_bytes(int count)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes_to_keep + count));
}

/// True if the first `count` characters are zeros, but for the point.
inline bool are_zeros(const char *text, int count, int point)
{
    for (int i = 0; i < count; ++i)
        if (text[i] != '0' && i != point)
            return false;
    return true;
}

/// The digits of characters, zeros where the mask is zero. False if other characters are among them.
[[nodiscard]] inline bool take_digits(__m128i characters, __m128i mask, __m128i &digits)
{
    digits = _mm_and_si128(_mm_sub_epi8(characters, _mm_set1_epi8('0')), mask);
    const __m128i excess = _mm_subs_epu8(digits, _mm_set1_epi8(9));
    return _mm_movemask_epi8(_mm_cmpeq_epi8(excess, _mm_setzero_si128())) == 0xFFFF;
}

/// The two numbers of eight digits that 16 are, the first of them in the first byte.
inline __m128i join_digits(__m128i digits)
{
    const __m128i first = _mm_and_si128(digits, _mm_set1_epi16(0xFF));
    const __m128i pairs =
        _mm_add_epi16(_mm_mullo_epi16(first, _mm_set1_epi16(10)), _mm_srli_epi16(digits, 8));
    const __m128i fours = _mm_madd_epi16(pairs, _mm_set1_epi32(1 << 16 | 100));
    return _mm_madd_epi16(_mm_packs_epi32(fours, fours), _mm_set1_epi32(1 << 16 | 10'000));
}

} // namespace scan_detail

/// Takes up to 16 digits behind zeros, with or without a point and a minus sign, and gives where they end, at
/// a character that may be a blank; or null. 16 characters before the text and 48 after its begin must be
/// readable.
[[nodiscard]] inline const char *scan_short_decimal(const char *text, double &value)
{
    using namespace scan_detail;
    const bool negative = *text == '-';
    text += negative ? 1 : 0;
    const TokenMarks marks = mark_token(text);
    const int length = std::countr_zero(marks.ends);
    const int point = std::countr_zero(marks.points);
    const bool has_point = point < length;
    const int digit_count = length - (has_point ? 1 : 0);
    const int fraction = has_point ? length - 1 - point : 0;
    if (digit_count < 1 || length == 32 || fraction > max_power) [[unlikely]]
        return nullptr;
    if (digit_count > 16 && !are_zeros(text, digit_count - 16 + (fraction >= 16 ? 1 : 0), point)) [[unlikely]]
        return nullptr;
    const char *end = text + length;
    const __m128i behind = _mm_loadu_si128(reinterpret_cast<const __m128i *>(end - 16));
    const __m128i before = _mm_loadu_si128(reinterpret_cast<const __m128i *>(end - 17));
    const __m128i is_behind = last_bytes(has_point ? std::min(fraction, 16) : 16);
    const __m128i characters =
        _mm_or_si128(_mm_and_si128(is_behind, behind), _mm_andnot_si128(is_behind, before));
    __m128i digits;
    if (!take_digits(characters, last_bytes(std::min(digit_count, 16)), digits)) [[unlikely]]
        return nullptr;
    const auto eights = static_cast<std::uint64_t>(_mm_cvtsi128_si64(join_digits(digits)));
    const std::uint64_t mantissa = (eights & 0xFFFFFFFF) * 100'000'000 + (eights >> 32);
    if (mantissa > std::uint64_t{1} << 53) [[unlikely]]
        return nullptr;
    const double magnitude =
        static_cast<double>(static_cast<std::int64_t>(mantissa)) / exact_powers[fraction];
    value = std::bit_cast<double>(std::bit_cast<std::uint64_t>(magnitude) | std::uint64_t{negative} << 63);
    return end;
}

/// Takes two integers of up to 8 digits without sign that end before `ends`, and have these lengths. False if
/// they are others. 8 characters before the ends must be readable.
[[nodiscard]] inline bool scan_two_integers(const char *const ends[2], const int lengths[2], int32_t *values)
{
    using namespace scan_detail;
    if (lengths[0] > 8 || lengths[1] > 8) [[unlikely]]
        return false;
    const auto load_eight = [](const void *bytes) {
        return _mm_loadl_epi64(static_cast<const __m128i *>(bytes));
    };
    const __m128i characters = _mm_unpacklo_epi64(load_eight(ends[0] - 8), load_eight(ends[1] - 8));
    const __m128i mask = _mm_unpacklo_epi64(
        load_eight(bytes_to_keep + 8 + lengths[0]), load_eight(bytes_to_keep + 8 + lengths[1]));
    __m128i digits;
    if (!take_digits(characters, mask, digits)) [[unlikely]]
        return false;
    _mm_storel_epi64(reinterpret_cast<__m128i *>(values), join_digits(digits));
    return true;
}

#else

[[nodiscard]] inline bool scan_two_integers(const char *const[2], const int[2], int32_t *)
{
    return false;
}

[[nodiscard]] inline const char *scan_short_decimal(const char *, double &)
{
    return nullptr;
}

#endif

/// As scan_usual, sooner. The text must be readable as above.
[[nodiscard]] inline const char *scan_token(const char *text, double &value)
{
    const char *end = scan_short_decimal(text, value);
    return end != nullptr ? end : scan_usual(text, value);
}

[[nodiscard]] inline const char *scan_token(const char *text, float &value)
{
    double close = 0;
    const char *end = scan_token(text, close);
    return end != nullptr && round_again(close, value) ? end : nullptr;
}

[[nodiscard]] inline const char *scan_token(const char *text, int32_t &value)
{
    return scan_usual(text, value);
}

} // namespace korvane
