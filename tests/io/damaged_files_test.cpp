// Every sample, cut at every byte, with bytes changed at random, and, if it is binary, with each of its words
// replaced by extreme ones: reading it neither crashes nor hangs nor takes memory out of proportion, as a
// mesh and block by block, and what comes out as a mesh can be used as any other.
#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "io/byte_order.h"
#include "io/gmf.h"
#include "io/mesh_content.h"
#include "mesh/slots.h"
#include "support/failing_allocations.h"
#include "support/recorded_messages.h"
#include "support/samples.h"
#include "support/temporary_folder.h"

namespace korvane::testing {
namespace {

namespace fs = std::filesystem;

#if defined(__SANITIZE_ADDRESS__)
constexpr int rounds = 100; // sanitizers take several times as long
#else
constexpr int rounds = 1000;
#endif

/// The samples, bad ones included, by their names from the folder of the samples on, in order.
std::vector<std::string> samples(bool binary_only)
{
    std::vector<std::string> files;
    const fs::path data = sample("");
    for (const fs::path &folder : {data, data / "bad"}) {
        for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
            const std::string extension = entry.path().extension();
            const bool is_binary = extension == ".meshb" || extension == ".solb";
            if (is_binary || (!binary_only && (extension == ".mesh" || extension == ".sol")))
                files.push_back(fs::relative(entry.path(), data));
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string test_name(const ::testing::TestParamInfo<std::string> &info)
{
    std::string name = info.param;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char character) { return std::isalnum(character) == 0; }, '_');
    return name;
}

/// The largest count of a kind.
int32_t largest_count(const korvane_mesh_t *mesh)
{
    int32_t largest = 0;
    for (const CountAccessors &entity : counts) {
        int32_t count = -1;
        EXPECT_EQ(entity.get(mesh, &count), STATUS_OK);
        EXPECT_GE(count, 0);
        largest = std::max(largest, count);
    }
    return largest;
}

class DamagedFile : public ::testing::TestWithParam<std::string> {
  protected:
    /// A file that opens takes its record and block once; what it holds takes a few bytes per byte.
    static constexpr std::int64_t allowance = 400'000;
    static constexpr std::int64_t allowance_per_byte = 40;

    void expect_survived(std::size_t size)
    {
        const std::int64_t limit = allowance + allowance_per_byte * static_cast<std::int64_t>(size);
        const std::int64_t before = allocated_bytes();
        ASSERT_NO_FATAL_FAILURE(read_blocks(size));
        ASSERT_LT(allocated_bytes() - before, limit);
        context.messages.clear();
        ASSERT_NO_FATAL_FAILURE(is_mesh ? read_mesh(limit) : read_solution(limit));
    }

    const std::string whole = read_file(sample(GetParam()));
    const std::string file = "damaged" + fs::path(GetParam()).extension().string();
    TemporaryFolder folder;
    const std::string name = folder.name(file);
    const bool is_mesh = file.find(".mesh") != file.npos;

  private:
    void read_mesh(std::int64_t limit)
    {
        const std::int64_t before = allocated_bytes();
        korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, name.c_str());
        ASSERT_LT(allocated_bytes() - before, limit);
        ASSERT_EQ(context.messages.size(), mesh == nullptr ? 1u : 0u);
        if (mesh == nullptr)
            return;
        ASSERT_NO_FATAL_FAILURE(use(mesh));
        korvane_mesh_delete(mesh);
    }

    /// Against a mesh that has as many vertices as the file states.
    void read_solution(std::int64_t limit)
    {
        korvane_mesh_t *mesh = korvane_mesh_new_in_memory(context);
        korvane_mesh_set_vertex_count(mesh, stated_sizes);
        const std::int64_t before = allocated_bytes();
        korvane_sizemap_t *sizemap = korvane_sizemap_new_read_sol(mesh, name.c_str());
        ASSERT_LT(allocated_bytes() - before, limit);
        ASSERT_EQ(context.messages.size(), sizemap == nullptr ? 1u : 0u);
        double value = -7;
        for (const int32_t vertex : {1, stated_sizes})
            ASSERT_EQ(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, vertex, &value),
                sizemap == nullptr ? STATUS_ERROR : STATUS_OK);
        if (sizemap != nullptr && stated_sizes <= 2000) {
            ASSERT_EQ(korvane_sizemap_write_sol(sizemap, folder.name("again.solb").c_str()), STATUS_OK);
        }
        korvane_sizemap_delete(sizemap);
        korvane_mesh_delete(mesh);
    }

    /// Reads every block of the file line by line.
    void read_blocks(std::size_t size)
    {
        stated_sizes = 0;
        int32_t version = 0;
        int32_t dimension = 0;
        const int32_t index = gmf_open_file(name.c_str(), gmf_read_mode, &version, &dimension);
        if (index == 0)
            return;
        ASSERT_EQ(index, 1);
        const GmfFileGuard guard(index);
        stated_sizes = gmf_keyword_count(index, gmf_sol_at_vertices);
        std::array<int32_t, 180> integers; // more than a line has
        std::array<double, 180> reals;
        for (int32_t code = -1; code <= GMF_MAX_KEYWORDS + 1; ++code) {
            std::array<int32_t, GMF_MAX_TYPES> types{};
            int32_t type_count = 0;
            int32_t values_per_line = 1;
            const int32_t count = gmf_keyword_count(index, code, &type_count, &values_per_line, types.data());
            int32_t held = gmf_held_lines(index, code);
            ASSERT_TRUE(held >= 0 && held <= count);
            ASSERT_TRUE(type_count >= 0 && type_count <= GMF_MAX_TYPES);
            if (values_per_line == 0) // then all the lines that are stated are there, and take no room
                held = std::min(held, 10);
            ASSERT_LE(static_cast<std::size_t>(held), size);
            ASSERT_EQ(gmf_seek_keyword(index, code), 0);
            for (int32_t line = 0; line < held; ++line)
                gmf_read_line(index, code, integers.data(), reals.data());
        }
    }

