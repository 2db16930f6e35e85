#include <cstdio>

#include "commands.h"
#include "session.h"

namespace korvane::tools {

namespace {

bool report(Session &session, const std::string &file, const std::string &name, bool titled)
{
    const Mesh mesh = session.read(file);
    if (!mesh)
        return false;
    if (!name.empty())
        return korvane_mesh_compute_statistics_valid(mesh.get(), name.c_str()) == STATUS_OK;
    if (titled)
        std::printf("%s\n", file.c_str());
    return korvane_mesh_compute_statistics(mesh.get()) == STATUS_OK &&
           korvane_mesh_compute_topological_statistics(mesh.get()) == STATUS_OK;
}

} // namespace

int stats(const std::vector<std::string> &files, const std::string &name)
{
    Session session;
    bool all_reported = true;
    for (const std::string &file : files)
        all_reported &= report(session, file, name, files.size() > 1);
    return all_reported ? done : file_problem;
}

} // namespace korvane::tools
