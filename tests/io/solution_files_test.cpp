// Size maps in solution files: written, read, and read from samples and files of other programs.
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "io/bytes.h"
#include "io/gmf.h"
#include "support/decimal_comma.h"
#include "support/failing_allocations.h"
#include "support/recorded_messages.h"
#include "support/samples.h"
#include "support/temporary_folder.h"

namespace korvane::testing {
namespace {

const std::string prefix = "korvane_mesh_new_read_mesh : ";
const std::string text_head = "MeshVersionFormatted 2\n\nDimension 3\n";
const std::string written_head = text_head + "\nSolAtVertices\n3\n1 1 \n\n";

/// Sizes of a client, which fail where they are told to.
struct Sizes {
    std::vector<double> values;
    int32_t failing = 0;
    korvane_status_t status = 42;
    int32_t calls = 0;

    static korvane_status_t get(int32_t vertex, double *size, void *user_data)
    {
        auto &sizes = *static_cast<Sizes *>(user_data);
        ++sizes.calls;
        EXPECT_EQ(vertex, sizes.calls);
        EXPECT_EQ(*size, 0);
        if (vertex == sizes.failing)
            return sizes.status;
        *size = sizes.values.at(static_cast<std::size_t>(vertex) - 1);
        return STATUS_OK;
    }
};

class SolutionFiles : public ::testing::Test {
  protected:
    ~SolutionFiles() override
    {
        for (int i = 0; i < 120; ++i) { // no slot was lost
            korvane_mesh_t *empty = korvane_mesh_new(context);
            EXPECT_EQ(korvane_mesh_write_mesh(empty, folder.name("a.mesh").c_str()), STATUS_OK);
            korvane_mesh_delete(empty);
        }
    }

    korvane_mesh_t *mesh_of(int32_t vertex_count)
    {
        korvane_mesh_t *mesh = korvane_mesh_new_in_memory(context);
        korvane_mesh_set_vertex_count(mesh, vertex_count);
        return mesh;
    }

    korvane_sizemap_t *sizemap_of(Sizes &sizes, int32_t type = KORVANE_SIZEMAP_ISO_MESH_VERTEX)
    {
        sizes.calls = 0;
        return korvane_sizemap_new(
            mesh_of(static_cast<int32_t>(sizes.values.size())), type, Sizes::get, &sizes);
    }

    korvane_status_t write(const korvane_sizemap_t *sizemap, const std::string &file = "a.sol")
    {
        return korvane_sizemap_write_sol(sizemap, folder.name(file).c_str());
    }

    std::string written(const std::string &file = "a.sol") { return read_file(folder.name(file)); }

    /// The sizes that a size map gives for the vertices 1..count.
    std::vector<double> queried(const korvane_sizemap_t *sizemap, int32_t count)
    {
        std::vector<double> sizes;
        for (int32_t vertex = 1; vertex <= count; ++vertex) {
            double size = -7;
            EXPECT_EQ(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, vertex, &size), STATUS_OK);
            sizes.push_back(size);
        }
        return sizes;
    }

    /// The sizes that a file with this text has for a mesh.
    std::vector<double> read_text(const std::string &text, int32_t vertex_count)
    {
        const korvane_sizemap_t *sizemap =
            korvane_sizemap_new_read_sol(mesh_of(vertex_count), folder.write("r.sol", text).c_str());
        return sizemap == nullptr ? std::vector<double>{} : queried(sizemap, vertex_count);
    }

    void expect_messages(const std::vector<RecordedMessage> &expected) { context.expect(prefix, expected); }