    /// Counts are taken from the file as they stand, so a huge mesh is only asked at its ends.
    void use(korvane_mesh_t *mesh)
    {
        const int32_t last = largest_count(mesh);
        if (last > 2000) {
            std::array<double, 3> xyz;
            std::array<int32_t, 8> vertices;
            for (const int32_t index : {0, 1, last, INT32_MIN}) {
                korvane_mesh_get_vertex_coordinates(mesh, index, xyz.data());
                korvane_mesh_get_hexahedron_vertices(mesh, index, vertices.data());
            }
            return;
        }
        content_of(mesh); // expects every getter to succeed
        ASSERT_EQ(korvane_mesh_compute_statistics_valid(mesh, "damaged"), STATUS_OK);
        // NASTRAN has no room for indices of 9 digits and more.
        const korvane_status_t status = korvane_mesh_write_bdf(mesh, folder.name("cards.bdf").c_str());
        ASSERT_TRUE(status == STATUS_OK || status == STATUS_ERROR);
        ASSERT_EQ(written(mesh, "text.mesh").substr(0, 22), "MeshVersionFormatted 2");
        const std::string binary = written(mesh, "binary.meshb");
        korvane_mesh_t *again = korvane_mesh_new_read_mesh(context, folder.name("binary.meshb").c_str());
        ASSERT_NE(again, nullptr);
        ASSERT_EQ(written(again, "again.meshb"), binary);
        korvane_mesh_delete(again);
    }

    std::string written(const korvane_mesh_t *mesh, const std::string &target) const
    {
        EXPECT_EQ(korvane_mesh_write_mesh(mesh, folder.name(target).c_str()), STATUS_OK);
        return read_file(folder.name(target));
    }

    RecordingContext context;
    int32_t stated_sizes = 0;
};

TEST_P(DamagedFile, CutAnywhereIsSurvived)
{
    folder.write(file, whole);
    for (std::size_t size = whole.size(); size-- > 0;) {
        fs::resize_file(name, size);
        ASSERT_NO_FATAL_FAILURE(expect_survived(size)) << "cut to " << size;
    }
}

TEST_P(DamagedFile, WithOneByteInAHundredChangedIsSurvived)
{
    std::mt19937 random(1);
    for (int round = 0; round < rounds && !whole.empty(); ++round) {
        std::string content = whole;
        for (std::size_t left = 1 + whole.size() / 100; left > 0; --left)
            content[random() % content.size()] = static_cast<char>(random());
        folder.write(file, content);
        ASSERT_NO_FATAL_FAILURE(expect_survived(content.size())) << "round " << round;
    }
}

/// Bits that flip, bytes that are lost or come in, words of other places.
TEST_P(DamagedFile, MovedAboutIsSurvived)
{
    std::mt19937 random(2);
    const auto number = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
    for (int round = 0; round < 150; ++round) {
        std::string content = whole;
        for (std::size_t left = 1 + number(4); left > 0 && !content.empty(); --left) {
            switch (number(4)) {
            case 0: {
                char &byte = content[number(content.size())];
                byte = static_cast<char>(byte ^ (1 << number(8)));
                break;
            }
            case 1:
                content.erase(number(content.size()), 1 + number(8));
                break;
            case 2:
                content.insert(
                    number(content.size()), std::string(1 + number(8), static_cast<char>(random())));
                break;
            default: {
                const std::size_t from = number(content.size()) / 4 * 4;
                content.replace(number(content.size()) / 4 * 4, 4, content.substr(from, 4));
            }
            }
        }
        folder.write(file, content);
        ASSERT_NO_FATAL_FAILURE(expect_survived(content.size())) << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Sample, DamagedFile, ::testing::ValuesIn(samples(false)), test_name);

using DamagedBinaryFile = DamagedFile;

TEST_P(DamagedBinaryFile, WithAnExtremeWordIsSurvived)
{
    const bool is_opposite = whole.size() >= 4 && load<uint32_t>(whole.data()) != 1;
    for (std::size_t position = 0; position + 4 <= whole.size(); position += 4) {
        for (const uint32_t word : {0u, 1u, 0xffffffffu, 0x7fffffffu, 0x80000000u}) {
            const uint32_t stored = is_opposite ? reversed(word) : word;
            std::string content = whole;
            content.replace(position, 4, reinterpret_cast<const char *>(&stored), 4);
            folder.write(file, content);
            ASSERT_NO_FATAL_FAILURE(expect_survived(content.size())) << "word " << word << " at " << position;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Sample, DamagedBinaryFile, ::testing::ValuesIn(samples(true)), test_name);

} // namespace
} // namespace korvane::testing
