// A header of 80 bytes, the number of triangles, and 50 bytes for each: the normal and three corners in
// single precision, and two bytes that mean nothing. All is little-endian.
#include "stl.h"

#include <bit>
#include <cmath>
#include <fstream>

#include "common/vec3.h"
#include "vtu.h"

namespace korvane::tools {

namespace {

constexpr std::size_t header_size = 80;

void append(std::string &bytes, uint32_t value)
{
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(value >> shift & 0xFFU);
}

void append(std::string &bytes, Vec3 v)
{
    for (const double value : {v.x, v.y, v.z})
        append(bytes, std::bit_cast<uint32_t>(static_cast<float>(value)));
}

void append_triangle(std::string &bytes, Vec3 p, Vec3 q, Vec3 r)
{
    const Vec3 normal = cross(q - p, r - p);
    const double length = norm(normal);
    append(bytes, length > 0 ? normal / length : Vec3{});
    append(bytes, p);
    append(bytes, q);
    append(bytes, r);
    bytes.append(2, '\0');
}

} // namespace

bool write_stl(const korvane_mesh_t *mesh, const std::string &file)
{
    std::string triangles;
    uint32_t count = 0;
    for (const Cell &cell : cells_of(mesh)) {
        if (cell.kind->dimension != 2)
            continue;
        const ElementVertices vertices = vertices_of(*cell.kind, mesh, cell.number);
        const auto corner = [&](int32_t i) {
            const auto [x, y, z] = position_of(mesh, vertices[static_cast<std::size_t>(i)]);
            return Vec3{x, y, z};
        };
        for (int32_t i = 2; i < cell.kind->corners; ++i, ++count)
            append_triangle(triangles, corner(0), corner(i - 1), corner(i));
    }
    std::string head = "korvane";
    head.resize(header_size, ' ');
    append(head, count);
    std::ofstream stream(file, std::ios::binary);
    stream << head << triangles;
    return stream.flush().good();
}

} // namespace korvane::tools
