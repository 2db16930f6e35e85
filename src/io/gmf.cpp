// The open-file table and the operations of the engine, for both encodings.
//
// An entry of the table is null or an open record. A record enters the table as the last step of opening, so
// that a failing open leaves nothing behind: the record closes its stream when it is destroyed. The table is
// the library's only state of the process and has no lock.
#include "io/gmf.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "common/memory.h"
#include "io/gmf_binary.h"
#include "io/gmf_text.h"

namespace korvane {

namespace {

std::array<gmf_file_t *, GMF_MAX_FILES + 1> open_files; // owned; entry 0 is never used

/// The lowest free index, or 0.
int32_t free_index()
{
    const auto found = std::find(open_files.begin() + 1, open_files.end(), nullptr);
    return found == open_files.end() ? 0 : static_cast<int32_t>(found - open_files.begin());
}

/// The record of an open file, or null.
gmf_file_t *find_file(int32_t index)
{
    return index >= 1 && index <= GMF_MAX_FILES ? open_files[static_cast<std::size_t>(index)] : nullptr;
}

/// The record of a file that is open in a mode, if the code is one; or null.
gmf_file_t *find_file(int32_t index, int32_t code, gmf_mode_t mode)
{
    gmf_file_t *file = find_file(index);
    return file != nullptr && file->mode == mode && gmf_is_code(code) ? file : nullptr;
}

/// As above, if the file has a block of the code, or the header of one was written.
gmf_file_t *find_block(int32_t index, int32_t code, gmf_mode_t mode)
{
    gmf_file_t *file = find_file(index, code, mode);
    return file != nullptr && file->keyword(code).kind != gmf_unknown_keyword ? file : nullptr;
}

/// The kind that the end of a name states, or 0.
int32_t kind_of_name(std::string_view name)
{
    constexpr std::size_t looked_at = 6;
    const std::string_view end = name.substr(name.size() - std::min(name.size(), looked_at));
    const auto has = [end](std::string_view extension) { return end.find(extension) != end.npos; };
    if (has(".meshb"))
        return gmf_mesh | gmf_binary;
    if (has(".mesh"))
        return gmf_mesh | gmf_text;
    if (has(".solb"))
        return gmf_solution | gmf_binary;
    if (has(".sol"))
        return gmf_solution | gmf_text;
    return 0;
}

/// Makes the record of a file that is to be opened; null if the name is not one, or if memory runs out.
Owned<gmf_file_t> try_create_record(const char *name, int32_t mode)
{
    if (name == nullptr)
        return nullptr;
    const std::string_view text(name);
    constexpr std::size_t reserve = 7;
    Owned<gmf_file_t> file = create_owned<gmf_file_t>();
    if (!file || text.size() + reserve >= file->file_name.size())
        return nullptr;
    std::copy(text.begin(), text.end(), file->file_name.begin());
    file->kind_flags = kind_of_name(text);
    file->mode = mode;
    if (file->kind_flags == 0)
        return nullptr;
    return file;
}

bool is_dimension(int32_t dimension)
{
    return dimension == 2 || dimension == 3;
}

[[nodiscard]] bool try_start_reading(gmf_file_t &file)
{
    if (!file.stream.try_open_for_reading(file.file_name.data()))
        return false;
    const bool has_header = file.is_binary() ? read_binary_header(file) : read_text_header(file);
    if (!has_header || !is_dimension(file.dimension))
        return false;
    return file.is_binary() ? index_binary_keywords(file) : index_text_keywords(file);
}

/// The columns of one line that lies in an array of its integers and one of its reals.
template <class Integer, class Real>
class LineColumns {
  public:
    LineColumns(const gmf_keyword_info_t &keyword, Integer *integers, Real *reals)
    {
        for (int32_t position = 0; position < keyword.values_per_line;) {
            const int32_t width = run_length(keyword, position);
            if (keyword.format[static_cast<std::size_t>(position)] == 'r') {
                columns[count++] = {width, nullptr, reals};
                reals += width;
            } else {
                columns[count++] = {width, integers, nullptr};
                integers += width;
            }
            position += width;
        }
    }

