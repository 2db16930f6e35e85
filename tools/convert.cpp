#include <optional>

#include "commands.h"
#include "file_description.h"
#include "session.h"
#include "whole_file.h"

namespace korvane::tools {

namespace {

bool has_tagged_vertex(const korvane_mesh_t *mesh)
{
    int32_t count = 0, tag = 0;
    korvane_mesh_get_vertex_count(mesh, &count);
    for (int32_t vertex = 1; vertex <= count; ++vertex)
        if (korvane_mesh_get_vertex_tag(mesh, vertex, &tag) == STATUS_OK && tag != 0)
            return true;
    return false;
}

void tell_what_is_lost(const std::string &input, const korvane_mesh_t *mesh, const std::string &output)
{
    const std::optional<FileDescription> description = describe_file(input);
    if (!description)
        return;
    const bool in_cards = is_bulk_data(output);
    for (const KeywordBlock &block : description->blocks)
        if (!(in_cards ? block.has_card : block.carried) && block.count > 0)
            Session::complain(
                input, "not carried over: " + block.name + " (" + std::to_string(block.count) + ")");
    if (in_cards && has_tagged_vertex(mesh))
        Session::complain(input, "not carried over: tags of vertices");
}

} // namespace

bool can_be_written(const std::string &file)
{
    return file.ends_with(".mesh") || file.ends_with(".meshb") || is_bulk_data(file);
}

int convert(const std::string &input, const std::string &output)
{
    Session session;
    const Mesh mesh = session.read(input);
    const auto write = [&](const std::string &path) { return session.write(mesh.get(), path, output); };
    if (!mesh || !write_whole_file(output, write))
        return file_problem;
    tell_what_is_lost(input, mesh.get(), output);
    return done;
}

} // namespace korvane::tools
