#include <array>
#include <climits>
#include <set>
#include <string>

#include <gtest/gtest.h>
#include <korvane.h>

#include "io/bytes.h"
#include "io/mesh_content.h"
#include "support/decimal_comma.h"
#include "support/failing_allocations.h"
#include "support/recorded_messages.h"
#include "support/temporary_folder.h"

namespace korvane::testing {
namespace {

const std::string prefix = "korvane_mesh_new_read_mesh : ";
const std::string header = "MeshVersionFormatted 2\nDimension 3\n";

class ReadMesh : public ::testing::Test {
  protected:
    korvane_mesh_t *read(const std::string &content, const std::string &file = "a.mesh")
    {
        return korvane_mesh_new_read_mesh(context, folder.write(file, content).c_str());
    }

    /// The content of a mesh that must be read without any message.
    MeshContent content(const std::string &text, const std::string &file = "a.mesh")
    {
        korvane_mesh_t *mesh = read(text, file);
        EXPECT_NE(mesh, nullptr) << context.text();
        EXPECT_EQ(context.text(), "");
        return mesh == nullptr ? MeshContent{} : content_of(mesh);
    }

    void expect_message(int32_t number, const std::string &text) { context.expect(prefix, {{number, text}}); }

    TemporaryFolder folder;
    RecordingContext context;
};

TEST_F(ReadMesh, ReportsAFileThatCannotBeOpened)
{
    EXPECT_EQ(korvane_mesh_new_read_mesh(context, folder.name("absent.mesh").c_str()), nullptr);
    expect_message(-1, "Error opening mesh file for reading.\n");
    EXPECT_EQ(read(header, "a.msh"), nullptr);
    expect_message(-1, "Error opening mesh file for reading.\n");
    EXPECT_EQ(read("MeshVersionFormatted 2\n"), nullptr);
    expect_message(-1, "Error opening mesh file for reading.\n");
}

TEST_F(ReadMesh, RefusesPlaneMeshes)
{
    EXPECT_EQ(read("MeshVersionFormatted 2 Dimension 2 Vertices 1 0 0 0"), nullptr);
    expect_message(-1, "Only 3d meshes are supported.\n");
    EXPECT_EQ(read(Bytes().header(1, 2).text(), "a.meshb"), nullptr);
    expect_message(-1, "Only 3d meshes are supported.\n");
}

TEST_F(ReadMesh, AFileWithoutEntitiesIsAnEmptyMesh)
{
    EXPECT_EQ(content(header + "Corners 1 7 End"), MeshContent{});
    EXPECT_EQ(content(Bytes().header(2, 3).integers(54, 0).text(), "a.meshb"), MeshContent{});
}

TEST_F(ReadMesh, TheMeshIsWholeAndBelongsToTheContext)
{
    korvane_mesh_t *mesh = read(header + "Vertices 1 1 2 3 4");
    korvane_context_t *owner = nullptr;
    EXPECT_EQ(korvane_mesh_get_context(mesh, &owner), STATUS_OK);
    EXPECT_EQ(owner, static_cast<korvane_context_t *>(context));
    const std::array<double, 3> xyz = {7, 8, 9};
    EXPECT_EQ(korvane_mesh_set_vertex_count(mesh, 2), STATUS_OK);
    EXPECT_EQ(korvane_mesh_set_vertex_coordinates(mesh, 2, xyz.data()), STATUS_OK);
    EXPECT_EQ(content_of(mesh).entities[0].coordinates, (std::vector<double>{1, 2, 3, 7, 8, 9}));
    korvane_mesh_delete(mesh);
}

TEST_F(ReadMesh, Version1CoordinatesAreFloats)
{
    const std::string vertices = " Dimension 3 Vertices 1 0.1 1e-3 3e38 4";
    EXPECT_EQ(content("MeshVersionFormatted 1" + vertices).entities[0].coordinates,
        (std::vector<double>{double{0.1f}, double{1e-3f}, double{3e38f}}));
    EXPECT_EQ(content("MeshVersionFormatted 3" + vertices).entities[0].coordinates,
        (std::vector<double>{0.1, 1e-3, 3e38}));
}

TEST_F(ReadMesh, RequiredIndicesOutsideTheEntitiesAreSkipped)
{
    const MeshContent read =
        content(header + "Vertices 2 0 0 0 0 0 0 0 0 RequiredVertices 7 0 3 -1 2 2147483647 -2147483648 2");
    EXPECT_EQ(read.entities[0].required, (std::vector<int32_t>{0, 1}));
}

TEST_F(ReadMesh, RequiredListsWithoutTheirEntitiesAreIgnored)
{
    const MeshContent read = content(
        header + "Vertices 1 0 0 0 0 RequiredEdges 1 1 RequiredTriangles 1 1 RequiredQuadrilaterals 1 1");
    EXPECT_EQ(read.entities[0].required, std::vector<int32_t>{0});
    for (std::size_t kind = 1; kind < MeshContent::kinds; ++kind)
        EXPECT_EQ(read.entities[kind], EntityContent{});
}

TEST_F(ReadMesh, LongListsOfRequiredEntitiesAreRead)
{
    std::string text = header + "Edges 5000\n";
    std::string list = "RequiredEdges 2500\n";
    EntityContent expected;
    for (int32_t i = 1; i <= 5000; ++i) {
        text += std::to_string(i) + " 1 2\n";
        if (i % 2 == 0)
            list += std::to_string(i) + "\n";
        expected.vertices.insert(expected.vertices.end(), {i, 1});
        expected.tags.push_back(2);
        expected.required.push_back(i % 2 == 0 ? 1 : 0);
    }
    EXPECT_EQ(content(text + list).entities[1], expected);
    EXPECT_EQ(content(header + list + text.substr(header.size())).entities[1], expected);
}

TEST_F(ReadMesh, AHugeCountInATinyFileCostsLittle)
{
    for (const std::string keyword :
        {"Vertices", "Edges", "Triangles", "Quadrilaterals", "Tetrahedra", "Hexahedra", "Pyramids"}) {
        const std::int64_t before = allocated_bytes();
        korvane_mesh_t *mesh = read(
            header + "Required" + keyword + " 2147483647 2147483647 3 1 " + keyword + " 2147483647 1 2 3 4");
        ASSERT_NE(mesh, nullptr);
        EXPECT_LT(allocated_bytes() - before, 1 << 20) << keyword;
        korvane_mesh_delete(mesh);
    }
    const std::int64_t before = allocated_bytes();
    korvane_mesh_t *mesh =
        read(Bytes().header(2, 3).integers(15, 36, INT32_MAX, 1).integers(4, 0, INT32_MAX).add(1.0).text(),
            "a.meshb");
    ASSERT_NE(mesh, nullptr);
    EXPECT_LT(allocated_bytes() - before, 1 << 20);
    std::array<double, 3> xyz;
    int32_t count = 0;
    int32_t value = -7;
    EXPECT_EQ(korvane_mesh_get_vertex_count(mesh, &count), STATUS_OK);
    EXPECT_EQ(count, INT32_MAX);
    EXPECT_EQ(korvane_mesh_get_vertex_coordinates(mesh, 1, xyz.data()), STATUS_OK);
    EXPECT_EQ(xyz, (std::array<double, 3>{1}));
    EXPECT_EQ(korvane_mesh_get_vertex_coordinates(mesh, INT32_MAX, xyz.data()), STATUS_OK);
    EXPECT_EQ(xyz, (std::array<double, 3>{}));
    EXPECT_EQ(korvane_mesh_get_vertex_tag(mesh, INT32_MAX, &value), STATUS_OK);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(korvane_mesh_get_vertex_required_status(mesh, 1, &value), STATUS_OK);
    EXPECT_EQ(value, 1);
    korvane_mesh_delete(mesh);
}

TEST_F(ReadMesh, IsIndependentOfTheLocale)
{
    const std::string text = header + "Vertices 1 0.5 1.25e1 0x1.8p0 4";
    const std::vector<double> expected = {0.5, 12.5, 1.5};
    if (!try_with_decimal_comma([&] { EXPECT_EQ(content(text).entities[0].coordinates, expected); }))
        GTEST_SKIP() << "no locale with a decimal comma here";
}

TEST_F(ReadMesh, SurvivesFailingAllocations)
{
    std::string text = header;
    for (const char *keyword :
        {"Vertices", "Edges", "Triangles", "Quadrilaterals", "Tetrahedra", "Hexahedra", "Pyramids"})
        text += std::string(keyword) + " 1 1 2 3 4 5 6 7 8 9\n";
    for (const char *keyword :
        {"RequiredVertices", "RequiredEdges", "RequiredTriangles", "RequiredQuadrilaterals"})
        text += std::string(keyword) + " 1 1\n";
    const std::string name = folder.write("a.mesh", text);
    std::set<std::string> reported;
    oom_sweep([&](AllocationFault &fault) {
        RecordingContext own;
        fault.arm();
        korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(own, name.c_str());
        const bool failed = fault.disarm();
        if (mesh == nullptr) {
            EXPECT_TRUE(failed);
            reported.insert(own.text());
        }
        // A mesh that could not be attached to its context is whole.
        korvane_mesh_delete(mesh);
    });
    std::set<std::string> expected = {"", prefix + "Error opening mesh file for reading.\n",
        prefix + " Unable to allocate memory to create mesh.\n"};
    for (const char *plural :
        {"vertices", "edges", "triangles", "quadrilaterals", "tetrahedra", "hexahedra", "pyramid"})
        expected.insert(prefix + " Unable to store " + plural + ".\n");
    EXPECT_EQ(reported, expected);
    for (int i = 0; i < 200; ++i) // no slot was lost
        korvane_mesh_delete(read(header));
    EXPECT_EQ(context.text(), "");
}

TEST_F(ReadMesh, RunningOutOfMemoryHasItsNumber)
{
    int told = 0;
    const std::string name = folder.write("a.mesh", header + "Vertices 1 1 2 3 4");
    for (std::int64_t ordinal = 1; ordinal < 20; ++ordinal) {
        AllocationFault fault(ordinal, Failure::transient);
        fault.arm();
        korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, name.c_str());
        fault.disarm();
        for (const RecordedMessage &message : context.messages) {
            const bool cannot_open = message.text.find("opening") != std::string::npos;
            EXPECT_EQ(message.number, cannot_open ? STATUS_ERROR : STATUS_NOMEM);
            told += !cannot_open;
        }
        context.messages.clear();
        korvane_mesh_delete(mesh);
    }
    EXPECT_GT(told, 1);
}

} // namespace
} // namespace korvane::testing
