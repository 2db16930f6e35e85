// What a file says of itself before any of its contents is read.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace korvane::tools {

struct KeywordBlock {
    std::string name;
    int count;     // lines
    bool carried;  // read into a mesh by the library
    bool has_card; // exported as bulk data
    bool solution; // its lines hold values of stated types
};

struct FileDescription {
    bool binary;
    bool foreign_byte_order; // of a binary file
    int version;             // 1 single precision, 2 or 3 double
    int dimension;
    bool solution;                    // by its name
    std::vector<KeywordBlock> blocks; // in the order of the keyword codes
    std::string shortfall;            // what the file states but does not hold; empty if it is whole
};

/// Nothing if the file cannot be opened as a keyword file. To count the lines, a text is read from end to
/// end; otherwise it has to be much too short for a shortfall to be noticed.
std::optional<FileDescription> describe_file(const std::string &file, bool counts_lines);

} // namespace korvane::tools
