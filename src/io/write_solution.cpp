// Writing of size maps to solution files: one scalar per vertex of the mesh.
//
// Whatever fails, the file is closed with its end, so that it is well-formed as far as it goes. What did not
// reach the system shows when the file is closed.
#include <array>

#include <korvane.h>

#include "common/try.h"
#include "io/entity_table.h"
#include "io/file_messages.h"
#include "io/gmf.h"
#include "io/sizemap.h"

namespace korvane {

namespace {

/// Kept on purpose: the prefix of the mesh reader, because the messages about solution files always had it.
korvane_status_t report_solution(
    const korvane_sizemap_t &sizemap, korvane_status_t number, std::string_view text)
{
    return report(sizemap.context, number, reading_prefix, text);
}

/// The index of the file, or 0 after a message.
int32_t open_solution(const korvane_sizemap_t &sizemap, const char *file_name)
{
    if (file_name == nullptr) {
        report_solution(sizemap, STATUS_ERROR, "Error using provided NULL name for solution file writing");
        return 0;
    }
    const int32_t index = gmf_open_file(file_name, gmf_write_mode, 2, 3);
    if (index == 0)
        report_solution(sizemap, STATUS_ERROR, "Error opening solution file for writing");
    return index;
}

[[nodiscard]] korvane_status_t write_sizes(const korvane_sizemap_t &sizemap, int32_t index)
{
    if (sizemap.type != KORVANE_SIZEMAP_ISO_MESH_VERTEX)
        return report_solution(sizemap, STATUS_ERROR, "Unsupported sizemap type for solution file writing");
    int32_t vertex_count = 0;
    if (const auto status = korvane_mesh_get_vertex_count(sizemap.mesh, &vertex_count); status != STATUS_OK)
        return report_solution(sizemap, status, "Error accessing associated mesh for solution file writing");
    constexpr int32_t type = gmf_scalar;
    if (gmf_write_keyword_header(index, gmf_sol_at_vertices, vertex_count, 1, &type) != vertex_count)
        return STATUS_ERROR; // the closing reports it
    std::array<double, EntityBlock::capacity> sizes;
    const GmfOutput column = {1, nullptr, sizes.data()};
    return for_each_block(vertex_count, [&](int32_t first, int32_t part) {
        korvane_status_t status = STATUS_OK;
        int32_t done = 0;
        for (; done < part; ++done) {
            double &size = sizes[static_cast<std::size_t>(done)] = 0; // a client may leave it out
            status = sizemap.function(first + done, &size, sizemap.user_data);
            if (status != STATUS_OK)
                break;
        }
        if (done > 0 && gmf_write_lines(index, gmf_sol_at_vertices, done, {&column, 1}) == 0)
            return korvane_status_t{STATUS_ERROR};
        if (status == STATUS_OK)
            return status;
        return report_solution(sizemap, status, "Error accessing sizemap data for solution file writing");
    });
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_status_t korvane_sizemap_write_sol(const korvane_sizemap_t *sizemap, const char *file_name)
{
    if (sizemap == nullptr)
        return STATUS_ERROR;
    const int32_t index = open_solution(*sizemap, file_name);
    const korvane_status_t status = index == 0 ? STATUS_ERROR : write_sizes(*sizemap, index);
    // Kept on purpose: a file that was not opened cannot be closed either, which is reported, too.
    if (gmf_close_file(index) == 0)
        return report_solution(*sizemap, STATUS_ERROR, "Error closing solution file after writing");
    return status;
}

} // extern "C"
