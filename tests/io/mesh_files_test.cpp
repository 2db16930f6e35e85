// The sample files, which an independent writer made, and the files of other programs.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "io/mesh_content.h"
#include "support/failing_allocations.h"
#include "support/recorded_messages.h"
#include "support/samples.h"
#include "support/temporary_folder.h"

namespace korvane::testing {
namespace {

namespace fs = std::filesystem;

/// The mesh files of a folder, in order.
std::vector<fs::path> mesh_files(const fs::path &folder)
{
    std::vector<fs::path> files;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".mesh" || entry.path().extension() == ".meshb")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<fs::path> samples()
{
    return mesh_files(sample(""));
}

std::vector<fs::path> bad_samples()
{
    return mesh_files(sample("bad"));
}

class MeshFiles : public ::testing::Test {
  protected:
    ~MeshFiles() override { expect_all_slots_free(); }

    void expect_all_slots_free()
    {
        const std::string name = sample("empty.mesh");
        for (int i = 0; i < 120; ++i) {
            korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, name.c_str());
            EXPECT_NE(mesh, nullptr);
            korvane_mesh_delete(mesh);
        }
    }

    TemporaryFolder folder;
    RecordingContext context;
};

TEST_F(MeshFiles, SamplesAreReadAsTheirMakerMeantThem)
{
    int compared = 0;
    for (const fs::path &file : samples()) {
        const std::string expected = file.string() + ".expected";
        if (!fs::exists(expected))
            continue;
        korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, file.c_str());
        ASSERT_NE(mesh, nullptr) << file;
        EXPECT_EQ(content_of(mesh), read_expected(expected)) << file;
        korvane_mesh_delete(mesh);
        ++compared;
    }
    EXPECT_GE(compared, 20);
    EXPECT_EQ(context.text(), "");
}

TEST_F(MeshFiles, BadSamplesAreRefusedOrReadAsTheirMakerMeantThem)
{
    int refused = 0;
    int survived = 0;
    for (const fs::path &file : bad_samples()) {
        context.messages.clear();
        const std::string expected = file.string() + ".expected";
        korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, file.c_str());
        if (fs::exists(expected)) {
            ASSERT_NE(mesh, nullptr) << file;
            EXPECT_EQ(content_of(mesh), read_expected(expected)) << file;
            EXPECT_EQ(context.text(), "");
            ++survived;
        } else {
            EXPECT_EQ(mesh, nullptr) << file;
            EXPECT_EQ(context.text(), "korvane_mesh_new_read_mesh : Error opening mesh file for reading.\n")
                << file;
            ++refused;
        }
        korvane_mesh_delete(mesh);
    }
    EXPECT_GE(refused, 30);
    EXPECT_GE(survived, 15);
}

TEST_F(MeshFiles, PlaneSamplesAreRefused)
{
    for (const char *file : {"plane-v2.mesh", "plane-v1-big.meshb"}) {
        context.messages.clear();
        EXPECT_EQ(korvane_mesh_new_read_mesh(context, sample(file).c_str()), nullptr);
        EXPECT_EQ(context.text(), "korvane_mesh_new_read_mesh : Only 3d meshes are supported.\n");
    }
}

TEST_F(MeshFiles, TheSampleContentIsWrittenByteByByteAsItsMakerDoes)
{
    korvane_mesh_t *mesh = make_mesh(context, read_expected(sample("written.meshb.expected")));
    for (const char *file : {"written.mesh", "written.meshb"}) {
        EXPECT_EQ(korvane_mesh_write_mesh(mesh, folder.name(file).c_str()), STATUS_OK);
        EXPECT_EQ(read_file(folder.name(file)), read_file(sample(file))) << file;
    }
}

TEST_F(MeshFiles, NoSlotIsLostWhateverAllocationFails)
{
    for (const char *file :
        {"all-v2.mesh", "all-v1-big.meshb", "plane-v2.mesh", "bad/chain-in-a-circle.meshb"}) {
        const std::string name = sample(file);
        oom_sweep([&](AllocationFault &fault) {
            RecordingContext own;
            fault.arm();
            korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(own, name.c_str());
            fault.disarm();
            korvane_mesh_delete(mesh);
        });
        expect_all_slots_free();
    }
}

class RealMeshFiles : public MeshFiles {
  protected:
    void SetUp() override
    {
        if (!has_real_files())
            GTEST_SKIP() << "no files of other programs here";
    }
};

TEST_F(RealMeshFiles, AreTheSameInTheOtherEncoding)
{
    for (const fs::path &file : mesh_files(real_file(""))) {
        korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, file.c_str());
        ASSERT_NE(mesh, nullptr) << file << ": " << context.text();
        const MeshContent content = content_of(mesh);
        EXPECT_GT(content.entities[0].count(), 50) << file;
        EXPECT_GT(content.entities[2].count(), 0) << file;
        const bool is_text = file.extension() == ".mesh";
        const std::string other = folder.name(is_text ? "other.meshb" : "other.mesh");
        EXPECT_EQ(korvane_mesh_write_mesh(mesh, other.c_str()), STATUS_OK);
        korvane_mesh_t *again = korvane_mesh_new_read_mesh(context, other.c_str());
        ASSERT_NE(again, nullptr);
        EXPECT_TRUE(content_of(again) == content) << file;
        korvane_mesh_delete(again);
        korvane_mesh_delete(mesh);
    }
}

TEST_F(RealMeshFiles, HaveTheCountsThatTheyState)
{
    const struct {
        const char *name;
        std::array<int32_t, MeshContent::kinds> counts;
    } files[] = {
        {"octopus-low.mesh", {452, 0, 898, 0, 1140, 0, 0}},
        {"cube.meshb", {98, 48, 192, 0, 229, 0, 0}},
        {"teapot.mesh", {5917, 0, 11617, 0, 0, 0, 0}},
        {"torus.mesh", {4351, 94, 2954, 0, 20067, 0, 0}},
    };
    for (const auto &file : files) {
        korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, real_file(file.name).c_str());
        ASSERT_NE(mesh, nullptr) << file.name;
        const MeshContent content = content_of(mesh);
        for (std::size_t kind = 0; kind < MeshContent::kinds; ++kind)
            EXPECT_EQ(content.entities[kind].count(), file.counts[kind]) << file.name << " " << kind;
        for (std::size_t kind = 1; kind < MeshContent::kinds; ++kind)
            for (const int32_t vertex : content.entities[kind].vertices)
                ASSERT_TRUE(vertex >= 1 && vertex <= content.entities[0].count()) << file.name;
        korvane_mesh_delete(mesh);
    }
}

} // namespace
} // namespace korvane::testing
