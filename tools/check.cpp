// Each file gets one verdict; what is behind it goes where it was asked for.
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>

#include "commands.h"
#include "findings.h"
#include "progress.h"
#include "session.h"
#include "vtu.h"
#include "whole_file.h"

namespace korvane::tools {

namespace {

Json record_of(const std::string &file, const std::vector<Finding> &findings, std::span<const Limit> limits,
    bool every_single)
{
    std::map<std::size_t, int64_t> counts;
    for (const Finding &finding : findings)
        ++counts[finding.rule];
    Json record = {
        {"file", file}, {"valid", findings.empty()}, {"count", findings.size()}, {"findings", Json::array()}};
    for (const auto &[rule, count] : counts)
        record["findings"].push_back({{"finding", name_of_rule(rule, limits)}, {"count", count}});
    if (!every_single)
        return record;
    record["entities"] = Json::array();
    for (const Finding &finding : findings)
        record["entities"].push_back({{"kind", finding.kind->singular}, {"number", finding.number},
            {"finding", name_of_rule(finding.rule, limits)}});
    return record;
}

void print(const Json &record, const Presentation &)
{
    const bool valid = record["valid"];
    std::string verdict = coloured(valid ? "valid" : "findings", valid ? Colour::good : Colour::bad);
    for (const Json &finding : record["findings"])
        verdict += (&finding == &record["findings"].front() ? ": " : ", ") + text_of(finding["count"]) + " " +
                   text_of(finding["finding"]);
    std::printf("%s: %s\n", text_of(record["file"]).c_str(), verdict.c_str());
    for (const Json &entity : record.value("entities", Json::array()))
        std::printf("  %s %s %s\n", text_of(entity["kind"]).c_str(), text_of(entity["number"]).c_str(),
            text_of(entity["finding"]).c_str());
}

bool write_ids(const std::string &file, const std::vector<Finding> &findings, std::span<const Limit> limits)
{
    return write_whole_file(file, [&](const std::string &path) {
        std::ofstream stream(path);
        for (const Finding &finding : findings)
            stream << finding.kind->singular << ' ' << finding.number << ' '
                   << name_of_rule(finding.rule, limits) << '\n';
        return stream.flush().good() || Session::complain(file, "cannot be written");
    });
}

bool write_bad_entities(
    const std::string &file, const korvane_mesh_t *mesh, const std::vector<Finding> &findings)
{
    std::vector<Cell> cells;
    for (const Finding &finding : findings) {
        const bool is_new =
            cells.empty() || cells.back().kind != finding.kind || cells.back().number != finding.number;
        if (is_new && can_be_cell(mesh, {finding.kind, finding.number}))
            cells.push_back({finding.kind, finding.number});
    }
    return write_whole_file(file, [&](const std::string &path) {
        return write_vtu(mesh, cells, false, path) || Session::complain(file, "cannot be written");
    });
}

/// False after what is wrong was told.
bool read_limits(const CheckOptions &options, std::vector<Limit> &limits, int &status)
{
    std::string problem;
    for (const std::string &text : options.limits)
        if (problem = add_limit(text, limits); !problem.empty())
            break;
    bool readable = true;
    if (problem.empty() && !options.limits_file.empty()) {
        problem = add_limits_of_file(options.limits_file, limits, readable);
        if (!readable)
            problem = "cannot be read";
    }
    status = problem.empty() ? done : readable ? wrong_usage : unreadable;
    return problem.empty() ||
           Session::complain(options.limits_file.empty() ? "--limit" : options.limits_file, problem);
}

class Checker {
  public:
    Checker(const CheckOptions &asked, const Presentation &wanted, std::span<const Limit> kept)
        : options(asked), presentation(wanted), limits(kept), output("check", wanted, print)
    {}

    int check_all()
    {
        int status = done;
        for (const std::string &file : options.files)
            status = std::max(status, check_one(file));
        return output.finish(status);
    }

  private:
    int check_one(const std::string &file)
    {
        const Mesh mesh = session.read(file);
        if (!mesh) {
            output.add_problem(file, session.last_problem());
            return unreadable;
        }
        int64_t elements = 0;
        for (const MeshKind &kind : element_kinds())
            elements += count_of(kind, mesh.get());
        std::vector<Finding> findings;
        {
            Progress progress("checking " + file, elements, presentation.quiet);
            findings = find_all(mesh.get(), limits, progress);
        }
        if (!options.bad_ids.empty() && !write_ids(options.bad_ids, findings, limits))
            return unreadable;
        if (!options.bad.empty() && !write_bad_entities(options.bad, mesh.get(), findings))
            return unreadable;
        output.add(record_of(file, findings, limits, presentation.verbose));
        return findings.empty() ? done : file_problem;
    }

    const CheckOptions &options;
    const Presentation &presentation;
    std::span<const Limit> limits;
    Session session;
    Output output;
};

} // namespace

int check(const CheckOptions &options, const Presentation &presentation)
{
    std::vector<Limit> limits;
    int status = done;
    if (!read_limits(options, limits, status))
        return status;
    return Checker(options, presentation, limits).check_all();
}

} // namespace korvane::tools
