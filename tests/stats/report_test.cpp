#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <random>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "common/vec3.h"
#include "expected_reports.h"
#include "mesh/mesh.h"
#include "mesh_data.h"
#include "stats/running_statistics.h"
#include "support/decimal_comma.h"
#include "support/failing_allocations.h"
#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

Texts texts_of(const RecordingContext &context)
{
    Texts texts;
    for (const auto &[number, text] : context.messages) {
        EXPECT_EQ(number, 0);
        texts.push_back(text);
    }
    return texts;
}

Texts readable(RecordingContext &context, const korvane_mesh_t *mesh)
{
    context.messages.clear();
    EXPECT_EQ(korvane_mesh_compute_statistics(mesh), STATUS_OK);
    return texts_of(context);
}

Texts keyed(RecordingContext &context, const korvane_mesh_t *mesh, const char *name)
{
    context.messages.clear();
    EXPECT_EQ(korvane_mesh_compute_statistics_valid(mesh, name), STATUS_OK);
    return texts_of(context);
}

Texts readable(const MeshData &data)
{
    RecordingContext context;
    return readable(context, StoredMesh(context, data));
}

Texts keyed(const MeshData &data)
{
    RecordingContext context;
    return keyed(context, StoredMesh(context, data), "part");
}

/// The value of a key of "part", as text.
std::string value_of(const Texts &texts, const std::string &key)
{
    const std::string line = "VALID.part." + key + " = ";
    for (const std::string &text : texts)
        if (text.starts_with(line))
            return text.substr(line.size(), text.size() - line.size() - 1);
    return "no line";
}

int mentions(const Texts &texts, const std::string &what)
{
    int count = 0;
    for (const std::string &text : texts)
        count += text.find(what) != std::string::npos;
    return count;
}

TEST(Report, ReadableOfOneTriangle)
{
    EXPECT_EQ(readable(one_triangle()), report_of_one_triangle);
}

TEST(Report, ReadableOfAllKinds)
{
    EXPECT_EQ(readable(all_kinds()), report_of_all_kinds);
}

TEST(Report, KeyedOfAllKinds)
{
    RecordingContext context;
    const StoredMesh mesh(context, all_kinds());
    EXPECT_EQ(keyed(context, mesh, "a name"), keyed_report_of_all_kinds);
}

TEST(Report, OfAnEmptyMesh)
{
    EXPECT_EQ(readable(MeshData{}), Texts{"Mesh statistics : \n"});
    const Texts texts = keyed(MeshData{});
    EXPECT_EQ(texts.size(), 5u);
    EXPECT_EQ(
        texts.front(), "VALID.part.free_edge.count = 0\n"); // the topological statistics are always sent
}

TEST(Report, OfTrianglesOnlyHasNoWordOnOthers)
{
    const Texts texts = keyed(one_triangle());
    EXPECT_EQ(mentions(texts, "ratio = "), 0);
    EXPECT_EQ(mentions(texts, "quadrangle"), 0);
    EXPECT_EQ(mentions(texts, "volume_edges"), 0);
    EXPECT_EQ(mentions(texts, "surface_edges"), 8);
    EXPECT_EQ(value_of(texts, "surface_edges.length.count"), "3");
}

TEST(Report, OfHexahedraOnlyHasNoEdges)
{
    MeshData data;
    data.points = cube;
    data.hexahedra = {{1, 2, 3, 4, 5, 6, 7, 8}};
    const Texts texts = keyed(data);
    EXPECT_EQ(value_of(texts, "hexahedron.aspect_ratio.avg"), "6.000000e+00");
    EXPECT_EQ(mentions(texts, "edges.length"), 0);
}

TEST(Report, OfTwoTrianglesCountsTheCommonEdgeOnce)
{
    MeshData data = one_triangle();
    data.points.push_back({0.5, -1, 0});
    for (const std::array<int32_t, 3> second : {std::array{2, 1, 4}, std::array{1, 2, 4}}) {
        data.triangles = {{1, 2, 3}, second};
        EXPECT_EQ(value_of(keyed(data), "surface_edges.length.count"), "5");
    }
}

