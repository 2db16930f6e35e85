#include <array>
#include <climits>
#include <cmath>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "io/bytes.h"
#include "io/mesh_content.h"
#include "io/served_mesh.h"
#include "support/decimal_comma.h"
#include "support/failing_allocations.h"
#include "support/recorded_messages.h"
#include "support/temporary_folder.h"

namespace korvane::testing {
namespace {

const std::string prefix = "korvane_mesh_write_mesh : ";
const std::string text_of_nothing = "MeshVersionFormatted 2\n\nDimension 3\n\nEnd\n";

class WriteMesh : public ::testing::Test {
  protected:
    /// What is written for a mesh, which is then deleted.
    std::string written(korvane_mesh_t *mesh, const std::string &file = "a.mesh")
    {
        EXPECT_EQ(korvane_mesh_write_mesh(mesh, folder.name(file).c_str()), STATUS_OK) << context.text();
        korvane_mesh_delete(mesh);
        return read_file(folder.name(file));
    }

    void expect_message(int32_t number, const std::string &text) { context.expect(prefix, {{number, text}}); }

    /// The mesh that is read from a file.
    MeshContent read(const std::string &file)
    {
        korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, folder.name(file).c_str());
        EXPECT_NE(mesh, nullptr) << context.text();
        MeshContent content = mesh == nullptr ? MeshContent{} : content_of(mesh);
        korvane_mesh_delete(mesh);
        return content;
    }

