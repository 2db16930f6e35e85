// Conversion never harms what was there: the output is written beside its place and moved into it when it is
// whole.
#include <cstdio>
#include <filesystem>
#include <optional>

#include <unistd.h>

#include "commands.h"
#include "file_description.h"
#include "session.h"

namespace korvane::tools {

namespace {

namespace fs = std::filesystem;

/// A new name in the folder of `target`, with its extension.
fs::path beside(const fs::path &target)
{
    return target.parent_path() / (".korvane-" + std::to_string(getpid()) + "-" + target.stem().string() +
                                      target.extension().string());
}

/// Devices and pipes are written as they are; links are followed, so that the file that they lead to is
/// replaced.
bool write_in_place(Session &session, const korvane_mesh_t *mesh, const std::string &output)
{
    std::error_code ignored;
    if (fs::exists(output, ignored) && !fs::is_regular_file(output, ignored))
        return session.write(mesh, output, output);
    const fs::path target =
        fs::is_symlink(output, ignored) ? fs::canonical(output, ignored) : fs::path(output);
    const fs::path draft = beside(target);
    std::error_code problem;
    if (!session.write(mesh, draft.string(), output)) {
        fs::remove(draft, ignored);
        return false;
    }
    fs::rename(draft, target, problem);
    if (problem) {
        fs::remove(draft, ignored);
        Session::complain(output, problem.message());
        return false;
    }
    return true;
}

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
    if (!mesh || !write_in_place(session, mesh.get(), output))
        return file_problem;
    tell_what_is_lost(input, mesh.get(), output);
    return done;
}

} // namespace korvane::tools
