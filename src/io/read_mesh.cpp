// Reading of mesh files into in-memory meshes.
//
// The arrays of the mesh are sized by what the file can hold, not by the count that it states, and lines are
// converted straight into them; entities that the file lacks read as zeros. Cost: one pass over the file for
// its index if it is text, and one over each block that is read.
#include <algorithm>
#include <array>

#include <korvane.h>

#include "common/try.h"
#include "io/entity_table.h"
#include "io/file_messages.h"
#include "io/gmf.h"

namespace korvane {

namespace {

/// Reads the files' blocks of entities into a new mesh.
class MeshReader {
  public:
    MeshReader(korvane_context_t *message_context, korvane_mesh_t &new_mesh, int32_t file_index)
        : context(message_context), mesh(new_mesh), index(file_index)
    {}

    [[nodiscard]] korvane_status_t read()
    {
        for (const Entity &entity : entity_table)
            TRY(read_entity(entity));
        return STATUS_OK;
    }

  private:
    [[nodiscard]] korvane_status_t read_entity(const Entity &entity)
    {
        const int32_t count = gmf_keyword_count(index, entity.keyword);
        if (count < 1)
            return STATUS_OK;
        if (const korvane_status_t status = entity.set_count(&mesh, count); status != STATUS_OK)
            return report(context, status, reading_prefix, " Unable to allocate memory for ", entity.plural,
                " storage");
        if (gmf_seek_keyword(index, entity.keyword) != 0)
            return report(context, STATUS_ERROR, reading_prefix, " Unknown error0 while trying to read ",
                entity.plural);
        const int32_t held = gmf_held_lines(index, entity.keyword);
        if (held > 0)
            TRY(read_lines(entity, held));
        if (entity.required_keyword == 0 || gmf_keyword_count(index, entity.required_keyword) < 1)
            return STATUS_OK;
        return read_required(entity, held);
    }

    [[nodiscard]] korvane_status_t read_lines(const Entity &entity, int32_t held)
    {
        const EntityArrays arrays = entity.try_open(mesh, held);
        if (!arrays)
            return report_storing(entity);
        const std::array<GmfInput, 2> columns = {
            {{entity.values_per_entity, arrays.vertices, arrays.coordinates}, {1, arrays.tags, nullptr}}};
        gmf_read_lines(index, entity.keyword, held, columns);
        return STATUS_OK;
    }

    /// Sets the flags of the entities that the file lists, as far as it holds them. All others read as 0, so
    /// none needs to be reset.
    [[nodiscard]] korvane_status_t read_required(const Entity &entity, int32_t held)
    {
        if (gmf_seek_keyword(index, entity.required_keyword) != 0)
            return report(context, STATUS_ERROR, reading_prefix, " Unknown error1 while trying to read ",
                entity.plural);
        if (held == 0)
            return STATUS_OK;
        int32_t *flags = entity.try_open_required(mesh, held);
        if (flags == nullptr)
            return report_storing(entity);
        std::fill_n(flags, held, 0);
        std::array<int32_t, 1024> listed;
        const GmfInput column = {1, listed.data(), nullptr};
        int32_t left = gmf_held_lines(index, entity.required_keyword);
        while (left > 0) {
            const int32_t part = std::min(left, static_cast<int32_t>(listed.size()));
            gmf_read_lines(index, entity.required_keyword, part, {&column, 1});
            for (int32_t i = 0; i < part; ++i)
                if (const int32_t number = listed[static_cast<std::size_t>(i)]; number >= 1 && number <= held)
                    flags[number - 1] = 1;
            left -= part;
        }
        return STATUS_OK;
    }

    korvane_status_t report_storing(const Entity &entity) const
    {
        return report(context, STATUS_NOMEM, reading_prefix, " Unable to store ", entity.plural);
    }

    korvane_context_t *context;
    korvane_mesh_t &mesh;
    int32_t index;
};

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_mesh_t *korvane_mesh_new_read_mesh(korvane_context_t *context, const char *file_name)
{
    int32_t version = 0;
    int32_t dimension = 0;
    const int32_t index = gmf_open_file(file_name, gmf_read_mode, &version, &dimension);
    if (index == 0) {
        report(context, STATUS_ERROR, reading_prefix, "Error opening mesh file for reading");
        return nullptr;
    }
    const GmfFileGuard guard(index);
    if (dimension != 3) {
        report(context, STATUS_ERROR, reading_prefix, "Only 3d meshes are supported");
        return nullptr;
    }
    korvane_mesh_t *mesh = korvane_mesh_new_in_memory(context);
    if (mesh == nullptr) {
        report(context, STATUS_NOMEM, reading_prefix, " Unable to allocate memory to create mesh");
        return nullptr;
    }
    if (MeshReader(context, *mesh, index).read() != STATUS_OK) {
        korvane_mesh_delete(mesh);
        return nullptr;
    }
    return mesh;
}

} // extern "C"