TEST(Report, EdgesWhoseNumbersHaveOneSumAreCountedOnce)
{
    const Texts texts = keyed(ribbon(20'000));
    EXPECT_EQ(value_of(texts, "surface_edges.length.count"), "60001");
    EXPECT_EQ(value_of(texts, "surface_edges.length.min"), "1.000000e+00");
    EXPECT_EQ(value_of(texts, "surface_edges.length.max"), "1.000000e+00");
    EXPECT_EQ(value_of(texts, "surface_edges.length.min_achieved"), "1");
    EXPECT_EQ(value_of(texts, "free_edge.count"), "40002");
    EXPECT_EQ(value_of(texts, "surface_component_by_edge.count"), "1");
}

TEST(Report, VolumeEdgesAreThoseOfTheTetrahedra)
{
    MeshData data;
    data.points = cube;
    data.tetrahedra = {{1, 2, 4, 5}, {2, 3, 4, 7}};
    const Texts texts = keyed(data);
    EXPECT_EQ(value_of(texts, "volume_edges.length.count"), "11");
    EXPECT_EQ(mentions(texts, "surface_edges"), 0);
}

TEST(Report, EqualValuesAreAttributedToTheFirstElement)
{
    MeshData data = one_triangle();
    data.triangles = {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}};
    const Texts texts = keyed(data);
    EXPECT_EQ(value_of(texts, "triangle.aspect_ratio.min_achieved"), "1");
    EXPECT_EQ(value_of(texts, "triangle.aspect_ratio.max_achieved"), "1");
}

TEST(Report, SendsTheCountLineOfALabelTwice)
{
    EXPECT_EQ(mentions(keyed(all_kinds()), "VALID.part.quadrangle.angles.count = 12\n"), 2);
}

TEST(Report, DegenerateElementsMakeMeanAndVarianceInfinite)
{
    MeshData data;
    data.points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {2, 0, 0}};
    data.triangles = {{1, 2, 3}, {1, 2, 4}, {3, 1, 2}};
    EXPECT_EQ(readable(data), (Texts{
                                  "Mesh statistics : \n",
                                  "  number of vertices : 4 \n",
                                  "  number of triangles : 3 \n",
                                  "  triangle aspect ratio:\n"
                                  "     min         : 1.394e+00\n"
                                  "     max         : inf\n"
                                  "     average     : inf\n"
                                  "     variance    : inf\n"
                                  "     sample size : 3\n"
                                  "     min achieved for 1 : 1 2 3\n"
                                  "     max achieved for 2 : 1 2 4\n",
                                  "  triangle angles:\n"
                                  "     min         : 0.000e+00\n"
                                  "     max         : 1.800e+02\n"
                                  "     average     : 6.000e+01\n"
                                  "     variance    : 3.194e+03\n"
                                  "     sample size : 9\n"
                                  "     min achieved for 2 : 1 2 4\n"
                                  "     max achieved for 2 : 1 2 4\n",
                                  "  Surface elements edges length:\n"
                                  "     min         : 1.000e+00\n"
                                  "     max         : 2.000e+00\n"
                                  "     average     : 1.283e+00\n"
                                  "     variance    : 4.273e-01\n"
                                  "     sample size : 5\n"
                                  "     min achieved for 1 : 1 2\n"
                                  "     max achieved for 5 : 4 1\n",
                              }));
}

TEST(Report, AMinimumThatIsNeverReachedHasNoElement)
{
    MeshData data = one_triangle();
    data.points[2] = {2, 0, 0};
    const Texts texts = readable(data);
    EXPECT_EQ(texts[3], "  triangle aspect ratio:\n"
                        "     min         : inf\n"
                        "     max         : inf\n"
                        "     average     : inf\n"
                        "     variance    : 0.000e+00\n"
                        "     sample size : 1\n"
                        "     min achieved for 0 : 0 0 0\n"
                        "     max achieved for 1 : 1 2 3\n");
    EXPECT_EQ(value_of(keyed(data), "triangle.aspect_ratio.min_achieved"), "0");
}

