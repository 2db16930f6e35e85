// The files that tests read: samples, which an independent writer made, and files of other programs, which
// are not everywhere.
#pragma once

#include <filesystem>
#include <string>

namespace korvane::testing {

/// The name of a sample.
inline std::string sample(const std::string &name)
{
    return KORVANE_TEST_DATA "/" + name;
}

/// The name of a file of another program.
inline std::string real_file(const std::string &name)
{
    return KORVANE_REAL_FILES "/" + name;
}

inline bool has_real_files()
{
    return std::filesystem::exists(KORVANE_REAL_FILES);
}

} // namespace korvane::testing
