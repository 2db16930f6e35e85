// The layout of lines: the expansion of a keyword's format for a file, and the columns that lines go to.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

#include "io/gmf_file.h"

namespace korvane {

/// Derives kind, expanded format, values and words per line of a keyword from its row of the table, the
/// file's dimension and version, and the type header that the record already holds.
void gmf_expand_format(gmf_file_t &file, int32_t code);

/// Reads the count and the type header that the row states, with `next`, which gives an integer or is false
/// where there is none. A count that is missing or negative is 0. False if the type header is wrong.
template <class Next>
[[nodiscard]] bool read_counts(const gmf_keyword_row_t &row, gmf_keyword_info_t &keyword, Next next)
{
    keyword = {};
    keyword.line_count = 1;
    if (row.reads_count() && !next(keyword.line_count))
        keyword.line_count = 0;
    keyword.line_count = std::max(keyword.line_count, 0);
    if (!row.reads_types())
        return true;
    if (!next(keyword.type_count) || keyword.type_count < 0 || keyword.type_count > GMF_MAX_TYPES)
        return false;
    return std::all_of(keyword.types.begin(), keyword.types.begin() + keyword.type_count, next);
}

/// Consecutive values of each line that share one array: `width` of them, all integers or all reals, are
/// element i of `integers` or of `reals` (the other is null). Reals are doubles whatever the file holds.
template <class Integer, class Real>
struct GmfColumn {
    int32_t width;
    Integer *integers;
    Real *reals;

    [[nodiscard]] bool is_real() const { return reals != nullptr; }
};

using GmfInput = GmfColumn<int32_t, double>;
using GmfOutput = GmfColumn<const int32_t, const double>;

/// True if the columns, side by side, are exactly the letters of a line.
template <class Integer, class Real>
[[nodiscard]] bool columns_fit(
    const gmf_keyword_info_t &keyword, std::span<const GmfColumn<Integer, Real>> columns)
{
    int64_t position = 0;
    for (const GmfColumn<Integer, Real> &column : columns) {
        if (column.width < 0 || position + column.width > keyword.values_per_line ||
            (column.integers == nullptr && column.reals == nullptr))
            return false;
        const char letter = column.is_real() ? 'r' : 'i';
        for (const int64_t end = position + column.width; position < end; ++position)
            if (keyword.format[static_cast<std::size_t>(position)] != letter)
                return false;
    }
    return position == keyword.values_per_line;
}

/// How many equal letters follow one another in a line from a position on.
[[nodiscard]] inline int32_t run_length(const gmf_keyword_info_t &keyword, int32_t position)
{
    const auto begin = keyword.format.begin() + position;
    const auto end = keyword.format.begin() + keyword.values_per_line;
    return static_cast<int32_t>(std::find_if(begin, end, [begin](char c) { return c != *begin; }) - begin);
}

/// The bytes of one binary line.
[[nodiscard]] inline int64_t line_bytes(const gmf_keyword_info_t &keyword)
{
    return int64_t{4} * keyword.words_per_line;
}

} // namespace korvane
