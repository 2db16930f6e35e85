// The statistics report: entity counts, then every measure over every element, then the lengths of the
// distinct edges.
//
// A walk over tables; the texts are fixed. Each element is fetched anew for each measure, in order, and
// its values go straight into the running sums. Memory: only the edge sets, 16 bytes per distinct edge, and
// up to 20 more where the numbers of many have the same sum. Whatever memory does not suffice for is left out
// of the report.
#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "mesh/fetch.h"
#include "stats/quality.h"
#include "stats/report_text.h"
#include "stats/running_statistics.h"
#include "stats/shapes.h"
#include "stats/topology.h"

namespace korvane {

namespace {

constexpr std::size_t label_capacity = 256;
constexpr std::size_t line_capacity = 1024;

using CountGetter = korvane_status_t (*)(const korvane_mesh_t *, int32_t *);

/// A negative count is none, and so is one that is not given.
int32_t count_of(const korvane_mesh_t *mesh, CountGetter getter)
{
    int32_t count = 0;
    getter(mesh, &count);
    return std::max(count, 0);
}

// The values of one measure

void send_keyed(const korvane_mesh_t *mesh, const char *label, const RunningStatistics &statistics)
{
    send_format<line_capacity>(mesh, "%s.min = %e\n", label, statistics.minimum);
    send_format<line_capacity>(mesh, "%s.max = %e\n", label, statistics.maximum);
    send_format<line_capacity>(mesh, "%s.avg = %e\n", label, statistics.mean());
    send_format<line_capacity>(mesh, "%s.var = %e\n", label, statistics.variance());
    // Kept on purpose: the count is sent twice, because readers of the format expect it so.
    send_format<line_capacity>(mesh, "%s.count = %i\n", label, statistics.count);
    send_format<line_capacity>(mesh, "%s.count = %i\n", label, statistics.count);
    send_format<line_capacity>(mesh, "%s.min_achieved = %i\n", label, statistics.minimum_element);
    send_format<line_capacity>(mesh, "%s.max_achieved = %i\n", label, statistics.maximum_element);
}

/// `append_extremes` completes the text with where the extremes are reached.
template <class AppendExtremes>
void send_readable(const korvane_mesh_t *mesh, const char *label, const RunningStatistics &statistics,
    AppendExtremes append_extremes)
{
    TextBuffer<line_capacity> text;
    append_format(text,
        "  %s:\n     min         : %.3e\n     max         : %.3e\n     average     : %.3e\n"
        "     variance    : %.3e\n     sample size : %i\n",
        label, statistics.minimum, statistics.maximum, statistics.mean(), statistics.variance(),
        statistics.count);
    append_extremes(text);
    send_text(mesh, text.c_str());
}

template <auto element_vertices, std::size_t vertices_per_element, class... Set>
void append_achieved(TextBuffer<line_capacity> &text, const char *format, const korvane_mesh_t *mesh,
    int32_t element, const Set &...set)
{
    std::array<int32_t, vertices_per_element> vertices{};
    if (element != 0) // else no value was below infinity, and clients know no element 0
        element_vertices(mesh, element, vertices.data(), set...);
    append_format(text, format, element);
    for (const int32_t vertex : vertices)
        append_format(text, " %i", vertex);
    append_format(text, "\n");
}

void add_values(RunningStatistics &statistics, double value, int32_t element)
{
    statistics.add(value, element);
}

template <std::size_t count>
void add_values(RunningStatistics &statistics, const std::array<double, count> &values, int32_t element)
{
    for (const double value : values)
        statistics.add(value, element);
}

/// Measures the elements 1..element_count and reports under the label. The edge form passes the set of the
/// edges on to both operations.
template <auto measure, auto element_vertices, class... Set>
void statistics_accumulate(const korvane_mesh_t *mesh, int32_t element_count, const char *label,
    bool machine_readable, const Set &...set)
{
    constexpr uint32_t block_size = 16;
    std::array<typename decltype(measure)::Corners, block_size> corners;
    RunningStatistics statistics;
    const auto count = static_cast<uint32_t>(element_count);
    for (uint32_t done = 0; done < count;) {
        const uint32_t block = std::min(count - done, block_size);
        measure.fetch_corners(mesh, done + 1, block, corners.data(), set...);
        // Added as they come, so that the division of one update overlaps with the next element's formula.
        for (uint32_t i = 0; i < block; ++i)
            add_values(statistics, measure.values(corners[i]), static_cast<int32_t>(++done));
    }
    if (machine_readable) {
        send_keyed(mesh, label, statistics);
        return;
    }
    send_readable(mesh, label, statistics, [&](TextBuffer<line_capacity> &text) {
        constexpr auto append = append_achieved<element_vertices, measure.vertices_per_element, Set...>;
        append(text, "     min achieved for %i :", mesh, statistics.minimum_element, set...);
        append(text, "     max achieved for %i :", mesh, statistics.maximum_element, set...);
    });
}

struct MeasureRow {
    const char *keyed_label;
    const char *readable_label;
    void (*accumulate)(const korvane_mesh_t *, int32_t element_count, const char *label, bool);
};

struct ElementGroup {
    CountGetter count;
    std::span<const MeasureRow> measures;
};

constexpr MeasureRow triangle_measures[] = {
    {"VALID.%s.triangle.aspect_ratio", "triangle aspect ratio",
        statistics_accumulate<quality_triangle_aspect_ratio, korvane_mesh_get_triangle_vertices>},
    {"VALID.%s.triangle.angles", "triangle angles",
        statistics_accumulate<quality_triangle_angles, korvane_mesh_get_triangle_vertices>},
};

constexpr MeasureRow quadrangle_measures[] = {
    {"VALID.%s.quadrangle.aspect_ratio", "quadrangle aspect ratio",
        statistics_accumulate<quality_quadrangle_aspect_ratio, korvane_mesh_get_quadrangle_vertices>},
    {"VALID.%s.quadrangle.angles", "quadrangle angles",
        statistics_accumulate<quality_quadrangle_angles, korvane_mesh_get_quadrangle_vertices>},
    {"VALID.%s.quadrangle.planarity", "quadrangle planarity",
        statistics_accumulate<quality_quadrangle_planarity, korvane_mesh_get_quadrangle_vertices>},
};

constexpr MeasureRow tetrahedron_measures[] = {
    {"VALID.%s.tetrahedron.aspect_ratio", "tetrahedron aspect ratio",
        statistics_accumulate<quality_tetrahedron_aspect_ratio, korvane_mesh_get_tetrahedron_vertices>},
};

constexpr MeasureRow hexahedron_measures[] = {
    {"VALID.%s.hexahedron.aspect_ratio", "hexahedron aspect ratio",
        statistics_accumulate<quality_hexahedron_aspect_ratio, korvane_mesh_get_hexahedron_vertices>},
};

/// Pyramids are counted but never measured.
constexpr ElementGroup element_groups[] = {
    {korvane_mesh_get_triangle_count, triangle_measures},
    {korvane_mesh_get_quadrangle_count, quadrangle_measures},
    {korvane_mesh_get_tetrahedron_count, tetrahedron_measures},
    {korvane_mesh_get_hexahedron_count, hexahedron_measures},
};

struct CountRow {
    CountGetter count;
    const char *keyed;
    const char *readable;
};

constexpr CountRow count_rows[] = {
    {korvane_mesh_get_vertex_count, "VALID.%s.vertex.count = %i\n", "  number of vertices : %i \n"},
    {korvane_mesh_get_edge_count, "VALID.%s.edge.count = %i\n", "  number of edges : %i \n"},
    {korvane_mesh_get_triangle_count, "VALID.%s.triangle.count = %i\n", "  number of triangles : %i \n"},
    {korvane_mesh_get_quadrangle_count, "VALID.%s.quadrangle.count = %i\n",
        "  number of quadrilaterals : %i \n"},
    {korvane_mesh_get_tetrahedron_count, "VALID.%s.tetrahedra.count = %i\n",
        "  number of tetrahedra : %i \n"},
    {korvane_mesh_get_hexahedron_count, "VALID.%s.hexahedra.count = %i\n", "  number of hexahedra : %i \n"},
    {korvane_mesh_get_pyramid_count, "VALID.%s.pyramid.count = %i\n", "  number of pyramids : %i \n"},
};

// The steps of the report; a null name asks for the readable form

TextBuffer<label_capacity> label_for(const char *name, const char *keyed_label, const char *readable_label)
{
    TextBuffer<label_capacity> label;
    if (name == nullptr)
        append_format(label, readable_label);
    else
        append_format(label, keyed_label, name);
    return label;
}

void report_ratios(const korvane_mesh_t *mesh, const char *name)
{
    const double triangles = count_of(mesh, korvane_mesh_get_triangle_count);
    const double quadrangles = count_of(mesh, korvane_mesh_get_quadrangle_count);
    if (triangles > 0 && quadrangles > 0) {
        // Kept on purpose: keyed lines without name in the readable form, because they were always there.
        const double elements = triangles + quadrangles;
        send_format<line_capacity>(mesh, "VALID.%s.triangle.ratio = %e\n", name, triangles / elements);
        send_format<line_capacity>(mesh, "VALID.%s.quadrangle.ratio = %e\n", name, quadrangles / elements);
    }
}

void report_counts(const korvane_mesh_t *mesh, const char *name)
{
    for (const CountRow &row : count_rows) {
        const int32_t count = count_of(mesh, row.count);
        if (count <= 0)
            continue;
        if (name == nullptr)
            send_format<line_capacity>(mesh, row.readable, count);
        else
            send_format<line_capacity>(mesh, row.keyed, name, count);
    }
}

void report_elements(const korvane_mesh_t *mesh, const char *name)
{
    for (const ElementGroup &group : element_groups) {
        const int32_t count = count_of(mesh, group.count);
        if (count <= 0)
            continue;
        for (const MeasureRow &row : group.measures) {
            const auto label = label_for(name, row.keyed_label, row.readable_label);
            row.accumulate(mesh, count, label.c_str(), name != nullptr);
        }
    }
}

/// Makes room for the edges of so many elements. False if memory runs out, or if numbers do.
[[nodiscard]] bool try_create_for(int64_t element_count, vertex_pair_set_t &edges)
{
    const int64_t capacity = std::max<int64_t>(11, element_count);
    return capacity <= INT32_MAX &&
           edges.try_create(static_cast<int32_t>(capacity / 2), static_cast<int32_t>(capacity));
}

/// Inserts the edges of the elements 1..element_count, in order.
template <auto vertices_slot, std::size_t edges_per_element>
[[nodiscard]] bool try_insert_edges(const korvane_mesh_t *mesh, int32_t element_count,
    const uint8_t (&element_edges)[edges_per_element][2], vertex_pair_set_t &edges)
{
    constexpr std::size_t batch_size = 128 * edges_per_element;
    std::array<vertex_pair_set_t::value_type, batch_size> batch;
    std::size_t filled = 0;
    for (uint32_t i = 1; i <= static_cast<uint32_t>(element_count); ++i) {
        std::array<int32_t, Stored<vertices_slot>::values_per_element> vertices{};
        fetch<vertices_slot>(mesh, static_cast<int32_t>(i), vertices.data());
        for (const auto &[a, b] : element_edges)
            batch[filled++] = {vertices[a], vertices[b]};
        if (filled == batch_size) {
            if (!edges.try_insert_batch(batch))
                return false;
            filled = 0;
        }
    }
    return edges.try_insert_batch({batch.data(), filled});
}

void report_edges(const korvane_mesh_t *mesh, const char *name, const vertex_pair_set_t &edges,
    const char *keyed_label, const char *readable_label)
{
    const auto label = label_for(name, keyed_label, readable_label);
    statistics_accumulate<quality_edge_length, quality_edge_vertices>(
        mesh, edges.count, label.c_str(), name != nullptr, edges);
}

void report_surface_edges(
    const korvane_mesh_t *mesh, const char *name, int32_t triangle_count, int32_t quadrangle_count)
{
    vertex_pair_set_t edges;
    const int64_t element_count = int64_t{triangle_count} + quadrangle_count;
    if (element_count < 1 || !try_create_for(element_count, edges) ||
        !try_insert_edges<&korvane_mesh_s::triangle_vertices>(mesh, triangle_count, triangle_edges, edges) ||
        !try_insert_edges<&korvane_mesh_s::quadrangle_vertices>(
            mesh, quadrangle_count, quadrangle_edges, edges))
        return;
    report_edges(mesh, name, edges, "VALID.%s.surface_edges.length", "Surface elements edges length");
}

void report_volume_edges(const korvane_mesh_t *mesh, const char *name, int32_t quadrangle_count)
{
    vertex_pair_set_t edges;
    const int32_t tetrahedron_count = count_of(mesh, korvane_mesh_get_tetrahedron_count);
    if (tetrahedron_count < 1 || !try_create_for(int64_t{tetrahedron_count} + quadrangle_count, edges) ||
        !try_insert_edges<&korvane_mesh_s::tetrahedron_vertices>(
            mesh, tetrahedron_count, tetrahedron_edges, edges))
        return;
    report_edges(mesh, name, edges, "VALID.%s.volume_edges.length", "Volume elements edges length");
}

korvane_status_t mesh_statistics_report(const korvane_mesh_t *mesh, const char *name)
{
    if (mesh == nullptr || mesh->context == nullptr)
        return STATUS_ERROR;
    if (name == nullptr)
        send_text(mesh, "Mesh statistics : \n");
    report_ratios(mesh, name);
    report_counts(mesh, name);
    report_elements(mesh, name);
    const int32_t triangle_count = count_of(mesh, korvane_mesh_get_triangle_count);
    const int32_t quadrangle_count = count_of(mesh, korvane_mesh_get_quadrangle_count);
    report_surface_edges(mesh, name, triangle_count, quadrangle_count);
    report_volume_edges(mesh, name, quadrangle_count);
    return STATUS_OK;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_status_t korvane_mesh_compute_statistics(const korvane_mesh_t *mesh)
{
    return mesh_statistics_report(mesh, nullptr);
}

korvane_status_t korvane_mesh_compute_statistics_valid(const korvane_mesh_t *mesh, const char *name)
{
    if (mesh == nullptr || name == nullptr)
        return STATUS_ERROR;
    mesh_statistics_report(mesh, name);
    return compute_topological_statistics(mesh, name);
}

} // extern "C"
