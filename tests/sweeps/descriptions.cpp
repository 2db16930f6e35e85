// Reading the comments of the public header.
#include "sweeps/descriptions.h"

#include <fstream>
#include <iterator>
#include <map>
#include <regex>

namespace korvane::testing {

namespace {

std::string without_line_ends(const std::string &comment)
{
    return std::regex_replace(comment, std::regex("\\s*\\n\\s*\\*?\\s*"), " ");
}

/// Goes through comments and declarations in their order.
std::map<std::string, std::string> read_descriptions()
{
    std::ifstream file(KORVANE_HEADER);
    const std::string header(std::istreambuf_iterator<char>(file), {});
    const std::regex token("/\\*[^*]*\\*+(?:[^/*][^*]*\\*+)*/|KORVANE_API[^;(]*\\b(korvane_\\w+)\\(");
    std::map<std::string, std::string> descriptions;
    std::string section;
    std::string comment;
    bool is_in_group = false;
    for (std::sregex_iterator found(header.begin(), header.end(), token), end; found != end; ++found) {
        const std::string text = found->str();
        if ((*found)[1].matched)
            descriptions[(*found)[1]] = section + ' ' + comment;
        else if (text.starts_with("/* ---"))
            section = without_line_ends(text);
        else if (text.find("@}") != std::string::npos)
            is_in_group = false;
        else if (text.starts_with("/**") && !text.starts_with("/**<") && !is_in_group) {
            comment = without_line_ends(text);
            is_in_group = text.find("@{") != std::string::npos;
        }
    }
    return descriptions;
}

} // namespace

std::string description_of(const std::string &function)
{
    static const std::map<std::string, std::string> descriptions = read_descriptions();
    const auto found = descriptions.find(function);
    return found == descriptions.end() ? "" : found->second;
}

} // namespace korvane::testing
