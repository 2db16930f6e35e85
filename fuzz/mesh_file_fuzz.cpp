// Any file is read as a mesh or refused with one message; a mesh of usual size can be reported on and written
// in all formats, and what is read back from a binary file and written again is the same file.
#include <fstream>
#include <iterator>

#include <korvane.h>

#include "fuzz_input.h"

namespace {

using korvane::fuzz::file_name;
using korvane::fuzz::InputFile;
using korvane::fuzz::require;

korvane_status_t count_messages(korvane_message_t *, void *count)
{
    ++*static_cast<int *>(count);
    return STATUS_OK;
}

/// True if no count is so large that writing that many entities takes long.
bool is_small(const korvane_mesh_t *mesh)
{
    using Getter = korvane_status_t (*)(const korvane_mesh_t *, int32_t *);
    for (const Getter get_count : {Getter{korvane_mesh_get_vertex_count}, Getter{korvane_mesh_get_edge_count},
             Getter{korvane_mesh_get_triangle_count}, Getter{korvane_mesh_get_quadrangle_count},
             Getter{korvane_mesh_get_tetrahedron_count}, Getter{korvane_mesh_get_hexahedron_count},
             Getter{korvane_mesh_get_pyramid_count}}) {
        int32_t count = 0;
        require(get_count(mesh, &count) == STATUS_OK);
        if (count > 2000)
            return false;
    }
    return true;
}

std::string written(const korvane_mesh_t *mesh, const std::string &extension)
{
    const std::string name = file_name(extension);
    require(korvane_mesh_write_mesh(mesh, name.c_str()) == STATUS_OK);
    std::ifstream file(name, std::ios::binary);
    std::string content(std::istreambuf_iterator<char>(file), {});
    return content;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const InputFile input(korvane::fuzz::is_binary(data, size) ? ".meshb" : ".mesh", data, size);
    korvane_context_t *context = korvane_context_new();
    int messages = 0;
    korvane_context_set_message_callback(context, count_messages, &messages);
    const korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, input.name());
    require(messages == (mesh == nullptr ? 1 : 0));
    if (mesh != nullptr && is_small(mesh)) {
        const std::string binary = written(mesh, "-again.meshb");
        const korvane_mesh_t *again = korvane_mesh_new_read_mesh(context, file_name("-again.meshb").c_str());
        require(again != nullptr && written(again, "-third.meshb") == binary);
        written(mesh, "-again.mesh");
        require(korvane_mesh_new_read_mesh(context, file_name("-again.mesh").c_str()) != nullptr);
        korvane_mesh_write_bdf(mesh, file_name("-again.bdf").c_str());
        require(korvane_mesh_compute_statistics(mesh) == STATUS_OK);
        require(korvane_mesh_compute_statistics_valid(mesh, "name") == STATUS_OK);
        for (const char *extension : {"-again.meshb", "-third.meshb", "-again.mesh", "-again.bdf"})
            std::remove(file_name(extension).c_str());
    }
    korvane_context_delete(context);
    return 0;
}
