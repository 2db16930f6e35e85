// Readers and writers of files while operations on their streams fail one after the other.
//
// The files are longer than a block of the stream, so that reading and writing take several operations.
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "common/file_stream.h"
#include "io/gmf.h"
#include "support/failing_allocations.h"
#include "support/failing_streams.h"
#include "support/recorded_messages.h"
#include "support/temporary_folder.h"
#include "sweeps/dispose.h"
#include "sweeps/objects.h"

namespace korvane::testing {
namespace {

constexpr int32_t vertex_count = 12000;
constexpr int32_t size_count = 36000;

/// A mesh in memory with many vertices and some other entities, and one with a size map and more vertices.
class LargeObjects {
  public:
    LargeObjects()
    {
        korvane_mesh_set_vertex_count(mesh, vertex_count);
        for (int32_t i = 1; i <= vertex_count; ++i) {
            const double xyz[3] = {1.0 / i, 1.0 / (i + 1), 1.0 / (i + 2)};
            const int32_t required = i % 3 == 0;
            korvane_mesh_set_vertex_coordinates(mesh, i, xyz);
            korvane_mesh_set_vertex_tag(mesh, i, &i);
            korvane_mesh_set_vertex_required_status(mesh, i, &required);
        }
        korvane_mesh_set_triangle_count(mesh, vertex_count / 2);
        korvane_mesh_set_tetrahedron_count(mesh, vertex_count / 2);
        for (int32_t i = 1; i <= vertex_count / 2; ++i) {
            const int32_t vertices[4] = {i, i + 1, i + 2, i + 3};
            korvane_mesh_set_triangle_vertices(mesh, i, vertices);
            korvane_mesh_set_tetrahedron_vertices(mesh, i, vertices);
        }
        korvane_mesh_set_vertex_count(sized_mesh, size_count);
        sizemap = korvane_sizemap_new(sized_mesh, KORVANE_SIZEMAP_ISO_MESH_VERTEX, size_at, nullptr);
    }

    RecordingContext context;
    korvane_mesh_t *mesh = korvane_mesh_new_in_memory(context);
    korvane_mesh_t *sized_mesh = korvane_mesh_new_in_memory(context);
    korvane_sizemap_t *sizemap = nullptr;

