// The korvane command: describes, judges and converts mesh files.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
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

/// Gives every value that `test` says something against, as what is wrong with it.
CLI::Validator refused(std::string (*test)(const std::string &value))
{
    return {test, ""};
}

std::string against_empty(const std::string &text)
{
    return text.empty() ? "NAME is empty" : "";
}

std::string against_other_than_mesh_files(const std::string &file)
{
    return can_be_written(file) ? "" : file + ": cannot be written; use .mesh, .meshb, .bdf, .vtu or .stl";
}

std::string against_other_than_grids(const std::string &file)
{
    return file.ends_with(".vtu") ? "" : file + ": cannot be written; use .vtu";
}

std::string against_other_than_distances(const std::string &text)
{
    return std::strtod(text.c_str(), nullptr) >= 0 ? "" : text + ": is no distance";
}

/// What closes the help of a subcommand: examples, each in a line of its own, and what the exit status means.
std::string closing(const std::string &examples, const char *good = "done", const char *bad = nullptr)
{
    const std::string statuses =
        bad == nullptr ? ", 1 a file has a problem, 2 wrong usage."
                       : std::string(", 1 ").append(bad).append(", 2 wrong usage, 3 a file cannot be read.");
    return std::string("Examples:\n")
        .append(examples)
        .append("\nExit status: 0 ")
        .append(good)
        .append(statuses);
}

/// The words of the command, and what they lead to.
class CommandLine {
  public:
    CommandLine()
    {
        app.set_version_flag("--version", "korvane " KORVANE_VERSION);
        app.footer(
            "korvane SUBCOMMAND --help tells more, with examples.\n\n"
            "Exit status: 0 done, 1 a file has a problem, 2 wrong usage; of check, diff and periodic:\n"
            "0 valid or equal, 1 findings or differences, 2 wrong usage, 3 a file cannot be read.");
        app.require_subcommand(1);
        add_info();
        add_stats();
        add_sizes();
        add_check();
        add_diff();
        add_convert();
        add_periodic();
    }

    int run(int argc, char **argv)
    {
        try {
            app.parse(argc, argv);
        } catch (const CLI::Success &success) {
            app.exit(success);
        } catch (const CLI::ParseError &error) {
            complain(error.what());
            return wrong_usage;
        }
        return after_flush(status);
    }

  private:
    /// Tells what is wrong with the usage, and which help is about it.
    void complain(const std::string &problem) const
    {
        const auto chosen = app.get_subcommands();
        const auto strangers = app.remaining();
        const bool is_stranger = chosen.empty() && !strangers.empty();
        std::fprintf(stderr, "korvane: %s\nkorvane%s --help tells more.\n",
            is_stranger ? (strangers.front() + ": there is no such subcommand or option").c_str()
                        : problem.c_str(),
            chosen.empty() ? "" : (" " + chosen.front()->get_name()).c_str());
    }

    /// What all subcommands that give results have.
    void add_presentation(CLI::App &command)
    {
        command.add_flag("--json", presentation.json, "Print one JSON document");
        CLI::Option *quiet = command.add_flag("-q,--quiet", presentation.quiet, "Print errors only");
        command.add_flag("-v,--verbose", presentation.verbose, "Print every single thing")->excludes(quiet);
    }

    void add_info()
    {
        CLI::App &command = *app.add_subcommand(
            "info", "Describe files: format, keywords, tags, bounding box, ranges of solutions");
        command.add_option("FILE", described.files, "Mesh or solution files")->required();
        command.add_flag("--header", described.header, "Read no more than the header of each keyword");
        add_presentation(command);
        command.footer(closing("  korvane info wing.mesh wing.sol\n"
                               "  korvane info --header *.meshb\n"));
        command.callback([this] { status = info(described, presentation); });
    }

    void add_stats()
    {
        CLI::App &command = *app.add_subcommand("stats", "Report on the quality and topology of meshes");
        command.add_option("FILE", measured.files, "Mesh files")->required();
        CLI::Option *keyed = command
                                 .add_option("--valid", measured.name,
                                     "Report one key per line, as VALID.NAME.<key> = <value>")
                                 ->type_name("NAME")
                                 ->check(refused(against_empty));
        add_presentation(command);
        command.add_flag("--histogram", measured.histogram, "Show how the values of each measure are spread")
            ->excludes(keyed);
        command.add_flag("--by-tag", measured.by_tag, "Show the spread of the measures for each tag, too")
            ->excludes(keyed);
        command.add_option("--worst", measured.worst, "Show the worst elements by each measure")
            ->type_name("N")
            ->check(CLI::Range(1, INT32_MAX))
            ->excludes(keyed);
        keyed->excludes(command.get_option("--json"))->excludes(command.get_option("--quiet"));
        command.footer(closing("  korvane stats wing.mesh\n"
                               "  korvane stats --histogram --by-tag --worst 10 wing.mesh\n"
                               "  korvane stats --valid wing wing.meshb > wing.txt\n"));
        command.callback([this] { status = stats(measured, presentation); });
    }