    [[nodiscard]] std::span<const GmfColumn<Integer, Real>> all() const { return {columns.data(), count}; }

  private:
    std::array<GmfColumn<Integer, Real>, gmf_max_runs> columns;
    std::size_t count = 0;
};

/// Makes lines `first` and following of the columns zero.
void clear_lines(int32_t first, int32_t line_count, std::span<const GmfInput> columns)
{
    if (first >= line_count)
        return;
    for (const GmfInput &column : columns) {
        const std::size_t begin = static_cast<std::size_t>(first) * static_cast<std::size_t>(column.width);
        const std::size_t end = static_cast<std::size_t>(line_count) * static_cast<std::size_t>(column.width);
        if (column.is_real())
            std::fill(column.reals + begin, column.reals + end, 0.0);
        else
            std::fill(column.integers + begin, column.integers + end, 0);
    }
}

int32_t refuse(gmf_file_t &file)
{
    file.refused = true;
    return 0;
}

} // namespace

int32_t gmf_open_file(const char *name, int32_t mode, int32_t *version, int32_t *dimension)
{
    const int32_t index = free_index();
    if (index == 0 || mode != gmf_read_mode)
        return 0;
    Owned<gmf_file_t> file = try_create_record(name, mode);
    if (!file || !try_start_reading(*file))
        return 0;
    *version = file->version;
    *dimension = file->dimension;
    open_files[static_cast<std::size_t>(index)] = file.release();
    return index;
}

int32_t gmf_open_file(const char *name, int32_t mode, int32_t version, int32_t dimension)
{
    const int32_t index = free_index();
    if (index == 0 || mode != gmf_write_mode || version < 1 || version > 2 || !is_dimension(dimension))
        return 0;
    Owned<gmf_file_t> file = try_create_record(name, mode);
    if (!file || !file->stream.try_open_for_writing(file->file_name.data()))
        return 0;
    file->byte_order_code = 1;
    file->version = version;
    file->dimension = dimension;
    const bool is_binary = file->is_binary();
    open_files[static_cast<std::size_t>(index)] = file.release();
    if (is_binary) {
        write_binary_header(*find_file(index));
        gmf_write_keyword_header(index, gmf_dimension);
        gmf_write_line(index, gmf_dimension, &dimension, nullptr);
    } else {
        write_text_header(*find_file(index));
    }
    return index;
}

int32_t gmf_finish_file(int32_t index)
{
    gmf_file_t *file = find_file(index);
    if (file == nullptr || file->mode != gmf_write_mode)
        return 0;
    if (!file->complete)
        gmf_write_keyword_header(index, gmf_end);
    file->complete = true;
    return file->stream.flush() && !file->refused ? 1 : 0;
}

int32_t gmf_close_file(int32_t index)
{
    gmf_file_t *file = find_file(index);
    if (file == nullptr)
        return 0;
    const bool complete = file->mode != gmf_write_mode || gmf_finish_file(index) != 0;
    const bool closed = file->stream.close() == 0;
    destroy(file);
    open_files[static_cast<std::size_t>(index)] = nullptr;
    return complete && closed ? 1 : 0;
}

const gmf_file_t *gmf_find_file(int32_t index)
{
    return find_file(index);
}

int32_t gmf_keyword_count(
    int32_t index, int32_t code, int32_t *type_count, int32_t *values_per_line, int32_t *types)
{
    gmf_file_t *file = find_file(index);
    if (file == nullptr || !gmf_is_code(code))
        return 0;
    const gmf_keyword_info_t &keyword = file->keyword(code);
    if (gmf_row(code).reads_types()) {
        if (type_count != nullptr)
            *type_count = keyword.type_count;
        if (values_per_line != nullptr)
            *values_per_line = keyword.values_per_line;
        if (types != nullptr)
            std::copy_n(keyword.types.begin(), keyword.type_count, types);
    }
    return keyword.line_count;
}

int32_t gmf_held_lines(int32_t index, int32_t code)
{
    gmf_file_t *file = find_block(index, code, gmf_read_mode);
    if (file == nullptr)
        return 0;
    const gmf_keyword_info_t &keyword = file->keyword(code);
    if (keyword.values_per_line == 0)
        return keyword.line_count;
    return file->is_binary() ? held_binary_lines(*file, keyword) : held_text_lines(*file, keyword);
}

int32_t gmf_seek_keyword(int32_t index, int32_t code)
{
    gmf_file_t *file = find_file(index, code, gmf_read_mode);
    if (file == nullptr || file->keyword(code).line_count == 0)
        return 0;
    file->block_ended = false;
    return file->stream.seek(file->keyword(code).data_position);
}

int32_t gmf_read_lines(int32_t index, int32_t code, int32_t line_count, std::span<const GmfInput> columns)
{
    gmf_file_t *file = find_block(index, code, gmf_read_mode);
    if (file == nullptr || line_count < 1 || !columns_fit(file->keyword(code), columns))
        return 0;
    const gmf_keyword_info_t &keyword = file->keyword(code);
    if (keyword.values_per_line == 0)
        return line_count;
    if (file->block_ended) {
        clear_lines(0, line_count, columns);
        return 0;
    }
    const int32_t whole = file->is_binary() ? read_binary_lines(*file, keyword, line_count, columns)
                                            : read_text_lines(*file, line_count, columns);
    file->block_ended = whole < line_count;
    clear_lines(whole + 1, line_count, columns); // of the line in between, the file had a part
    return whole;
}

int32_t gmf_read_line(int32_t index, int32_t code, int32_t *integers, double *reals)
{
    gmf_file_t *file = find_block(index, code, gmf_read_mode);
    if (file == nullptr)
        return 0;
    return gmf_read_lines(index, code, 1, LineColumns(file->keyword(code), integers, reals).all());
}

int32_t gmf_write_keyword_header(
    int32_t index, int32_t code, int32_t line_count, int32_t type_count, const int32_t *types)
{
    gmf_file_t *file = find_file(index, code, gmf_write_mode);
    if (file == nullptr)
        return 0;
    gmf_keyword_info_t &keyword = file->keyword(code);
    keyword = {};
    if (gmf_row(code).reads_types()) {
        if (type_count < 0 || type_count > GMF_MAX_TYPES || (type_count > 0 && types == nullptr))
            return refuse(*file);
        keyword.type_count = type_count;
        std::copy_n(types, type_count, keyword.types.begin());
    }
    gmf_expand_format(*file, code);
    keyword.line_count = keyword.kind == gmf_information_keyword ? 1 : line_count;
    if (keyword.line_count < 0)
        return refuse(*file);
    // The end is always written, so that a file that was refused a block is well-formed.
    if (file->is_binary() && code != gmf_end && !binary_block_fits(*file, keyword))
        return refuse(*file);
    if (file->is_binary())
        write_binary_keyword_header(*file, code);
    else
        write_text_keyword_header(*file, code);
    return file->stream.has_failed() ? 0 : keyword.line_count;
}

int32_t gmf_write_lines(int32_t index, int32_t code, int32_t line_count, std::span<const GmfOutput> columns)
{
    gmf_file_t *file = find_block(index, code, gmf_write_mode);
    if (file == nullptr || line_count < 1 || !columns_fit(file->keyword(code), columns))
        return 0;
    if (!file->is_binary())
        write_text_lines(*file, line_count, columns);
    else if (!write_binary_lines(*file, file->keyword(code), line_count, columns))
        return refuse(*file);
    return file->stream.has_failed() ? 0 : line_count;
}

int32_t gmf_write_line(int32_t index, int32_t code, const int32_t *integers, const double *reals)
{
    gmf_file_t *file = find_block(index, code, gmf_write_mode);
    if (file == nullptr)
        return 0;
    return gmf_write_lines(index, code, 1, LineColumns(file->keyword(code), integers, reals).all());
}

} // namespace korvane