TEST(Report, AsksClientsForNoElementWhereNoneReachedAnExtreme)
{
    MeshData data = one_triangle();
    data.points[2] = {2, 0, 0};
    RecordingContext context;
    MeshServer server(data);
    server.notes_calls = true;
    const ServedMesh mesh(context, server);
    EXPECT_EQ(readable(context, mesh), readable(data));
    EXPECT_EQ(std::count(server.calls.begin(), server.calls.end(), "triangle"), 0) << "element 0";
    EXPECT_NE(std::count(server.calls.begin(), server.calls.end(), "triangle 1"), 0);
}

TEST(Report, SurvivesCallbacksThatShrinkAndGrowTheMesh)
{
    RecordingContext context;
    for (int64_t changing_call = 1; changing_call <= 200; ++changing_call) {
        MeshServer server(all_kinds());
        const StoredMesh mesh(context, server.data);
        server.serve(mesh, [](int slot) { return slot % 3 == 0; });
        server.on_call = [&] {
            if (server.call_count != changing_call)
                return;
            const double point[] = {1, 2, 3};
            korvane_mesh_set_vertex_count(mesh, changing_call % 2 == 0 ? 0 : 1000);
            korvane_mesh_set_vertex_coordinates(mesh, 1, point);
            korvane_mesh_set_tetrahedron_count(mesh, 0);
            korvane_mesh_set_triangle_count(mesh, 100);
        };
        context.messages.clear();
        EXPECT_EQ(korvane_mesh_compute_statistics_valid(mesh, "x"), STATUS_OK);
        EXPECT_GT(context.messages.size(), 5u);
    }
}

TEST(Report, OfServedAndMixedMeshesEqualsThatOfStoredOnes)
{
    RecordingContext context;
    MeshServer server(all_kinds());
    EXPECT_EQ(readable(context, ServedMesh(context, server)), report_of_all_kinds);
    EXPECT_EQ(keyed(context, ServedMesh(context, server), "a name"), keyed_report_of_all_kinds);
    for (int replaced = 0; replaced < 14; ++replaced) {
        for (const bool others : {false, true}) {
            StoredMesh mixed(context, server.data);
            server.serve(mixed, [&](int slot) { return (slot == replaced) != others; });
            EXPECT_EQ(readable(context, mixed), report_of_all_kinds);
            EXPECT_EQ(keyed(context, mixed, "a name"), keyed_report_of_all_kinds);
        }
    }
}

TEST(Report, ObeysAReplacedCallback)
{
    RecordingContext context;
    const StoredMesh mesh(context, one_triangle());
    korvane_mesh_set_get_vertex_coordinates(
        mesh,
        [](int32_t index, double *xyz, void *) {
            xyz[0] = index == 2;
            xyz[1] = 2 * (index == 3);
            return korvane_status_t{STATUS_OK};
        },
        nullptr);
    EXPECT_EQ(value_of(keyed(context, mesh, "part"), "surface_edges.length.max"), "2.236068e+00");
}

/// The distinct edges of elements, in the order in which the pairs of corners are met.
class ModelEdges {
  public:
    template <class Elements>
    void add(const Elements &elements, const std::vector<std::pair<size_t, size_t>> &pairs)
    {
        for (const auto &element : elements)
            for (const auto &[a, b] : pairs)
                if (known.insert(std::minmax(element[a], element[b])).second)
                    edges.push_back({element[a], element[b]});
    }

    RunningStatistics lengths(const MeshData &data) const
    {
        RunningStatistics statistics;
        int32_t number = 0;
        for (const auto &[a, b] : edges) {
            const auto &[px, py, pz] = data.points[static_cast<size_t>(a) - 1];
            const auto &[qx, qy, qz] = data.points[static_cast<size_t>(b) - 1];
            statistics.add(norm(Vec3{qx - px, qy - py, qz - pz}), ++number);
        }
        return statistics;
    }

    std::vector<std::array<int32_t, 2>> edges;

  private:
    std::set<std::pair<int32_t, int32_t>> known;
};

