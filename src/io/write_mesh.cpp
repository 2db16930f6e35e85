// Writing of any mesh to a mesh file: blocks of entities, then the lists of required ones.
//
// The mesh is read through its getters only, once per entity, and its flags twice: once to count, once to
// list. Whatever fails, the file is closed with its end, so that it is well-formed as far as it goes; that
// all of it reached the system is known before it is closed.
#include <algorithm>
#include <array>

#include <korvane.h>

#include "common/try.h"
#include "io/entity_table.h"
#include "io/file_messages.h"
#include "io/gmf.h"
#include "mesh/mesh.h"

namespace korvane {

namespace {

class MeshWriter {
  public:
    MeshWriter(const korvane_mesh_t *source, int32_t file_index) : mesh(source), index(file_index) {}

    [[nodiscard]] korvane_status_t write()
    {
        for (const Entity &entity : entity_table)
            TRY(write_entities(entity));
        for (const Entity &entity : entity_table)
            if (entity.required_keyword != 0)
                TRY(write_required(entity));
        return gmf_finish_file(index) != 0 ? korvane_status_t{STATUS_OK} : report_writing();
    }

  private:
    [[nodiscard]] korvane_status_t write_entities(const Entity &entity)
    {
        const int32_t count = count_of(entity, mesh);
        if (count < 1)
            return STATUS_OK;
        if (gmf_write_keyword_header(index, entity.keyword, count) == 0)
            return report_writing();
        EntityBlock block;
        const bool has_coordinates = entity.has_coordinates();
        const std::array<GmfOutput, 2> columns = {
            {{entity.values_per_entity, has_coordinates ? nullptr : block.vertices.data(),
                 has_coordinates ? block.coordinates.data() : nullptr},
                {1, block.tags.data(), nullptr}}};
        return for_each_block(count, [&](int32_t first, int32_t part) {
            const FetchedEntities fetched = entity.fetch(mesh, first, part, block);
            if (fetched.count > 0 && gmf_write_lines(index, entity.keyword, fetched.count, columns) == 0)
                return report_writing();
            if (fetched.status == STATUS_OK)
                return korvane_status_t{STATUS_OK};
            // Kept on purpose: only the message about vertices carries the status of the getter as its number
            const korvane_status_t number = has_coordinates ? fetched.status : korvane_status_t{STATUS_ERROR};
            report_access(mesh->context, number, entity.data_name);
            return korvane_status_t{STATUS_ERROR};
        });
    }

    using Numbers = std::array<int32_t, EntityBlock::capacity>;

    /// Lists the required ones among some entities; how many they are.
    [[nodiscard]] int32_t list_required(
        const Entity &entity, int32_t first, int32_t count, Numbers &numbers) const
    {
        Numbers flags;
        entity.fetch_required(mesh, first, count, flags.data());
        int32_t listed = 0;
        for (int32_t i = 0; i < count; ++i)
            if (flags[static_cast<std::size_t>(i)] != 0)
                numbers[static_cast<std::size_t>(listed++)] = first + i;
        return listed;
    }

    [[nodiscard]] korvane_status_t write_required(const Entity &entity)
    {
        const int32_t count = count_of(entity, mesh);
        Numbers numbers;
        int32_t left = 0;
        TRY(for_each_block(count, [&](int32_t first, int32_t part) {
            left += list_required(entity, first, part, numbers);
            return korvane_status_t{STATUS_OK};
        }));
        if (left == 0)
            return STATUS_OK;
        if (gmf_write_keyword_header(index, entity.required_keyword, left) == 0)
            return report_writing();
        TRY(for_each_block(count, [&](int32_t first, int32_t part) {
            const int32_t listed = list_required(entity, first, part, numbers);
            left -= listed;
            const GmfOutput column = {1, numbers.data(), nullptr};
            if (left < 0 ||
                (listed > 0 && gmf_write_lines(index, entity.required_keyword, listed, {&column, 1}) == 0))
                return report_writing();
            return korvane_status_t{STATUS_OK};
        }));
        // A client whose flags changed between the passes gave the block fewer lines than it states.
        return left == 0 ? korvane_status_t{STATUS_OK} : report_writing();
    }

    korvane_status_t report_writing() const
    {
        return report(mesh->context, STATUS_ERROR, writing_prefix, "Error writing mesh file");
    }

    const korvane_mesh_t *mesh;
    int32_t index;
};

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_status_t korvane_mesh_write_mesh(const korvane_mesh_t *mesh, const char *file_name)
{
    if (mesh == nullptr)
        return STATUS_ERROR; // there is no context to carry a message
    const int32_t index = gmf_open_file(file_name, gmf_write_mode, 2, 3);
    if (index == 0)
        return report(mesh->context, STATUS_ERROR, writing_prefix, "Error opening mesh file for writing");
    const GmfFileGuard guard(index);
    return MeshWriter(mesh, index).write();
}

} // extern "C"
