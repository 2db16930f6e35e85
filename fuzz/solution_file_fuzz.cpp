// Any file is read as a size map of a mesh that has as many vertices as it states, or refused with one
// message; one of usual size can be written, and what is read back and written again is the same file.
#include <korvane.h>

#include "fuzz_input.h"
#include "io/gmf.h"
#include "round_trip.h"

namespace {

using korvane::fuzz::require;

/// The number of sizes that a file states, or 0.
int32_t stated_count(const char *name)
{
    int32_t version = 0;
    int32_t dimension = 0;
    const int32_t index = korvane::gmf_open_file(name, korvane::gmf_read_mode, &version, &dimension);
    const int32_t count = korvane::gmf_keyword_count(index, korvane::gmf_sol_at_vertices);
    korvane::gmf_close_file(index);
    return count;
}

void check_sizes(const korvane_sizemap_t *sizemap, int32_t count)
{
    double size = -7;
    for (const int32_t vertex : {1, count})
        require(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, vertex, &size) == STATUS_OK);
    for (const int32_t vertex : {0, -1, INT32_MIN})
        require(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, vertex, &size) == STATUS_ERROR);
    if (count < INT32_MAX)
        require(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, count + 1, &size) == STATUS_ERROR);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const korvane::fuzz::InputFile input(korvane::fuzz::is_binary(data, size) ? ".solb" : ".sol", data, size);
    const int32_t count = stated_count(input.name());
    const korvane::fuzz::CountingContext context;
    korvane_mesh_t *mesh = korvane_mesh_new_in_memory(context);
    require(korvane_mesh_set_vertex_count(mesh, count) == STATUS_OK);
    const auto read = [&](const char *name) { return korvane_sizemap_new_read_sol(mesh, name); };
    const korvane_sizemap_t *sizemap = read(input.name());
    require(context.messages == (sizemap == nullptr ? 1 : 0));
    if (sizemap != nullptr) {
        check_sizes(sizemap, count);
        if (count <= 2000)
            korvane::fuzz::require_round_trip(sizemap, ".sol", read, korvane_sizemap_write_sol);
        korvane_mesh_set_vertex_count(mesh, count - 1);
        require(read(input.name()) == nullptr && context.messages == 1);
    }
    return 0;
}
