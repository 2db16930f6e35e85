// The figure that users of size maps look at: the length of each distinct edge divided by the mean of the
// sizes wanted at its ends, which is 1 where a mesh is as fine as it should be.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <utility>
#include <vector>

#include "commands.h"
#include "histogram.h"
#include "mesh_kinds.h"
#include "session.h"

namespace korvane::tools {

namespace {

using Edge = std::pair<int32_t, int32_t>; // the lower vertex first

/// The edges of all elements, each once.
std::vector<Edge> distinct_edges(const korvane_mesh_t *mesh)
{
    std::vector<Edge> edges;
    for (const MeshKind &kind : mesh_kinds()) {
        for (int32_t i = 1, count = count_of(kind, mesh); !kind.edges.empty() && i <= count; ++i) {
            std::array<int32_t, 8> vertices{};
            kind.get_vertices(mesh, i, vertices.data());
            for (const auto &[a, b] : kind.edges)
                edges.push_back(std::minmax({vertices[a], vertices[b]}));
        }
    }
    std::ranges::sort(edges);
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

/// The sizes at the vertices 1..n, the first of them at position 1.
std::vector<double> sizes_at_vertices(const korvane_mesh_t *mesh, const korvane_sizemap_t *sizemap)
{
    int32_t count = 0;
    korvane_mesh_get_vertex_count(mesh, &count);
    std::vector<double> sizes(static_cast<std::size_t>(count) + 1);
    for (int32_t vertex = 1; vertex <= count; ++vertex)
        korvane_sizemap_iso_mesh_vertex_get_size(sizemap, vertex, &sizes[static_cast<std::size_t>(vertex)]);
    return sizes;
}

double length_of(const korvane_mesh_t *mesh, const Edge &edge)
{
    const auto a = position_of(mesh, edge.first), b = position_of(mesh, edge.second);
    return std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]);
}

Json compare(const korvane_mesh_t *mesh, const std::vector<double> &sizes)
{
    Summary wanted, ratios;
    Histogram histogram(
        {0.25, 0.5, 1 / std::numbers::sqrt2, 0.9, 1 / 0.9, std::numbers::sqrt2, 2.0, 4.0}); // evenly around 1
    int64_t stray = 0, without_size = 0;
    for (std::size_t vertex = 1; vertex < sizes.size(); ++vertex)
        wanted.add(sizes[vertex]);
    const auto is_vertex = [&](int32_t vertex) {
        return vertex >= 1 && static_cast<std::size_t>(vertex) < sizes.size();
    };
    for (const Edge &edge : distinct_edges(mesh)) {
        if (!is_vertex(edge.first) || !is_vertex(edge.second)) {
            ++stray;
            continue;
        }
        const double size =
            (sizes[static_cast<std::size_t>(edge.first)] + sizes[static_cast<std::size_t>(edge.second)]) / 2;
        const double ratio = length_of(mesh, edge) / size;
        if (!(size > 0) || !std::isfinite(ratio)) {
            ++without_size;
            continue;
        }
        ratios.add(ratio);
        histogram.add(ratio);
    }
    return {{"sizes", wanted.as_json()}, {"ratios", ratios.as_json()}, {"histogram", histogram.as_json(true)},
        {"edges_without_positive_size", without_size}, {"edges_of_missing_vertices", stray}};
}

void print(const Json &record, const Presentation &)
{
    std::printf("%s, %s\n", text_of(record["file"]).c_str(), text_of(record["solution"]).c_str());
    print_summary("sizes at vertices", record["sizes"]);
    print_summary("edges, length / size", record["ratios"]);
    if (record["ratios"]["count"] > 0)
        print_histogram(record["histogram"]);
    if (record["edges_without_positive_size"] > 0)
        std::printf(
            "  edges without a positive size : %s\n", text_of(record["edges_without_positive_size"]).c_str());
    if (record["edges_of_missing_vertices"] > 0)
        std::printf("  edges of vertices that the mesh lacks : %s\n",
            text_of(record["edges_of_missing_vertices"]).c_str());
}

} // namespace

int sizes(const std::string &mesh_file, const std::string &solution_file, const Presentation &presentation)
{
    Session session;
    Output output("sizes", presentation, print);
    const Mesh mesh = session.read(mesh_file);
    const Sizemap sizemap = mesh ? session.read_sizes(mesh.get(), solution_file) : nullptr;
    if (!sizemap) {
        output.add_problem(mesh ? solution_file : mesh_file, session.last_problem());
        return output.finish(file_problem);
    }
    Json record = {{"file", mesh_file}, {"solution", solution_file}};
    record.update(compare(mesh.get(), sizes_at_vertices(mesh.get(), sizemap.get())));
    output.add(std::move(record));
    return output.finish(done);
}

} // namespace korvane::tools
