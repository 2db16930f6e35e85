#include "plain_loops.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <numeric>

namespace korvane::benchmarks {

namespace {

struct File {
    File(const char *name, const char *mode) : stream(std::fopen(name, mode))
    {
        if (stream == nullptr)
            std::abort();
    }
    ~File() { std::fclose(stream); }
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    std::FILE *stream;
};

struct Bytes {
    std::unique_ptr<char[]> data;
    std::size_t size;
};

Bytes contents(const char *file_name)
{
    File file(file_name, "rb");
    std::fseek(file.stream, 0, SEEK_END);
    const auto size = static_cast<std::size_t>(std::ftell(file.stream));
    std::rewind(file.stream);
    Bytes bytes{std::make_unique_for_overwrite<char[]>(size), size};
    if (std::fread(bytes.data.get(), 1, size, file.stream) != size)
        std::abort();
    return bytes;
}

struct Statistics {
    double min = HUGE_VAL, max = -HUGE_VAL, sum = 0, variance = 0;
    double n = 0;

    void add(double x)
    {
        min = std::min(x, min);
        max = std::max(x, max);
        n += 1;
        if (n == 1) {
            sum = x;
            return;
        }
        const double next = sum + x;
        const double a = sum / n - next / n;
        const double b = x - next / n;
        variance = (variance + a * a) * (n - 1) / n + b * b / n;
        sum = next;
    }
};

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

double tetrahedron_ratio(Point p, Point q, Point r, Point s)
{
    const double longest =
        std::max({length(p - q), length(p - r), length(p - s), length(q - r), length(q - s), length(r - s)});
    const double area =
        triangle_area(p, q, r) + triangle_area(p, q, s) + triangle_area(p, r, s) + triangle_area(q, r, s);
    const double volume = dot(q - p, cross(r - p, s - p)) * 0.16666666666666666;
    return volume > 0 ? 0.06804138174397717 * longest * area / volume : HUGE_VAL;
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

void append(std::vector<char> &bytes, const void *values, std::size_t count)
{
    const auto *first = static_cast<const char *>(values);
    bytes.insert(bytes.end(), first, first + count);
}

void append_integer(std::vector<char> &bytes, int32_t value)
{
    append(bytes, &value, sizeof value);
}

} // namespace

int64_t read_raw(const char *file_name)
{
    static std::array<char, std::size_t{1} << 18> block;
    File file(file_name, "rb");
    std::setvbuf(file.stream, nullptr, _IONBF, 0);
    int64_t size = 0;
    while (const std::size_t read = std::fread(block.data(), 1, block.size(), file.stream))
        size += static_cast<int64_t>(read);
    return size;
}

int64_t read_and_decode(const char *file_name)
{
    const Bytes bytes = contents(file_name);
    const auto integer = [&](std::size_t at) {
        int32_t value;
        std::memcpy(&value, &bytes.data[at], sizeof value);
        return value;
    };
    std::unique_ptr<double[]> coordinates;
    std::unique_ptr<int32_t[]> vertex_tags, vertices, element_tags;
    int64_t lines = 0;
    for (int32_t block = 8; block != 0; block = integer(static_cast<std::size_t>(block) + 4)) {
        const auto start = static_cast<std::size_t>(block);
        const int32_t code = integer(start);
        if (code != 4 && code != 6 && code != 8)
            continue;
        const auto count = static_cast<std::size_t>(integer(start + 8));
        const char *line = &bytes.data[start + 12];
        lines += static_cast<int64_t>(count);
        if (code == 4) {
            coordinates = std::make_unique_for_overwrite<double[]>(3 * count);
            vertex_tags = std::make_unique_for_overwrite<int32_t[]>(count);
            for (std::size_t i = 0; i < count; ++i, line += 28) {
                std::memcpy(&coordinates[3 * i], line, 24);
                std::memcpy(&vertex_tags[i], line + 24, 4);
            }
            continue;
        }
        const std::size_t width = code == 6 ? 3 : 4;
        vertices = std::make_unique_for_overwrite<int32_t[]>(width * count);
        element_tags = std::make_unique_for_overwrite<int32_t[]>(count);
        for (std::size_t i = 0; i < count; ++i, line += 4 * (width + 1)) {
            std::memcpy(&vertices[width * i], line, 4 * width);
            std::memcpy(&element_tags[i], line + 4 * width, 4);
        }
    }
    return lines;
}

FlatMesh read_with_fscanf(const char *file_name)
{
    File file(file_name, "rb");
    FlatMesh mesh;
    char word[256];
    while (std::fscanf(file.stream, "%255s", word) == 1) {
        int count = 0;
        if (std::strcmp(word, "Vertices") == 0 && std::fscanf(file.stream, "%d", &count) == 1) {
            mesh.coordinates.resize(3 * static_cast<std::size_t>(count));
            mesh.vertex_tags.resize(static_cast<std::size_t>(count));
            for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
                for (std::size_t axis = 0; axis < 3; ++axis)
                    if (std::fscanf(file.stream, "%lf", &mesh.coordinates[3 * i + axis]) != 1)
                        std::abort();
                if (std::fscanf(file.stream, "%d", &mesh.vertex_tags[i]) != 1)
                    std::abort();
            }
        } else if ((std::strcmp(word, "Triangles") == 0 || std::strcmp(word, "Tetrahedra") == 0) &&
                   std::fscanf(file.stream, "%d", &count) == 1) {
            mesh.corners = word[1] == 'r' ? 3 : 4;
            const auto width = static_cast<std::size_t>(mesh.corners);
            mesh.vertices.resize(width * static_cast<std::size_t>(count));
            mesh.element_tags.resize(static_cast<std::size_t>(count));
            for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
                for (std::size_t k = 0; k < width; ++k)
                    if (std::fscanf(file.stream, "%d", &mesh.vertices[width * i + k]) != 1)
                        std::abort();
                if (std::fscanf(file.stream, "%d", &mesh.element_tags[i]) != 1)
                    std::abort();
            }
        }
    }
    return mesh;
}

