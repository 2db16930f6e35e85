#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "io/mesh_content.h"
#include "io/served_mesh.h"
#include "support/decimal_comma.h"
#include "support/failing_allocations.h"
#include "support/recorded_messages.h"
#include "support/samples.h"
#include "support/temporary_folder.h"

namespace korvane::testing {
namespace {

const std::string head = "BEGIN BULK\n";
const std::string end = "$\nENDDATA\n";

class WriteNastran : public ::testing::Test {
  protected:
    korvane_status_t write(const korvane_mesh_t *mesh)
    {
        return korvane_mesh_write_bdf(mesh, folder.name("a.bdf").c_str());
    }

    std::string file() { return read_file(folder.name("a.bdf")); }

    /// What is written for this content.
    std::string written(const MeshContent &content)
    {
        korvane_mesh_t *mesh = make_mesh(context, content);
        EXPECT_EQ(write(mesh), STATUS_OK) << context.text();
        korvane_mesh_delete(mesh);
        return file();
    }

    void expect_message(int32_t number, const std::string &text)
    {
        context.expect("korvane_mesh_write_mesh : ", {{number, text}});
    }

    TemporaryFolder folder;
    RecordingContext context;
};

TEST_F(WriteNastran, WritesByteByByteWhatAnIndependentWriterDoes)
{
    const MeshContent content = read_expected(sample("written.meshb.expected"));
    EXPECT_EQ(written(content), read_file(sample("written.bdf")));
    const char *const files[] = {"edges", "triangles", "quadrilaterals", "tetrahedra", "hexahedra"};
    for (std::size_t kind = 1; kind <= std::size(files); ++kind) {
        MeshContent one;
        one.entities[0] = content.entities[0];
        one.entities[kind] = content.entities[kind];
        EXPECT_EQ(written(one), read_file(sample(std::string("written-") + files[kind - 1] + ".bdf")));
    }
    EXPECT_EQ(context.text(), "");
}

TEST_F(WriteNastran, AMeshWithoutEntitiesIsHeaderAndEnd)
{
    EXPECT_EQ(written({}), head + end);
    EXPECT_EQ(written({}), read_file(sample("empty.bdf")));
}

TEST_F(WriteNastran, ElementsAreNumberedAcrossTheKinds)
{
    MeshContent content;
    content.entities[1] = {{}, {1, 2, 2, 3}, {0, 0}, {0, 0}};
    content.entities[2] = {{}, {1, 2, 3}, {7}, {0}};
    EXPECT_EQ(written(content), head +
                                    "CBAR         1       0       1       2\n"
                                    "CBAR         2       0       2       3\n"
                                    "CTRIA3         3       7       1       2       3\n" +
                                    end);
}

TEST_F(WriteNastran, AGridCardHasFieldsOfSixteenCharacters)
{
    MeshContent content;
    content.entities[0].coordinates.resize(21);
    content.entities[0].coordinates[18] = 1;
    content.entities[0].coordinates[19] = 2;
    content.entities[0].coordinates[20] = 3;
    content.entities[0].tags.resize(7);
    content.entities[0].required.resize(7);
    const std::string card = "GRID*   " + std::string(15, ' ') + "7" + std::string(15, ' ') +
                             "0  1.00000000E+00  2.00000000E+00*\n*         3.00000000E+00\n";
    const std::string text = written(content);
    ASSERT_GT(text.size(), card.size() + end.size());
    EXPECT_EQ(text.substr(text.size() - card.size() - end.size()), card + end);
}

TEST_F(WriteNastran, CoordinatesThatAreNoNumbersAreWrittenAsPrintfDoes)
{
    MeshContent content;
    content.entities[0] = {{HUGE_VAL, -HUGE_VAL, std::copysign(NAN, 1.0)}, {}, {0}, {0}};
    EXPECT_EQ(written(content), head +
                                    "GRID*                  1               0"
                                    "             INF            -INF*\n*                    NAN\n" +
                                    end);
}

/// A card as printf writes it.
template <class... Values>
std::string printed(const char *format, Values... values)
{
    char text[256];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

TEST_F(WriteNastran, ManyEntitiesAreWrittenAsByPrintf)
{
    std::mt19937 random(1);
    const auto random_integer = [&] {
        return static_cast<int32_t>(random() % 99'999'999) >> (random() % 27);
    };
    MeshContent content;
    std::string expected = head;
    for (int32_t vertex = 1; vertex <= 1500; ++vertex) { // several blocks of each kind
        double xyz[3];
        for (double &value : xyz)
            value = std::ldexp(static_cast<int32_t>(random()), static_cast<int>(random() % 80) - 60);
        expected += printed(
            "GRID*   %16d               0%16.8E%16.8E*\n*       %16.8E\n", vertex, xyz[0], xyz[1], xyz[2]);
        content.entities[0].coordinates.insert(
            content.entities[0].coordinates.end(), std::begin(xyz), std::end(xyz));
        content.entities[0].tags.push_back(random_integer());
        content.entities[0].required.push_back(1);
    }
    int32_t element = 0;
    const char *const cards[] = {"CBAR", "CTRIA3", "CQUAD4", "CTETRA", "CHEXA"};
    for (std::size_t kind = 1; kind <= std::size(cards); ++kind) {
        EntityContent &entity = content.entities[kind];
        for (int i = 0; i < 1100; ++i) {
            entity.tags.push_back(i % 50 == 0 ? INT32_MIN + i : random_integer());
            entity.required.push_back(0);
            expected += printed("%s  %8d%8d", cards[kind - 1], ++element, entity.tags.back());
            for (std::size_t j = 0; j < vertices_per_element(kind); ++j) {
                entity.vertices.push_back(random_integer());
                expected += printed("%8d", entity.vertices.back());
            }
            expected += '\n';
        }
    }
    EXPECT_TRUE(written(content) == expected + end);
}

TEST_F(WriteNastran, PyramidsAreNotWritten)
{
    MeshContent content;
    content.entities[6] = {{}, {1, 2, 3, 4, 5}, {1}, {0}};
    EXPECT_EQ(written(content), head + end);
}

TEST_F(WriteNastran, AVertexOfMoreThanEightCharactersFailsItsCard)
{
    const struct {
        std::size_t kind;
        const char *card;
        const char *plural;
    } kinds[] = {{1, "CBAR", "edges"}, {2, "CTRIA3", "triangles"}, {3, "CQUAD4", "quadrilaterals"},
        {4, "CTETRA", "tetrahedra"}, {5, "CHEXA", "hexaedra"}};
    for (const auto &[kind, card, plural] : kinds) {
        for (const int32_t vertex : {100'000'000, INT32_MAX, -10'000'000, INT32_MIN}) {
            MeshContent content;
            const std::size_t width = vertices_per_element(kind);
            content.entities[kind] = {{}, std::vector<int32_t>(2 * width, 99'999'999), {5, 6}, {0, 0}};
            content.entities[kind].vertices[width + 1] = vertex;
            korvane_mesh_t *mesh = make_mesh(context, content);
            EXPECT_EQ(write(mesh), STATUS_ERROR);
            expect_message(-1, std::string("Error writing given mesh ") + plural + " vertices.\n");
            std::string whole = std::string(card) + "         1       5";
            for (std::size_t i = 0; i < width; ++i)
                whole += "99999999";
            EXPECT_EQ(
                file(), head + whole + "\n" + card + "         2       699999999" + std::to_string(vertex));
            korvane_mesh_delete(mesh);
        }
    }
    MeshContent content;
    content.entities[1] = {{}, {-9'999'999, 99'999'999}, {0}, {0}};
    EXPECT_EQ(written(content), head + "CBAR         1       0-999999999999999\n" + end);
}

TEST_F(WriteNastran, RefusesANullMesh)
{
    EXPECT_EQ(korvane_mesh_write_bdf(nullptr, folder.name("a.bdf").c_str()), STATUS_ERROR);
    EXPECT_FALSE(std::filesystem::exists(folder.name("a.bdf")));
}

TEST_F(WriteNastran, ReportsAFileThatCannotBeOpened)
{
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    EXPECT_EQ(korvane_mesh_write_bdf(mesh, folder.name("no/such/folder.bdf").c_str()), STATUS_ERROR);
    expect_message(-1, "Error opening bdf file for writing.\n");
    EXPECT_EQ(korvane_mesh_write_bdf(mesh, nullptr), STATUS_ERROR);
    expect_message(-1, "Error opening bdf file for writing.\n");
}

TEST_F(WriteNastran, AFullDiskIsReportedOnce)
{
    const std::string name = folder.link("full.bdf", "/dev/full");
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    EXPECT_EQ(korvane_mesh_write_bdf(mesh, name.c_str()), STATUS_ERROR);
    expect_message(-1, "Error writing bdf file.\n");
    korvane_mesh_t *vertices = korvane_mesh_new_in_memory(context);
    korvane_mesh_set_vertex_count(vertices, 100'000);
    EXPECT_EQ(korvane_mesh_write_bdf(vertices, name.c_str()), STATUS_ERROR);
    expect_message(-1, "Error writing bdf file.\n");
    korvane_mesh_t *hexahedra = korvane_mesh_new_in_memory(context);
    korvane_mesh_set_hexahedron_count(hexahedra, 100'000);
    EXPECT_EQ(korvane_mesh_write_bdf(hexahedra, name.c_str()), STATUS_ERROR);
    expect_message(-1, "Error writing given mesh hexaedra vertices.\n");
}

TEST_F(WriteNastran, IsIndependentOfTheLocale)
{
    const MeshContent content = read_expected(sample("written.meshb.expected"));
    const std::string expected = read_file(sample("written.bdf"));
    if (!try_with_decimal_comma([&] { EXPECT_EQ(written(content), expected); }))
        GTEST_SKIP() << "no locale with a decimal comma here";
}

TEST_F(WriteNastran, SurvivesFailingAllocations)
{
    oom_sweep([&](AllocationFault &fault) {
        RecordingContext own;
        korvane_mesh_t *mesh = make_mesh(own, small_content());
        fault.arm();
        const korvane_status_t status = write(mesh);
        const bool failed = fault.disarm();
        EXPECT_EQ(status, failed ? STATUS_ERROR : STATUS_OK);
        EXPECT_TRUE(failed || own.text().empty());
    });
}

class WriteServedNastran : public WriteNastran {
  protected:
    Served served;
    korvane_mesh_t *mesh = korvane_mesh_new(context);
};

TEST_F(WriteServedNastran, AsksForEntitiesOneByOneAndForNoFlags)
{
    served.count = 2;
    served.serve_vertices(mesh);
    EXPECT_EQ(write(mesh), STATUS_OK);
    EXPECT_EQ(served.calls, (std::vector<std::string>{"count", "values1", "tag1", "values2", "tag2"}));
    served.calls.clear();
    served.serve_edges(mesh);
    EXPECT_EQ(write(mesh), STATUS_OK);
    EXPECT_EQ(served.calls, (std::vector<std::string>{"count", "values1", "tag1", "values2", "tag2", "count",
                                "values1", "tag1", "values2", "tag2"}));
    EXPECT_EQ(context.text(), "");
}

TEST_F(WriteServedNastran, CountsThatAreLeftOutAreZero)
{
    const auto leave_out = [](int32_t *, void *) { return korvane_status_t{STATUS_OK}; };
    served.serve_vertices(mesh);
    served.serve_edges(mesh);
    korvane_mesh_set_get_vertex_count(mesh, leave_out, &served);
    korvane_mesh_set_get_edge_count(mesh, leave_out, &served);
    EXPECT_EQ(write(mesh), STATUS_OK);
    EXPECT_EQ(file(), head + end);
}

TEST_F(WriteServedNastran, FailingTagsAreZero)
{
    served.count = 2;
    served.failing_tag = 1;
    served.serve_edges(mesh);
    EXPECT_EQ(write(mesh), STATUS_OK);
    EXPECT_EQ(file(), head +
                          "CBAR         1       0       1       9\n"
                          "CBAR         2     102       2       9\n" +
                          end);
}

TEST_F(WriteServedNastran, AFailingVertexStopsTheFile)
{
    served.count = 600; // in the second block
    served.failing_values = 515;
    served.values_status = 42;
    served.serve_vertices(mesh);
    EXPECT_EQ(write(mesh), STATUS_ERROR);
    expect_message(-1, "Error accessing given mesh vertices coordinates.\n");
    const std::string text = file();
    const std::string last = "GRID*                514               0  5.14000000E+02  5.00000000E-01*\n"
                             "*         0.00000000E+00\n";
    EXPECT_EQ(text.substr(text.size() - last.size()), last);
}

TEST_F(WriteServedNastran, AFailingElementIsReportedWithItsStatus)
{
    served.count = 1;
    served.failing_values = 1;
    served.values_status = 42;
    // Pyramids have no card.
    for (const ServedKind &kind : std::span(served_kinds).first<5>()) {
        korvane_mesh_t *failing = korvane_mesh_new(context);
        kind.serve(failing, served);
        EXPECT_EQ(write(failing), 42);
        expect_message(42, std::string("Error accessing given mesh ") + kind.plural + " vertices.\n");
        EXPECT_EQ(file(), head);
        korvane_mesh_delete(failing);
    }
}

TEST_F(WriteServedNastran, TheStatusIsThatOfTheLastGetterThatCounts)
{
    served.count = 2;
    served.count_status = 42;
    served.serve_vertices(mesh);
    EXPECT_EQ(write(mesh), 42); // of the count of the vertices, of which none is written
    EXPECT_EQ(file(), head + end);

    served.count_status = STATUS_OK;
    served.failing_tag = 1;
    EXPECT_EQ(write(mesh), STATUS_OK); // of the tag of the last vertex
    served.failing_tag = 2;
    EXPECT_EQ(write(mesh), STATUS_ERROR);
    const std::string vertices = file();
    EXPECT_EQ(vertices.substr(vertices.size() - end.size()), end);
    served.serve_edges(mesh);
    EXPECT_EQ(write(mesh), STATUS_OK); // of the vertices of the last edge
    EXPECT_EQ(context.text(), "");

    korvane_mesh_t *edges = korvane_mesh_new(context);
    served.count_status = 42;
    served.serve_edges(edges);
    EXPECT_EQ(write(edges), STATUS_OK); // the count of edges does not count
    EXPECT_EQ(file(), head + end);
}

} // namespace
} // namespace korvane::testing