void expect_statistics(const Texts &texts, const std::string &label, const RunningStatistics &expected)
{
    const auto real = [](double value) {
        char text[64];
        std::snprintf(text, sizeof text, "%e", value);
        return std::string(text);
    };
    EXPECT_EQ(value_of(texts, label + ".min"), real(expected.minimum));
    EXPECT_EQ(value_of(texts, label + ".max"), real(expected.maximum));
    EXPECT_EQ(value_of(texts, label + ".avg"), real(expected.mean()));
    EXPECT_EQ(value_of(texts, label + ".var"), real(expected.variance()));
    EXPECT_EQ(value_of(texts, label + ".count"), std::to_string(expected.count));
    EXPECT_EQ(value_of(texts, label + ".min_achieved"), std::to_string(expected.minimum_element));
    EXPECT_EQ(value_of(texts, label + ".max_achieved"), std::to_string(expected.maximum_element));
}

/// Elements between any points, which are often degenerate.
MeshData random_soup(std::mt19937 &generator)
{
    MeshData data;
    data.points.resize(60);
    data.triangles.resize(500);
    data.quadrangles.resize(300);
    data.tetrahedra.resize(400);
    std::uniform_real_distribution<double> coordinate(-1, 1);
    std::uniform_int_distribution<int32_t> vertex(1, 60);
    const auto draw = [&](auto &elements, auto &distribution) {
        for (auto &element : elements)
            for (auto &value : element)
                value = distribution(generator);
    };
    draw(data.points, coordinate);
    draw(data.triangles, vertex);
    draw(data.quadrangles, vertex);
    draw(data.tetrahedra, vertex);
    return data;
}

TEST(Report, OfRandomSoupsAgreesWithModels)
{
    std::mt19937 generator(1);
    for (int round = 0; round < 5; ++round) {
        const MeshData data = random_soup(generator);
        RecordingContext context;
        const StoredMesh mesh(context, data);
        const Texts texts = keyed(context, mesh, "part");

        RunningStatistics ratios;
        for (uint32_t i = 1; i <= data.tetrahedra.size(); ++i) {
            double ratio = 0;
            korvane_mesh_get_tetrahedron_aspect_ratio(mesh, i, &ratio);
            ratios.add(ratio, static_cast<int32_t>(i));
        }
        expect_statistics(texts, "tetrahedron.aspect_ratio", ratios);

        ModelEdges surface;
        surface.add(data.triangles, {{0, 1}, {1, 2}, {2, 0}});
        surface.add(data.quadrangles, {{0, 1}, {1, 2}, {2, 3}, {3, 0}});
        expect_statistics(texts, "surface_edges.length", surface.lengths(data));
        ModelEdges volume;
        volume.add(data.tetrahedra, {{0, 2}, {2, 1}, {1, 0}, {0, 3}, {3, 2}, {1, 3}});
        expect_statistics(texts, "volume_edges.length", volume.lengths(data));
    }
}

TEST(Report, AsksPerMeasureAndElementForVerticesAndCoordinates)
{
    RecordingContext context;
    MeshData data = one_triangle();
    data.triangles.push_back({3, 2, 1});
    MeshServer server(data);
    const ServedMesh mesh(context, server);
    server.notes_calls = true;
    readable(context, mesh);
    const Texts counts{"vertex count", "edge count", "triangle count", "quadrangle count",
        "tetrahedron count", "hexahedron count", "pyramid count"};
    const Texts measured{"triangle 1", "coordinates 1", "coordinates 2", "coordinates 3", "triangle 2",
        "coordinates 3", "coordinates 2", "coordinates 1"};
    Texts expected{"triangle count", "quadrangle count"};
    const auto append = [&](const Texts &calls) {
        expected.insert(expected.end(), calls.begin(), calls.end());
    };
    append(counts);
    append({"triangle count"});
    append(measured);
    append({"triangle 1", "triangle 1"}); // where the extremes are reached
    append(measured);
    append({"triangle 1", "triangle 1"});
    append(
        {"quadrangle count", "tetrahedron count", "hexahedron count", "triangle count", "quadrangle count"});
    append({"triangle 1", "triangle 2"});
    append({"coordinates 1", "coordinates 2", "coordinates 2", "coordinates 3", "coordinates 3",
        "coordinates 1"});
    append({"tetrahedron count"});
    EXPECT_EQ(server.calls, expected);
}