    const RecordedMessage closing_failed = {-1, "Error closing solution file after writing.\n"};
    TemporaryFolder folder;
    RecordingContext context;
};

TEST_F(SolutionFiles, AreWrittenInBothEncodings)
{
    Sizes sizes{{0.5, 1. / 3, -2}};
    EXPECT_EQ(write(sizemap_of(sizes)), STATUS_OK);
    EXPECT_EQ(written(), written_head + "0.5 \n0.333333333333333 \n-2 \n\nEnd\n");
    EXPECT_EQ(write(sizemap_of(sizes), "a.solb"), STATUS_OK);
    EXPECT_EQ(written("a.solb"),
        Bytes().header(2, 3).integers(62, 64, 3, 1, 1).add(0.5).add(1. / 3).add(-2.0).integers(54, 0).text());
    Sizes none;
    EXPECT_EQ(write(sizemap_of(none)), STATUS_OK);
    EXPECT_EQ(written(), text_head + "\nSolAtVertices\n0\n1 1 \n\n\nEnd\n");
    EXPECT_EQ(context.text(), "");
}

TEST_F(SolutionFiles, AnotherTypeIsRefusedWithHeaderAndEnd)
{
    Sizes sizes{{0.5}};
    for (const int32_t type : {1, 2, 3, 5, 6}) {
        EXPECT_EQ(write(sizemap_of(sizes, type)), STATUS_ERROR);
        EXPECT_EQ(written(), text_head + "\nEnd\n");
        EXPECT_EQ(sizes.calls, 0);
        expect_messages({{-1, "Unsupported sizemap type for solution file writing.\n"}});
    }
    EXPECT_EQ(write(sizemap_of(sizes, 1), "a.solb"), STATUS_ERROR);
    EXPECT_EQ(written("a.solb"), Bytes().header(2, 3).integers(54, 0).text());
    context.messages.clear();
}

TEST_F(SolutionFiles, ANullSizeMapOrNameIsRefused)
{
    EXPECT_EQ(write(nullptr), STATUS_ERROR);
    expect_messages({});
    Sizes sizes{{0.5}};
    EXPECT_EQ(korvane_sizemap_write_sol(sizemap_of(sizes), nullptr), STATUS_ERROR);
    expect_messages({{-1, "Error using provided NULL name for solution file writing.\n"}, closing_failed});
    const int32_t other = gmf_open_file(folder.name("other.sol").c_str(), gmf_write_mode, 2, 3);
    EXPECT_EQ(korvane_sizemap_write_sol(sizemap_of(sizes), nullptr), STATUS_ERROR);
    EXPECT_NE(gmf_find_file(other), nullptr); // no other file is closed in its place
    EXPECT_EQ(gmf_close_file(other), 1);
    EXPECT_EQ(written("other.sol"), text_head + "\nEnd\n");
    context.messages.clear();
}

TEST_F(SolutionFiles, AFileThatCannotBeOpenedIsReportedTwiceByTheWriter)
{
    Sizes sizes{{0.5}};
    for (const char *file : {"no/such/folder.sol", "a.dat"}) {
        EXPECT_EQ(write(sizemap_of(sizes), file), STATUS_ERROR);
        expect_messages({{-1, "Error opening solution file for writing.\n"}, closing_failed});
    }
}

TEST_F(SolutionFiles, AMeshThatCannotCountIsReported)
{
    Sizes sizes{{0.5}};
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    korvane_mesh_set_get_vertex_count(
        mesh, [](int32_t *, void *) { return korvane_status_t{17}; }, nullptr);
    EXPECT_EQ(write(korvane_sizemap_new(mesh, 4, Sizes::get, &sizes)), 17);
    EXPECT_EQ(written(), text_head + "\nEnd\n");
    expect_messages({{17, "Error accessing associated mesh for solution file writing.\n"}});
    const std::string name = folder.write("r.sol", text_head + "SolAtVertices 1 1 1 5");
    EXPECT_EQ(korvane_sizemap_new_read_sol(mesh, name.c_str()), nullptr);
    expect_messages({{17, "Error accessing associated mesh for solution file reading.\n"}});
    const std::string empty = folder.write("empty.sol", text_head); // which is looked at first
    EXPECT_EQ(korvane_sizemap_new_read_sol(mesh, empty.c_str()), nullptr);
    expect_messages({{-1, "Unsupported unknown sizemap type for solution file reading.\n"}});
}

TEST_F(SolutionFiles, AFailingSizeStopsTheFileWithItsStatus)
{
    Sizes sizes{std::vector<double>(700, 0.25)};
    for (const int32_t failing : {1, 2, 512, 513, 700}) {
        sizes.failing = failing;
        EXPECT_EQ(write(sizemap_of(sizes)), 42);
        EXPECT_EQ(sizes.calls, failing);
        std::string expected = text_head + "\nSolAtVertices\n700\n1 1 \n\n";
        for (int32_t i = 1; i < failing; ++i)
            expected += "0.25 \n";
        EXPECT_EQ(written(), expected + "\nEnd\n");
        expect_messages({{42, "Error accessing sizemap data for solution file writing.\n"}});
    }
}

TEST_F(SolutionFiles, ASizeThatIsLeftOutIsZero)
{
    korvane_mesh_t *mesh = mesh_of(2);
    const auto leave_out = [](int32_t, double *, void *) { return korvane_status_t{STATUS_OK}; };
    EXPECT_EQ(write(korvane_sizemap_new(mesh, 4, leave_out, nullptr)), STATUS_OK);
    EXPECT_EQ(written(), text_head + "\nSolAtVertices\n2\n1 1 \n\n0 \n0 \n\nEnd\n");
}

TEST_F(SolutionFiles, AFullDiskIsReportedOnce)
{
    for (const char *file : {"full.sol", "full.solb"}) {
        folder.link(file, "/dev/full");
        Sizes few{{0.5}};
        EXPECT_EQ(write(sizemap_of(few), file), STATUS_ERROR);
        expect_messages({closing_failed});
        Sizes many{std::vector<double>(100'000, 0.123456789)};
        EXPECT_EQ(write(sizemap_of(many), file), STATUS_ERROR);
        EXPECT_LT(many.calls, 70'000); // it does not go on after the first block that fails
        expect_messages({closing_failed});
    }
}

TEST_F(SolutionFiles, AMeshThatDoesNotFitTheFormatIsRefused)
{
    Sizes sizes;
    korvane_mesh_t *mesh = mesh_of(-3);
    EXPECT_EQ(write(korvane_sizemap_new(mesh, 4, Sizes::get, &sizes)), STATUS_ERROR);
    EXPECT_EQ(written(), text_head + "\nEnd\n");
    expect_messages({closing_failed});
    mesh = mesh_of(INT32_MAX);
    EXPECT_EQ(write(korvane_sizemap_new(mesh, 4, Sizes::get, &sizes), "a.solb"), STATUS_ERROR);
    EXPECT_EQ(written("a.solb"), Bytes().header(2, 3).integers(54, 0).text());
    EXPECT_EQ(sizes.calls, 0);
    expect_messages({closing_failed});
}

TEST_F(SolutionFiles, SamplesAreReadAsTheirMakerMeantThem)
{
    const std::array<double, 3> values = {0.5, 1. / 3, -2};
    for (const char *file :
        {"scalar-v1.sol", "scalar-v2.sol", "scalar-v3.sol", "scalar-v1-little.solb", "scalar-v2-big.solb"}) {
        const std::string name = sample(file);
        const korvane_sizemap_t *sizemap = korvane_sizemap_new_read_sol(mesh_of(3), name.c_str());
        ASSERT_NE(sizemap, nullptr) << context.text();
        std::vector<double> expected(values.begin(), values.end());
        const std::string version = std::string(file).substr(7, 2);
        for (double &value : expected)
            value = version == "v3"   ? 0
                    : version == "v1" ? static_cast<double>(static_cast<float>(value))
                                      : value;
        EXPECT_EQ(queried(sizemap, 3), expected) << file;
        int32_t type = 0;
        korvane_sizemap_get_type(sizemap, &type);
        EXPECT_EQ(type, 4);
    }
    EXPECT_EQ(context.text(), "");
}

TEST_F(SolutionFiles, VerticesOutsideTheFileHaveNoSize)
{
    const std::string name = folder.write("r.sol", text_head + "SolAtVertices 2 1 1 0.5 0.25");
    const korvane_sizemap_t *sizemap = korvane_sizemap_new_read_sol(mesh_of(2), name.c_str());
    ASSERT_NE(sizemap, nullptr);
    for (const int32_t vertex : {3, 0, -1, INT32_MAX, INT32_MIN}) {
        double size = 7;
        EXPECT_EQ(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, vertex, &size), STATUS_ERROR);
        EXPECT_EQ(size, 0);
    }
    korvane_sizemap_function_t function = nullptr;
    void *sizes = nullptr;
    korvane_sizemap_get_function(sizemap, &function);
    korvane_sizemap_get_user_data(sizemap, &sizes);
    EXPECT_EQ(function(1, nullptr, sizes), STATUS_ERROR);
}

TEST_F(SolutionFiles, ANullMeshIsRefusedSilentlyAndANullNameWithAMessage)
{
    const std::string name = sample("scalar-v2.sol");
    EXPECT_EQ(korvane_sizemap_new_read_sol(nullptr, name.c_str()), nullptr);
    EXPECT_EQ(korvane_sizemap_new_read_sol(nullptr, nullptr), nullptr);
    expect_messages({});
    EXPECT_EQ(korvane_sizemap_new_read_sol(mesh_of(3), nullptr), nullptr);
    expect_messages({{-1, "Error using provided NULL name for solution file reading.\n"}});
}

TEST_F(SolutionFiles, AFileThatCannotBeOpenedIsReportedOnceByTheReader)
{
    for (const char *file : {"none.sol", "a.dat"}) {
        EXPECT_EQ(korvane_sizemap_new_read_sol(mesh_of(3), folder.name(file).c_str()), nullptr);
        expect_messages({{-1, "Error opening solution file for writing.\n"}});
    }
    for (const char *types : {"21 1", "-1", "", "2 1", "1 x"}) {
        EXPECT_TRUE(read_text(text_head + "SolAtVertices 3 " + types, 3).empty());
        expect_messages({{-1, "Error opening solution file for writing.\n"}});
    }
}

TEST_F(SolutionFiles, AFileWithoutSolutionIsUnknown)
{
    for (const char *content :
        {"", "SolAtVertices 0 1 1", "SolAtVertices -2 1 1", "SolAtTriangles 3 1 1 1 2 3"}) {
        EXPECT_TRUE(read_text(text_head + content, 3).empty());
        expect_messages({{-1, "Unsupported unknown sizemap type for solution file reading.\n"}});
    }
}

TEST_F(SolutionFiles, TheCountsHaveToMatch)
{
    EXPECT_TRUE(read_text(text_head + "SolAtVertices 10 1 1 1 2 3 4 5 6 7 8 9 10", 11).empty());
    expect_messages({{-1, "Error matching mesh and sizemap for solution file reading.\n"}});
    EXPECT_TRUE(read_text(text_head + "SolAtVertices 3 1 2 1 2 3 1 2 3 1 2 3", 2).empty());
    expect_messages({{-1, "Error matching mesh and sizemap for solution file reading.\n"}});
}

TEST_F(SolutionFiles, OnlyOneScalarPerVertexIsRead)
{
    for (const char *types : {"1 2", "1 3", "1 4", "1 0", "1 -1", "1 7", "2 1 1", "0", "2 2 1"}) {
        EXPECT_TRUE(read_text(text_head + "SolAtVertices 1 " + types + " 1 2 3 4 5 6 7 8 9", 1).empty());
        expect_messages({{-1, "Unsupported anistropic sizemap type for solution file reading.\n"}});
    }
}

TEST_F(SolutionFiles, TheDimensionIsNotCompared)
{
    EXPECT_EQ(read_text("MeshVersionFormatted 2 Dimension 2 SolAtVertices 2 1 1 0.5 0.25", 2),
        (std::vector<double>{0.5, 0.25}));
    EXPECT_EQ(context.text(), "");
}

TEST_F(SolutionFiles, WhatATruncatedFileLacksIsZero)
{
    EXPECT_EQ(
        read_text(text_head + "SolAtVertices 4 1 1 0.5 0.25", 4), (std::vector<double>{0.5, 0.25, 0, 0}));
    EXPECT_EQ(read_text(text_head + "SolAtVertices 3 1 1 0.5 x 7", 3), (std::vector<double>{0.5, 0, 0}));
    const std::string name =
        folder.write("r.solb", Bytes().header(2, 3).integers(62, 0, 3, 1, 1).add(0.5).add(0.25f).text());
    const korvane_sizemap_t *sizemap = korvane_sizemap_new_read_sol(mesh_of(3), name.c_str());
    ASSERT_NE(sizemap, nullptr) << context.text();
    EXPECT_EQ(queried(sizemap, 3), (std::vector<double>{0.5, 0, 0}));
    EXPECT_EQ(context.text(), "");
}

TEST_F(SolutionFiles, AHugeCountInATinyFileCostsLittle)
{
    korvane_mesh_t *mesh = mesh_of(INT32_MAX);
    for (const bool is_text : {true, false}) {
        const std::string name =
            is_text ? folder.write("r.sol", text_head + "SolAtVertices 2147483647 1 1 0.5")
                    : folder.write(
                          "r.solb", Bytes().header(2, 3).integers(62, 0, INT32_MAX, 1, 1).add(0.5).text());
        const std::int64_t before = allocated_bytes();
        const korvane_sizemap_t *sizemap = korvane_sizemap_new_read_sol(mesh, name.c_str());
        EXPECT_LT(allocated_bytes() - before, 1'000'000);
        ASSERT_NE(sizemap, nullptr) << context.text();
        EXPECT_EQ(queried(sizemap, 2), (std::vector<double>{0.5, 0}));
        double last = 7;
        EXPECT_EQ(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, INT32_MAX, &last), STATUS_OK);
        EXPECT_EQ(last, 0);
    }
}

TEST_F(SolutionFiles, WhatIsWrittenIsReadBackInAnyLocale)
{
    Sizes sizes;
    for (int i = 0; i < 3000; ++i)
        sizes.values.push_back((i - 1000) / 1024.0);
    const auto go_round = [&] {
        for (const char *file : {"a.sol", "a.solb"}) {
            EXPECT_EQ(write(sizemap_of(sizes), file), STATUS_OK);
            const korvane_sizemap_t *sizemap =
                korvane_sizemap_new_read_sol(mesh_of(3000), folder.name(file).c_str());
            EXPECT_EQ(queried(sizemap, 3000), sizes.values);
        }
    };
    go_round();
    EXPECT_EQ(context.text(), "");
    if (!try_with_decimal_comma(go_round))
        GTEST_SKIP() << "no locale with a decimal comma here";
    EXPECT_EQ(context.text(), "");
}

TEST_F(SolutionFiles, ASizeMapThatWasReadGoesWithItsContextOrBefore)
{
    const std::string name = sample("scalar-v2.sol");
    const std::int64_t before = live_block_count();
    {
        RecordingContext own;
        korvane_mesh_t *mesh = korvane_mesh_new_in_memory(own);
        korvane_mesh_set_vertex_count(mesh, 3);
        korvane_sizemap_delete(korvane_sizemap_new_read_sol(mesh, name.c_str()));
        EXPECT_NE(korvane_sizemap_new_read_sol(mesh, name.c_str()), nullptr);
    }
    EXPECT_EQ(live_block_count(), before);
}

TEST_F(SolutionFiles, SurviveFailingAllocations)
{
    Sizes sizes{{0.5, 0.25, 0.125}};
    oom_sweep([&](AllocationFault &fault) {
        korvane_sizemap_t *sizemap = sizemap_of(sizes);
        context.messages.clear();
        fault.arm();
        const korvane_status_t status = write(sizemap);
        bool failed = fault.disarm();
        EXPECT_EQ(status, failed ? STATUS_ERROR : STATUS_OK);
        korvane_sizemap_delete(sizemap);

        const std::string name = sample("scalar-v2-big.solb");
        const korvane_mesh_t *mesh = mesh_of(3);
        fault.arm();
        sizemap = korvane_sizemap_new_read_sol(mesh, name.c_str());
        failed = fault.disarm();
        EXPECT_TRUE(failed || sizemap != nullptr);
        if (sizemap != nullptr) { // if it could not be attached, it is ours
            EXPECT_EQ(queried(sizemap, 3), (std::vector<double>{0.5, 1. / 3, -2}));
        }
        korvane_sizemap_delete(sizemap);
    });
    context.messages.clear();
}

class RealSolutions : public SolutionFiles {
  protected:
    void SetUp() override
    {
        if (!has_real_files())
            GTEST_SKIP() << "no files of other programs here";
    }
};

TEST_F(RealSolutions, AreTheSameInTheOtherEncoding)
{
    const struct {
        const char *mesh;
        const char *solution;
        int32_t count;
        const char *other;
        float second;
        float last;
    } files[] = {{"cube.meshb", "cube.solb", 98, "other.sol", 0.25f, 0.25f},
        {"teapot.mesh", "teapot.sol", 5917, "other.solb", -0.382225f, 0.330898f}};
    for (const auto &file : files) {
        korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, real_file(file.mesh).c_str());
        const korvane_sizemap_t *sizemap =
            korvane_sizemap_new_read_sol(mesh, real_file(file.solution).c_str());
        ASSERT_NE(sizemap, nullptr) << context.text();
        const std::vector<double> sizes = queried(sizemap, file.count);
        EXPECT_EQ(sizes[1], static_cast<double>(file.second));
        EXPECT_EQ(sizes.back(), static_cast<double>(file.last));
        double size = 7;
        EXPECT_EQ(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, file.count + 1, &size), STATUS_ERROR);
        ASSERT_EQ(write(sizemap, file.other), STATUS_OK);
        const korvane_sizemap_t *again = korvane_sizemap_new_read_sol(mesh, folder.name(file.other).c_str());
        ASSERT_NE(again, nullptr) << context.text();
        EXPECT_EQ(queried(again, file.count), sizes);
    }
    EXPECT_EQ(context.text(), "");
}

TEST_F(RealSolutions, ATensorIsRefused)
{
    korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, real_file("torus.mesh").c_str());
    EXPECT_EQ(korvane_sizemap_new_read_sol(mesh, real_file("torus.sol").c_str()), nullptr);
    expect_messages({{-1, "Unsupported anistropic sizemap type for solution file reading.\n"}});
}

} // namespace
} // namespace korvane::testing
