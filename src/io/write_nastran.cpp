// The export of any mesh as NASTRAN bulk data: a large-field card per vertex, a fixed-field card per element.
//
// The mesh is read through its getters, once per entity, in blocks; the cards are formatted straight into the
// block of the stream. What cannot be written leaves the file as far as it came, without its end.
#include <array>

#include <korvane.h>

#include "common/file_stream.h"
#include "common/memory.h"
#include "common/try.h"
#include "io/entity_table.h"
#include "io/file_messages.h"
#include "io/format_number.h"
#include "mesh/mesh.h"

namespace korvane {

namespace {

class BulkDataWriter {
  public:
    BulkDataWriter(const korvane_mesh_t *source, FileStream &target) : mesh(source), stream(target) {}

    /// Writes all cards into the stream, as far as nothing fails; a failure is reported.
    [[nodiscard]] korvane_status_t write()
    {
        write_text("BEGIN BULK\n");
        for (const Entity &entity : entity_table)
            if (entity.has_coordinates())
                TRY(write_grid(entity));
            else if (!entity.card.empty())
                TRY(write_elements(entity));
        write_text("$\nENDDATA\n");
        return STATUS_OK;
    }

    /// What an export of which all was written results in: the status of the last getter that counts.
    [[nodiscard]] korvane_status_t result() const { return carried; }

    template <class... Pieces>
    korvane_status_t report_writing(Pieces... pieces) const
    {
        return report(mesh->context, STATUS_ERROR, writing_prefix, "Error writing ", pieces...);
    }

  private:
    [[nodiscard]] korvane_status_t write_grid(const Entity &entity)
    {
        int32_t count = 0;
        carried = entity.get_count(mesh, &count);
        EntityBlock block;
        return for_each_block(carried == STATUS_OK ? count : 0, [&](int32_t first, int32_t part) {
            const FetchedEntities fetched = entity.fetch(mesh, first, part, block);
            for (int32_t i = 0; i < fetched.count; ++i)
                write_grid_card(entity.card, first + i, &block.coordinates[3 * static_cast<std::size_t>(i)]);
            if (stream.has_failed())
                return report_writing("bdf file");
            // Kept on purpose: a vertex without tag fails an export without elements, because the status of
            // the last getter is the result.
            carried = fetched.tag_status;
            if (fetched.status == STATUS_OK)
                return korvane_status_t{STATUS_OK};
            return report_access(mesh->context, STATUS_ERROR, entity.data_name);
        });
    }

    [[nodiscard]] korvane_status_t write_elements(const Entity &entity)
    {
        EntityBlock block;
        return for_each_block(count_of(entity, mesh), [&](int32_t first, int32_t part) {
            const FetchedEntities fetched = entity.fetch(mesh, first, part, block);
            for (int32_t i = 0; i < fetched.count; ++i)
                if (!write_element_card(entity, block, i))
                    return report_writing("given mesh ", entity.data_name);
            if (stream.has_failed())
                return report_writing("given mesh ", entity.data_name);
            carried = fetched.status;
            if (fetched.status == STATUS_OK)
                return korvane_status_t{STATUS_OK};
            return report_access(mesh->context, fetched.status, entity.data_name);
        });
    }

    void write_text(std::string_view text) { stream.write(text.data(), text.size()); }

    void write_grid_card(std::string_view card, int32_t vertex, const double *xyz)
    {
        char *text = put_text(stream.room(line_room), card);
        text = format_integer_field<16>(put_text(text, "   "), vertex);
        text = put_text(text, "               0"); // the basic coordinate system
        text = format_scientific_field(text, xyz[0]);
        text = format_scientific_field(text, xyz[1]);
        text = format_scientific_field(put_text(text, "*\n*       "), xyz[2]);
        stream.commit(put_text(text, "\n"));
    }

    /// False if a vertex does not fit its field; the card then ends with it.
    ///
    /// Kept on purpose: two blanks after the name whatever its length, and all vertices on one line, because
    /// this layout is what readers of these files were made for.
    [[nodiscard]] bool write_element_card(const Entity &entity, const EntityBlock &block, int32_t position)
    {
        const auto vertex_count = static_cast<std::size_t>(entity.values_per_entity);
        const auto at = static_cast<std::size_t>(position);
        char *text = put_text(put_text(stream.room(line_room), entity.card), "  ");
        text = format_integer_field<8>(text, ++element);
        text = format_integer_field<8>(text, block.tags[at]);
        bool fits = true;
        for (std::size_t i = 0; i < vertex_count && fits; ++i) {
            char *const field = text;
            text = format_integer_field<8>(field, block.vertices[vertex_count * at + i]);
            fits = text - field == 8;
        }
        if (fits)
            *text++ = '\n';
        stream.commit(text);
        return fits;
    }

    static constexpr std::size_t line_room = 12 * number_room;

    const korvane_mesh_t *mesh;
    FileStream &stream;
    int64_t element = 0; // the number of the last one, across all kinds
    korvane_status_t carried = STATUS_OK;
};

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_status_t korvane_mesh_write_bdf(const korvane_mesh_t *mesh, const char *file_name)
{
    if (mesh == nullptr)
        return STATUS_ERROR; // there is no context to carry a message
    const Owned<FileStream> stream = create_owned<FileStream>();
    if (!stream || file_name == nullptr || !stream->try_open_for_writing(file_name))
        return report(mesh->context, STATUS_ERROR, writing_prefix, "Error opening bdf file for writing");
    BulkDataWriter writer(mesh, *stream);
    const korvane_status_t status = writer.write();
    const bool arrived = stream->flush();
    const bool closed = stream->close() == 0;
    if (status != STATUS_OK)
        return status;
    return arrived && closed ? writer.result() : writer.report_writing("bdf file");
}

} // extern "C"
