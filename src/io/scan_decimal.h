// A decimal that ends at a blank, all digits at once.
//
// Its characters are read so that the last of them are the last of 16; those before the point are read one
// place further on, over the point. What remains are 16 digits with zeros in front.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "io/scan_number.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace korvane {

/// What stands between two blanks, at least one character.
struct Token {
    const char *text;
    const char *point; // the first, or `end`
    const char *end;
};

#if defined(__SSE2__)

namespace scan_detail {

/// The 16 bytes from position i on have all bits of the last i set.
alignas(64) inline constexpr std::uint8_t bytes_to_keep[16 + max_power] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255,
    255, 255, 255};

inline __m128i last_bytes(std::ptrdiff_t count)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes_to_keep + count));
}

/// The digits of characters, zeros where the mask is zero. False if other characters are among them.
[[nodiscard]] inline bool take_digits(__m128i characters, __m128i mask, __m128i &digits)
{
    digits = _mm_and_si128(_mm_sub_epi8(characters, _mm_set1_epi8('0')), mask);
    const __m128i excess = _mm_subs_epu8(digits, _mm_set1_epi8(9));
    return _mm_movemask_epi8(_mm_cmpeq_epi8(excess, _mm_setzero_si128())) == 0xFFFF;
}

/// The four numbers of four digits that 16 are, in order.
inline __m128i join_fours(__m128i digits)
{
    const __m128i first = _mm_and_si128(digits, _mm_set1_epi16(0xFF));
    const __m128i pairs =
        _mm_add_epi16(_mm_mullo_epi16(first, _mm_set1_epi16(10)), _mm_srli_epi16(digits, 8));
    return _mm_madd_epi16(pairs, _mm_set1_epi32(1 << 16 | 100));
}

