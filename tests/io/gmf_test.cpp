#include "io/gmf.h"

#include <algorithm>
#include <array>
#include <climits>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/memory.h"
#include "io/bytes.h"
#include "support/failing_allocations.h"
#include "support/samples.h"
#include "support/temporary_folder.h"

namespace korvane::testing {
namespace {

const std::string small_mesh = "MeshVersionFormatted 2\nDimension 3\nVertices 1\n1 2 3 4\nEnd\n";

/// Opens for reading; the index.
int32_t open(const std::string &name)
{
    int32_t version = 0;
    int32_t dimension = 0;
    return gmf_open_file(name.c_str(), gmf_read_mode, &version, &dimension);
}

class Gmf : public ::testing::Test {
  protected:
    ~Gmf() override { expect_all_slots_free(); }

    /// 100 files can be opened: no slot, and no stream, was lost.
    void expect_all_slots_free()
    {
        const std::string name = folder.write("slots.mesh", small_mesh);
        for (int32_t index = 1; index <= GMF_MAX_FILES; ++index)
            EXPECT_EQ(open(name), index);
        EXPECT_EQ(open(name), 0);
        for (int32_t index = 1; index <= GMF_MAX_FILES; ++index)
            EXPECT_EQ(gmf_close_file(index), 1);
    }

    void expect_not_open(const std::string &content, const std::string &file = "file.mesh")
    {
        EXPECT_EQ(open(folder.write(file, content)), 0) << content;
    }

