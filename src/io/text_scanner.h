// Takes keywords and numbers from text: tokens between blanks, with comments from "#" to the end of the line.
//
// Numbers are converted where they stand in the block of the stream. Where tokens begin is known for 64
// characters at a time, so that one number need not wait for the length of the one before. Passing over data
// looks at 32 characters at a time for a letter or a "#". What is not plain (comments, a token that the end
// of the block cuts, one that is no number as a whole) is left to slower steps that start at a token. Tokens
// and comments may be of any length; of a token longer than a block only the beginning is looked at.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "common/file_stream.h"
#include "io/blank_mask.h"
#include "io/gmf_keywords.h"
#include "io/scan_decimal.h"

namespace korvane {

namespace text_detail {

inline bool is_blank(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

} // namespace text_detail

/// Numbers between blanks, of the usual kinds, as long as nothing else comes. Small enough to be kept in
/// registers: a reader of many numbers works on a copy.
class PlainNumbers {
  public:
    PlainNumbers(const char *from, const char *text_limit) : taken(from), next_window(from), limit(text_limit)
    {}

    /// Takes numbers until there are `count`, or until what follows is not plain or is cut by the limit. How
    /// many it took.
    template <class Value>
    [[nodiscard, gnu::always_inline]] std::size_t take(Value *values, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            if constexpr (std::is_same_v<Value, int32_t>) {
                for (; i + 1 < count && take_two(values + i); i += 2) {
                }
                if (i == count)
                    break;
            }
            while (starts == 0)
                if (!look_on())
                    return i;
            const char *end = scan_token(next_window - width + std::countr_zero(starts), values[i]);
            if (end == nullptr || !text_detail::is_blank(*end)) [[unlikely]]
                return i;
            starts &= starts - 1;
            taken = end;
        }
        return count;
    }

    /// The end of the last number.
    [[nodiscard]] const char *position() const { return taken; }

  private:
    static constexpr int width = 64; // of the window, the characters that one mask tells of

    /// Takes the next two integers, if both stand in the window and are short.
    [[nodiscard, gnu::always_inline]] bool take_two(int32_t *values)
    {
        const std::uint64_t others = starts & (starts - 1);
        const int second = std::countr_zero(others);
        if (others == 0 || blanks >> second == 0)
            return false;
        const int first = std::countr_zero(starts);
        const int lengths[2] = {std::countr_zero(blanks >> first), std::countr_zero(blanks >> second)};
        const char *const window = next_window - width;
        const char *const ends[2] = {window + first + lengths[0], window + second + lengths[1]};
        if (!scan_two_integers(ends, lengths, values)) [[unlikely]]
            return false;
        starts = others & (others - 1);
        taken = ends[1];
        return true;
    }

    /// Looks at the next window; false if the text ends before it.
    [[nodiscard]] bool look_on()
    {
        if (next_window >= limit)
            return false;
        blanks = blank_mask(next_window);
        starts = ~blanks & (blanks << 1 | after_blank);
        after_blank = blanks >> (width - 1);
        next_window += width;
        return true;
    }

    const char *taken;
    const char *next_window; // the window before it is looked at now
    const char *limit;
    std::uint64_t blanks = 0;      // which characters of the window are blank
    std::uint64_t starts = 0;      // which characters of the window begin numbers that were not taken
    std::uint64_t after_blank = 1; // whether a number may begin with the next window
};

/// Starts at the current position of a stream, and leaves the stream behind what it took.
class TextScanner {
  public:
    explicit TextScanner(FileStream &scanned) : stream(scanned), cursor(stream.cursor), limit(stream.limit) {}
    TextScanner(const TextScanner &) = delete;
    TextScanner &operator=(const TextScanner &) = delete;
    ~TextScanner() { stream.cursor = cursor; }

    /// The next number; false at the end of the file or at a token that is none, which is not passed over.
    template <class Value>
    [[nodiscard]] bool next_number(Value &value)
    {
        if (!pass_blanks())
            return false;
        const char *token_end = complete_token();
        const char *end = scan_number(cursor, token_end, value);
        if (end == nullptr)
            return false;
        cursor = end;
        if (cursor == limit || !scan_detail::is_sign(*cursor))
            pass_token();
        return true;
    }

