// Numbers between blanks, as long as nothing else comes.
//
// What is looked at is a window of 64 characters: bits tell where its numbers begin and end, so that one
// number need not wait for the length of the one before. A window ends with its last blank; what a number has
// of it behind that opens the next window, where it stands whole.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "io/scan_decimal.h"
#include "io/text_masks.h"

namespace korvane {

/// Integers alone, or any numbers. Small enough to be kept in registers: a reader of many numbers works on a
/// copy.
template <bool reals>
class PlainNumbers {
  public:
    PlainNumbers(const char *from, const char *text_limit)
        : taken(from), window(from), next_window(from), limit(text_limit)
    {}

    /// Takes numbers until there are `count`, or until what follows is not plain or is cut by the limit. How
    /// many it took. 64 characters from the limit on must be readable, and no blanks, and 16 before the text.
    template <class Value>
    [[nodiscard, gnu::always_inline]] std::size_t take(Value *values, std::size_t count)
    {
        static_assert(reals || std::is_same_v<Value, int32_t>);
        for (std::size_t i = 0; i < count; ++i) {
            if constexpr (std::is_same_v<Value, int32_t>) {
                while (count - i >= 4 && take_four(values + i))
                    i += 4;
                if (i == count)
                    break;
            }
            while (starts == 0)
                if (!look_on())
                    return i;
            if (!take_one(values[i])) [[unlikely]]
                return i;
        }
        return count;
    }

    /// The end of the last number.
    [[nodiscard]] const char *position() const { return taken; }

  private:
    static constexpr int width = 64; // of the window

    template <class Value>
    [[nodiscard, gnu::always_inline]] bool take_one(Value &value)
    {
        const Token token = token_at(starts, ends);
        if (!scan_token(token, value)) [[unlikely]]
            return false;
        starts = without_first(starts);
        ends = without_first(ends);
        taken = token.end;
        return true;
    }

    /// Takes the next four integers, if all stand in the window and are short.
    [[nodiscard, gnu::always_inline]] bool take_four(int32_t *values)
    {
        const std::uint64_t starts_2 = without_first(starts), starts_3 = without_first(starts_2),
                            starts_4 = without_first(starts_3);
        if (starts_4 == 0)
            return false;
        const std::uint64_t ends_2 = without_first(ends), ends_3 = without_first(ends_2),
                            ends_4 = without_first(ends_3);
        const Token fourth = token_at(starts_4, ends_4);
        if (!scan_four_integers(token_at(starts, ends), token_at(starts_2, ends_2),
                token_at(starts_3, ends_3), fourth, values)) [[unlikely]]
            return false;
        starts = without_first(starts_4);
        ends = without_first(ends_4);
        taken = fourth.end;
        return true;
    }

    /// The token of the first start and end.
    [[nodiscard, gnu::always_inline]] Token token_at(std::uint64_t all_starts, std::uint64_t all_ends) const
    {
        const char *const end = window + first_of(all_ends);
        const std::uint64_t from_start = 0 - (all_starts & (0 - all_starts));
        return {window + first_of(all_starts), reals ? window + first_of(ends_and_points & from_start) : end,
            end};
    }

    /// The number of the lowest bit, of which there is one.
    [[gnu::always_inline]] static std::ptrdiff_t first_of(std::uint64_t bits)
    {
        return __builtin_ctzll(bits);
    }

    /// Without the lowest bit, if there is one.
    [[gnu::always_inline]] static std::uint64_t without_first(std::uint64_t bits)
    {
        return bits & (bits - 1);
    }

    /// Looks at the next window; false if the text ends before it, or if it has no blank.
    [[nodiscard, gnu::always_inline]] bool look_on()
    {
        if (next_window >= limit)
            return false;
        window = next_window;
        const std::uint64_t blanks = blank_mask(window);
        if (blanks == 0) [[unlikely]]
            return false;
        const int last_blank = width - 1 - std::countl_zero(blanks);
        const std::uint64_t after_blanks = blanks << 1 | 1;
        starts = ~blanks & after_blanks & ((std::uint64_t{1} << last_blank) - 1);
        ends = blanks & ~after_blanks;
        if constexpr (reals)
            ends_and_points = ends | point_mask(window);
        next_window += last_blank + 1;
        return true;
    }

    const char *taken;
    const char *window; // begins behind a blank
    const char *next_window;
    const char *limit;
    // What stands in the window:
    std::uint64_t starts = 0; // the first characters of the numbers that were not taken
    std::uint64_t ends = 0;   // the blanks behind these numbers
    std::uint64_t ends_and_points = 0;
};

} // namespace korvane
