// Takes keywords and numbers from text: tokens between blanks, with comments from "#" to the end of the line.
// A
// "#" inside of a word is a part of it; behind the digits of a number it begins a comment.
//
// Numbers are converted where they stand in the block of the stream. Passing over data looks at 32 characters
// at a time for a letter or a "#". What is not plain (comments, a token that the end of the block cuts, one
// that is no number as a whole) is left to slower steps that start at a token. Tokens and comments may be of
// any length; of a token longer than a block only the beginning is looked at.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "common/file_stream.h"
#include "io/gmf_keywords.h"
#include "io/plain_numbers.h"

namespace korvane {

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
        const char *token_end = complete_token(ends_number);
        const char *end = scan_number(cursor, token_end, value);
        if (end == nullptr)
            return false;
        cursor = end;
        if (cursor == limit || !scan_detail::is_sign(*cursor))
            pass_token(ends_number);
        return true;
    }

    /// The plain numbers at hand from here on. `resume` goes behind those that were taken.
    template <bool reals>
    [[nodiscard]] PlainNumbers<reals> plain_numbers() const
    {
        return {cursor, limit};
    }

    template <bool reals>
    void resume(const PlainNumbers<reals> &numbers)
    {
        cursor = numbers.position();
    }

    /// The code of the next token that is a keyword; 0 at the end of the file.
    [[nodiscard]] int32_t next_keyword()
    {
        int32_t code = 0;
        while (code == 0 && pass_to_word()) {
            const char *end = complete_token(is_blank);
            code = gmf_find_keyword(std::string_view(cursor, static_cast<std::size_t>(end - cursor)));
            pass_token(is_blank);
        }
        return code;
    }

    [[nodiscard]] int64_t position()
    {
        stream.cursor = cursor;
        return stream.reading_position();
    }

  private:
    static bool ends_number(char character) { return is_blank(character) || character == '#'; }

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
            while (is_blank(*cursor))
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

    void pass_token(bool (*ends_token)(char))
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
                begins_token = is_blank(found[-1]);
            cursor = found;
            if (cursor == limit) {
                if (!fetch())
                    return false;
            } else if (!begins_token) {
                pass_token(is_blank);
            } else if (*cursor == '#') {
                pass_comment();
            } else {
                return true;
            }
        }
    }

    /// Makes the whole token at the cursor stand in the block, as far as it has room, and gives its end.
    [[nodiscard]] const char *complete_token(bool (*ends_token)(char))
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
