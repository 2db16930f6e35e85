// Text files of the engine: one pass over the file finds its keywords, one pass per block reads its numbers;
// lines are written number by number into the block of the stream.
#include "io/gmf_text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "io/format_number.h"
#include "io/text_scanner.h"

namespace korvane {

namespace {

/// Goes behind the next occurrence of a keyword; false if there is none.
[[nodiscard]] bool pass_keyword(TextScanner &scanner, int32_t wanted)
{
    int32_t code = 0;
    do {
        code = scanner.next_keyword();
    } while (code != wanted && code != 0);
    return code == wanted;
}

/// Takes values of which the first is not plain; zeros from the first on that is missing. How many it took.
template <bool reals, class Value>
[[nodiscard, gnu::noinline, gnu::cold]] std::size_t take_unplain_values(
    TextScanner &scanner, PlainNumbers<reals> &plain, Value *values, std::size_t count)
{
    std::size_t taken = 0;
    while (taken < count) {
        scanner.resume(plain);
        const bool has_next = scanner.next_number(values[taken]);
        plain = scanner.plain_numbers<reals>(); // what is at hand may have moved, with or without a number
        if (!has_next)
            break;
        ++taken;
        taken += plain.take(values + taken, count - taken);
    }
    std::fill(values + taken, values + count, Value{});
    return taken;
}

/// Takes the next values; zeros from the first on that is missing. How many it took.
template <bool reals, class Value>
[[nodiscard, gnu::always_inline]] inline std::size_t take_values(
    TextScanner &scanner, PlainNumbers<reals> &plain, Value *values, std::size_t count)
{
    const std::size_t taken = plain.take(values, count);
    if (taken == count) [[likely]]
        return count;
    PlainNumbers<reals> rest = plain; // so that the address of the other one is never taken
    const std::size_t more = take_unplain_values(scanner, rest, values + taken, count - taken);
    plain = rest;
    return taken + more;
}

/// As above, of reals that are rounded to the file's precision.
template <class StoredReal>
[[nodiscard]] std::size_t take_reals(
    TextScanner &scanner, PlainNumbers<true> &plain, double *values, std::size_t count)
{
    if constexpr (sizeof(StoredReal) == sizeof(double))
        return take_values(scanner, plain, values, count);
    std::size_t taken = 0;
    for (StoredReal stored = 0; taken < count && take_values(scanner, plain, &stored, 1) == 1; ++taken)
        values[taken] = static_cast<double>(stored);
    std::fill(values + taken, values + count, 0.0);
    return taken;
}

/// Reads lines until they are done or a value is missing. The number of whole lines; the line that follows
/// them has zeros where values are missing.
template <class StoredReal>
[[nodiscard]] int32_t read_lines(FileStream &stream, int32_t line_count, std::span<const GmfInput> columns)
{
    TextScanner scanner(stream);
    PlainNumbers<true> plain = scanner.plain_numbers<true>();
    bool whole = true;
    int32_t line = 0;
    for (; line < line_count && whole; ++line) {
        for (const GmfInput &column : columns) {
            const auto width = static_cast<std::size_t>(column.width);
            const std::size_t begin = static_cast<std::size_t>(line) * width;
            const std::size_t taken =
                column.is_real() ? take_reals<StoredReal>(scanner, plain, column.reals + begin, width)
                                 : take_values(scanner, plain, column.integers + begin, width);
            whole = whole && taken == width;
        }
    }
    scanner.resume(plain);
    return whole ? line : line - 1;
}

/// Copies every `values_per_line`-th group of values to a column.
template <std::size_t width>
void deal(const int32_t *source, std::size_t values_per_line, std::size_t lines, int32_t *target)
{
    for (std::size_t i = 0; i < lines; ++i, source += values_per_line, target += width)
        std::memcpy(target, source, width * sizeof *target);
}

void deal(
    const int32_t *source, std::size_t values_per_line, std::size_t lines, std::size_t width, int32_t *target)
{
    switch (width) { // the usual widths as constants, so that a copy is one or two moves
    case 1:
        return deal<1>(source, values_per_line, lines, target);
    case 2:
        return deal<2>(source, values_per_line, lines, target);
    case 3:
        return deal<3>(source, values_per_line, lines, target);
    case 4:
        return deal<4>(source, values_per_line, lines, target);
    case 8:
        return deal<8>(source, values_per_line, lines, target);
    default:
        for (std::size_t i = 0; i < lines; ++i)
            std::copy_n(source + values_per_line * i, width, target + width * i);
    }
}

/// As above, of lines of integers only, which are taken many lines at a time and then dealt to the columns.
[[nodiscard]] int32_t read_integer_lines(
    FileStream &stream, int32_t line_count, std::span<const GmfInput> columns, std::size_t values_per_line)
{
    TextScanner scanner(stream);
    PlainNumbers<false> plain = scanner.plain_numbers<false>();
    std::array<int32_t, 1024> values;
    const auto wanted = static_cast<std::size_t>(line_count);
    for (std::size_t line = 0; line < wanted;) {
        const std::size_t lines = std::min(values.size() / values_per_line, wanted - line);
        const std::size_t taken = take_values(scanner, plain, values.data(), lines * values_per_line);
        const int32_t *source = values.data();
        for (const GmfInput &column : columns) {
            const auto width = static_cast<std::size_t>(column.width);
            deal(source, values_per_line, lines, width, column.integers + line * width);
            source += width;
        }
        line += taken / values_per_line;
        if (taken < lines * values_per_line) {
            line_count = static_cast<int32_t>(line);
            break;
        }
    }
    scanner.resume(plain);
    return line_count;
}

char *put_integer(char *text, int32_t value, char separator)
{
    text = format_integer(text, value);
    *text++ = separator;
    return text;
}

template <class StoredReal>
char *put_real(char *text, double value)
{
    if constexpr (sizeof(StoredReal) == sizeof(float))
        text = format_float(text, static_cast<float>(value));
    else
        text = format_real(text, value);
    *text++ = ' ';
    return text;
}

template <class StoredReal>
char *put_line(char *text, std::size_t line, std::span<const GmfOutput> columns)
{
    for (const GmfOutput &column : columns) {
        const auto width = static_cast<std::size_t>(column.width);
        if (column.is_real())
            for (const double *value = column.reals + line * width, *end = value + width; value != end;
                 ++value)
                text = put_real<StoredReal>(text, *value);
        else
            for (const int32_t *value = column.integers + line * width, *end = value + width; value != end;
                 ++value)
                text = put_integer(text, *value, ' ');
    }
    *text++ = '\n';
    return text;
}

template <class StoredReal>
void write_lines(FileStream &stream, int32_t line_count, std::span<const GmfOutput> columns)
{
    std::size_t room = number_room;
    for (const GmfOutput &column : columns)
        room += static_cast<std::size_t>(column.width) * number_room;
    for (int32_t line = 0; line < line_count; ++line) {
        char *text = stream.room(room);
        stream.commit(put_line<StoredReal>(text, static_cast<std::size_t>(line), columns));
    }
}

} // namespace

bool read_text_header(gmf_file_t &file)
{
    TextScanner scanner(file.stream);
    return pass_keyword(scanner, gmf_mesh_version_formatted) && scanner.next_number(file.version) &&
           file.version >= 1 && file.version <= 3 && pass_keyword(scanner, gmf_dimension) &&
           scanner.next_number(file.dimension);
}

bool index_text_keywords(gmf_file_t &file)
{
    TextScanner scanner(file.stream);
    while (const int32_t code = scanner.next_keyword()) {
        gmf_keyword_info_t &keyword = file.keyword(code);
        if (!read_counts(gmf_row(code), keyword, [&](int32_t &value) { return scanner.next_number(value); }))
            return false;
        gmf_expand_format(file, code);
        keyword.data_position = scanner.position();
    }
    return true;
}

int32_t held_text_lines(const gmf_file_t &file, const gmf_keyword_info_t &keyword)
{
    // A value takes a character and a separator, which the last one may lack.
    const int64_t values = (file.stream.file_size() - keyword.data_position + 1) / 2;
    const int64_t lines = (values + keyword.values_per_line - 1) / keyword.values_per_line;
    return static_cast<int32_t>(std::min<int64_t>(lines, keyword.line_count));
}

int32_t read_text_lines(gmf_file_t &file, int32_t line_count, std::span<const GmfInput> columns)
{
    std::size_t values_per_line = 0;
    for (const GmfInput &column : columns)
        values_per_line += static_cast<std::size_t>(column.width);
    if (std::none_of(columns.begin(), columns.end(), [](const GmfInput &column) { return column.is_real(); }))
        return read_integer_lines(file.stream, line_count, columns, values_per_line);
    return file.version < 2 ? read_lines<float>(file.stream, line_count, columns)
                            : read_lines<double>(file.stream, line_count, columns);
}

void write_text_header(gmf_file_t &file)
{
    char *text = file.stream.room(4 * number_room);
    text = put_text(text, gmf_row(gmf_mesh_version_formatted).name);
    *text++ = ' ';
    text = put_text(put_integer(text, file.version, '\n'), "\n");
    text = put_text(text, gmf_row(gmf_dimension).name);
    *text++ = ' ';
    file.stream.commit(put_integer(text, file.dimension, '\n'));
}

void write_text_keyword_header(gmf_file_t &file, int32_t code)
{
    const gmf_keyword_info_t &keyword = file.keyword(code);
    char *text = file.stream.room((GMF_MAX_TYPES + 4) * number_room);
    text = put_text(text, "\n");
    text = put_text(text, gmf_row(code).name);
    text = put_text(text, "\n");
    if (keyword.kind != gmf_information_keyword)
        text = put_integer(text, keyword.line_count, '\n');
    if (keyword.kind == gmf_solution_keyword) {
        text = put_integer(text, keyword.type_count, ' ');
        for (int32_t i = 0; i < keyword.type_count; ++i)
            text = put_integer(text, keyword.types[static_cast<std::size_t>(i)], ' ');
        text = put_text(text, "\n\n");
    }
    file.stream.commit(text);
}

void write_text_lines(gmf_file_t &file, int32_t line_count, std::span<const GmfOutput> columns)
{
    if (file.version < 2)
        write_lines<float>(file.stream, line_count, columns);
    else
        write_lines<double>(file.stream, line_count, columns);
}

} // namespace korvane