    /// The plain numbers at hand from here on. `resume` goes behind those that were taken.
    [[nodiscard]] PlainNumbers plain_numbers() const { return {cursor, limit}; }
    void resume(const PlainNumbers &numbers) { cursor = numbers.position(); }

    /// The code of the next token that is a keyword; 0 at the end of the file.
    [[nodiscard]] int32_t next_keyword()
    {
        int32_t code = 0;
        while (code == 0 && pass_to_word()) {
            const char *end = complete_token();
            code = gmf_find_keyword(std::string_view(cursor, static_cast<std::size_t>(end - cursor)));
            pass_token();
        }
        return code;
    }

    [[nodiscard]] int64_t position()
    {
        stream.cursor = cursor;
        return stream.reading_position();
    }

  private:
    static bool ends_token(char character) { return text_detail::is_blank(character) || character == '#'; }

    static bool is_letter(char character)
    {
        const char lower = static_cast<char>(character | 0x20);
        return lower >= 'a' && lower <= 'z';
    }

    /// The first character that is a letter or a "#".
    static const char *find_letter_or_comment(const char *text, const char *limit)
    {
        constexpr std::ptrdiff_t stride = 32;
        while (text != limit) {
            while (limit - text >= stride && !may_hold_letter_or_comment<stride>(text))
                text += stride;
            const char *end = text + std::min(stride, limit - text);
            text = std::find_if(text, end, [](char c) { return is_letter(c) || c == '#'; });
            if (text != end)
                break;
        }
        return text;
    }

    template <std::ptrdiff_t stride>
    static bool may_hold_letter_or_comment(const char *text)
    {
        constexpr unsigned char letter_bit = 0x40;
        unsigned char found = 0;
        for (std::ptrdiff_t i = 0; i < stride; ++i)
            found |= static_cast<unsigned char>(text[i] == '#' ? letter_bit : text[i] & letter_bit);
        return found != 0;
    }

    [[nodiscard]] bool fetch()
    {
        stream.cursor = cursor;
        const bool fetched = stream.fetch();
        cursor = stream.cursor;
        limit = stream.limit;
        return fetched;
    }

    /// Goes to the next token; false at the end of the file.
    [[nodiscard]] bool pass_blanks()
    {
        for (;;) {
            while (text_detail::is_blank(*cursor))
                ++cursor;
            if (cursor != limit && *cursor != '#') [[likely]]
                return true;
            if (cursor != limit)
                pass_comment();
            else if (!fetch())
                return false;
        }
    }

    void pass_comment()
    {
        do {
            cursor = std::find(cursor, limit, '\n');
        } while (cursor == limit && fetch());
    }

    void pass_token()
    {
        do {
            cursor = std::find_if(cursor, limit, ends_token);
        } while (cursor == limit && fetch());
    }

    /// Goes to the next token that begins with a letter; false at the end of the file.
    [[nodiscard]] bool pass_to_word()
    {
        bool begins_token = true; // what stands at the cursor
        for (;;) {
            const char *found = find_letter_or_comment(cursor, limit);
            if (found != cursor)
                begins_token = ends_token(found[-1]);
            cursor = found;
            if (cursor == limit) {
                if (!fetch())
                    return false;
            } else if (*cursor == '#') {
                pass_comment();
            } else if (begins_token) {
                return true;
            } else {
                ++cursor;
            }
        }
    }

    /// Makes the whole token at the cursor stand in the block, as far as it has room, and gives its end.
    [[nodiscard]] const char *complete_token()
    {
        const char *end = std::find_if(cursor, limit, ends_token);
        while (end == limit) {
            const std::ptrdiff_t length = end - cursor;
            if (!fetch())
                return limit;
            end = std::find_if(cursor + length, limit, ends_token);
        }
        return end;
    }

    FileStream &stream;
    const char *cursor;
    const char *limit;
};

} // namespace korvane