    TemporaryFolder folder;
};

TEST_F(Gmf, TheLowestFreeSlotIsTakenAndThe101stOpenFails)
{
    const std::string name = folder.write("a.mesh", small_mesh);
    const std::string written = folder.name("b.mesh");
    for (int32_t index = 1; index <= 100; ++index)
        ASSERT_EQ(index % 2 == 0 ? open(name) : gmf_open_file(written.c_str(), gmf_write_mode, 2, 3), index);
    EXPECT_EQ(open(name), 0);
    EXPECT_EQ(gmf_open_file(folder.name("untouched.mesh").c_str(), gmf_write_mode, 2, 3), 0);
    EXPECT_FALSE(std::filesystem::exists(folder.name("untouched.mesh")));
    for (const int32_t index : {70, 7, 33})
        EXPECT_EQ(gmf_close_file(index), 1);
    EXPECT_EQ(open(name), 7);
    EXPECT_EQ(open(name), 33);
    EXPECT_EQ(open(name), 70);
    for (int32_t index = 1; index <= 100; ++index)
        EXPECT_EQ(gmf_close_file(index), 1);
    EXPECT_EQ(gmf_close_file(1), 0);
}

TEST_F(Gmf, TheEndOfTheNameTellsKindAndEncoding)
{
    const std::string binary = Bytes().header(2, 3).integers(54, 0).text();
    for (const char *file :
        {"a.mesh", "ab.mesh", ".mesh", "a.mesh.", "a.sol", ".sol", "ab.solx", "a.solxy", "x.meshc"}) {
        const int32_t index = open(folder.write(file, small_mesh));
        EXPECT_NE(index, 0) << file;
        gmf_close_file(index);
        expect_not_open(binary, file);
    }
    for (const char *file : {"a.meshb", ".meshb", "a.solb", "ab.solb", ".solb", "a.solbx"}) {
        const int32_t index = open(folder.write(file, binary));
        EXPECT_NE(index, 0) << file;
        gmf_close_file(index);
        expect_not_open(small_mesh, file);
    }
    for (const char *file :
        {"mesh", "a.mesh.gz", "a.meshb.", "a.so", "a.MESH", "amesh", "a.solbxyz", "a.sol1234", "a"})
        expect_not_open(small_mesh, file);
    EXPECT_EQ(open(""), 0);
    int32_t ignored = 0;
    EXPECT_EQ(gmf_open_file(nullptr, gmf_read_mode, &ignored, &ignored), 0);
}

TEST_F(Gmf, AnOpenFileTellsItsEncodingAndByteOrder)
{
    const int32_t text = open(folder.write("a.mesh", small_mesh));
    ASSERT_NE(gmf_find_file(text), nullptr);
    EXPECT_FALSE(gmf_find_file(text)->is_binary());
    const std::string foreign("\0\0\0\1\0\0\0\1\0\0\0\3\0\0\0\0\0\0\0\3", 20);
    const int32_t binary = open(folder.write("a.meshb", foreign));
    ASSERT_NE(gmf_find_file(binary), nullptr);
    EXPECT_TRUE(gmf_find_file(binary)->is_binary());
    EXPECT_TRUE(gmf_find_file(binary)->has_opposite_byte_order());
    gmf_close_file(text);
    gmf_close_file(binary);
    for (const int32_t index : {text, 0, -1, 101})
        EXPECT_EQ(gmf_find_file(index), nullptr);
}

TEST_F(Gmf, NamesHaveLessThan1017Characters)
{
    const std::string longest = folder.name_of_length(1016, ".mesh");
    const int32_t index = gmf_open_file(longest.c_str(), gmf_write_mode, 2, 3);
    EXPECT_NE(index, 0);
    EXPECT_EQ(gmf_close_file(index), 1);
    EXPECT_EQ(open(longest), 1);
    EXPECT_EQ(gmf_close_file(1), 1);
    EXPECT_EQ(gmf_open_file(folder.name_of_length(1017, ".mesh").c_str(), gmf_write_mode, 2, 3), 0);
}

TEST_F(Gmf, ModesVersionsAndDimensionsAreLimited)
{
    const std::string name = folder.name("a.mesh");
    int32_t version = 0;
    int32_t dimension = 0;
    for (const int32_t mode : {0, 1, 3, -1})
        EXPECT_EQ(gmf_open_file(name.c_str(), mode, 2, 3), 0);
    for (const int32_t wrong : {0, 3, -1})
        EXPECT_EQ(gmf_open_file(name.c_str(), gmf_write_mode, wrong, 3), 0);
    for (const int32_t wrong : {0, 1, 4, -2})
        EXPECT_EQ(gmf_open_file(name.c_str(), gmf_write_mode, 2, wrong), 0);
    EXPECT_FALSE(std::filesystem::exists(name));
    folder.write("a.mesh", small_mesh);
    for (const int32_t mode : {0, 2, 3})
        EXPECT_EQ(gmf_open_file(name.c_str(), mode, &version, &dimension), 0);
    EXPECT_EQ(gmf_open_file(name.c_str(), gmf_read_mode, &version, &dimension), 1);
    EXPECT_EQ(version, 2);
    EXPECT_EQ(dimension, 3);
    EXPECT_EQ(gmf_close_file(1), 1);
}

TEST_F(Gmf, BadIndicesAndCodesAreHarmless)
{
    std::array<int32_t, 8> integers{};
    std::array<double, 8> reals{};
    const int32_t reading = open(folder.write("a.mesh", small_mesh));
    const int32_t writing = gmf_open_file(folder.name("b.mesh").c_str(), gmf_write_mode, 2, 3);
    for (const int32_t index : {0, -1, 50, 100, 101, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(gmf_close_file(index), 0);
        EXPECT_EQ(gmf_finish_file(index), 0);
        EXPECT_EQ(gmf_keyword_count(index, 4), 0);
        EXPECT_EQ(gmf_held_lines(index, 4), 0);
        EXPECT_EQ(gmf_seek_keyword(index, 4), 0);
        EXPECT_EQ(gmf_read_line(index, 4, integers.data(), reals.data()), 0);
        EXPECT_EQ(gmf_write_keyword_header(index, 4, 1), 0);
        EXPECT_EQ(gmf_write_line(index, 4, integers.data(), reals.data()), 0);
    }
    for (const int32_t code : {0, -1, 80, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(gmf_keyword_count(reading, code), 0);
        EXPECT_EQ(gmf_held_lines(reading, code), 0);
        EXPECT_EQ(gmf_seek_keyword(reading, code), 0);
        EXPECT_EQ(gmf_read_line(reading, code, integers.data(), reals.data()), 0);
        EXPECT_EQ(gmf_write_keyword_header(writing, code, 1), 0);
        EXPECT_EQ(gmf_write_line(writing, code, integers.data(), reals.data()), 0);
    }
    EXPECT_EQ(gmf_write_keyword_header(reading, 4, 1), 0);
    EXPECT_EQ(gmf_write_line(reading, 4, integers.data(), reals.data()), 0);
    EXPECT_EQ(gmf_finish_file(reading), 0);
    EXPECT_EQ(gmf_read_line(writing, 4, integers.data(), reals.data()), 0);
    EXPECT_EQ(gmf_read_line(reading, 5, integers.data(), reals.data()), 0);  // absent
    EXPECT_EQ(gmf_write_line(writing, 5, integers.data(), reals.data()), 0); // no header
    EXPECT_EQ(gmf_read_line(reading, 4, integers.data(), nullptr), 0);
    EXPECT_EQ(gmf_close_file(reading), 1);
    EXPECT_EQ(gmf_close_file(writing), 1);
}

TEST_F(Gmf, NoLinesAndLinesOfNoFileAreNoneReadOrWritten)
{
    std::array<double, 3> reals{};
    int32_t tag = 0;
    const GmfInput input[] = {{3, nullptr, reals.data()}, {1, &tag, nullptr}};
    const GmfOutput output[] = {{3, nullptr, reals.data()}, {1, &tag, nullptr}};
    const int32_t reading = open(folder.write("a.mesh", small_mesh));
    const int32_t writing = gmf_open_file(folder.name("b.mesh").c_str(), gmf_write_mode, 2, 3);
    EXPECT_EQ(gmf_seek_keyword(reading, gmf_vertices), 0);
    EXPECT_EQ(gmf_write_keyword_header(writing, gmf_vertices, 1), 1);
    EXPECT_EQ(gmf_read_lines(writing, gmf_vertices, 1, input), 0);
    EXPECT_EQ(gmf_write_lines(reading, gmf_vertices, 1, output), 0);
    for (const int32_t count : {0, -1, INT32_MIN}) {
        EXPECT_EQ(gmf_read_lines(reading, gmf_vertices, count, input), 0);
        EXPECT_EQ(gmf_write_lines(writing, gmf_vertices, count, output), 0);
    }
    EXPECT_EQ(gmf_read_lines(reading, gmf_vertices, 1, input), 1);
    EXPECT_EQ(tag, 4);
    EXPECT_EQ(gmf_write_lines(writing, gmf_vertices, 1, output), 1);
    EXPECT_EQ(gmf_close_file(reading), 1);
    EXPECT_EQ(gmf_close_file(writing), 1);
}

TEST_F(Gmf, SeekingAnAbsentKeywordChangesNothing)
{
    const int32_t index =
        open(folder.write("a.mesh", "MeshVersionFormatted 2 Dimension 3 RequiredVertices 3 7 8 9"));
    int32_t value = 0;
    EXPECT_EQ(gmf_seek_keyword(index, gmf_required_vertices), 0);
    EXPECT_EQ(gmf_read_line(index, gmf_required_vertices, &value, nullptr), 1);
    EXPECT_EQ(gmf_seek_keyword(index, gmf_vertices), 0);
    EXPECT_EQ(gmf_read_line(index, gmf_required_vertices, &value, nullptr), 1);
    EXPECT_EQ(value, 8);
    EXPECT_EQ(gmf_close_file(index), 1);
}

TEST_F(Gmf, AFailedOpenLosesNeitherSlotNorStream)
{
    for (int i = 0; i < 1200; ++i) {
        expect_not_open("MeshVersionFormatted 2\n");
        expect_not_open("MeshVersionFormatted 2 Dimension 3 SolAtVertices 1 21");
        expect_not_open("abc", "file.meshb");
    }
}

TEST_F(Gmf, AFullDiskIsToldWhenTheFileIsFinished)
{
    for (const char *file : {"a.mesh", "a.meshb"}) {
        const int32_t index = gmf_open_file(folder.link(file, "/dev/full").c_str(), gmf_write_mode, 2, 3);
        ASSERT_EQ(index, 1);
        EXPECT_EQ(gmf_finish_file(index), 0);
        EXPECT_EQ(gmf_write_keyword_header(index, gmf_vertices, 1), 0);
        EXPECT_EQ(gmf_close_file(index), 0);
    }
}

TEST_F(Gmf, AWrongHeaderIsRefusedAndTheFileEndsWell)
{
    for (const char *file : {"a.sol", "a.solb"}) {
        const std::string name = folder.name(file);
        const int32_t types[GMF_MAX_TYPES + 1] = {};
        const int32_t index = gmf_open_file(name.c_str(), gmf_write_mode, 2, 3);
        EXPECT_EQ(gmf_write_keyword_header(index, gmf_sol_at_vertices, 1, 21, types), 0);
        EXPECT_EQ(gmf_write_keyword_header(index, gmf_sol_at_vertices, 1, -1, types), 0);
        EXPECT_EQ(gmf_write_keyword_header(index, gmf_sol_at_vertices, 1, 1, nullptr), 0);
        EXPECT_EQ(gmf_write_keyword_header(index, gmf_vertices, -1), 0);
        EXPECT_EQ(gmf_finish_file(index), 0);
        EXPECT_EQ(gmf_close_file(index), 0);
        const int32_t reading = open(name);
        EXPECT_NE(reading, 0);
        EXPECT_EQ(gmf_keyword_count(reading, gmf_sol_at_vertices), 0);
        gmf_close_file(reading);
    }
}

TEST_F(Gmf, OpeningSurvivesFailingAllocations)
{
    const std::string name = folder.write("a.mesh", small_mesh);
    const std::string written = folder.write("b.mesh", "not truncated");
    oom_sweep([&](AllocationFault &fault) {
        fault.arm();
        const int32_t reading = open(name);
        const int32_t writing = gmf_open_file(written.c_str(), gmf_write_mode, 2, 3);
        const bool failed = fault.disarm();
        EXPECT_EQ(reading == 0 || writing == 0, failed);
        if (failed && reading != 0) {
            EXPECT_EQ(read_file(written), "not truncated");
        }
        gmf_close_file(reading);
        gmf_close_file(writing);
        folder.write("b.mesh", "not truncated");
    });
}

/// A line of a keyword, whatever its letters.
struct Line {
    std::vector<int32_t> integers;
    std::vector<double> reals;
    bool operator==(const Line &) const = default;
};

struct Block {
    int32_t code;
    std::vector<int32_t> types;
    std::vector<Line> lines;
};

/// Random blocks of every keyword that has a count, for a file of this version and dimension.
std::vector<Block> random_blocks(std::mt19937 &random, int32_t version, int32_t dimension)
{
    std::vector<Block> blocks;
    for (int32_t code = 4; code < GMF_MAX_KEYWORDS; ++code) {
        if (!gmf_row(code).reads_count() || random() % 2 == 0)
            continue;
        const Owned<gmf_file_t> layout = create_owned<gmf_file_t>();
        layout->version = version;
        layout->dimension = dimension;
        gmf_keyword_info_t &keyword = layout->keyword(code);
        Block block{code, {}, {}};
        if (gmf_row(code).reads_types()) {
            for (auto types = 1 + random() % 4; types > 0; --types)
                block.types.push_back(static_cast<int32_t>(random() % 6));
            keyword.type_count = static_cast<int32_t>(block.types.size());
            std::copy(block.types.begin(), block.types.end(), keyword.types.begin());
        }
        gmf_expand_format(*layout, code);
        for (auto lines = random() % 8 == 0 ? 30'000 : 1 + random() % 5; lines > 0; --lines) {
            Line line;
            for (int32_t i = 0; i < keyword.values_per_line; ++i) {
                if (keyword.format[static_cast<std::size_t>(i)] == 'i')
                    line.integers.push_back(static_cast<int32_t>(random()) >> (random() % 32));
                else
                    line.reals.push_back(
                        static_cast<float>(static_cast<int32_t>(random() % 2001) - 1000) / 8);
            }
            block.lines.push_back(line);
        }
        blocks.push_back(block);
    }
    std::shuffle(blocks.begin(), blocks.end(), random);
    return blocks;
}

void write_blocks(int32_t index, const std::vector<Block> &blocks)
{
    for (const Block &block : blocks) {
        const auto count = static_cast<int32_t>(block.lines.size());
        ASSERT_EQ(gmf_write_keyword_header(
                      index, block.code, count, static_cast<int32_t>(block.types.size()), block.types.data()),
            count);
        for (const Line &line : block.lines)
            ASSERT_EQ(gmf_write_line(index, block.code, line.integers.data(), line.reals.data()), 1);
    }
}

void expect_blocks(int32_t index, std::vector<Block> blocks)
{
    std::reverse(blocks.begin(), blocks.end()); // blocks may be read in any order
    for (const Block &block : blocks) {
        int32_t type_count = 0;
        int32_t values_per_line = 0;
        std::array<int32_t, GMF_MAX_TYPES> types{};
        ASSERT_EQ(gmf_keyword_count(index, block.code, &type_count, &values_per_line, types.data()),
            static_cast<int32_t>(block.lines.size()));
        ASSERT_EQ(std::vector<int32_t>(types.begin(), types.begin() + type_count), block.types);
        if (!block.types.empty()) {
            ASSERT_EQ(values_per_line, static_cast<int32_t>(block.lines[0].reals.size()));
        }
        ASSERT_EQ(gmf_held_lines(index, block.code), static_cast<int32_t>(block.lines.size()));
        ASSERT_EQ(gmf_seek_keyword(index, block.code), 0);
        for (const Line &line : block.lines) {
            Line read{std::vector<int32_t>(line.integers.size()), std::vector<double>(line.reals.size())};
            ASSERT_EQ(gmf_read_line(index, block.code, read.integers.data(), read.reals.data()), 1);
            ASSERT_EQ(read, line);
        }
    }
}

TEST_F(Gmf, WhatIsWrittenLineByLineIsReadInAnyOrder)
{
    std::mt19937 random(1);
    for (const char *file : {"a.mesh", "a.meshb"}) {
        for (const auto &[version, dimension] :
            {std::pair(1, 2), std::pair(1, 3), std::pair(2, 2), std::pair(2, 3)}) {
            const std::vector<Block> blocks = random_blocks(random, version, dimension);
            const std::string name = folder.name(file);
            const int32_t writing = gmf_open_file(name.c_str(), gmf_write_mode, version, dimension);
            ASSERT_NO_FATAL_FAILURE(write_blocks(writing, blocks));
            ASSERT_EQ(gmf_close_file(writing), 1);
            const int32_t reading = open(name);
            ASSERT_NO_FATAL_FAILURE(expect_blocks(reading, blocks));
            EXPECT_EQ(gmf_close_file(reading), 1);
        }
    }
}

TEST_F(Gmf, ManyLinesAtOnceAreAsLineByLine)
{
    constexpr int32_t count = 20'000; // more than a block holds
    std::vector<double> reals(3 * count);
    std::vector<int32_t> tags(count);
    for (std::size_t i = 0; i < tags.size(); ++i) {
        tags[i] = static_cast<int32_t>(i) - 100;
        for (std::size_t j = 0; j < 3; ++j)
            reals[3 * i + j] = static_cast<double>(i) / 7 + static_cast<double>(j);
    }
    for (const char *extension : {"mesh", "meshb"}) {
        const auto write = [&](const std::string &file, const auto &write_lines) {
            const int32_t index = gmf_open_file(folder.name(file).c_str(), gmf_write_mode, 2, 3);
            EXPECT_EQ(gmf_write_keyword_header(index, gmf_vertices, count), count);
            write_lines(index);
            EXPECT_EQ(gmf_close_file(index), 1);
            return read_file(folder.name(file));
        };
        const std::string at_once = write(std::string("a.") + extension, [&](int32_t index) {
            const std::array<GmfOutput, 3> columns = {
                {{1, nullptr, reals.data()}, {2, nullptr, reals.data()}, {1, tags.data(), nullptr}}};
            EXPECT_EQ(gmf_write_lines(index, gmf_vertices, count, std::span(columns).subspan(1)), 0);
            const std::array<GmfOutput, 2> fitting = {
                {{3, nullptr, reals.data()}, {1, tags.data(), nullptr}}};
            EXPECT_EQ(gmf_write_lines(index, gmf_vertices, count, fitting), count);
        });
        const std::string one_by_one = write(std::string("b.") + extension, [&](int32_t index) {
            for (std::size_t i = 0; i < count; ++i)
                EXPECT_EQ(gmf_write_line(index, gmf_vertices, &tags[i], &reals[3 * i]), 1);
        });
        EXPECT_TRUE(at_once == one_by_one);

        const int32_t index = open(folder.name(std::string("a.") + extension));
        std::vector<double> x(count), yz(2 * count);
        std::vector<int32_t> read_tags(count);
        const std::array<GmfInput, 3> columns = {
            {{1, nullptr, x.data()}, {2, nullptr, yz.data()}, {1, read_tags.data(), nullptr}}};
        gmf_seek_keyword(index, gmf_vertices);
        EXPECT_EQ(gmf_read_lines(index, gmf_vertices, count, columns), count);
        EXPECT_EQ(read_tags, tags);
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_NEAR(x[i], reals[3 * i], 1e-9);
            ASSERT_NEAR(yz[2 * i + 1], reals[3 * i + 2], 1e-9);
        }
        gmf_close_file(index);
    }
}

/// Reads the only solution of a sample and expects it to be `value(line, i)`.
void expect_solution(const std::string &file, int32_t code, const std::vector<int32_t> &types, int32_t count,
    const std::function<double(int32_t, int32_t)> &value)
{
    const int32_t index = open(sample(file));
    ASSERT_NE(index, 0) << file;
    std::array<int32_t, GMF_MAX_TYPES> read_types{};
    int32_t type_count = 0;
    int32_t values = 0;
    EXPECT_EQ(gmf_keyword_count(index, code, &type_count, &values, read_types.data()), count) << file;
    EXPECT_EQ(std::vector<int32_t>(read_types.begin(), read_types.begin() + type_count), types) << file;
    std::vector<double> reals(static_cast<std::size_t>(values));
    gmf_seek_keyword(index, code);
    for (int32_t line = 0; line < count; ++line) {
        EXPECT_EQ(gmf_read_line(index, code, nullptr, reals.data()), 1);
        for (int32_t i = 0; i < values; ++i)
            EXPECT_EQ(reals[static_cast<std::size_t>(i)], value(line, i)) << file;
    }
    gmf_close_file(index);
}

TEST_F(Gmf, SolutionSamplesAreReadAsTheirMakerMeantThem)
{
    const std::array<double, 3> sizes = {0.5, 1. / 3, -2};
    const auto in_double = [&](int32_t line, int32_t) { return sizes[static_cast<std::size_t>(line)]; };
    const auto in_single = [&](int32_t line, int32_t) {
        return static_cast<float>(sizes[static_cast<std::size_t>(line)]);
    };
    for (const char *file : {"scalar-v2.sol", "scalar-v3.sol", "scalar-v2-big.solb"})
        expect_solution(file, gmf_sol_at_vertices, {1}, 3, in_double);
    for (const char *file : {"scalar-v1.sol", "scalar-v1-little.solb"})
        expect_solution(file, gmf_sol_at_vertices, {1}, 3, in_single);
    const auto mixed = [](int32_t line, int32_t i) { return line / 7. + i; };
    expect_solution("mixed-v2.sol", gmf_sol_at_vertices, {1, 2, 3, 4}, 2, mixed);
    expect_solution("mixed-v1-big.solb", gmf_sol_at_vertices, {1, 2, 3, 4}, 2,
        [&](int32_t line, int32_t i) { return static_cast<float>(mixed(line, i)); });
    const auto from_1 = [](int32_t, int32_t i) { return i + 1; };
    expect_solution("mixed-v2.sol", 64, {2}, 1, from_1);
    expect_solution("plane-v2-little.solb", gmf_sol_at_vertices, {3, 1}, 1, from_1);
}

} // namespace
} // namespace korvane::testing