    TemporaryFolder folder;
    RecordingContext context;
};

TEST_F(WriteMesh, AMeshWithoutEntitiesIsHeaderAndEnd)
{
    EXPECT_EQ(written(korvane_mesh_new(context)), text_of_nothing);
    EXPECT_EQ(written(korvane_mesh_new(context), "a.meshb"), Bytes().header(2, 3).integers(54, 0).text());
    EXPECT_EQ(written(korvane_mesh_new_in_memory(context)), text_of_nothing);
    korvane_mesh_t *negative = korvane_mesh_new_in_memory(context);
    korvane_mesh_set_vertex_count(negative, -3);
    EXPECT_EQ(written(negative), text_of_nothing);
    EXPECT_EQ(context.text(), "");
}

TEST_F(WriteMesh, RefusesANullMesh)
{
    EXPECT_EQ(korvane_mesh_write_mesh(nullptr, folder.name("a.mesh").c_str()), STATUS_ERROR);
    EXPECT_FALSE(std::filesystem::exists(folder.name("a.mesh")));
}

TEST_F(WriteMesh, ReportsAFileThatCannotBeOpened)
{
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    for (const char *file : {"no/such/folder.mesh", "a.msh", "a.mesh.gz"}) {
        EXPECT_EQ(korvane_mesh_write_mesh(mesh, folder.name(file).c_str()), STATUS_ERROR);
        expect_message(-1, "Error opening mesh file for writing.\n");
    }
}

TEST_F(WriteMesh, WritesEntitiesAndThenRequiredOnesInTheirOrder)
{
    MeshContent content = small_content();
    for (EntityContent &entity : content.entities) {
        entity.required.front() = -5; // any flag but 0 counts
        entity.required.back() = 1;
    }
    EXPECT_EQ(written(make_mesh(context, content)),
        "MeshVersionFormatted 2\n\nDimension 3\n"
        "\nVertices\n3\n0.25 0.5 0.75 4 \n1.25 1.5 1.75 8 \n2.25 2.5 2.75 12 \n"
        "\nEdges\n4\n13 14 15 \n16 17 18 \n19 20 21 \n22 23 24 \n"
        "\nTriangles\n5\n25 26 27 28 \n29 30 31 32 \n33 34 35 36 \n37 38 39 40 \n41 42 43 44 \n"
        "\nQuadrilaterals\n6\n45 46 47 48 49 \n50 51 52 53 54 \n55 56 57 58 59 \n60 61 62 63 64 \n65 66 67 "
        "68 69 \n"
        "70 71 72 73 74 \n"
        "\nTetrahedra\n7\n75 76 77 78 79 \n80 81 82 83 84 \n85 86 87 88 89 \n90 91 92 93 94 \n95 96 97 98 99 "
        "\n"
        "100 101 102 103 104 \n105 106 107 108 109 \n"
        "\nHexahedra\n8\n110 111 112 113 114 115 116 117 118 \n119 120 121 122 123 124 125 126 127 \n"
        "128 129 130 131 132 133 134 135 136 \n137 138 139 140 141 142 143 144 145 \n"
        "146 147 148 149 150 151 152 153 154 \n155 156 157 158 159 160 161 162 163 \n"
        "164 165 166 167 168 169 170 171 172 \n173 174 175 176 177 178 179 180 181 \n"
        "\nPyramids\n9\n182 183 184 185 186 187 \n188 189 190 191 192 193 \n194 195 196 197 198 199 \n"
        "200 201 202 203 204 205 \n206 207 208 209 210 211 \n212 213 214 215 216 217 \n218 219 220 221 222 "
        "223 \n"
        "224 225 226 227 228 229 \n230 231 232 233 234 235 \n"
        "\nRequiredVertices\n2\n1 \n3 \n\nRequiredEdges\n2\n1 \n4 \n\nRequiredTriangles\n2\n1 \n5 \n"
        "\nRequiredQuadrilaterals\n2\n1 \n6 \n\nEnd\n");
    EXPECT_EQ(context.text(), "");
}

TEST_F(WriteMesh, WhatIsWrittenIsReadBack)
{
    MeshContent content;
    for (std::size_t kind = 0; kind < MeshContent::kinds; ++kind) {
        EntityContent &entity = content.entities[kind];
        for (std::size_t i = 0; i < 3000; ++i) { // several blocks
            const auto number = static_cast<int32_t>(i * 7919 + kind);
            for (std::size_t j = 0; j < 3 && kind == 0; ++j)
                entity.coordinates.push_back(static_cast<double>(number) / 1024 - static_cast<double>(j));
            for (std::size_t j = 0; j < vertices_per_element(kind); ++j)
                entity.vertices.push_back(number - 500 + static_cast<int32_t>(j));
            entity.tags.push_back(kind % 2 == 0 ? -number : number);
            entity.required.push_back(kind < 4 && i % (5 + kind) == 0 ? 1 : 0);
        }
    }
    for (const char *file : {"a.mesh", "a.meshb"}) {
        written(make_mesh(context, content), file);
        EXPECT_TRUE(read(file) == content) << file;
    }
    EXPECT_EQ(context.text(), "");
}

class WriteServedMesh : public WriteMesh {
  protected:
    std::string write() { return written(mesh); }