TEST(Report, AnElementThatCannotBeReadMeasuresAsOneOfVertexZero)
{
    MeshData data = all_kinds();
    data.triangles[1] = {};
    data.quadrangles[1] = {};
    RecordingContext context;
    const Texts expected = readable(context, StoredMesh(context, data));
    MeshServer server(all_kinds());
    const ServedMesh mesh(context, server);
    korvane_mesh_set_get_triangle_vertices(
        mesh,
        [](int32_t index, int32_t *vertices, void *served) {
            if (index == 2)
                return MeshServer::failure;
            std::ranges::copy(
                static_cast<MeshServer *>(served)->data.triangles[static_cast<size_t>(index) - 1], vertices);
            return korvane_status_t{STATUS_OK};
        },
        &server);
    server.data.quadrangles[1] = {};
    EXPECT_EQ(readable(context, mesh), expected);
}

TEST(Report, SurvivesACallbackThatFailsOnce)
{
    RecordingContext context;
    MeshServer server(all_kinds());
    const ServedMesh mesh(context, server);
    readable(context, mesh);
    const int64_t calls = server.call_count;
    for (server.failing_call = 1; server.failing_call <= calls; ++server.failing_call) {
        server.call_count = 0;
        const Texts texts = readable(context, mesh);
        EXPECT_LE(texts.size(), report_of_all_kinds.size());
        EXPECT_EQ(texts.front(), "Mesh statistics : \n");
        server.call_count = 0;
        EXPECT_LE(keyed(context, mesh, "a name").size(), keyed_report_of_all_kinds.size());
    }
}

TEST(Report, ACountThatIsNotGivenIsNone)
{
    RecordingContext context;
    const StoredMesh mesh(context, all_kinds());
    const auto fail = [](int32_t *, void *) { return korvane_status_t{9}; };
    for (const auto set : {korvane_mesh_set_get_vertex_count, korvane_mesh_set_get_edge_count,
             korvane_mesh_set_get_triangle_count, korvane_mesh_set_get_quadrangle_count,
             korvane_mesh_set_get_tetrahedron_count, korvane_mesh_set_get_hexahedron_count,
             korvane_mesh_set_get_pyramid_count})
        set(mesh, fail, nullptr);
    EXPECT_EQ(readable(context, mesh), Texts{"Mesh statistics : \n"});
}

TEST(Report, NegativeCountsAreNone)
{
    RecordingContext context;
    const StoredMesh mesh(context, all_kinds());
    korvane_mesh_set_triangle_count(mesh, -5);
    korvane_mesh_set_tetrahedron_count(mesh, INT32_MIN);
    MeshData rest = all_kinds();
    rest.triangles.clear();
    rest.tetrahedra.clear();
    EXPECT_EQ(readable(context, mesh), readable(rest));
    EXPECT_EQ(mentions(readable(rest), "Surface elements edges length"), 1);
}

TEST(Report, CountsWithNothingBehindMeasureZeros)
{
    RecordingContext context;
    const OwnedMesh stored(korvane_mesh_new_in_memory(context));
    korvane_mesh_set_triangle_count(stored, 1000);
    const Texts texts = keyed(context, stored, "part");
    EXPECT_EQ(value_of(texts, "triangle.count"), "1000");
    EXPECT_EQ(value_of(texts, "triangle.aspect_ratio.max"), "inf");
    EXPECT_EQ(value_of(texts, "triangle.angles.count"), "3000");
    EXPECT_EQ(value_of(texts, "surface_edges.length.count"), "1");
    EXPECT_EQ(value_of(texts, "surface_edges.length.max"), "0.000000e+00");
    EXPECT_EQ(value_of(texts, "non_manifold_edge.count"), "1");
}