  private:
    static korvane_status_t size_at(int32_t vertex, double *size, void *)
    {
        *size = 1.0 / vertex;
        return STATUS_OK;
    }
};

LargeObjects &objects()
{
    static LargeObjects made;
    return made;
}

/// What a call sent, taken out of the context.
std::vector<RecordedMessage> take_messages()
{
    return std::exchange(objects().context.messages, {});
}

/// What became of reading a file while a call fails.
struct Reading {
    bool was_read;
    bool failed; // a call was made to
};

/// A kind of file: how it is written and read, and what is sent when that fails.
struct Format {
    std::string extension;
    korvane_status_t (*write)(const char *name);
    Reading (*read)(
        const char *name, StreamFault &fault, const char *again); // null for files that are only written
    std::vector<std::string> cannot_open_to_write;
    std::string cannot_write; // its beginning
    korvane_status_t cannot_close;
    std::string cannot_open_to_read;
    std::string cannot_read; // its beginning
};

void PrintTo(const Format &format, std::ostream *stream)
{
    *stream << format.extension;
}

// -- Calls

korvane_status_t write_mesh(const char *name)
{
    return korvane_mesh_write_mesh(objects().mesh, name);
}

korvane_status_t write_solution(const char *name)
{
    return korvane_sizemap_write_sol(objects().sizemap, name);
}

korvane_status_t write_bulk_data(const char *name)
{
    return korvane_mesh_write_bdf(objects().mesh, name);
}

/// Reads while a call fails, and writes what was read to another file.
template <class Read, class Write>
Reading read_and_write(Read read, StreamFault &fault, Write write)
{
    fault.arm();
    auto *made = read();
    const bool failed = fault.disarm();
    if (made != nullptr) {
        EXPECT_EQ(write(made), STATUS_OK);
    }
    dispose(made);
    return {made != nullptr, failed};
}

Reading read_mesh(const char *name, StreamFault &fault, const char *again)
{
    return read_and_write([&] { return korvane_mesh_new_read_mesh(objects().context, name); }, fault,
        [&](const korvane_mesh_t *mesh) { return korvane_mesh_write_mesh(mesh, again); });
}

Reading read_solution(const char *name, StreamFault &fault, const char *again)
{
    return read_and_write([&] { return korvane_sizemap_new_read_sol(objects().sized_mesh, name); }, fault,
        [&](const korvane_sizemap_t *sizemap) { return korvane_sizemap_write_sol(sizemap, again); });
}

Format mesh_format(const char *extension)
{
    return {extension, write_mesh, read_mesh,
        {"korvane_mesh_write_mesh : Error opening mesh file for writing.\n"},
        "korvane_mesh_write_mesh : Error writing mesh file.\n", STATUS_OK,
        "korvane_mesh_new_read_mesh : Error opening mesh file for reading.\n",
        "korvane_mesh_new_read_mesh :  Unknown error"};
}

Format solution_format(const char *extension)
{
    const std::string closing = "korvane_mesh_new_read_mesh : Error closing solution file after writing.\n";
    const std::string opening = "korvane_mesh_new_read_mesh : Error opening solution file for writing.\n";
    return {extension, write_solution, read_solution, {opening, closing}, closing, STATUS_ERROR, opening,
        "korvane_mesh_new_read_mesh : Error reading solution file.\n"};
}

Format bulk_data_format()
{
    return {"bdf", write_bulk_data, nullptr,
        {"korvane_mesh_write_mesh : Error opening bdf file for writing.\n"},
        "korvane_mesh_write_mesh : Error writing ", STATUS_ERROR, "", ""};
}

// -- Expectations

void expect_nothing_open()
{
    EXPECT_EQ(open_stream_count(), 0);
    for (int32_t index = 1; index <= GMF_MAX_FILES; ++index)
        EXPECT_EQ(gmf_find_file(index), nullptr) << index;
}

void expect_messages(const std::vector<std::string> &beginnings)
{
    const std::vector<RecordedMessage> messages = take_messages();
    ASSERT_EQ(messages.size(), beginnings.size()) << (messages.empty() ? "" : messages.front().text);
    for (std::size_t i = 0; i < messages.size(); ++i) {
        EXPECT_EQ(messages[i].number, STATUS_ERROR);
        EXPECT_TRUE(messages[i].text.starts_with(beginnings[i])) << messages[i].text;
    }
}

bool opens(StreamCall call)
{
    return call == StreamCall::open || call == StreamCall::set_buffer;
}

class FailingStreams : public ::testing::TestWithParam<Format> {
  protected:
    FailingStreams()
    {
        EXPECT_EQ(GetParam().write(whole.c_str()), STATUS_OK);
        content = read_file(whole);
        EXPECT_GT(content.size(), FileStream::block_size) << "fits one block";
    }
    ~FailingStreams() override { expect_nothing_open(); }

    /// Lets calls on streams fail while `attempt` works, which tells whether one did. No stream and no block
    /// may stay.
    static void sweep(const std::function<bool(StreamFault &)> &attempt)
    {
        int failures = 0;
        stream_sweep([&](StreamFault &fault) {
            SCOPED_TRACE(::testing::PrintToString(fault));
            const std::int64_t live_before = live_block_count();
            const bool failed = attempt(fault);
            expect_nothing_open();
            EXPECT_EQ(live_block_count(), live_before) << "blocks stayed";
            failures += failed;
            return failed;
        });
        EXPECT_GT(failures, 0);
        RecordProperty("failures", failures);
    }

    /// The messages and the status of a writer of which a call was made to fail.
    static void expect_failed_writing(StreamCall call, korvane_status_t status)
    {
        const Format &format = GetParam();
        const korvane_status_t wanted = call == StreamCall::close ? format.cannot_close : STATUS_ERROR;
        EXPECT_EQ(status, wanted);
        if (opens(call))
            expect_messages(format.cannot_open_to_write);
        else if (wanted == STATUS_OK)
            expect_messages({});
        else
            expect_messages({format.cannot_write});
    }

