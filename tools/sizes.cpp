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

struct Summary {
    double low = HUGE_VAL;
    double high = -HUGE_VAL;
    double sum = 0;
    int64_t count = 0;

    void add(double value)
    {
        low = std::min(low, value);
        high = std::max(high, value);
        sum += value;
        ++count;
    }

    void print(const char *title) const
    {
        std::printf("  %s : %lld\n", title, static_cast<long long>(count));
        if (count > 0)
            std::printf("    min  : %.6g\n    max  : %.6g\n    mean : %.6g\n", low, high,
                sum / static_cast<double>(count));
    }
};

/// Counts ratios between bounds that lie evenly around 1.
class Histogram {
  public:
    void add(double ratio)
    {
        const auto above = std::ranges::upper_bound(bounds, ratio);
        ++counts[static_cast<std::size_t>(above - bounds.begin())];
    }

    void print(int64_t total) const
    {
        constexpr double bar_length = 40;
        for (std::size_t i = 0; i < counts.size(); ++i) {
            const double share = static_cast<double>(counts[i]) / static_cast<double>(total);
            const std::string low = i == 0 ? "" : text_of(bounds[i - 1]);
            const std::string high = i == bounds.size() ? "" : text_of(bounds[i]);
            const std::string bar(static_cast<std::size_t>(std::lround(share * bar_length)), '#');
            std::printf("    %6s .. %-6s %12lld  %5.1f %%%s%s\n", low.c_str(), high.c_str(),
                static_cast<long long>(counts[i]), 100 * share, bar.empty() ? "" : "  ", bar.c_str());
        }
    }

  private:
    static std::string text_of(double bound)
    {
        std::array<char, 16> text{};
        std::snprintf(text.data(), text.size(), "%.4g", bound);
        return text.data();
    }

    static constexpr std::array bounds = {
        0.25, 0.5, 1 / std::numbers::sqrt2, 0.9, 1 / 0.9, std::numbers::sqrt2, 2.0, 4.0};
    std::array<int64_t, bounds.size() + 1> counts{};
};

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
    std::array<double, 3> a{}, b{};
    korvane_mesh_get_vertex_coordinates(mesh, edge.first, a.data());
    korvane_mesh_get_vertex_coordinates(mesh, edge.second, b.data());
    return std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]);
}

void report(const korvane_mesh_t *mesh, const std::vector<double> &sizes)
{
    Summary wanted, ratios;
    Histogram histogram;
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
    wanted.print("sizes at vertices");
    ratios.print("edges, length / size");
    if (ratios.count > 0)
        histogram.print(ratios.count);
    if (without_size > 0)
        std::printf("  edges without a positive size : %lld\n", static_cast<long long>(without_size));
    if (stray > 0)
        std::printf("  edges of vertices that the mesh lacks : %lld\n", static_cast<long long>(stray));
}

} // namespace

int sizes(const std::string &mesh_file, const std::string &solution_file)
{
    Session session;
    const Mesh mesh = session.read(mesh_file);
    if (!mesh)
        return file_problem;
    const Sizemap sizemap = session.read_sizes(mesh.get(), solution_file);
    if (!sizemap)
        return file_problem;
    std::printf("%s, %s\n", mesh_file.c_str(), solution_file.c_str());
    report(mesh.get(), sizes_at_vertices(mesh.get(), sizemap.get()));
    return done;
}

} // namespace korvane::tools