void encode_and_write(const FlatMesh &mesh, const char *file_name)
{
    std::vector<char> bytes;
    const auto vertex_count = mesh.vertex_tags.size(), element_count = mesh.element_tags.size();
    const auto width = static_cast<std::size_t>(mesh.corners);
    const std::size_t elements_at = 32 + 28 * vertex_count;
    const std::size_t end_at = elements_at + 12 + 4 * (width + 1) * element_count;
    bytes.reserve(end_at + 8);
    for (const int32_t word : {1, 2, 3, 20, 3, 4, static_cast<int32_t>(elements_at), mesh.vertex_count()})
        append_integer(bytes, word);
    for (std::size_t i = 0; i < vertex_count; ++i) {
        append(bytes, &mesh.coordinates[3 * i], 24);
        append_integer(bytes, mesh.vertex_tags[i]);
    }
    for (const int32_t word : {width == 3 ? 6 : 8, static_cast<int32_t>(end_at), mesh.element_count()})
        append_integer(bytes, word);
    for (std::size_t i = 0; i < element_count; ++i) {
        append(bytes, &mesh.vertices[width * i], 4 * width);
        append_integer(bytes, mesh.element_tags[i]);
    }
    for (const int32_t word : {54, 0})
        append_integer(bytes, word);
    File file(file_name, "wb");
    std::fwrite(bytes.data(), 1, bytes.size(), file.stream);
}

void write_with_fprintf(const FlatMesh &mesh, const char *file_name)
{
    File file(file_name, "wb");
    const auto width = static_cast<std::size_t>(mesh.corners);
    std::fprintf(file.stream, "MeshVersionFormatted 2\n\nDimension 3\n\nVertices\n%d\n", mesh.vertex_count());
    for (std::size_t i = 0; i < mesh.vertex_tags.size(); ++i) {
        for (std::size_t axis = 0; axis < 3; ++axis)
            std::fprintf(file.stream, "%.15lg ", mesh.coordinates[3 * i + axis]);
        std::fprintf(file.stream, "%d \n", mesh.vertex_tags[i]);
    }
    std::fprintf(file.stream, "\n%s\n%d\n", width == 3 ? "Triangles" : "Tetrahedra", mesh.element_count());
    for (std::size_t i = 0; i < mesh.element_tags.size(); ++i) {
        for (std::size_t k = 0; k < width; ++k)
            std::fprintf(file.stream, "%d ", mesh.vertices[width * i + k]);
        std::fprintf(file.stream, "%d \n", mesh.element_tags[i]);
    }
    std::fprintf(file.stream, "\nEnd\n");
}

