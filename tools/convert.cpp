#include <algorithm>
#include <cstdio>
#include <optional>

#include "commands.h"
#include "file_description.h"
#include "mesh_kinds.h"
#include "session.h"
#include "stl.h"
#include "vtu.h"
#include "whole_file.h"

namespace korvane::tools {

namespace {

/// What a file format takes up of a mesh, and how it is written.
struct Format {
    const char *extension;
    bool (*takes_block)(const KeywordBlock &block);
    bool (*takes_kind)(const MeshKind &kind);
    bool takes_tags_of_vertices;
    bool takes_stray_elements; // which name vertices that the mesh lacks
    bool (*write)(
        Session &session, const korvane_mesh_t *mesh, const std::string &path, const std::string &shown);
};

bool write_by_library(
    Session &session, const korvane_mesh_t *mesh, const std::string &path, const std::string &shown)
{
    return session.write(mesh, path, shown);
}

bool is_carried(const KeywordBlock &block)
{
    return block.carried;
}

bool is_any(const MeshKind &)
{
    return true;
}

constexpr Format formats[] = {
    {".mesh", is_carried, is_any, true, true, write_by_library},
    {".meshb", is_carried, is_any, true, true, write_by_library},
    {".bdf", [](const KeywordBlock &block) { return block.has_card; }, is_any, false, true, write_by_library},
    {".vtu", is_carried, is_any, true, false,
        [](Session &, const korvane_mesh_t *mesh, const std::string &path, const std::string &shown) {
            return write_vtu(mesh, cells_of(mesh), true, path) ||
                   Session::complain(shown, "cannot be written");
        }},
    {".stl",
        [](const KeywordBlock &block) {
            return block.name == "Vertices" || block.name == "Triangles" || block.name == "Quadrilaterals";
        },
        [](const MeshKind &kind) { return kind.dimension == 2; }, false, false,
        [](Session &, const korvane_mesh_t *mesh, const std::string &path, const std::string &shown) {
            return write_stl(mesh, path) || Session::complain(shown, "cannot be written");
        }},
};

/// Null if there is none of the file's extension.
const Format *format_of(const std::string &file)
{
    const auto found =
        std::ranges::find_if(formats, [&](const Format &format) { return file.ends_with(format.extension); });
    return found == std::end(formats) ? nullptr : found;
}

bool has_tagged_vertex(const korvane_mesh_t *mesh)
{
    for (int32_t vertex = 1, count = count_of(vertex_kind(), mesh); vertex <= count; ++vertex)
        if (tag_of(vertex_kind(), mesh, vertex) != 0)
            return true;
    return false;
}

int64_t count_stray_elements(const korvane_mesh_t *mesh, const Format &format)
{
    int64_t stray = 0;
    for (const MeshKind &kind : element_kinds())
        for (int32_t i = 1, count = count_of(kind, mesh); format.takes_kind(kind) && i <= count; ++i)
            stray += !can_be_cell(mesh, {&kind, i});
    return stray;
}

std::vector<std::string> what_is_lost(
    const FileDescription &description, const korvane_mesh_t *mesh, const Format &format)
{
    std::vector<std::string> lost;
    for (const KeywordBlock &block : description.blocks)
        if (!format.takes_block(block) && block.count > 0)
            lost.push_back(block.name + " (" + std::to_string(block.count) + ")");
    if (!format.takes_tags_of_vertices && has_tagged_vertex(mesh))
        lost.push_back("tags of vertices");
    if (!format.takes_stray_elements)
        if (const int64_t stray = count_stray_elements(mesh, format); stray > 0)
            lost.push_back("elements of vertices that the mesh lacks (" + std::to_string(stray) + ")");
    return lost;
}

void print(const Json &record, const Presentation &presentation)
{
    if (presentation.verbose)
        std::printf("%s -> %s\n", text_of(record["file"]).c_str(), text_of(record["output"]).c_str());
}

} // namespace

bool can_be_written(const std::string &file)
{
    return format_of(file) != nullptr;
}

int convert(
    const std::string &input, const std::vector<std::string> &outputs, const Presentation &presentation)
{
    Session session;
    Output report("convert", presentation, print);
    const std::optional<FileDescription> description = describe_file(input, false);
    const Mesh mesh = session.read(input);
    if (!mesh) {
        report.add_problem(input, session.last_problem());
        return report.finish(file_problem);
    }
    int status = done;
    for (const std::string &output : outputs) {
        const Format &format = *format_of(output);
        const auto write = [&](const std::string &path) {
            return format.write(session, mesh.get(), path, output);
        };
        if (!write_whole_file(output, write)) {
            status = file_problem;
            report.add_problem(output, "cannot be written");
            continue;
        }
        std::vector<std::string> lost;
        if (description)
            lost = what_is_lost(*description, mesh.get(), format);
        const std::string announcement =
            outputs.size() > 1 ? "not carried over to " + output + ": " : "not carried over: ";
        for (const std::string &loss : lost)
            Session::complain(input, announcement + loss);
        report.add({{"file", input}, {"output", output}, {"not_carried_over", lost}});
    }
    return report.finish(status);
}

} // namespace korvane::tools
