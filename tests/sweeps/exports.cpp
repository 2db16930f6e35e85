// Reading the checked-in list of exported functions.
#include "sweeps/exports.h"

#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace korvane::testing {

const std::set<std::string> &exported_functions()
{
    static const std::set<std::string> names = [] {
        std::ifstream list(KORVANE_EXPORTS);
        return std::set<std::string>(std::istream_iterator<std::string>(list), {});
    }();
    return names;
}

void expect_exports(const std::set<std::string> &covered, const std::string &by)
{
    EXPECT_FALSE(exported_functions().empty()) << "cannot read " << KORVANE_EXPORTS;
    for (const std::string &name : exported_functions())
        EXPECT_TRUE(covered.contains(name)) << by << " lacks " << name;
    for (const std::string &name : covered)
        EXPECT_TRUE(exported_functions().contains(name)) << by << " has " << name << ", which is no export";
}

} // namespace korvane::testing
