// Binary files of the engine: words of 32 bits in either byte order, blocks chained by their positions.
//
// The chain may lead back, but not so often as in a circle. Lines are converted column by column while
// many of them stand in the block of the stream, straight into the arrays of the caller. Positions are 32
// bits with sign: whatever would end beyond them is refused before it is written. Cost: one copy per value.
#include "io/gmf_binary.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <type_traits>

#include "io/byte_order.h"

namespace korvane {

namespace {

constexpr int32_t own_order = 1;
constexpr int32_t opposite_order = 0x01000000;
constexpr std::size_t word_bytes = sizeof(int32_t);

/// Reads one integer; false, and 0, if the file ends before it does.
[[nodiscard]] bool read_integer(gmf_file_t &file, int32_t &value)
{
    const bool whole = file.stream.read(&value, word_bytes) == word_bytes;
    if (!whole)
        value = 0;
    if (file.has_opposite_byte_order())
        value = load_value<int32_t, true>(&value);
    return whole;
}

void write_integer(gmf_file_t &file, int32_t value)
{
    file.stream.write(&value, word_bytes);
}

/// Calls `body` with a width that the compiler knows, if it is one of the usual ones.
template <class Body>
void with_width(int32_t width, Body body)
{
    switch (width) {
    case 1:
        return body(std::integral_constant<std::size_t, 1>());
    case 2:
        return body(std::integral_constant<std::size_t, 2>());
    case 3:
        return body(std::integral_constant<std::size_t, 3>());
    case 4:
        return body(std::integral_constant<std::size_t, 4>());
    case 5:
        return body(std::integral_constant<std::size_t, 5>());
    case 8:
        return body(std::integral_constant<std::size_t, 8>());
    default:
        return body(static_cast<std::size_t>(width));
    }
}

/// Copies the values of a column out of lines of `stride` bytes.
template <class Stored, bool opposite, class Value>
void take_values(const char *source, std::size_t stride, std::size_t line_count, int32_t width, Value *values)
{
    with_width(width, [=](auto known_width) mutable {
        for (std::size_t line = 0; line < line_count; ++line, source += stride, values += known_width)
            for (std::size_t i = 0; i < known_width; ++i)
                values[i] = static_cast<Value>(load_value<Stored, opposite>(source + i * sizeof(Stored)));
    });
}

/// Copies the values of a column into lines of `stride` bytes.
template <class Stored, class Value>
void put_values(char *target, std::size_t stride, std::size_t line_count, int32_t width, const Value *values)
{
    with_width(width, [=](auto known_width) mutable {
        for (std::size_t line = 0; line < line_count; ++line, target += stride, values += known_width)
            for (std::size_t i = 0; i < known_width; ++i) {
                const auto stored = static_cast<Stored>(values[i]);
                std::memcpy(target + i * sizeof(Stored), &stored, sizeof(Stored));
            }
    });
}

/// Copies lines that stand at `source` into lines `first` and following of the columns.
template <class StoredReal, bool opposite>
void take_lines(const char *source, std::size_t stride, std::size_t first, std::size_t line_count,
    std::span<const GmfInput> columns)
{
    for (const GmfInput &column : columns) {
        const auto width = static_cast<std::size_t>(column.width);
        if (column.is_real()) {
            take_values<StoredReal, opposite>(
                source, stride, line_count, column.width, column.reals + first * width);
            source += width * sizeof(StoredReal);
        } else {
            take_values<int32_t, opposite>(
                source, stride, line_count, column.width, column.integers + first * width);
            source += width * word_bytes;
        }
    }
}

template <class StoredReal>
void put_lines(char *target, std::size_t stride, std::size_t first, std::size_t line_count,
    std::span<const GmfOutput> columns)
{
    for (const GmfOutput &column : columns) {
        const auto width = static_cast<std::size_t>(column.width);
        if (column.is_real()) {
            put_values<StoredReal>(target, stride, line_count, column.width, column.reals + first * width);
            target += width * sizeof(StoredReal);
        } else {
            put_values<int32_t>(target, stride, line_count, column.width, column.integers + first * width);
            target += width * word_bytes;
        }
    }
}

using TakeLines = decltype(&take_lines<double, false>);

TakeLines line_taker(const gmf_file_t &file)
{
    if (file.version < 2)
        return file.has_opposite_byte_order() ? take_lines<float, true> : take_lines<float, false>;
    return file.has_opposite_byte_order() ? take_lines<double, true> : take_lines<double, false>;
}

/// How many of the first `held` bytes of a line make up whole values.
std::size_t whole_values(const gmf_file_t &file, std::span<const GmfInput> columns, std::size_t held)
{
    const std::size_t real_bytes = file.version < 2 ? sizeof(float) : sizeof(double);
    std::size_t whole = 0;
    for (const GmfInput &column : columns) {
        const std::size_t size = column.is_real() ? real_bytes : word_bytes;
        const auto width = static_cast<std::size_t>(column.width);
        const std::size_t count = std::min(width, (held - whole) / size);
        whole += count * size;
        if (count < width)
            break;
    }
    return whole;
}

/// True if a block of the file being written may end there: the next one states that position.
bool can_state(int64_t position)
{
    return position <= std::numeric_limits<int32_t>::max();
}

/// The bytes of a block between its code and its lines.
int64_t header_bytes(const gmf_keyword_info_t &keyword)
{
    constexpr int64_t code_and_position = 2 * word_bytes;
    switch (keyword.kind) {
    case gmf_solution_keyword:
        return code_and_position + int64_t{2 + keyword.type_count} * static_cast<int64_t>(word_bytes);
    case gmf_regular_keyword:
        return code_and_position + static_cast<int64_t>(word_bytes);
    default:
        return code_and_position;
    }
}

/// The state of the walk along the chain of blocks.
enum class Chain { goes_on, ends, is_broken };

/// Reads the header of the block at the current position, and where the next one is.
Chain index_block(gmf_file_t &file, int32_t &next)
{
    int32_t code = 0;
    if (!read_integer(file, code) || !read_integer(file, next))
        return Chain::ends;
    if (next < 0 || next > file.stream.file_size())
        return Chain::is_broken;
    if (gmf_is_code(code)) {
        gmf_keyword_info_t &keyword = file.keyword(code);
        if (!read_counts(gmf_row(code), keyword, [&](int32_t &value) { return read_integer(file, value); }))
            return Chain::is_broken;
        gmf_expand_format(file, code);
        keyword.data_position = file.stream.reading_position();
    }
    return next == 0 || code == gmf_end ? Chain::ends : Chain::goes_on;
}

} // namespace

bool read_binary_header(gmf_file_t &file)
{
    if (file.stream.read(&file.byte_order_code, word_bytes) != word_bytes ||
        (file.byte_order_code != own_order && file.byte_order_code != opposite_order))
        return false;
    int32_t code = 0;
    int32_t next = 0;
    return read_integer(file, file.version) && (file.version == 1 || file.version == 2) &&
           read_integer(file, code) && code == gmf_dimension && read_integer(file, next) &&
           read_integer(file, file.dimension);
}

bool index_binary_keywords(gmf_file_t &file)
{
    // In a file without a circle, blocks that matter are at most one per code.
    int32_t steps_back_left = GMF_MAX_KEYWORDS;
    for (;;) {
        const int64_t block = file.stream.reading_position();
        int32_t next = 0;
        const Chain chain = index_block(file, next);
        if (chain != Chain::goes_on)
            return chain == Chain::ends;
        if (next <= block && steps_back_left-- == 0)
            return false;
        if (file.stream.seek(next) != 0)
            return false;
    }
}

int32_t held_binary_lines(const gmf_file_t &file, const gmf_keyword_info_t &keyword)
{
    const int64_t bytes = file.stream.file_size() - keyword.data_position;
    const int64_t lines = (bytes + line_bytes(keyword) - 1) / line_bytes(keyword);
    return static_cast<int32_t>(std::min<int64_t>(lines, keyword.line_count));
}

int32_t read_binary_lines(gmf_file_t &file, const gmf_keyword_info_t &keyword, int32_t line_count,
    std::span<const GmfInput> columns)
{
    FileStream &stream = file.stream;
    const TakeLines take = line_taker(file);
    const auto stride = static_cast<std::size_t>(line_bytes(keyword));
    const auto wanted = static_cast<std::size_t>(line_count);
    std::size_t taken = 0;
    while (taken < wanted) {
        if (stream.at_hand() < stride && !stream.fetch())
            break;
        const std::size_t count = std::min(stream.at_hand() / stride, wanted - taken);
        take(stream.cursor, stride, taken, count, columns);
        stream.cursor += count * stride;
        taken += count;
    }
    if (taken < wanted) {
        std::array<char, sizeof(double) * std::tuple_size_v<decltype(keyword.format)>> line;
        const std::size_t whole = whole_values(file, columns, stream.read(line.data(), stride));
        std::fill(line.data() + whole, line.data() + stride, '\0');
        take(line.data(), stride, taken, 1, columns);
    }
    return static_cast<int32_t>(taken);
}

void write_binary_header(gmf_file_t &file)
{
    write_integer(file, file.byte_order_code);
    write_integer(file, file.version);
}

bool binary_block_fits(const gmf_file_t &file, const gmf_keyword_info_t &keyword)
{
    return can_state(file.stream.writing_position()) &&
           can_state(file.stream.writing_position() + header_bytes(keyword) +
                     line_bytes(keyword) * keyword.line_count);
}

void write_binary_keyword_header(gmf_file_t &file, int32_t code)
{
    const gmf_keyword_info_t &keyword = file.keyword(code);
    const auto block = static_cast<int32_t>(file.stream.writing_position());
    if (file.next_keyword_field != 0)
        file.stream.overwrite(file.next_keyword_field, &block, word_bytes);
    write_integer(file, code);
    file.next_keyword_field = file.stream.writing_position();
    write_integer(file, 0);
    if (keyword.kind != gmf_information_keyword)
        write_integer(file, keyword.line_count);
    if (keyword.kind == gmf_solution_keyword) {
        write_integer(file, keyword.type_count);
        for (int32_t i = 0; i < keyword.type_count; ++i)
            write_integer(file, keyword.types[static_cast<std::size_t>(i)]);
    }
}

bool write_binary_lines(gmf_file_t &file, const gmf_keyword_info_t &keyword, int32_t line_count,
    std::span<const GmfOutput> columns)
{
    FileStream &stream = file.stream;
    const auto stride = static_cast<std::size_t>(line_bytes(keyword));
    if (!can_state(stream.writing_position() + line_bytes(keyword) * line_count))
        return false;
    if (stride == 0)
        return true;
    const auto put = file.version < 2 ? put_lines<float> : put_lines<double>;
    const auto wanted = static_cast<std::size_t>(line_count);
    for (std::size_t done = 0; done < wanted;) {
        const std::size_t count = std::min(FileStream::block_size / stride, wanted - done);
        char *target = stream.room(count * stride);
        put(target, stride, done, count, columns);
        stream.commit(target + count * stride);
        done += count;
    }
    return true;
}

} // namespace korvane
