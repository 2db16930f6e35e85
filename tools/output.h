// The one way of results to standard output. A subcommand makes one JSON object per result; as text it is
// printed at once by the subcommand's own rules, with --json all are printed in one document at the end.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace korvane::tools {

using Json = nlohmann::ordered_json;

struct Presentation {
    bool json = false;
    bool quiet = false;   // errors only
    bool verbose = false; // every single thing
};

class Output {
  public:
    using Print = void (*)(const Json &result, const Presentation &presentation);

    /// The schema of documents is tools/schema/<subcommand>.json.
    Output(const char *subcommand, const Presentation &wanted, Print as_text);

    void add(Json result);

    /// For what could not be read, after it was told on standard error.
    void add_problem(const std::string &file, const std::string &problem);

    /// Prints what is still to be printed, and gives the exit status back.
    int finish(int status);

  private:
    Presentation presentation;
    Print print;
    Json document;
};

/// A text of a result.
std::string text_of(const Json &value);

} // namespace korvane::tools
