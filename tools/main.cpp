// The korvane command: describes, judges and converts mesh files.
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "session.h"

namespace {

using namespace korvane::tools;

/// What was printed must have arrived, or the command has failed.
int after_flush(int status)
{
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return status;
    std::perror("korvane: standard output");
    return file_problem;
}

int run(int argc, char **argv)
{
    CLI::App app(
        "Describes, judges and converts mesh files (.mesh, .meshb) and solutions on them (.sol, .solb).",
        "korvane");
    app.set_version_flag("--version", "korvane " KORVANE_VERSION);
    app.footer("Exit status: 0 done, 1 a file has a problem, 2 wrong usage.");
    app.require_subcommand(1);

    std::vector<std::string> files;
    std::string name, input, solution, output;
    int status = done;

    CLI::App *info_command = app.add_subcommand(
        "info", "Describe files: format, keywords, tags, bounding box, ranges of solutions");
    info_command->add_option("FILE", files, "Mesh or solution files")->required();
    info_command->callback([&] { status = info(files); });

    CLI::App *stats_command = app.add_subcommand("stats", "Report on the quality and topology of meshes");
    stats_command->add_option("FILE", files, "Mesh files")->required();
    stats_command->add_option("--valid", name, "Report one key per line, as VALID.NAME.<key> = <value>")
        ->type_name("NAME")
        ->check(
            CLI::Validator([](const std::string &text) { return text.empty() ? "NAME is empty" : ""; }, ""));
    stats_command->callback([&] { status = stats(files, name); });

    CLI::App *sizes_command =
        app.add_subcommand("sizes", "Compare the edges of a mesh with the sizes that a size map wants");
    sizes_command->add_option("MESH", input, "The mesh file")->required();
    sizes_command->add_option("SOL", solution, "The solution file: one size per vertex")->required();
    sizes_command->callback([&] { status = sizes(input, solution); });

    CLI::App *convert_command =
        app.add_subcommand("convert", "Write a mesh in another encoding, or as NASTRAN bulk data");
    convert_command->add_option("IN", input, "The mesh file to read")->required();
    convert_command->add_option("OUT", output, "The mesh file to write; its extension chooses the format")
        ->required()
        ->check(CLI::Validator(
            [](const std::string &file) {
                return can_be_written(file) ? "" : file + ": cannot be written; use .mesh, .meshb or .bdf";
            },
            ""));
    convert_command->callback([&] { status = convert(input, output); });

    try {
        app.parse(argc, argv);
    } catch (const CLI::Success &success) {
        app.exit(success);
    } catch (const CLI::ParseError &error) {
        app.exit(error);
        return wrong_usage;
    }
    return after_flush(status);
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return run(argc, argv);
    } catch (const std::exception &problem) {
        std::fprintf(stderr, "korvane: %s\n", problem.what());
        return file_problem;
    }
}
