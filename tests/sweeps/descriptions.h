// What the public header says of a function.
#pragma once

#include <string>

namespace korvane::testing {

/// The introduction of the function's section, and the comment on it or on the group that it is in, as one
/// line; empty for a function that the header does not declare.
std::string description_of(const std::string &function);

} // namespace korvane::testing
