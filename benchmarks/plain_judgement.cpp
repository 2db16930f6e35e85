#include "plain_judgement.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

namespace korvane::benchmarks {

namespace {

struct Point {
    double x, y, z;
};

Point operator-(Point a, Point b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

Point operator+(Point a, Point b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

Point cross(Point a, Point b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double dot(Point a, Point b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

double length(Point a)
{
    return std::sqrt(dot(a, a));
}

Point corner(const FlatMesh &mesh, int32_t vertex)
{
    const double *xyz = &mesh.coordinates[3 * static_cast<std::size_t>(vertex - 1)];
    return {xyz[0], xyz[1], xyz[2]};
}

double triangle_area(Point p, Point q, Point r)
{
    return 0.5 * length(cross(p, q) + cross(q, r) + cross(r, p));
}

double triangle_ratio(Point p, Point q, Point r)
{
    const double a = length(p - q), b = length(q - r), c = length(r - p);
    const double area = triangle_area(p, q, r);
    return area > 0 ? 0.14433756729740646 * std::max({a, b, c}) * (a + b + c) / area : HUGE_VAL;
}

double angle(Point a, Point b)
{
    const double squares = dot(a, a) * dot(b, b);
    return std::acos(squares > 0 ? dot(a, b) / std::sqrt(squares) : 0) * 180.0 / 3.141593;
}

double six_volumes(Point p, Point q, Point r, Point s)
{
    return dot(q - p, cross(r - p, s - p));
}

double tetrahedron_ratio(Point p, Point q, Point r, Point s)
{
    const double longest =
        std::max({length(p - q), length(p - r), length(p - s), length(q - r), length(q - s), length(r - s)});
    const double area =
        triangle_area(p, q, r) + triangle_area(p, q, s) + triangle_area(p, r, s) + triangle_area(q, r, s);
    const double volume = six_volumes(p, q, r, s) * 0.16666666666666666;
    return volume > 0 ? 0.06804138174397717 * longest * area / volume : HUGE_VAL;
}

double hexahedron_ratio(const Point (&p)[8])
{
    constexpr int edges[12][2] = {
        {0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
    constexpr int tetrahedra[10][4] = {{0, 1, 3, 4}, {1, 2, 0, 5}, {2, 3, 1, 6}, {3, 0, 2, 7}, {4, 7, 5, 0},
        {5, 4, 6, 1}, {6, 5, 7, 2}, {7, 6, 4, 3}, {0, 2, 7, 5}, {1, 3, 4, 6}};
    double sum = 0, smallest = HUGE_VAL;
    for (const auto &[a, b] : edges)
        sum += length(p[b] - p[a]);
    for (const auto &[a, b, c, d] : tetrahedra)
        smallest = std::min(six_volumes(p[a], p[b], p[c], p[d]) * 0.16666666666666666, smallest);
    return sum * std::sqrt(sum) * 0.024056261216234408 / smallest;
}

/// Distinct unordered pairs, numbered in order of first insertion, by open addressing: best where neighbours
/// in the mesh are far apart in memory.
class OpenPairs {
  public:
    OpenPairs(const FlatMesh &, std::size_t most)
        : slots(std::bit_ceil(most + most / 4)), mask(slots.size() - 1)
    {
        keys.reserve(most);
    }

    int32_t number(uint32_t low, uint32_t high)
    {
        const uint64_t key = uint64_t{low} << 32 | high;
        std::size_t slot = (key * 0x9E3779B97F4A7C15u >> 20) & mask;
        while (slots[slot].number != 0 && slots[slot].key != key)
            slot = (slot + 1) & mask;
        if (slots[slot].number == 0) {
            keys.push_back(key);
            slots[slot] = {key, static_cast<int32_t>(keys.size())};
        }
        return slots[slot].number - 1;
    }

    std::vector<uint64_t> keys;

  private:
    struct Slot {
        uint64_t key;
        int32_t number; // from 1; 0 is free
    };
    std::vector<Slot> slots;
    std::size_t mask;
};

/// The same by a chain per vertex: best where neighbours in the mesh are neighbours in memory.
class PairsOfVertices {
  public:
    PairsOfVertices(const FlatMesh &mesh, std::size_t most) : heads(mesh.vertex_tags.size() + 1, -1)
    {
        keys.reserve(most);
        next.reserve(most);
    }

    int32_t number(uint32_t low, uint32_t high)
    {
        const uint64_t key = uint64_t{low} << 32 | high;
        int32_t found = heads[low];
        while (found >= 0 && keys[static_cast<std::size_t>(found)] != key)
            found = next[static_cast<std::size_t>(found)];
        if (found < 0) {
            found = static_cast<int32_t>(keys.size());
            keys.push_back(key);
            next.push_back(heads[low]);
            heads[low] = found;
        }
        return found;
    }

    std::vector<uint64_t> keys;

  private:
    std::vector<int32_t> heads;
    std::vector<int32_t> next;
};

template <class Pairs>
int32_t number_of_edge(Pairs &pairs, const int32_t *vertices, const int (&edge)[2])
{
    const auto a = static_cast<uint32_t>(vertices[edge[0]]), b = static_cast<uint32_t>(vertices[edge[1]]);
    return pairs.number(std::min(a, b), std::max(a, b));
}

constexpr int triangle_edges[3][2] = {{0, 1}, {1, 2}, {2, 0}};
constexpr int tetrahedron_edges[6][2] = {{0, 2}, {2, 1}, {1, 0}, {0, 3}, {3, 2}, {1, 3}};

int32_t root_of(std::vector<int32_t> &parent, int32_t face)
{
    while (parent[static_cast<std::size_t>(face)] != face) {
        int32_t &up = parent[static_cast<std::size_t>(face)];
        up = parent[static_cast<std::size_t>(up)];
        face = up;
    }
    return face;
}

Judgement judge_triangles(const FlatMesh &mesh)
{
    Judgement judgement;
    for (std::size_t i = 0; i < mesh.element_tags.size(); ++i) {
        const int32_t *v = &mesh.vertices[3 * i];
        const Point p = corner(mesh, v[0]), q = corner(mesh, v[1]), r = corner(mesh, v[2]);
        judgement.ratios.add(triangle_ratio(p, q, r));
        judgement.angles.add(angle(p - q, r - q));
        judgement.angles.add(angle(q - r, p - r));
        judgement.angles.add(angle(r - p, q - p));
    }
    return judgement;
}

Judgement judge_tetrahedra(const FlatMesh &mesh)
{
    Judgement judgement;
    for (std::size_t i = 0; i < mesh.element_tags.size(); ++i) {
        const int32_t *v = &mesh.vertices[4 * i];
        judgement.ratios.add(tetrahedron_ratio(
            corner(mesh, v[0]), corner(mesh, v[1]), corner(mesh, v[2]), corner(mesh, v[3])));
    }
    return judgement;
}

Judgement judge_hexahedra(const FlatMesh &mesh)
{
    Judgement judgement;
    for (std::size_t i = 0; i < mesh.element_tags.size(); ++i) {
        Point corners[8];
        for (std::size_t k = 0; k < 8; ++k)
            corners[k] = corner(mesh, mesh.vertices[8 * i + k]);
        judgement.ratios.add(hexahedron_ratio(corners));
    }
    return judgement;
}

template <class Pairs, std::size_t corners, std::size_t edge_count>
Statistics judge_edges_of(const FlatMesh &mesh, const int (&edges)[edge_count][2])
{
    Pairs pairs(mesh, 2 * mesh.element_tags.size());
    for (std::size_t i = 0; i < mesh.element_tags.size(); ++i)
        for (const auto &edge : edges)
            number_of_edge(pairs, &mesh.vertices[corners * i], edge);
    Statistics statistics;
    for (const uint64_t key : pairs.keys)
        statistics.add(length(corner(mesh, static_cast<int32_t>(key >> 32)) -
                              corner(mesh, static_cast<int32_t>(key & 0xFFFFFFFFu))));
    return statistics;
}

template <class Pairs>
Statistics judge_edges_by(const FlatMesh &mesh)
{
    return mesh.kind == &triangle ? judge_edges_of<Pairs, 3>(mesh, triangle_edges)
                                  : judge_edges_of<Pairs, 4>(mesh, tetrahedron_edges);
}

template <class Pairs>
int32_t count_topology_by(const FlatMesh &mesh)
{
    const std::size_t face_count = mesh.element_tags.size();
    Pairs pairs(mesh, 2 * face_count);
    std::vector<int32_t> parent(face_count);
    std::iota(parent.begin(), parent.end(), 0);
    std::vector<int32_t> first_face(2 * face_count), faces_on_edge(2 * face_count);
    int32_t components = static_cast<int32_t>(face_count);
    for (std::size_t i = 0; i < face_count; ++i) {
        for (const auto &edge : triangle_edges) {
            const auto number = static_cast<std::size_t>(number_of_edge(pairs, &mesh.vertices[3 * i], edge));
            if (++faces_on_edge[number] == 1) {
                first_face[number] = static_cast<int32_t>(i);
                continue;
            }
            const int32_t a = root_of(parent, first_face[number]),
                          b = root_of(parent, static_cast<int32_t>(i));
            if (a != b) {
                parent[static_cast<std::size_t>(std::max(a, b))] = std::min(a, b);
                --components;
            }
        }
    }
    int32_t free_edges = 0, non_manifold_edges = 0;
    for (std::size_t e = 0; e < pairs.keys.size(); ++e) {
        free_edges += faces_on_edge[e] == 1;
        non_manifold_edges += faces_on_edge[e] >= 3;
    }
    return components + free_edges + non_manifold_edges;
}

} // namespace

Judgement judge_elements(const FlatMesh &mesh)
{
    return mesh.kind == &triangle      ? judge_triangles(mesh)
           : mesh.kind == &tetrahedron ? judge_tetrahedra(mesh)
                                       : judge_hexahedra(mesh);
}

Statistics judge_edges(const FlatMesh &mesh, Order order)
{
    return order == Order::natural ? judge_edges_by<PairsOfVertices>(mesh) : judge_edges_by<OpenPairs>(mesh);
}

int32_t count_topology(const FlatMesh &mesh, Order order)
{
    return order == Order::natural ? count_topology_by<PairsOfVertices>(mesh)
                                   : count_topology_by<OpenPairs>(mesh);
}

} // namespace korvane::benchmarks