    void add_sizes()
    {
        CLI::App &command =
            *app.add_subcommand("sizes", "Compare the edges of a mesh with the sizes that a size map wants");
        command.add_option("MESH", input, "The mesh file")->required();
        command.add_option("SOL", solution, "The solution file: one size per vertex")->required();
        add_presentation(command);
        command.footer(closing("  korvane sizes wing.mesh wing.sol\n"));
        command.callback([this] { status = sizes(input, solution, presentation); });
    }

    void add_check()
    {
        CLI::App &command = *app.add_subcommand(
            "check", "Give a verdict on meshes: soundness of elements, and limits on their measures");
        command.add_option("FILE", checked.files, "Mesh files")->required();
        command
            .add_option("--limit", checked.limits,
                "What every element has to keep to, as 'triangle.aspect_ratio<=10'; may be repeated")
            ->type_name("LIMIT")
            ->allow_extra_args(false);
        command.add_option("--limits", checked.limits_file, "Read limits, one in a line; # opens a comment")
            ->type_name("FILE");
        command.add_option("--bad-ids", checked.bad_ids, "Write the findings: kind, number, finding")
            ->type_name("OUT");
        command.add_option("--bad", checked.bad, "Write the bad entities with all measures (.vtu)")
            ->type_name("OUT")
            ->check(refused(against_other_than_grids));
        command.footer(closing("  korvane check *.mesh\n"
                               "  korvane check wing.mesh --limit 'triangle.aspect_ratio<=10' --bad bad.vtu\n"
                               "  korvane check --quiet wing.mesh --limits limits.txt && echo good\n",
            "valid", "findings"));
        add_presentation(command);
        command.callback([this] {
            if (checked.files.size() > 1 && !(checked.bad_ids.empty() && checked.bad.empty()))
                throw CLI::ValidationError("--bad and --bad-ids", "need a single FILE");
            status = check(checked, presentation);
        });
    }

    void add_diff()
    {
        CLI::App &command = *app.add_subcommand("diff", "Compare two meshes, entity by entity");
        command.add_option("A", input, "A mesh file")->required();
        command.add_option("B", output, "The mesh file to compare it with")->required();
        command.add_option("--tolerance", tolerance, "By how much coordinates may differ")
            ->type_name("T")
            ->check(refused(against_other_than_distances));
        add_presentation(command);
        command.footer(closing("  korvane diff wing.mesh wing.meshb\n"
                               "  korvane diff --tolerance 1e-6 wing.mesh wing.meshb\n",
            "equal", "differences"));
        command.callback([this] { status = diff(input, output, tolerance, presentation); });
    }

    void add_convert()
    {
        CLI::App &command = *app.add_subcommand("convert", "Write a mesh in other encodings and formats");
        command.add_option("IN", input, "The mesh file to read")->required();
        command
            .add_option("OUT", files,
                "The files to write; their extensions choose the formats: .mesh, .meshb, .bdf, .vtu, .stl")
            ->required()
            ->check(refused(against_other_than_mesh_files));
        add_presentation(command);
        command.footer(closing("  korvane convert wing.mesh wing.meshb\n"
                               "  korvane convert wing.meshb wing.vtu wing.stl wing.bdf\n"));
        command.callback([this] { status = convert(input, files, presentation); });
    }

    void add_periodic()
    {
        CLI::App &command = *app.add_subcommand(
            "periodic", "Find the transformation that carries one tagged region of a mesh to another");
        command.add_option("MESH", regions.files, "Mesh files")->required();
        command.add_option("--tags", regions.tags, "The tags of the two regions")
            ->type_name("A,B")
            ->delimiter(',')
            ->expected(2)
            ->required();
        command.add_option("--tolerance", regions.tolerance, "How far partners may be from one another")
            ->type_name("T")
            ->check(refused(against_other_than_distances));
        add_presentation(command);
        command.footer(closing("  korvane periodic wing.mesh --tags 1,3\n"
                               "  korvane periodic --json wing.mesh --tags 1,3 > partners.json\n",
            "every vertex has a partner", "some have none"));
        command.callback([this] { status = periodic(regions, presentation); });
    }

    CLI::App app{
        "Describes, judges and converts mesh files (.mesh, .meshb) and solutions on them (.sol, .solb).",
        "korvane"};
    std::vector<std::string> files;
    std::string input, solution, output;
    double tolerance = 0;
    InfoOptions described;
    StatsOptions measured;
    CheckOptions checked;
    PeriodicOptions regions;
    Presentation presentation;
    int status = done;
};

} // namespace

int main(int argc, char **argv)
{
    try {
        return CommandLine().run(argc, argv);
    } catch (const std::exception &problem) {
        std::fprintf(stderr, "korvane: %s\n", problem.what());
        return file_problem;
    }
}
