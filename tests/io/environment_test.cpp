// What the system does to files: names of any bytes and lengths, places where nothing can be written, tables
// that are full, and texts beyond 32-bit positions.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>
#include <sys/resource.h>
#include <unistd.h>

#include "io/bytes.h"
#include "io/gmf.h"
#include "io/mesh_content.h"
#include "support/recorded_messages.h"
#include "support/temporary_folder.h"

namespace korvane::testing {
namespace {

namespace fs = std::filesystem;

korvane_status_t size_of_vertex(int32_t vertex, double *size, void *)
{
    *size = vertex;
    return STATUS_OK;
}

class Environment : public ::testing::Test {
  protected:
    /// All that the library writes, under names that end as they should; what went well.
    std::vector<korvane_status_t> write_all(const std::string &start)
    {
        return {korvane_mesh_write_mesh(mesh, (start + ".mesh").c_str()),
            korvane_mesh_write_mesh(mesh, (start + ".meshb").c_str()),
            korvane_sizemap_write_sol(sizemap, (start + ".sol").c_str()),
            korvane_sizemap_write_sol(sizemap, (start + ".solb").c_str()),
            korvane_mesh_write_bdf(mesh, (start + ".bdf").c_str())};
    }
    const std::vector<korvane_status_t> all_well = std::vector<korvane_status_t>(5, STATUS_OK);
    const std::vector<korvane_status_t> none_well = std::vector<korvane_status_t>(5, STATUS_ERROR);

    void expect_readable(const std::string &start)
    {
        for (const char *extension : {".mesh", ".meshb"}) {
            korvane_mesh_t *again = korvane_mesh_new_read_mesh(context, (start + extension).c_str());
            ASSERT_NE(again, nullptr) << start << extension;
            EXPECT_EQ(content_of(again), content);
            korvane_mesh_delete(again);
        }
        for (const char *extension : {".sol", ".solb"})
            EXPECT_NE(korvane_sizemap_new_read_sol(mesh, (start + extension).c_str()), nullptr);
    }
    void expect_nowhere_to_write(const std::string &start)
    {
        context.messages.clear();
        EXPECT_EQ(write_all(start), none_well) << start;
        // Of solution files it is reported, too, that they cannot be closed.
        EXPECT_EQ(context.messages.size(), 7u) << start;
    }
    void expect_unreadable(const std::string &name)
    {
        context.messages.clear();
        EXPECT_EQ(korvane_mesh_new_read_mesh(context, name.c_str()), nullptr) << name;
        EXPECT_EQ(context.text(), "korvane_mesh_new_read_mesh : Error opening mesh file for reading.\n");
    }