/// The numbers of eight digits that twice 16 are, in order.
inline __m128i join_eights(__m128i fours, __m128i other_fours)
{
    return _mm_madd_epi16(_mm_packs_epi32(fours, other_fours), _mm_set1_epi32(1 << 16 | 10'000));
}

} // namespace scan_detail

namespace scan_detail {

/// The last `digit_count` digits, 1 to 16, before `end`, `fraction` of them, 0 to 22, behind the point if
/// there is one.
[[nodiscard, gnu::always_inline]] inline bool take_decimal(const char *end, std::ptrdiff_t digit_count,
    bool has_point, std::ptrdiff_t fraction, bool negative, double &value)
{
    const __m128i behind = _mm_loadu_si128(reinterpret_cast<const __m128i *>(end - 16));
    const __m128i before = _mm_loadu_si128(reinterpret_cast<const __m128i *>(end - 17));
    const __m128i is_behind = last_bytes(has_point ? fraction : 16);
    const __m128i characters =
        _mm_or_si128(_mm_and_si128(is_behind, behind), _mm_andnot_si128(is_behind, before));
    __m128i digits;
    if (!take_digits(characters, last_bytes(digit_count), digits)) [[unlikely]]
        return false;
    const __m128i fours = join_fours(digits);
    const auto eights = static_cast<std::uint64_t>(_mm_cvtsi128_si64(join_eights(fours, fours)));
    const std::uint64_t mantissa = (eights & 0xFFFFFFFF) * 100'000'000 + (eights >> 32);
    if (mantissa >> 53 != 0) [[unlikely]]
        return false;
    const double magnitude =
        static_cast<double>(static_cast<std::int64_t>(mantissa)) / exact_powers[fraction];
    value = std::bit_cast<double>(std::bit_cast<std::uint64_t>(magnitude) | std::uint64_t{negative} << 63);
    return true;
}

/// The number of characters behind the point, 0 without one.
[[gnu::always_inline]] inline std::ptrdiff_t fraction_of(Token token)
{
    return token.point != token.end ? token.end - token.point - 1 : 0;
}

/// What has more characters than 16 digits and a point may begin with zeros. `text` is behind the sign.
[[nodiscard, gnu::noinline]] inline bool scan_behind_zeros(
    Token token, const char *text, bool negative, double &value)
{
    const bool has_point = token.point != token.end;
    std::ptrdiff_t digit_count = token.end - text - (has_point ? 1 : 0);
    for (; digit_count > 16; ++text) {
        if (*text != '0' && text != token.point)
            return false;
        digit_count -= *text == '0' ? 1 : 0;
    }
    const std::ptrdiff_t fraction = fraction_of(token);
    return digit_count == 16 && fraction <= max_power &&
           take_decimal(token.end, digit_count, has_point, fraction, negative, value);
}

} // namespace scan_detail

/// Takes up to 16 digits behind zeros, with or without a point and a minus sign. False if the token is
/// something else. 17 characters before the end of the token must be readable.
[[nodiscard, gnu::always_inline]] inline bool scan_short_decimal(Token token, double &value)
{
    using namespace scan_detail;
    const bool negative = *token.text == '-';
    const bool has_point = token.point != token.end;
    const char *const text = token.text + (negative ? 1 : 0);
    // Without a zero just before the point, because 15 digits behind "0.0" are usual.
    const bool begins_with_zero = text[0] == '0' && text[1] == '.';
    const std::ptrdiff_t digit_count = token.end - text - (has_point ? 1 : 0) - (begins_with_zero ? 1 : 0);
    if (static_cast<std::size_t>(digit_count - 1) >= 16) [[unlikely]]
        return scan_behind_zeros(token, text, negative, value);
    return take_decimal(token.end, digit_count, has_point, fraction_of(token), negative, value);
}

namespace scan_detail {

/// The digits of two tokens, in order. False if they are others, or more than 8.
[[nodiscard, gnu::always_inline]] inline bool take_two(Token first, Token second, __m128i &digits)
{
    const auto load = [](const void *bytes) { return _mm_loadl_epi64(static_cast<const __m128i *>(bytes)); };
    const auto load_mask = [&](Token token) { return load(bytes_to_keep + 8 + (token.end - token.text)); };
    if (first.end - first.text > 8 || second.end - second.text > 8) [[unlikely]]
        return false;
    return take_digits(_mm_unpacklo_epi64(load(first.end - 8), load(second.end - 8)),
        _mm_unpacklo_epi64(load_mask(first), load_mask(second)), digits);
}

} // namespace scan_detail

/// Takes four tokens that are integers of up to 8 digits without sign. False if they are others. 8 characters
/// before the ends must be readable.
[[nodiscard, gnu::always_inline]] inline bool scan_four_integers(
    Token first, Token second, Token third, Token fourth, int32_t *values)
{
    using namespace scan_detail;
    __m128i front, back;
    if (!take_two(first, second, front) || !take_two(third, fourth, back)) [[unlikely]]
        return false;
    _mm_storeu_si128(reinterpret_cast<__m128i *>(values), join_eights(join_fours(front), join_fours(back)));
    return true;
}

#else

[[nodiscard]] inline bool scan_four_integers(Token, Token, Token, Token, int32_t *)
{
    return false;
}

[[nodiscard]] inline bool scan_short_decimal(Token, double &)
{
    return false;
}

#endif

/// As scan_usual, sooner; false if the token is not a number as a whole.
[[nodiscard, gnu::always_inline]] inline bool scan_token(Token token, double &value)
{
    return scan_short_decimal(token, value) || scan_usual(token.text, value) == token.end;
}

[[nodiscard, gnu::always_inline]] inline bool scan_token(Token token, float &value)
{
    double close = 0;
    return scan_token(token, close) && round_again(close, value);
}

/// 8 characters before the end of the token must be readable.
[[nodiscard, gnu::always_inline]] inline bool scan_token(Token token, int32_t &value)
{
    const auto length = static_cast<std::size_t>(token.end - token.text);
    if (length > 8) [[unlikely]]
        return scan_usual(token.text, value) == token.end;
    const std::uint64_t unused = ~(~std::uint64_t{0} << (64 - 8 * length));
    const std::uint64_t characters = (load_characters(token.end - 8) & ~unused) | (to_characters(0) & unused);
    if (mark_others(characters) != 0) [[unlikely]]
        return scan_usual(token.text, value) == token.end;
    value = static_cast<int32_t>(join_digits(to_digits(characters)));
    return true;
}

} // namespace korvane
