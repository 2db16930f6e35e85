#include "limits.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <fstream>

namespace korvane::tools {

bool Limit::holds(double value) const
{
    if (comparison == "<=")
        return value <= bound;
    if (comparison == ">=")
        return value >= bound;
    return comparison == "<" ? value < bound : value > bound;
}

std::string add_limit(const std::string &text, std::vector<Limit> &limits)
{
    std::string plain = text;
    std::erase_if(plain, [](unsigned char c) { return std::isspace(c) != 0; });
    const std::size_t begin = std::min(plain.find_first_of("<>"), plain.size());
    const std::size_t end = plain.find('=', begin) == begin + 1 ? begin + 2 : begin + 1;
    if (begin == plain.size())
        return "\"" + text + "\" has no comparison; use <=, >=, < or >";
    Limit limit{find_measure(plain.substr(0, begin)), plain.substr(begin, end - begin), 0, std::move(plain)};
    if (limit.measure == nullptr) {
        std::string known;
        for (const KindMeasure &row : element_measures())
            known.append(known.empty() ? "" : ", ").append(row.full_name());
        return "\"" + text + "\" names no measure; there are " + known;
    }
    const char *const last = limit.text.data() + limit.text.size();
    const auto [stop, error] = std::from_chars(limit.text.data() + end, last, limit.bound);
    if (error != std::errc() || stop != last || !std::isfinite(limit.bound))
        return "\"" + text + "\" has no number behind " + limit.comparison;
    limits.push_back(std::move(limit));
    return {};
}

std::string add_limits_of_file(const std::string &file, std::vector<Limit> &limits, bool &readable)
{
    std::ifstream stream(file);
    std::string line, problem;
    for (int number = 1; problem.empty() && std::getline(stream, line); ++number) {
        line.resize(std::min(line.find('#'), line.size()));
        if (line.find_first_not_of(" \t\r") == std::string::npos)
            continue;
        problem = add_limit(line, limits);
        if (!problem.empty())
            problem.insert(0, "line " + std::to_string(number) + ": ");
    }
    readable = !problem.empty() || stream.eof();
    return problem;
}

} // namespace korvane::tools