    TemporaryFolder folder;
    RecordingContext context;
    const MeshContent content = small_content();
    korvane_mesh_t *mesh = make_mesh(context, content);
    korvane_sizemap_t *sizemap =
        korvane_sizemap_new(mesh, KORVANE_SIZEMAP_ISO_MESH_VERTEX, size_of_vertex, nullptr);
};

TEST_F(Environment, NamesMayHoldAnyBytes)
{
    for (const char *name : {"Ma\xc3\x9f", "\xe7\xbd\x91\xe6\xa0\xbc", "latin \xe9\xff\x80", "two\nlines",
             "%s%n%i", "a.mesh", "#", " ", "-", "tab\t", "quote'\"\\", "\x01\x7f"}) {
        const std::string start = folder.name(name);
        EXPECT_EQ(write_all(start), all_well) << name;
        expect_readable(start);
    }
    EXPECT_EQ(context.text(), "");
}

TEST_F(Environment, NamesOfKeywordFilesHaveLessThan1017CharactersAndOthersAnyNumber)
{
    for (std::size_t length = 1000; length <= 1040; ++length) {
        const std::string text = folder.name_of_length(length, ".mesh");
        const std::string solution = folder.name_of_length(length, ".sol");
        const std::string cards = folder.name_of_length(length, ".bdf");
        ASSERT_EQ(text.size(), length);
        const korvane_status_t expected = length < 1017 ? STATUS_OK : STATUS_ERROR;
        EXPECT_EQ(korvane_mesh_write_mesh(mesh, text.c_str()), expected) << length;
        EXPECT_EQ(korvane_sizemap_write_sol(sizemap, solution.c_str()), expected) << length;
        EXPECT_EQ(korvane_mesh_write_bdf(mesh, cards.c_str()), STATUS_OK) << length;
        EXPECT_EQ(fs::exists(text), expected == STATUS_OK);
        // No longer name is cut to one that there is.
        EXPECT_EQ(korvane_mesh_new_read_mesh(context, text.c_str()) != nullptr, expected == STATUS_OK);
        EXPECT_EQ(korvane_sizemap_new_read_sol(mesh, solution.c_str()) != nullptr, expected == STATUS_OK);
        fs::remove(text); // the next names but one lead to the same files
        fs::remove(solution);
    }
    expect_nowhere_to_write(folder.name_of_length(5000));
    expect_nowhere_to_write(folder.name(std::string(300, 'x')));
}

TEST_F(Environment, PlacesWhereNothingCanBeWrittenAreReported)
{
    const std::string file = folder.write("file", "content");
    for (const std::string &start : {std::string("/proc/a"), file + "/a", folder.name("absent/a")})
        expect_nowhere_to_write(start);
    for (const char *name : {"folder.mesh", "folder.meshb", "folder.sol", "folder.solb", "folder.bdf"})
        fs::create_directory(folder.name(name));
    expect_nowhere_to_write(folder.name("folder"));
    for (const char *name : {"loop.mesh", "loop.meshb", "loop.sol", "loop.solb", "loop.bdf"})
        folder.link(name, name);
    expect_nowhere_to_write(folder.name("loop"));
    EXPECT_EQ(read_file(file), "content");
}

TEST_F(Environment, AReadOnlyFolderIsReported)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "root may write anywhere";
    fs::create_directory(folder.name("inner"));
    fs::permissions(folder.name("inner"), fs::perms::owner_read | fs::perms::owner_exec);
    expect_nowhere_to_write(folder.name("inner/a"));
    fs::permissions(folder.name("inner"), fs::perms::owner_all);
}

TEST_F(Environment, WhatIsNoFileIsNotRead)
{
    fs::create_directory(folder.name("folder.mesh"));
    fs::create_directory(folder.name("folder.meshb"));
    for (const std::string &name :
        {folder.name("folder.mesh"), folder.name("folder.meshb"), folder.name("absent.mesh"),
            folder.link("zero.meshb", "/dev/zero"), folder.link("null.mesh", "/dev/null"),
            folder.link("loop.mesh", "loop.mesh"), folder.write("file", "") + "/a.mesh"})
        expect_unreadable(name);
}

TEST_F(Environment, AFullTableOfOpenFilesIsReportedAndNotForGood)
{
    const std::string start = folder.name("a");
    ASSERT_EQ(write_all(start), all_well);
    std::vector<int32_t> open(GMF_MAX_FILES);
    int32_t version = 0;
    int32_t dimension = 0;
    for (int32_t &index : open)
        index = gmf_open_file((start + ".mesh").c_str(), gmf_read_mode, &version, &dimension);
    EXPECT_EQ(open.back(), GMF_MAX_FILES);
    expect_unreadable(start + ".mesh");
    EXPECT_EQ(korvane_sizemap_new_read_sol(mesh, (start + ".sol").c_str()), nullptr);
    const std::string before = read_file(start + ".mesh");
    EXPECT_EQ(korvane_mesh_write_mesh(mesh, (start + ".mesh").c_str()), STATUS_ERROR);
    EXPECT_EQ(read_file(start + ".mesh"), before);
    gmf_close_file(open[41]);
    expect_readable(start);
    for (const int32_t index : open)
        gmf_close_file(index);
    EXPECT_EQ(write_all(start), all_well);
}

TEST_F(Environment, AProcessThatMayOpenNoMoreFilesIsTold)
{
    const std::string start = folder.name("a");
    ASSERT_EQ(write_all(start), all_well);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none = {0, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    expect_nowhere_to_write(start);
    expect_unreadable(start + ".mesh");
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    expect_readable(start);
}

TEST_F(Environment, AFileThatMayNotGrowIsReported)
{
    // Writing beyond the limit fails as on a full disk, but only after a part was written.
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit little = {100, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &little), 0);
    korvane_mesh_set_vertex_count(mesh, 5000);
    context.messages.clear();
    const std::vector<korvane_status_t> statuses = write_all(folder.name("a"));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(statuses, none_well);
    EXPECT_EQ(context.messages.size(), 5u);
}

/// On demand, because the file is looked through byte by byte: set KORVANE_LARGE_FILES to any value.
class LargeFile : public Environment {
  protected:
    void SetUp() override
    {
        if (std::getenv("KORVANE_LARGE_FILES") == nullptr)
            GTEST_SKIP() << "only with KORVANE_LARGE_FILES in the environment";
    }

    /// A file whose middle is a hole, that is, zeros.
    std::string write_with_hole(
        const std::string &file, const std::string &begin, std::uintmax_t hole, const std::string &end)
    {
        std::string name = folder.write(file, begin);
        fs::resize_file(name, begin.size() + hole);
        std::ofstream(name, std::ios::app | std::ios::binary) << end;
        return name;
    }

    static constexpr std::uintmax_t beyond_32_bits = (std::uintmax_t{1} << 32) + 12345;
};

TEST_F(LargeFile, ATextIsReadOnBothSidesOf4GiB)
{
    const std::string name =
        write_with_hole("a.mesh", "MeshVersionFormatted 2 Dimension 3 Vertices 2 1 2 3 4 5 6 7 8 #",
            beyond_32_bits, "\nTriangles 2 1 2 3 4 5 6 7 8\nRequiredVertices 1 2 End\n");
    korvane_mesh_t *read = korvane_mesh_new_read_mesh(context, name.c_str());
    ASSERT_NE(read, nullptr) << context.text();
    const MeshContent found = content_of(read);
    EXPECT_EQ(found.entities[0].coordinates, (std::vector<double>{1, 2, 3, 5, 6, 7}));
    EXPECT_EQ(found.entities[0].required, (std::vector<int32_t>{0, 1}));
    EXPECT_EQ(found.entities[2].vertices, (std::vector<int32_t>{1, 2, 3, 5, 6, 7}));
    EXPECT_EQ(found.entities[2].tags, (std::vector<int32_t>{4, 8}));
}

TEST_F(LargeFile, ABinaryFileMayHaveAnythingBehindItsEnd)
{
    const std::string name = write_with_hole("a.meshb",
        Bytes().header(2, 3).integers(5, 44, 1, 7, 8, 9).integers(54, 0).text(), beyond_32_bits, "end");
    korvane_mesh_t *read = korvane_mesh_new_read_mesh(context, name.c_str());
    ASSERT_NE(read, nullptr) << context.text();
    EXPECT_EQ(content_of(read).entities[1].vertices, (std::vector<int32_t>{7, 8}));
}

} // namespace
} // namespace korvane::testing
