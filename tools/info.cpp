#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <map>

#include "commands.h"
#include "file_description.h"
#include "mesh_kinds.h"
#include "session.h"
#include "solutions.h"

namespace korvane::tools {

namespace {

constexpr std::size_t most_tags_shown = 20; // of one kind of entity

Json format_of(const FileDescription &description)
{
    const bool little = (std::endian::native == std::endian::little) != description.foreign_byte_order;
    Json keywords = Json::array();
    for (const KeywordBlock &block : description.blocks)
        keywords.push_back(
            {{"name", block.name}, {"count", block.count}, {"read", block.carried || block.solution}});
    return {{"encoding", !description.binary ? "text"
                         : little            ? "binary, little-endian"
                                             : "binary, big-endian"},
        {"version", description.version}, {"precision", description.version == 1 ? "single" : "double"},
        {"dimension", description.dimension}, {"keywords", std::move(keywords)}};
}

Json range_of(double low, double high)
{
    return {{"low", low}, {"high", high}};
}

/// The ranges of the values are in it unless only the header is wanted.
Json solutions_of(const std::string &file, bool header_only)
{
    Json solutions = Json::array();
    for (const Solution &solution : read_solutions(file, header_only)) {
        Json types = Json::array(), ranges = Json::array();
        for (const int32_t type : solution.types)
            types.push_back(name_of_type(type));
        for (const auto &[low, high] : solution.ranges)
            ranges.push_back(range_of(low, high));
        solutions.push_back({{"keyword", solution.keyword}, {"types", std::move(types)}});
        if (!header_only)
            solutions.back()["values"] = std::move(ranges);
    }
    return solutions;
}

/// One range per axis; none without vertices.
Json bounding_box_of(const korvane_mesh_t *mesh)
{
    Json box = Json::array();
    const int32_t count = count_of(vertex_kind(), mesh);
    for (std::size_t axis = 0; count > 0 && axis < 3; ++axis) {
        double low = HUGE_VAL, high = -HUGE_VAL;
        for (int32_t vertex = 1; vertex <= count; ++vertex) {
            const double value = position_of(mesh, vertex)[axis];
            low = std::fmin(low, value);
            high = std::fmax(high, value);
        }
        box.push_back(range_of(low, high));
    }
    return box;
}

/// The kinds that the mesh has.
Json entities_of(const korvane_mesh_t *mesh)
{
    Json entities = Json::array();
    for (const MeshKind &kind : mesh_kinds()) {
        std::map<int32_t, int32_t> entities_by_tag;
        int32_t required = 0;
        const int32_t count = count_of(kind, mesh);
        for (int32_t i = 1; i <= count; ++i) {
            ++entities_by_tag[tag_of(kind, mesh, i)];
            required += is_required(kind, mesh, i);
        }
        if (count == 0)
            continue;
        Json tags = Json::array();
        for (const auto &[tag, tagged] : entities_by_tag)
            tags.push_back({{"tag", tag}, {"count", tagged}});
        entities.push_back(
            {{"kind", kind.singular}, {"count", count}, {"required", required}, {"tags", std::move(tags)}});
    }
    return entities;
}

// A description as text

void print_format(const std::string &file, const Json &format)
{
    std::printf("%s\n  format : %s, version %d (%s precision), %d dimensions\n  keywords :\n", file.c_str(),
        text_of(format["encoding"]).c_str(), format["version"].get<int>(),
        text_of(format["precision"]).c_str(), format["dimension"].get<int>());
    for (const Json &block : format["keywords"])
        std::printf("    %-30s %10d%s\n", text_of(block["name"]).c_str(), block["count"].get<int>(),
            block["read"] ? "" : "  (not read)");
}

void print_solution(const Json &solution)
{
    std::string types;
    for (const Json &type : solution["types"])
        types += (types.empty() ? "" : ", ") + text_of(type);
    std::printf("  %s : %s", text_of(solution["keyword"]).c_str(), types.empty() ? "no type" : types.c_str());
    if (!solution.contains("values")) {
        std::printf("\n");
        return;
    }
    const Json &values = solution["values"];
    std::printf("; values per line : %zu\n", values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        std::printf("    value %zu : %.15g to %.15g\n", i + 1, values[i]["low"].get<double>(),
            values[i]["high"].get<double>());
}

void print_tags(const Json &entities, std::size_t most)
{
    std::printf("  tags of %s :\n", find_kind(text_of(entities["kind"]))->plural);
    const Json &tags = entities["tags"];
    for (std::size_t i = 0; i < std::min(most, tags.size()); ++i)
        std::printf("    %-10d %10d\n", tags[i]["tag"].get<int>(), tags[i]["count"].get<int>());
    if (tags.size() > most)
        std::printf("    and %zu more tags\n", tags.size() - most);
}

void print(const Json &record, const Presentation &presentation)
{
    print_format(text_of(record["file"]), record["format"]);
    for (const Json &solution : record["solutions"])
        print_solution(solution);
    if (record.value("not_three_dimensional", false))
        std::printf("  contents : not read, because they are not three-dimensional\n");
    if (!record.contains("entities"))
        return;
    const Json &box = record["bounding_box"];
    if (!box.empty())
        std::printf("  bounding box :\n");
    for (std::size_t axis = 0; axis < box.size(); ++axis)
        std::printf("    %c : %.15g to %.15g\n", "xyz"[axis], box[axis]["low"].get<double>(),
            box[axis]["high"].get<double>());
    for (const Json &entities : record["entities"])
        if (entities["required"] > 0)
            std::printf("  required %s : %d\n", find_kind(text_of(entities["kind"]))->plural,
                entities["required"].get<int>());
    for (const Json &entities : record["entities"])
        print_tags(entities, presentation.verbose ? SIZE_MAX : most_tags_shown);
}

bool describe(Session &session, Output &output, const std::string &file, bool header_only)
{
    const std::optional<FileDescription> description = session.describe(file, !header_only);
    if (!description) {
        output.add_problem(file, session.last_problem());
        return false;
    }
    const bool is_whole = description->shortfall.empty();
    Json record = {{"file", file}, {"format", format_of(*description)},
        {"solutions", solutions_of(file, header_only || !is_whole)}};
    const bool is_flat = !description->solution && description->dimension != 3;
    const bool is_read = is_whole && !header_only && !description->solution && !is_flat;
    if (is_flat && !header_only)
        record["not_three_dimensional"] = true;
    const Mesh mesh = is_read ? session.read(file) : nullptr;
    if (mesh)
        record.update({{"bounding_box", bounding_box_of(mesh.get())}, {"entities", entities_of(mesh.get())}});
    const bool is_described = is_whole && (mesh || !is_read);
    if (!is_described)
        record["problem"] = session.last_problem();
    output.add(std::move(record));
    return is_described;
}

} // namespace

int info(const InfoOptions &options, const Presentation &presentation)
{
    Session session;
    Output output("info", presentation, print);
    bool all_described = true;
    for (const std::string &file : options.files)
        all_described &= describe(session, output, file, options.header);
    return output.finish(all_described ? done : file_problem);
}

} // namespace korvane::tools
