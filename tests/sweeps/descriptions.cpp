// Reading the comments of the public header.
#include "sweeps/descriptions.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string_view>

namespace korvane::testing {

namespace {

/// The lines of a comment, without what they begin with, as one.
std::string joined_lines(const std::string &comment)
{
    std::istringstream lines(comment);
    std::string joined;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t text = line.find_first_not_of(" *");
        if (text != std::string::npos)
            joined += line.substr(text) + ' ';
    }
    return joined;
}

/// The name before the bracket that opens next.
std::string declared_name(const std::string &header, std::size_t from)
{
    const std::size_t end = header.find('(', from);
    const std::size_t before = header.find_last_of(" *", end);
    return header.substr(before + 1, end - before - 1);
}

/// Goes through comments and declarations in their order.
std::map<std::string, std::string> read_descriptions()
{
    constexpr std::string_view declaration = "KORVANE_API ";
    std::ifstream file(KORVANE_HEADER);
    const std::string header(std::istreambuf_iterator<char>(file), {});
    std::map<std::string, std::string> descriptions;
    std::string section;
    std::string comment;
    bool is_in_group = false;
    std::size_t at = 0;
    while ((at = std::min(header.find("/*", at), header.find(declaration, at))) != std::string::npos) {
        if (header.compare(at, declaration.size(), declaration) == 0) {
            descriptions[declared_name(header, at)] = section + comment;
            at += declaration.size();
            continue;
        }
        const std::string text = header.substr(at, header.find("*/", at) - at);
        at += text.size();
        if (text.starts_with("/* ---")) {
            section = joined_lines(text);
        } else if (text.find("@}") != std::string::npos) {
            is_in_group = false;
        } else if (text.starts_with("/**") && !text.starts_with("/**<") && !is_in_group) {
            comment = joined_lines(text);
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
