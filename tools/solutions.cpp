#include "solutions.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "io/gmf.h"

namespace korvane::tools {

namespace {

/// The ranges over `count` lines; of a value that is never a number, not-a-number.
std::vector<Range> read_ranges(int32_t index, int32_t code, int32_t count, std::size_t values_per_line)
{
    std::vector<Range> ranges(values_per_line, {NAN, NAN});
    std::vector<double> values(values_per_line);
    gmf_seek_keyword(index, code);
    for (int32_t line = 0; line < count; ++line) {
        gmf_read_line(index, code, nullptr, values.data());
        for (std::size_t i = 0; i < values_per_line; ++i)
            ranges[i] = {std::fmin(ranges[i].low, values[i]), std::fmax(ranges[i].high, values[i])};
    }
    return ranges;
}

} // namespace

std::vector<Solution> read_solutions(const std::string &file, bool headers_only)
{
    std::vector<Solution> solutions;
    int32_t version = 0, dimension = 0;
    const int32_t index = gmf_open_file(file.c_str(), gmf_read_mode, &version, &dimension);
    const GmfFileGuard guard(index);
    for (int32_t code = 1; index != 0 && code <= GMF_MAX_KEYWORDS; ++code) {
        if (!gmf_row(code).reads_types())
            continue;
        int32_t type_count = 0, values_per_line = 0;
        std::array<int32_t, GMF_MAX_TYPES> types{};
        if (gmf_keyword_count(index, code, &type_count, &values_per_line, types.data()) < 1)
            continue;
        solutions.push_back(
            {std::string(gmf_row(code).name), {types.begin(), types.begin() + type_count}, {}});
        if (!headers_only)
            solutions.back().ranges = read_ranges(
                index, code, gmf_held_lines(index, code), static_cast<std::size_t>(values_per_line));
    }
    return solutions;
}

std::string name_of_type(int32_t type)
{
    switch (type) {
    case gmf_scalar:
        return "scalar";
    case gmf_vector:
        return "vector";
    case gmf_symmetric_matrix:
        return "symmetric matrix";
    case gmf_full_matrix:
        return "matrix";
    default:
        return "unknown type " + std::to_string(type);
    }
}

} // namespace korvane::tools
