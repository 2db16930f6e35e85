// The library's own report, and the distributions of the values behind it.
#include <algorithm>
#include <cstdio>

#include "commands.h"
#include "distributions.h"
#include "session.h"

namespace korvane::tools {

namespace {

/// The lines "VALID.x.<key> = <value>" of a keyed report.
Json keyed_values(const std::string &report)
{
    Json values = Json::object();
    for (std::size_t begin = 0, end = 0; begin < report.size(); begin = end + 1) {
        end = std::min(report.find('\n', begin), report.size());
        const std::string line = report.substr(begin, end - begin);
        const std::size_t key = line.find('.', line.find('.') + 1) + 1, separator = line.find(" = ");
        if (separator == std::string::npos || key >= separator)
            continue;
        const std::string text = line.substr(separator + 3);
        Json value = Json::parse(text, nullptr, false);
        values[line.substr(key, separator - key)] = value.is_number() ? std::move(value) : Json();
    }
    return values;
}

void print(const Json &record, const Presentation &)
{
    for (const Json &distribution : record["measures"])
        print_distribution(distribution);
}

class Reporter {
  public:
    Reporter(const StatsOptions &asked, const Presentation &wanted)
        : options(asked), presentation(wanted), output("stats", wanted, print)
    {}

    int report_all()
    {
        bool all_reported = true;
        for (const std::string &file : options.files)
            all_reported &= report(file);
        return output.finish(all_reported ? done : file_problem);
    }

  private:
    bool report(const std::string &file)
    {
        const Mesh mesh = session.read(file);
        if (!mesh) {
            output.add_problem(file, session.last_problem());
            return false;
        }
        if (!options.name.empty())
            return korvane_mesh_compute_statistics_valid(mesh.get(), options.name.c_str()) == STATUS_OK;
        Json record = {{"file", file}};
        if (presentation.json) {
            std::string keyed;
            session.divert(&keyed);
            const bool reported = korvane_mesh_compute_statistics_valid(mesh.get(), "x") == STATUS_OK;
            session.divert(nullptr);
            record["report"] = keyed_values(keyed);
            if (!reported) {
                output.add_problem(file, session.last_problem());
                return false;
            }
        } else if (!presentation.quiet && !print_report(file, mesh.get())) {
            return false;
        }
        const bool spread_wanted = !presentation.quiet && (presentation.json || options.histogram ||
                                                              options.by_tag || options.worst > 0);
        record["measures"] =
            spread_wanted ? distributions_of(mesh.get(), options, "measuring " + file) : Json::array();
        output.add(std::move(record));
        return true;
    }

    [[nodiscard]] bool print_report(const std::string &file, const korvane_mesh_t *mesh) const
    {
        if (options.files.size() > 1)
            std::printf("%s\n", file.c_str());
        return korvane_mesh_compute_statistics(mesh) == STATUS_OK &&
               korvane_mesh_compute_topological_statistics(mesh) == STATUS_OK;
    }

    const StatsOptions &options;
    const Presentation &presentation;
    Session session;
    Output output;
};

} // namespace

int stats(const StatsOptions &options, const Presentation &presentation)
{
    return Reporter(options, presentation).report_all();
}

} // namespace korvane::tools
