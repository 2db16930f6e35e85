#include "output.h"

#include <cstdio>

namespace korvane::tools {

namespace {

constexpr int schema_version = 1;

} // namespace

Output::Output(const char *subcommand, const Presentation &wanted, Print as_text)
    : presentation(wanted), print(as_text),
      document({{"schema", "korvane-" + std::string(subcommand)}, {"version", schema_version}, {"status", 0},
          {"results", Json::array()}})
{}

void Output::add(Json result)
{
    if (presentation.json)
        document["results"].push_back(std::move(result));
    else if (!presentation.quiet)
        print(result, presentation);
}

void Output::add_problem(const std::string &file, const std::string &problem)
{
    if (presentation.json)
        document["results"].push_back({{"file", file}, {"problem", problem}});
}

int Output::finish(int status)
{
    document["status"] = status;
    if (presentation.json && !presentation.quiet)
        std::printf("%s\n", document.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    return status;
}

std::string text_of(const Json &value)
{
    return value.is_string() ? value.get<std::string>() : value.dump();
}

} // namespace korvane::tools
