// Any file is read as a mesh or refused with one message; a mesh of usual size can be reported on and written
// in all formats, and what is read back from a binary file and written again is the same file.
#include <korvane.h>

#include "fuzz_input.h"
#include "mesh_rows.h"
#include "round_trip.h"

namespace {

using korvane::fuzz::file_name;
using korvane::fuzz::require;

/// True if no count is so large that writing that many entities takes long.
bool is_small(const korvane_mesh_t *mesh)
{
    for (const korvane::fuzz::rows::KindRow &kind : korvane::fuzz::rows::kinds) {
        int32_t count = 0;
        require(kind.get_count(mesh, &count) == STATUS_OK);
        if (count > 2000)
            return false;
    }
    return true;
}

void use(korvane_context_t *context, const korvane_mesh_t *mesh)
{
    korvane::fuzz::require_round_trip(
        mesh, ".mesh", [&](const char *name) { return korvane_mesh_new_read_mesh(context, name); },
        korvane_mesh_write_mesh);
    const std::string cards = file_name("-again.bdf");
    korvane_mesh_write_bdf(mesh, cards.c_str());
    std::remove(cards.c_str());
    require(korvane_mesh_compute_statistics(mesh) == STATUS_OK);
    require(korvane_mesh_compute_statistics_valid(mesh, "name") == STATUS_OK);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const korvane::fuzz::InputFile input(
        korvane::fuzz::is_binary(data, size) ? ".meshb" : ".mesh", data, size);
    const korvane::fuzz::CountingContext context;
    const korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, input.name());
    require(context.messages == (mesh == nullptr ? 1 : 0));
    if (mesh != nullptr && is_small(mesh))
        use(context, mesh);
    return 0;
}
