#include "io/mesh_content.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

namespace korvane::testing {

namespace {

using CountGetter = korvane_status_t (*)(const korvane_mesh_t *, int32_t *);
using CountSetter = korvane_status_t (*)(korvane_mesh_t *, int32_t);
using Getter = korvane_status_t (*)(const korvane_mesh_t *, int32_t, int32_t *);
using Setter = korvane_status_t (*)(korvane_mesh_t *, int32_t, const int32_t *);

struct Accessors {
    const char *name;
    std::size_t width;
    CountGetter get_count;
    CountSetter set_count;
    Getter get_vertices;
    Setter set_vertices;
    Getter get_tag;
    Setter set_tag;
    Getter get_required;
    Setter set_required;
};

#define ACCESSORS(name, width, kind)                                                                         \
    {                                                                                                        \
        name, width, korvane_mesh_get_##kind##_count, korvane_mesh_set_##kind##_count,                       \
            korvane_mesh_get_##kind##_vertices, korvane_mesh_set_##kind##_vertices,                          \
            korvane_mesh_get_##kind##_tag, korvane_mesh_set_##kind##_tag,                                    \
            korvane_mesh_get_##kind##_required_status, korvane_mesh_set_##kind##_required_status             \
    }

const std::array<Accessors, MeshContent::kinds> accessors = {{
    {"Vertices", 0, korvane_mesh_get_vertex_count, korvane_mesh_set_vertex_count, nullptr, nullptr,
        korvane_mesh_get_vertex_tag, korvane_mesh_set_vertex_tag, korvane_mesh_get_vertex_required_status,
        korvane_mesh_set_vertex_required_status},
    ACCESSORS("Edges", 2, edge),
    ACCESSORS("Triangles", 3, triangle),
    ACCESSORS("Quadrilaterals", 4, quadrangle),
    ACCESSORS("Tetrahedra", 4, tetrahedron),
    ACCESSORS("Hexahedra", 8, hexahedron),
    ACCESSORS("Pyramids", 5, pyramid),
}};

} // namespace

std::size_t vertices_per_element(std::size_t kind)
{
    return accessors[kind].width;
}

std::ostream &operator<<(std::ostream &stream, const MeshContent &content)
{
    stream << std::hexfloat;
    for (std::size_t kind = 0; kind < MeshContent::kinds; ++kind) {
        const EntityContent &entity = content.entities[kind];
        stream << accessors[kind].name << ' ' << entity.count() << '\n';
        for (std::size_t i = 0; i < entity.tags.size(); ++i) {
            for (std::size_t j = 0; j < 3 && kind == 0; ++j)
                stream << entity.coordinates[3 * i + j] << ' ';
            for (std::size_t j = 0; j < accessors[kind].width; ++j)
                stream << entity.vertices[accessors[kind].width * i + j] << ' ';
            stream << entity.tags[i] << ' ' << entity.required[i] << '\n';
        }
    }
    return stream;
}

MeshContent content_of(const korvane_mesh_t *mesh)
{
    MeshContent content;
    for (std::size_t kind = 0; kind < MeshContent::kinds; ++kind) {
        EntityContent &entity = content.entities[kind];
        const Accessors &access = accessors[kind];
        int32_t count = -1;
        EXPECT_EQ(access.get_count(mesh, &count), STATUS_OK);
        for (int32_t index = 1; index <= count; ++index) {
            std::array<double, 3> xyz{};
            std::array<int32_t, 8> vertices{};
            int32_t tag = -7;
            int32_t required = -7;
            if (kind == 0) {
                EXPECT_EQ(korvane_mesh_get_vertex_coordinates(mesh, index, xyz.data()), STATUS_OK);
                entity.coordinates.insert(entity.coordinates.end(), xyz.begin(), xyz.end());
            } else {
                EXPECT_EQ(access.get_vertices(mesh, index, vertices.data()), STATUS_OK);
                entity.vertices.insert(entity.vertices.end(), vertices.begin(),
                    vertices.begin() + static_cast<std::ptrdiff_t>(access.width));
            }
            EXPECT_EQ(access.get_tag(mesh, index, &tag), STATUS_OK);
            EXPECT_EQ(access.get_required(mesh, index, &required), STATUS_OK);
            entity.tags.push_back(tag);
            entity.required.push_back(required);
        }
    }
    return content;
}

korvane_mesh_t *make_mesh(korvane_context_t *context, const MeshContent &content)
{
    korvane_mesh_t *mesh = korvane_mesh_new_in_memory(context);
    for (std::size_t kind = 0; kind < MeshContent::kinds; ++kind) {
        const EntityContent &entity = content.entities[kind];
        const Accessors &access = accessors[kind];
        EXPECT_EQ(access.set_count(mesh, entity.count()), STATUS_OK);
        for (std::size_t i = 0; i < entity.tags.size(); ++i) {
            const auto index = static_cast<int32_t>(i + 1);
            EXPECT_EQ(kind == 0 ? korvane_mesh_set_vertex_coordinates(mesh, index, &entity.coordinates[3 * i])
                                : access.set_vertices(mesh, index, &entity.vertices[access.width * i]),
                STATUS_OK);
            EXPECT_EQ(access.set_tag(mesh, index, &entity.tags[i]), STATUS_OK);
            if (entity.required[i] != 0) {
                EXPECT_EQ(access.set_required(mesh, index, &entity.required[i]), STATUS_OK);
            }
        }
    }
    return mesh;
}

MeshContent small_content()
{
    MeshContent content;
    int32_t number = 0;
    for (std::size_t kind = 0; kind < MeshContent::kinds; ++kind) {
        EntityContent &entity = content.entities[kind];
        for (std::size_t i = 0; i < 3 + kind; ++i) {
            for (std::size_t j = 0; j < 3 && kind == 0; ++j)
                entity.coordinates.push_back(++number * 0.25);
            for (std::size_t j = 0; j < accessors[kind].width; ++j)
                entity.vertices.push_back(++number);
            entity.tags.push_back(++number);
            entity.required.push_back(0);
        }
    }
    return content;
}

MeshContent read_expected(const std::string &name)
{
    MeshContent content;
    std::ifstream file(name);
    EXPECT_TRUE(file.is_open()) << name;
    for (std::size_t kind = 0; kind < MeshContent::kinds; ++kind) {
        EntityContent &entity = content.entities[kind];
        std::string word;
        std::size_t count = 0;
        file >> word >> count;
        EXPECT_EQ(word, accessors[kind].name);
        const auto integer = [&] { return file >> word ? std::atoi(word.c_str()) : -7; };
        for (std::size_t i = 0; i < count; ++i) {
            for (std::size_t j = 0; j < 3 && kind == 0; ++j)
                entity.coordinates.push_back(file >> word ? std::strtod(word.c_str(), nullptr) : -7);
            for (std::size_t j = 0; j < accessors[kind].width; ++j)
                entity.vertices.push_back(integer());
            entity.tags.push_back(integer());
            entity.required.push_back(integer());
        }
    }
    EXPECT_TRUE(file.good()) << name;
    return content;
}

} // namespace korvane::testing