void write_bulk_data_with_fprintf(const FlatMesh &mesh, const char *file_name)
{
    File file(file_name, "w");
    const auto width = static_cast<std::size_t>(mesh.corners);
    std::fprintf(file.stream, "BEGIN BULK\n");
    for (int32_t i = 0; i < mesh.vertex_count(); ++i) {
        const double *xyz = &mesh.coordinates[3 * static_cast<std::size_t>(i)];
        std::fprintf(file.stream, "GRID*   %16d               0%16.8E%16.8E*\n*       %16.8E\n", i + 1,
            xyz[0], xyz[1], xyz[2]);
    }
    for (int32_t i = 0; i < mesh.element_count(); ++i) {
        const auto at = static_cast<std::size_t>(i);
        std::fprintf(
            file.stream, "%s  %8d%8d", width == 3 ? "CTRIA3" : "CTETRA", i + 1, mesh.element_tags[at]);
        for (std::size_t k = 0; k < width; ++k)
            std::fprintf(file.stream, "%8d", mesh.vertices[width * at + k]);
        std::fprintf(file.stream, "\n");
    }
    std::fprintf(file.stream, "$\nENDDATA\n");
}

void write_raw(const std::string &bytes, const char *file_name)
{
    File file(file_name, "wb");
    std::fwrite(bytes.data(), 1, bytes.size(), file.stream);
}

double judge_elements(const FlatMesh &mesh)
{
    Statistics statistics, angles;
    const auto width = static_cast<std::size_t>(mesh.corners);
    for (std::size_t i = 0; i < mesh.element_tags.size(); ++i) {
        const int32_t *v = &mesh.vertices[width * i];
        const Point p = corner(mesh, v[0]), q = corner(mesh, v[1]), r = corner(mesh, v[2]);
        if (width == 4) {
            statistics.add(tetrahedron_ratio(p, q, r, corner(mesh, v[3])));
            continue;
        }
        statistics.add(triangle_ratio(p, q, r));
        angles.add(angle(p - q, r - q));
        angles.add(angle(q - r, p - r));
        angles.add(angle(r - p, q - p));
    }
    return statistics.variance + angles.variance;
}

namespace {

template <class Pairs>
int32_t judge_edges_by(const FlatMesh &mesh)
{
    const auto width = static_cast<std::size_t>(mesh.corners);
    const int edge_count = width == 3 ? 3 : 6;
    const auto *edges = width == 3 ? triangle_edges : tetrahedron_edges;
    Pairs pairs(mesh, 2 * mesh.element_tags.size());
    for (std::size_t i = 0; i < mesh.element_tags.size(); ++i)
        for (int e = 0; e < edge_count; ++e)
            number_of_edge(pairs, &mesh.vertices[width * i], edges[e]);
    Statistics statistics;
    for (const uint64_t key : pairs.keys)
        statistics.add(length(corner(mesh, static_cast<int32_t>(key >> 32)) -
                              corner(mesh, static_cast<int32_t>(key & 0xFFFFFFFFu))));
    return static_cast<int32_t>(statistics.n);
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

int32_t judge_edges(const FlatMesh &mesh, Order order)
{
    return order == Order::natural ? judge_edges_by<PairsOfVertices>(mesh) : judge_edges_by<OpenPairs>(mesh);
}

int32_t count_topology(const FlatMesh &mesh, Order order)
{
    return order == Order::natural ? count_topology_by<PairsOfVertices>(mesh)
                                   : count_topology_by<OpenPairs>(mesh);
}

} // namespace korvane::benchmarks
