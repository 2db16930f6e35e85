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

void print_format(const std::string &file, const FileDescription &description)
{
    const bool little = (std::endian::native == std::endian::little) != description.foreign_byte_order;
    std::printf("%s\n  format : %s, version %d (%s precision), %d dimensions\n", file.c_str(),
        !description.binary ? "text" : (little ? "binary, little-endian" : "binary, big-endian"),
        description.version, description.version == 1 ? "single" : "double", description.dimension);
    std::printf("  keywords :\n");
    for (const KeywordBlock &block : description.blocks)
        std::printf("    %-30s %10d%s\n", block.name.c_str(), block.count,
            block.carried || block.solution ? "" : "  (not read)");
}

void print_solutions(const std::string &file)
{
    for (const Solution &solution : read_solutions(file)) {
        std::string types;
        for (const int32_t type : solution.types)
            types += (types.empty() ? "" : ", ") + name_of_type(type);
        std::printf("  %s : %s; values per line : %zu\n", solution.keyword.c_str(),
            types.empty() ? "no type" : types.c_str(), solution.ranges.size());
        for (std::size_t i = 0; i < solution.ranges.size(); ++i)
            std::printf(
                "    value %zu : %.15g to %.15g\n", i + 1, solution.ranges[i].low, solution.ranges[i].high);
    }
}

void print_bounding_box(const korvane_mesh_t *mesh)
{
    int32_t count = 0;
    korvane_mesh_get_vertex_count(mesh, &count);
    if (count < 1)
        return;
    std::array<double, 3> low{HUGE_VAL, HUGE_VAL, HUGE_VAL}, high{-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    for (int32_t vertex = 1; vertex <= count; ++vertex) {
        std::array<double, 3> xyz{};
        korvane_mesh_get_vertex_coordinates(mesh, vertex, xyz.data());
        for (std::size_t axis = 0; axis < 3; ++axis) {
            low[axis] = std::fmin(low[axis], xyz[axis]);
            high[axis] = std::fmax(high[axis], xyz[axis]);
        }
    }
    std::printf("  bounding box :\n");
    for (std::size_t axis = 0; axis < 3; ++axis)
        std::printf("    %c : %.15g to %.15g\n", "xyz"[axis], low[axis], high[axis]);
}

void print_required(const korvane_mesh_t *mesh)
{
    for (const MeshKind &kind : mesh_kinds()) {
        int32_t required = 0;
        for (int32_t i = 1, count = count_of(kind, mesh); i <= count; ++i) {
            int32_t flag = 0;
            required += kind.get_required_status(mesh, i, &flag) == STATUS_OK && flag != 0;
        }
        if (required > 0)
            std::printf("  required %s : %d\n", kind.plural, required);
    }
}

void print_tags(const korvane_mesh_t *mesh)
{
    for (const MeshKind &kind : mesh_kinds()) {
        std::map<int32_t, int32_t> entities_by_tag;
        for (int32_t i = 1, count = count_of(kind, mesh); i <= count; ++i) {
            int32_t tag = 0;
            kind.get_tag(mesh, i, &tag);
            ++entities_by_tag[tag];
        }
        if (entities_by_tag.empty())
            continue;
        std::printf("  tags of %s :\n", kind.plural);
        std::size_t shown = 0;
        for (const auto &[tag, entities] : entities_by_tag) {
            if (shown++ == most_tags_shown) {
                std::printf("    and %zu more tags\n", entities_by_tag.size() - most_tags_shown);
                break;
            }
            std::printf("    %-10d %10d\n", tag, entities);
        }
    }
}

bool describe(Session &session, const std::string &file)
{
    const std::optional<FileDescription> description = describe_file(file);
    if (description)
        print_format(file, *description);
    if (description)
        print_solutions(file);
    if (description && description->solution)
        return true;
    if (description && description->dimension != 3) {
        std::printf("  contents : not read, because they are not three-dimensional\n");
        return true;
    }
    const Mesh mesh = session.read(file);
    if (!mesh)
        return false;
    print_bounding_box(mesh.get());
    print_required(mesh.get());
    print_tags(mesh.get());
    return true;
}

} // namespace

int info(const std::vector<std::string> &files)
{
    Session session;
    bool all_described = true;
    for (const std::string &file : files)
        all_described &= describe(session, file);
    return all_described ? done : file_problem;
}

} // namespace korvane::tools
