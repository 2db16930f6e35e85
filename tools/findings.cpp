// One pass over each kind looks at the elements by themselves, then two sorts bring together what has to be
// compared: elements with the same vertices by a hash of them, and the sides of surface elements by their
// ends. n elements cost O(n log n) steps and 16 bytes each, and 24 per side.
#include "findings.h"

#include <algorithm>
#include <tuple>

#include "progress.h"
#include "stats/measures.h"

namespace korvane::tools {

namespace {

Vec3 corner(const korvane_mesh_t *mesh, int32_t vertex)
{
    const auto [x, y, z] = position_of(mesh, vertex);
    return {x, y, z};
}

/// The same for elements of a kind that have the same vertices.
ElementVertices key_of(const MeshKind &kind, const korvane_mesh_t *mesh, int32_t number)
{
    ElementVertices vertices = vertices_of(kind, mesh, number);
    std::ranges::sort(vertices);
    return vertices;
}

uint64_t hash_of(const ElementVertices &key)
{
    uint64_t hash = 0;
    for (const int32_t vertex : key)
        hash = (hash ^ static_cast<uint32_t>(vertex)) * 0x9E3779B97F4A7C15U;
    return hash ^ (hash >> 32U);
}

/// A side of a surface element.
struct Side {
    uint64_t ends; // the lower one in the upper half
    const MeshKind *kind;
    int32_t number;
    bool rising; // from the lower end to the higher one
};

class Finder {
  public:
    Finder(const korvane_mesh_t *judged, std::span<const Limit> kept, Progress &shown)
        : mesh(judged), limits(kept), progress(shown), vertex_count(count_of(vertex_kind(), judged)),
          is_used(static_cast<std::size_t>(vertex_count) + 1)
    {}

    std::vector<Finding> find()
    {
        for (const MeshKind &kind : element_kinds())
            find_in(kind);
        find_orientations();
        for (int32_t vertex = 1; vertex <= vertex_count; ++vertex)
            if (!is_used[static_cast<std::size_t>(vertex)])
                add(vertex_kind(), vertex, unused_vertex);
        const auto order = [](const Finding &finding) {
            return std::tuple(finding.kind, finding.number, finding.rule);
        };
        std::ranges::sort(findings, {}, order);
        const auto same = [&](const Finding &a, const Finding &b) { return order(a) == order(b); };
        findings.erase(std::unique(findings.begin(), findings.end(), same), findings.end());
        return std::move(findings);
    }

  private:
    void add(const MeshKind &kind, int32_t number, std::size_t rule)
    {
        findings.push_back({&kind, number, rule});
    }

    void find_in(const MeshKind &kind)
    {
        std::vector<std::pair<uint64_t, int32_t>> sound; // by the hashes of their keys
        for (int32_t i = 1, count = count_of(kind, mesh); i <= count; ++i) {
            const ElementVertices vertices = vertices_of(kind, mesh, i);
            progress.advance();
            if (!names_good_vertices(kind, i, vertices))
                continue;
            sound.emplace_back(hash_of(key_of(kind, mesh, i)), i);
            if (is_inverted(kind, vertices))
                add(kind, i, inverted_element);
            find_beyond_limits(kind, i);
            if (kind.dimension == 2)
                add_sides(kind, i, vertices);
        }
        find_duplicates(kind, sound);
    }

    bool names_good_vertices(const MeshKind &kind, int32_t number, const ElementVertices &vertices)
    {
        bool in_range = true, distinct = true;
        const std::span<const int32_t> named = used(kind, vertices);
        for (std::size_t i = 0; i < named.size(); ++i) {
            if (named[i] < 1 || named[i] > vertex_count)
                in_range = false;
            else
                is_used[static_cast<std::size_t>(named[i])] = true;
            distinct &= std::ranges::find(named.first(i), named[i]) == named.begin() + static_cast<int>(i);
        }
        if (!in_range)
            add(kind, number, vertex_out_of_range);
        if (!distinct)
            add(kind, number, repeated_vertex);
        return in_range && distinct;
    }

    bool is_inverted(const MeshKind &kind, const ElementVertices &vertices) const
    {
        return std::ranges::any_of(kind.sub_parts, [&](const CornerTetrahedron &part) {
            return !(parallelepiped_volume(corner(mesh, vertices[part[0]]), corner(mesh, vertices[part[1]]),
                         corner(mesh, vertices[part[2]]), corner(mesh, vertices[part[3]])) > 0);
        });
    }

    void find_beyond_limits(const MeshKind &kind, int32_t number)
    {
        for (std::size_t i = 0; i < limits.size(); ++i) {
            MeasuredValues values;
            if (limits[i].measure->kind == &kind &&
                !std::ranges::all_of(measure(*limits[i].measure, mesh, number, values),
                    [&](double value) { return limits[i].holds(value); }))
                add(kind, number, first_limit + i);
        }
    }

    /// The first of those with the same vertices is none.
    void find_duplicates(const MeshKind &kind, std::vector<std::pair<uint64_t, int32_t>> &elements)
    {
        std::ranges::sort(elements, [&](const auto &a, const auto &b) {
            if (a.first != b.first)
                return a.first < b.first;
            return std::pair(key_of(kind, mesh, a.second), a.second) <
                   std::pair(key_of(kind, mesh, b.second), b.second);
        });
        for (std::size_t i = 1; i < elements.size(); ++i)
            if (elements[i].first == elements[i - 1].first &&
                key_of(kind, mesh, elements[i].second) == key_of(kind, mesh, elements[i - 1].second))
                add(kind, elements[i].second, duplicate_element);
    }

    void add_sides(const MeshKind &kind, int32_t number, const ElementVertices &vertices)
    {
        for (const auto &[a, b] : kind.edges) {
            const auto [low, high] = std::minmax(vertices[a], vertices[b]);
            sides.push_back({static_cast<uint64_t>(low) << 32U | static_cast<uint32_t>(high), &kind, number,
                vertices[a] == low});
        }
    }

    /// Neighbours across a side that no third element has go along it in opposite directions.
    void find_orientations()
    {
        std::ranges::sort(sides, {}, &Side::ends);
        for (std::size_t begin = 0, end = 0; begin < sides.size(); begin = end) {
            while (end < sides.size() && sides[end].ends == sides[begin].ends)
                ++end;
            if (end - begin != 2 || sides[begin].rising != sides[begin + 1].rising)
                continue;
            add(*sides[begin].kind, sides[begin].number, inconsistent_orientation);
            add(*sides[begin + 1].kind, sides[begin + 1].number, inconsistent_orientation);
        }
    }

    const korvane_mesh_t *mesh;
    std::span<const Limit> limits;
    Progress &progress;
    int32_t vertex_count;
    std::vector<bool> is_used;
    std::vector<Side> sides;
    std::vector<Finding> findings;
};

} // namespace

std::string name_of_rule(std::size_t rule, std::span<const Limit> limits)
{
    static constexpr const char *names[] = {"vertex_out_of_range", "repeated_vertex", "duplicate_element",
        "inverted_element", "inconsistent_orientation", "unused_vertex"};
    static_assert(std::size(names) == first_limit);
    return rule < first_limit ? names[rule] : limits[rule - first_limit].text;
}

std::vector<Finding> find_all(const korvane_mesh_t *mesh, std::span<const Limit> limits, Progress &progress)
{
    return Finder(mesh, limits, progress).find();
}

} // namespace korvane::tools
