// The expansion of line formats: "i" and "r" stand for themselves, "d" and a letter for that letter once per
// dimension, "s" and a letter for that letter once per real of the solution types.
//
// The record has room for the longest line, which is that of a solution of 20 full tensors in space.
#include "io/gmf_format.h"

#include <algorithm>

namespace korvane {

namespace {

constexpr int32_t reals_of_type(int32_t type, int32_t dimension)
{
    switch (type) {
    case gmf_scalar:
        return 1;
    case gmf_vector:
        return dimension;
    case gmf_symmetric_matrix:
        return dimension * (dimension + 1) / 2;
    case gmf_full_matrix:
        return dimension * dimension;
    default:
        return 0;
    }
}

static_assert(GMF_MAX_TYPES * reals_of_type(gmf_full_matrix, 3) ==
              int{std::tuple_size<decltype(gmf_keyword_info_t::format)>()});

int32_t kind_of(const gmf_keyword_row_t &row)
{
    if (!row.has_count())
        return gmf_information_keyword;
    return row.reads_types() ? gmf_solution_keyword : gmf_regular_keyword;
}

int32_t solution_size(const gmf_keyword_info_t &keyword, int32_t dimension)
{
    int32_t size = 0;
    for (int32_t i = 0; i < keyword.type_count; ++i)
        size += reals_of_type(keyword.types[static_cast<std::size_t>(i)], dimension);
    return size;
}

} // namespace

void gmf_expand_format(gmf_file_t &file, int32_t code)
{
    const gmf_keyword_row_t &row = gmf_row(code);
    gmf_keyword_info_t &keyword = file.keyword(code);
    keyword.kind = kind_of(row);
    keyword.values_per_line = 0;
    const auto append = [&keyword](char letter, int32_t times) {
        std::fill_n(keyword.format.begin() + keyword.values_per_line, times, letter);
        keyword.values_per_line += times;
    };
    for (std::size_t i = 0; i < row.format.size(); ++i) {
        const char letter = row.format[i];
        if (letter == 'd')
            append(row.format[++i], file.dimension);
        else if (letter == 's')
            append(row.format[++i], solution_size(keyword, file.dimension));
        else
            append(letter, 1);
    }
    const int32_t words_per_real = file.version < 2 ? 1 : 2;
    keyword.words_per_line = 0;
    for (int32_t i = 0; i < keyword.values_per_line; ++i)
        keyword.words_per_line += keyword.format[static_cast<std::size_t>(i)] == 'r' ? words_per_real : 1;
}

} // namespace korvane
