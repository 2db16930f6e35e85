// The vertices of the surface elements of two tags, and what carries the ones to the others.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>
#include <utility>

#include "commands.h"
#include "mesh_kinds.h"
#include "progress.h"
#include "region_match.h"
#include "session.h"

namespace korvane::tools {

namespace {

constexpr double default_tolerance = 1e-6; // of the size of the region

/// The vertices of the surface elements of a tag; of its edges if there are none.
std::vector<RegionPoint> region_of(const korvane_mesh_t *mesh, int32_t tag)
{
    std::set<int32_t> vertices;
    const int32_t vertex_count = count_of(vertex_kind(), mesh);
    for (const int32_t dimension : {2, 1})
        for (const MeshKind &kind : element_kinds())
            for (int32_t i = 1, count = count_of(kind, mesh);
                 kind.dimension == dimension && (dimension == 2 || vertices.empty()) && i <= count; ++i)
                if (tag_of(kind, mesh, i) == tag) {
                    const ElementVertices named = vertices_of(kind, mesh, i);
                    vertices.insert(named.begin(), named.begin() + kind.corners);
                }
    std::vector<RegionPoint> points;
    for (const int32_t vertex : vertices) {
        const auto [x, y, z] = position_of(mesh, vertex);
        if (vertex >= 1 && vertex <= vertex_count && std::isfinite(x + y + z))
            points.push_back({vertex, {x, y, z}});
    }
    return points;
}

Json as_json(Vec3 v)
{
    return Json::array({v.x, v.y, v.z});
}

Json as_json(const RegionMatch &match)
{
    const Isometry &isometry = match.isometry;
    Json made = {{"kind", ""}};
    switch (isometry.kind) {
    case IsometryKind::translation:
        made = {{"kind", "translation"}, {"vector", as_json(isometry.direction)}};
        break;
    case IsometryKind::rotation:
        made = {{"kind", "rotation"}, {"axis", as_json(isometry.direction)},
            {"point", as_json(isometry.point)}, {"angle", isometry.angle}};
        break;
    case IsometryKind::mirror:
        made = {
            {"kind", "mirror"}, {"normal", as_json(isometry.direction)}, {"point", as_json(isometry.point)}};
        break;
    case IsometryKind::general:
        made = {{"kind", "general"}};
        break;
    }
    const auto &[x, y, z] = match.matrix.rows;
    made["matrix"] = Json::array({as_json(x), as_json(y), as_json(z)});
    made["offset"] = as_json(match.offset);
    made["residual"] = match.residual;
    return made;
}

/// Components below `rounding` are shown as 0.
void print_vector(const char *title, const Json &vector, double rounding)
{
    std::printf("  %-10s :", title);
    for (const Json &component : vector) {
        const double value = component.get<double>();
        std::printf(" %.9g", std::fabs(value) < rounding ? 0.0 : value);
    }
    std::printf("\n");
}

void print(const Json &record, const Presentation &presentation)
{
    const bool found = !record["transformation"].is_null();
    const bool complete = found && record["unmatched"][0].empty() && record["unmatched"][1].empty();
    const Json &map = record["transformation"];
    std::printf("%s: tags %s and %s: %s\n", text_of(record["file"]).c_str(),
        text_of(record["tags"][0]).c_str(), text_of(record["tags"][1]).c_str(),
        coloured(
            found ? text_of(map["kind"]) : "no transformation found", complete ? Colour::good : Colour::bad)
            .c_str());
    if (!found)
        return;
    const double rounding = 1e-12, rounding_of_lengths = 1e-6 * record["tolerance"].get<double>();
    const std::pair<const char *, double> parts[] = {{"vector", rounding_of_lengths}, {"axis", rounding},
        {"normal", rounding}, {"point", rounding_of_lengths}};
    for (const auto &[part, negligible] : parts)
        if (map.contains(part))
            print_vector(part, map[part], negligible);
    if (map["kind"] == "general") {
        for (const Json &row : map["matrix"])
            print_vector("matrix", row, rounding);
        print_vector("offset", map["offset"], rounding_of_lengths);
    }
    if (map.contains("angle"))
        std::printf("  angle      : %.9g\n", map["angle"].get<double>());
    std::printf(
        "  residual   : %.3g\n  pairs      : %zu\n", map["residual"].get<double>(), record["pairs"].size());
    for (std::size_t side = 0; side < 2; ++side) {
        const Json &unmatched = record["unmatched"][side];
        std::printf(
            "  unmatched  : %zu of tag %s\n", unmatched.size(), text_of(record["tags"][side]).c_str());
        for (const Json &vertex : unmatched)
            if (presentation.verbose)
                std::printf("    %s\n", text_of(vertex).c_str());
    }
}

int match_one(Session &session, Output &output, const std::string &file, const PeriodicOptions &options)
{
    const Mesh mesh = session.read(file);
    if (!mesh) {
        output.add_problem(file, session.last_problem());
        return unreadable;
    }
    const std::vector<RegionPoint> source = region_of(mesh.get(), options.tags[0]),
                                   target = region_of(mesh.get(), options.tags[1]);
    const double tolerance = options.tolerance > 0 ? options.tolerance : default_tolerance * size_of(source);
    const std::optional<RegionMatch> match = match_regions(session.own_context(), source, target, tolerance);
    Json record = {{"file", file}, {"tags", options.tags}, {"vertices", {source.size(), target.size()}},
        {"tolerance", tolerance}, {"transformation", match ? as_json(*match) : Json()}};
    if (match)
        record.update({{"pairs", match->pairs},
            {"unmatched", Json::array({match->unmatched_source, match->unmatched_target})}});
    output.add(std::move(record));
    const bool complete = match && match->unmatched_source.empty() && match->unmatched_target.empty();
    return complete ? done : file_problem;
}

} // namespace

int periodic(const PeriodicOptions &options, const Presentation &presentation)
{
    Session session;
    Output output("periodic", presentation, print);
    int status = done;
    for (const std::string &file : options.files)
        status = std::max(status, match_one(session, output, file, options));
    return output.finish(status);
}

} // namespace korvane::tools