TEST(Report, RefusesNullAndMeshesWithoutContext)
{
    EXPECT_EQ(korvane_mesh_compute_statistics(nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_mesh_compute_statistics_valid(nullptr, "part"), STATUS_ERROR);
    RecordingContext context;
    const StoredMesh mesh(context, one_triangle());
    EXPECT_EQ(korvane_mesh_compute_statistics_valid(mesh, nullptr), STATUS_ERROR);
    korvane_mesh_s &record = *mesh;
    record.context = nullptr;
    EXPECT_EQ(korvane_mesh_compute_statistics(mesh), STATUS_ERROR);
    EXPECT_EQ(korvane_mesh_compute_statistics_valid(mesh, "part"), STATUS_ERROR);
    EXPECT_TRUE(context.messages.empty());
    record.context = context;
}

TEST(Report, AnEmptyNameIsAName)
{
    RecordingContext context;
    const StoredMesh mesh(context, one_triangle());
    EXPECT_EQ(keyed(context, mesh, "").front(), "VALID..vertex.count = 3\n");
}

TEST(Report, CutsWhatLongNamesMakeTooLong)
{
    RecordingContext context;
    const StoredMesh mesh(context, one_triangle());
    const std::string name(300, 'n');
    const Texts texts = keyed(context, mesh, name.c_str());
    EXPECT_EQ(texts[0], "VALID." + name + ".vertex.count = 3\n"); // of 1023 bytes at most
    const std::string label = "VALID." + std::string(249, 'n');   // of 255
    EXPECT_EQ(texts[2], label + ".min = 1.000000e+00\n");
    EXPECT_EQ(texts.back(), label);
    const std::string longer(2000, 'n');
    const Texts cut = keyed(context, mesh, longer.c_str());
    EXPECT_EQ(cut.size(), texts.size());
    EXPECT_EQ(cut[0], "VALID." + std::string(1017, 'n'));
    EXPECT_EQ(cut[2], texts[2]);
    EXPECT_EQ(cut.back(), label);
}

TEST(Report, TakesPercentSignsInNamesAsTheyAre)
{
    RecordingContext context;
    const StoredMesh mesh(context, one_triangle());
    const Texts texts = keyed(context, mesh, "%s%e%n");
    EXPECT_EQ(texts[0], "VALID.%s%e%n.vertex.count = 3\n");
    EXPECT_EQ(texts[2], "VALID.%s%e%n.triangle.aspect_ratio.min = 1.000000e+00\n");
}

TEST(Report, DoesNotDependOnTheLocale)
{
    if (!try_with_decimal_comma([] { EXPECT_EQ(readable(one_triangle()), report_of_one_triangle); }))
        GTEST_SKIP() << "no locale with a decimal comma here";
}

/// Expects what is sent when an allocation failed: all but some messages in a row, whose number is one of
/// these, or all that were left.
void expect_gap(const Texts &sent, const Texts &all, const std::vector<size_t> &gaps)
{
    ASSERT_LT(sent.size(), all.size());
    const size_t gap = all.size() - sent.size();
    size_t before = 0;
    while (before < sent.size() && sent[before] == all[before])
        ++before;
    if (before == sent.size())
        return;
    EXPECT_NE(std::ranges::find(gaps, gap), gaps.end()) << gap;
    for (size_t i = before; i < sent.size(); ++i)
        EXPECT_EQ(sent[i], all[i + gap]);
}

template <class Compute>
void sweep(const MeshData &data, Compute compute, const Texts &all, const std::vector<size_t> &gaps)
{
    size_t faults = 0;
    oom_sweep([&](AllocationFault &fault) {
        RecordingContext context;
        const StoredMesh mesh(context, data);
        fault.arm();
        EXPECT_EQ(compute(mesh), STATUS_OK);
        if (fault.disarm()) {
            ++faults;
            expect_gap(texts_of(context), all, gaps);
        } else {
            EXPECT_EQ(texts_of(context), all);
        }
    });
    EXPECT_GT(faults, 2 * all.size());
}

TEST(Report, ReadableSurvivesFailingAllocations)
{
    sweep(all_kinds(), korvane_mesh_compute_statistics, report_of_all_kinds, {1});
}

/// Apart from one another, so that the set of edges grows after its first batch.
TEST(Report, OfManyElementsSurvivesFailingAllocations)
{
    MeshData data;
    data.points.resize(3 * 600);
    for (int32_t first = 1; first <= 3 * 600; first += 3)
        data.triangles.push_back({first, first + 1, first + 2});
    sweep(data, korvane_mesh_compute_statistics, readable(data), {1});
}

TEST(Report, KeyedSurvivesFailingAllocations)
{
    sweep(all_kinds(),
        [](const korvane_mesh_t *mesh) { return korvane_mesh_compute_statistics_valid(mesh, "a name"); },
        keyed_report_of_all_kinds, {1, 8, 5});
}

} // namespace
} // namespace korvane::testing
