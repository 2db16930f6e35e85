// The solutions that a file holds: blocks of lines of real values.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace korvane::tools {

struct Range {
    double low;
    double high;
};

struct Solution {
    std::string keyword;
    std::vector<int32_t> types; // of a line, in their order
    std::vector<Range> ranges;  // of each value of a line, over all lines that the file holds
};

/// All solutions with at least one line, without ranges if only headers are to be read; none if the file
/// cannot be opened as a keyword file.
std::vector<Solution> read_solutions(const std::string &file, bool headers_only);

/// "scalar" and the like.
std::string name_of_type(int32_t type);

} // namespace korvane::tools
