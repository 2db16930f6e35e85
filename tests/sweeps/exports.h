// The list of exported functions, which sweeps are held against.
#pragma once

#include <set>
#include <string>

namespace korvane::testing {

/// The names of all exported functions.
const std::set<std::string> &exported_functions();

/// Fails the test for each export that is not covered, and for what is covered and no export.
void expect_exports(const std::set<std::string> &covered, const std::string &by);

} // namespace korvane::testing
