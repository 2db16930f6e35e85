// Reading of solution files into size maps: one scalar per vertex of the mesh.
//
// The array of the sizes is as long as what the file can hold, not as the count that it states; sizes that
// the file lacks are zeros.
#include <algorithm>
#include <array>

#include <korvane.h>

#include "common/array.h"
#include "common/memory.h"
#include "io/file_messages.h"
#include "io/gmf.h"
#include "io/sizemap.h"

namespace korvane {

namespace {

/// The user data of a size map that was read from a file.
struct SizesOfFile {
    int32_t count = 0;
    Array<double> values; // those that the file held
};

korvane_status_t get_size_of_file(int32_t vertex, double *size, void *user_data)
{
    const auto &sizes = *static_cast<const SizesOfFile *>(user_data);
    if (size == nullptr)
        return STATUS_ERROR;
    *size = 0;
    if (vertex < 1 || vertex > sizes.count)
        return STATUS_ERROR;
    const auto position = static_cast<std::size_t>(vertex) - 1;
    if (position < sizes.values.size())
        *size = sizes.values[position];
    return STATUS_OK;
}

void delete_sizes_of_file(void *user_data)
{
    destroy(static_cast<SizesOfFile *>(user_data));
}

/// Reads the sizes, which come next in the file; null if memory runs out.
Owned<SizesOfFile> read_sizes(int32_t index, int32_t version, int32_t count)
{
    Owned<SizesOfFile> sizes = create_owned<SizesOfFile>();
    const int32_t held = gmf_held_lines(index, gmf_sol_at_vertices);
    if (!sizes || !sizes->values.try_resize_zeroed(static_cast<std::size_t>(held)))
        return nullptr;
    sizes->count = count;
    // Kept on purpose: a text may state version 3, whose sizes are not read, because only the first two
    // versions of solutions were ever written.
    if (version > 2 || held == 0)
        return sizes;
    const GmfInput column = {1, nullptr, sizes->values.data()};
    gmf_read_lines(index, gmf_sol_at_vertices, held, {&column, 1});
    return sizes;
}

/// Reads one solution file for one mesh.
class SolutionReader {
  public:
    SolutionReader(const korvane_mesh_t *read_mesh, korvane_context_t *mesh_context)
        : mesh(read_mesh), context(mesh_context)
    {}

    /// A new size map, or null, after a message unless memory ran out.
    [[nodiscard]] korvane_sizemap_t *read(const char *file_name) const
    {
        if (file_name == nullptr) {
            report_solution("Error using provided NULL name for solution file reading");
            return nullptr;
        }
        int32_t version = 0;
        int32_t dimension = 0;
        const int32_t index = gmf_open_file(file_name, gmf_read_mode, &version, &dimension);
        if (index == 0) {
            // Kept on purpose: "writing", because the message always was that of the writer.
            report_solution("Error opening solution file for writing");
            return nullptr;
        }
        korvane_sizemap_t *sizemap = read_open_file(index, version);
        if (gmf_close_file(index) == 0)
            report_solution("Error closing solution file after reading");
        return sizemap;
    }

  private:
    [[nodiscard]] korvane_sizemap_t *read_open_file(int32_t index, int32_t version) const
    {
        const int32_t count = checked_count(index);
        if (count == 0)
            return nullptr;
        if (gmf_seek_keyword(index, gmf_sol_at_vertices) != 0) {
            report_solution("Error reading solution file");
            return nullptr;
        }
        Owned<SizesOfFile> sizes = read_sizes(index, version, count);
        if (!sizes)
            return nullptr;
        korvane_sizemap_t *sizemap =
            korvane_sizemap_new(mesh, KORVANE_SIZEMAP_ISO_MESH_VERTEX, get_size_of_file, sizes.get());
        if (sizemap == nullptr)
            return nullptr;
        sizemap->delete_function = delete_sizes_of_file;
        static_cast<void>(sizes.release());
        return sizemap;
    }

    /// The number of sizes, or 0 after a message if the file is no size map of the mesh.
    [[nodiscard]] int32_t checked_count(int32_t index) const
    {
        int32_t type_count = 0;
        std::array<int32_t, GMF_MAX_TYPES> types{};
        const int32_t count =
            gmf_keyword_count(index, gmf_sol_at_vertices, &type_count, nullptr, types.data());
        if (count < 1)
            return refuse("Unsupported unknown sizemap type for solution file reading");
        int32_t vertex_count = 0;
        if (const auto status = korvane_mesh_get_vertex_count(mesh, &vertex_count); status != STATUS_OK)
            return refuse("Error accessing associated mesh for solution file reading", status);
        if (vertex_count != count)
            return refuse("Error matching mesh and sizemap for solution file reading");
        // Kept on purpose: "anistropic", because the message always had it so
        if (type_count != 1 || types[0] != gmf_scalar)
            return refuse("Unsupported anistropic sizemap type for solution file reading");
        return count;
    }

    int32_t refuse(std::string_view text, korvane_status_t number = STATUS_ERROR) const
    {
        report_solution(text, number);
        return 0;
    }

    void report_solution(std::string_view text, korvane_status_t number = STATUS_ERROR) const
    {
        report(context, number, reading_prefix, text);
    }

    const korvane_mesh_t *mesh;
    korvane_context_t *context;
};

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_sizemap_t *korvane_sizemap_new_read_sol(const korvane_mesh_t *mesh, const char *file_name)
{
    korvane_context_t *context = nullptr;
    if (korvane_mesh_get_context(mesh, &context) != STATUS_OK)
        return nullptr;
    return SolutionReader(mesh, context).read(file_name);
}

} // extern "C"
