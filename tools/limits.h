// Limits on measures: "triangle.aspect_ratio<=10".
#pragma once

#include <string>
#include <vector>

#include "element_measures.h"

namespace korvane::tools {

struct Limit {
    const KindMeasure *measure;
    std::string comparison; // "<=", ">=", "<" or ">"
    double bound;
    std::string text; // without blanks

    /// Not-a-number keeps to no limit.
    [[nodiscard]] bool holds(double value) const;
};

/// What is wrong with a limit; empty if nothing is. Appends a good one.
std::string add_limit(const std::string &text, std::vector<Limit> &limits);

/// Adds the limits of a file, one in a line; "#" opens a comment. Gives what is wrong with the first bad
/// line, and sets `readable` to false if the file cannot be read.
std::string add_limits_of_file(const std::string &file, std::vector<Limit> &limits, bool &readable);

} // namespace korvane::tools