    /// A failing read is the end of the file; a failing end of a file that was read whole says nothing of its
    /// content. All else leads to a message and nothing else.
    void expect_failed_reading(StreamCall call, bool was_read) const
    {
        const Format &format = GetParam();
        if (call == StreamCall::close) {
            EXPECT_TRUE(was_read);
            EXPECT_EQ(read_file(again), content);
            take_messages();
        } else if (was_read) {
            EXPECT_TRUE(call == StreamCall::read);
            expect_messages({});
        } else {
            const std::vector<RecordedMessage> messages = take_messages();
            ASSERT_EQ(messages.size(), 1u);
            EXPECT_EQ(messages[0].number, STATUS_ERROR);
            EXPECT_TRUE(messages[0].text == format.cannot_open_to_read ||
                        (call == StreamCall::seek && messages[0].text.starts_with(format.cannot_read)))
                << messages[0].text;
        }
    }

    const TemporaryFolder folder;
    const std::string whole = folder.name("whole." + GetParam().extension);
    const std::string written = folder.name("written." + GetParam().extension);
    const std::string again = folder.name("again." + GetParam().extension);
    std::string content;
};

class FailingStreamsOfWriters : public FailingStreams {};

TEST_P(FailingStreamsOfWriters, lead_to_a_message_unless_all_was_written)
{
    sweep([&](StreamFault &fault) {
        fault.arm();
        const korvane_status_t status = GetParam().write(written.c_str());
        const bool failed = fault.disarm();
        if (failed)
            expect_failed_writing(fault.call, status);
        EXPECT_TRUE(failed || status == STATUS_OK);
        if (status == STATUS_OK) {
            EXPECT_TRUE(read_file(written) == content) << "not all was written";
        }
        return failed;
    });
}

class FailingStreamsOfReaders : public FailingStreams {};

TEST_P(FailingStreamsOfReaders, lead_to_a_message_or_end_the_file)
{
    sweep([&](StreamFault &fault) {
        const auto [was_read, failed] = GetParam().read(whole.c_str(), fault, again.c_str());
        if (failed) {
            expect_failed_reading(fault.call, was_read);
        } else {
            EXPECT_TRUE(was_read);
            EXPECT_TRUE(read_file(again) == content) << "not all was read";
        }
        return failed;
    });
}

std::string extension_of(const ::testing::TestParamInfo<Format> &format)
{
    return format.param.extension;
}

INSTANTIATE_TEST_SUITE_P(Of, FailingStreamsOfWriters,
    ::testing::Values(mesh_format("mesh"), mesh_format("meshb"), solution_format("sol"),
        solution_format("solb"), bulk_data_format()),
    extension_of);
INSTANTIATE_TEST_SUITE_P(Of, FailingStreamsOfReaders,
    ::testing::Values(
        mesh_format("mesh"), mesh_format("meshb"), solution_format("sol"), solution_format("solb")),
    extension_of);

TEST(FileTable, has_all_its_places_after_files_that_failed_to_open)
{
    const std::string name = sample_mesh_file();
    int32_t version = 0;
    int32_t dimension = 0;
    for (const StreamCall call :
        {StreamCall::open, StreamCall::set_buffer, StreamCall::read, StreamCall::seek}) {
        StreamFault fault(call, Manner::fails, Failure::persistent, 1);
        fault.arm();
        for (int32_t i = 0; i < 2 * GMF_MAX_FILES; ++i)
            EXPECT_EQ(gmf_open_file(name.c_str(), gmf_read_mode, &version, &dimension), 0);
        EXPECT_TRUE(fault.disarm());
    }
    EXPECT_EQ(open_stream_count(), 0);
    for (int32_t i = 1; i <= GMF_MAX_FILES; ++i)
        EXPECT_EQ(gmf_open_file(name.c_str(), gmf_read_mode, &version, &dimension), i);
    EXPECT_EQ(gmf_open_file(name.c_str(), gmf_read_mode, &version, &dimension), 0);
    EXPECT_EQ(open_stream_count(), GMF_MAX_FILES);
    for (int32_t i = 1; i <= GMF_MAX_FILES; ++i)
        EXPECT_EQ(gmf_close_file(i), 1);
    expect_nothing_open();
}

} // namespace
} // namespace korvane::testing
