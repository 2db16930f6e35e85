// Any file is read as a size map of a mesh that has as many vertices as it states, or refused with one
// message; one of usual size can be written, and what is read back and written again is the same file.
#include <fstream>
#include <iterator>

#include <korvane.h>

#include "fuzz_input.h"
#include "io/gmf.h"

namespace {

using korvane::fuzz::file_name;
using korvane::fuzz::InputFile;
using korvane::fuzz::require;

korvane_status_t count_messages(korvane_message_t *, void *count)
{
    ++*static_cast<int *>(count);
    return STATUS_OK;
}

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

std::string written(const korvane_sizemap_t *sizemap, const std::string &extension)
{
    const std::string name = file_name(extension);
    require(korvane_sizemap_write_sol(sizemap, name.c_str()) == STATUS_OK);
    std::ifstream file(name, std::ios::binary);
    std::string content(std::istreambuf_iterator<char>(file), {});
    return content;
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

void write_again(const korvane_mesh_t *mesh, const korvane_sizemap_t *sizemap)
{
    const std::string binary = written(sizemap, "-again.solb");
    const korvane_sizemap_t *again = korvane_sizemap_new_read_sol(mesh, file_name("-again.solb").c_str());
    require(again != nullptr && written(again, "-third.solb") == binary);
    written(sizemap, "-again.sol");
    require(korvane_sizemap_new_read_sol(mesh, file_name("-again.sol").c_str()) != nullptr);
    for (const char *extension : {"-again.solb", "-third.solb", "-again.sol"})
        std::remove(file_name(extension).c_str());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const InputFile input(korvane::fuzz::is_binary(data, size) ? ".solb" : ".sol", data, size);
    const int32_t count = stated_count(input.name());
    korvane_context_t *context = korvane_context_new();
    int messages = 0;
    korvane_context_set_message_callback(context, count_messages, &messages);
    korvane_mesh_t *mesh = korvane_mesh_new_in_memory(context);
    require(korvane_mesh_set_vertex_count(mesh, count) == STATUS_OK);
    const korvane_sizemap_t *sizemap = korvane_sizemap_new_read_sol(mesh, input.name());
    require(messages == (sizemap == nullptr ? 1 : 0));
    if (sizemap != nullptr) {
        check_sizes(sizemap, count);
        if (count <= 2000)
            write_again(mesh, sizemap);
        korvane_mesh_set_vertex_count(mesh, count - 1);
        require(korvane_sizemap_new_read_sol(mesh, input.name()) == nullptr && messages == 1);
    }
    korvane_context_delete(context);
    return 0;
}