    Served served;
    korvane_mesh_t *mesh = korvane_mesh_new(context);
};

TEST_F(WriteServedMesh, AsksForEntitiesOneByOneAndForFlagsTwice)
{
    served.count = 3;
    served.flags = {0, 7, 1};
    served.serve_vertices(mesh);
    EXPECT_EQ(write(),
        "MeshVersionFormatted 2\n\nDimension 3\n\nVertices\n3\n1 0.5 0 101 \n2 0.5 0 102 \n3 0.5 0 103 \n"
        "\nRequiredVertices\n2\n2 \n3 \n\nEnd\n");
    EXPECT_EQ(
        served.calls, (std::vector<std::string>{"count", "values1", "tag1", "values2", "tag2", "values3",
                          "tag3", "count", "flag1", "flag2", "flag3", "flag1", "flag2", "flag3"}));
}

TEST_F(WriteServedMesh, WithoutRequiredEntitiesFlagsAreAskedForOnce)
{
    served.count = 2;
    served.serve_edges(mesh);
    EXPECT_EQ(write(), "MeshVersionFormatted 2\n\nDimension 3\n\nEdges\n2\n1 9 101 \n2 9 102 \n\nEnd\n");
    EXPECT_EQ(served.calls,
        (std::vector<std::string>{"count", "values1", "tag1", "values2", "tag2", "count", "flag1", "flag2"}));
}

TEST_F(WriteServedMesh, FailingTagsAndFlagsAreZero)
{
    served.count = 3;
    served.flags = {1, 1, 1};
    served.failing_tag = 2;
    served.failing_flag = 1;
    served.serve_edges(mesh);
    EXPECT_EQ(write(), "MeshVersionFormatted 2\n\nDimension 3\n\nEdges\n3\n1 9 101 \n2 9 0 \n3 9 103 \n"
                       "\nRequiredEdges\n2\n2 \n3 \n\nEnd\n");
    EXPECT_EQ(context.text(), "");
}

TEST_F(WriteServedMesh, AFailingCountIsZero)
{
    served.count = 3;
    served.count_status = 42;
    served.serve_edges(mesh);
    EXPECT_EQ(write(), text_of_nothing);
    EXPECT_EQ(served.calls, (std::vector<std::string>{"count", "count"}));
}

TEST_F(WriteServedMesh, WhatAGetterLeavesOutIsZero)
{
    korvane_mesh_set_get_hexahedron_count(
        mesh,
        [](int32_t *count, void *) {
            *count = 2;
            return korvane_status_t{STATUS_OK};
        },
        nullptr);
    EXPECT_EQ(write(), "MeshVersionFormatted 2\n\nDimension 3\n\nHexahedra\n2\n0 0 0 0 0 0 0 0 0 \n0 0 0 0 0 "
                       "0 0 0 0 \n\nEnd\n");
}

TEST_F(WriteServedMesh, AFailingVertexStopsWithItsStatusAndAWellFormedFile)
{
    served.count = 5;
    served.failing_values = 3;
    served.values_status = 42;
    served.serve_vertices(mesh);
    EXPECT_EQ(korvane_mesh_write_mesh(mesh, folder.name("a.mesh").c_str()), STATUS_ERROR);
    expect_message(42, "Error accessing given mesh vertices coordinates.\n");
    EXPECT_EQ(read_file(folder.name("a.mesh")),
        "MeshVersionFormatted 2\n\nDimension 3\n\nVertices\n5\n1 0.5 0 101 \n2 0.5 0 102 \n\nEnd\n");
    EXPECT_EQ(served.calls.back(), "values3");
    EXPECT_EQ(korvane_mesh_write_mesh(mesh, folder.name("a.meshb").c_str()), STATUS_ERROR);
    EXPECT_EQ(read_file(folder.name("a.meshb")), Bytes()
                                                     .header(2, 3)
                                                     .integers(4, 88, 5)
                                                     .add(1.0)
                                                     .add(0.5)
                                                     .add(0.0)
                                                     .integers(101)
                                                     .add(2.0)
                                                     .add(0.5)
                                                     .add(0.0)
                                                     .integers(102, 54, 0)
                                                     .text());
}

TEST_F(WriteServedMesh, FailingElementsAreReportedByTheirPlural)
{
    served.count = 1;
    served.failing_values = 1;
    served.values_status = 42;
    for (const ServedKind &kind : served_kinds) {
        korvane_mesh_t *failing = korvane_mesh_new(context);
        kind.serve(failing, served);
        EXPECT_EQ(korvane_mesh_write_mesh(failing, folder.name("a.mesh").c_str()), STATUS_ERROR);
        expect_message(-1, std::string("Error accessing given mesh ") + kind.plural + " vertices.\n");
        korvane_mesh_delete(failing);
    }
}

TEST_F(WriteServedMesh, FlagsThatChangeBetweenThePassesAreAnError)
{
    for (const bool more : {true, false}) {
        served.count = 3;
        served.flags = {1, 0, 1};
        served.calls.clear();
        served.after_flag = [&] {
            if (served.calls.back() == "flag3")
                served.flags = more ? std::vector<int32_t>{1, 1, 1} : std::vector<int32_t>{0, 0, 1};
        };
        served.serve_edges(mesh);
        EXPECT_EQ(korvane_mesh_write_mesh(mesh, folder.name("a.meshb").c_str()), STATUS_ERROR);
        expect_message(-1, "Error writing mesh file.\n");
    }
}

TEST_F(WriteMesh, AFullDiskIsReportedOnce)
{
    korvane_mesh_t *small = make_mesh(context, small_content());
    korvane_mesh_t *large = korvane_mesh_new_in_memory(context);
    korvane_mesh_set_tetrahedron_count(large, 100'000);
    for (const char *file : {"full.mesh", "full.meshb"}) {
        const std::string name = folder.link(file, "/dev/full");
        for (korvane_mesh_t *mesh : {small, large, korvane_mesh_new(context)}) {
            EXPECT_EQ(korvane_mesh_write_mesh(mesh, name.c_str()), STATUS_ERROR);
            expect_message(-1, "Error writing mesh file.\n");
        }
    }
}

TEST_F(WriteMesh, AMeshTooLargeForABinaryFileIsRefused)
{
    korvane_mesh_t *mesh = korvane_mesh_new_in_memory(context);
    korvane_mesh_set_edge_count(mesh, 2);
    korvane_mesh_set_tetrahedron_count(mesh, INT32_MAX);
    EXPECT_EQ(korvane_mesh_write_mesh(mesh, folder.name("a.meshb").c_str()), STATUS_ERROR);
    expect_message(-1, "Error writing mesh file.\n");
    EXPECT_EQ(read_file(folder.name("a.meshb")),
        Bytes().header(2, 3).integers(5, 56, 2, 0, 0, 0, 0, 0, 0, 54, 0).text());
}

TEST_F(WriteMesh, WritesRealsWith15Digits)
{
    MeshContent content;
    content.entities[0] = {{0.1, 1. / 3, 1e-300, HUGE_VAL, -HUGE_VAL, NAN, -0.0, 1e15, 123456789.123456789},
        {}, {1, 2, 3}, {0, 0, 0}};
    EXPECT_EQ(written(make_mesh(context, content)),
        "MeshVersionFormatted 2\n\nDimension 3\n\nVertices\n3\n0.1 0.333333333333333 1e-300 1 \ninf -inf nan "
        "2 \n"
        "-0 1e+15 123456789.123457 3 \n\nEnd\n");
}

TEST_F(WriteMesh, IsIndependentOfTheLocale)
{
    MeshContent content;
    content.entities[0] = {{0.5, 12345.25, 1e-9}, {}, {12345}, {0}};
    const std::string expected =
        "MeshVersionFormatted 2\n\nDimension 3\n\nVertices\n1\n0.5 12345.25 1e-09 12345 \n\nEnd\n";
    if (!try_with_decimal_comma([&] { EXPECT_EQ(written(make_mesh(context, content)), expected); }))
        GTEST_SKIP() << "no locale with a decimal comma here";
}

TEST_F(WriteMesh, SurvivesFailingAllocations)
{
    oom_sweep([&](AllocationFault &fault) {
        RecordingContext own;
        korvane_mesh_t *mesh = make_mesh(own, small_content());
        fault.arm();
        const korvane_status_t status = korvane_mesh_write_mesh(mesh, folder.name("a.mesh").c_str());
        const bool failed = fault.disarm();
        EXPECT_EQ(status, failed ? STATUS_ERROR : STATUS_OK);
        EXPECT_TRUE(own.text().empty() || own.text() == prefix + "Error opening mesh file for writing.\n");
    });
    for (int i = 0; i < 200; ++i) // no slot was lost
        EXPECT_EQ(written(korvane_mesh_new(context)), text_of_nothing);
}

} // namespace
} // namespace korvane::testing
