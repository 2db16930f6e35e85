#include "mesh_data.h"

#include <algorithm>

namespace korvane::testing {

namespace {

template <auto member>
korvane_status_t serve_count(const char *what, int32_t *count, void *server)
{
    auto &source = *static_cast<MeshServer *>(server);
    if (!source.begin(what, 0))
        return MeshServer::failure;
    *count = static_cast<int32_t>((source.data.*member).size());
    return STATUS_OK;
}

template <auto member, class Value>
korvane_status_t serve_element(const char *what, int32_t index, Value *values, void *server)
{
    auto &source = *static_cast<MeshServer *>(server);
    const auto &elements = source.data.*member;
    if (!source.begin(what, index) || index < 1 || index > static_cast<int32_t>(elements.size()))
        return MeshServer::failure;
    std::ranges::copy(elements[static_cast<size_t>(index) - 1], values);
    return STATUS_OK;
}

} // namespace

MeshData ribbon(int32_t quadrangle_count)
{
    MeshData data;
    for (int32_t i = 0; i <= quadrangle_count; ++i)
        data.points.push_back({static_cast<double>(i), 0, 0});
    for (int32_t i = quadrangle_count; i >= 0; --i)
        data.points.push_back({static_cast<double>(i), 1, 0});
    const int32_t last = 2 * (quadrangle_count + 1);
    for (int32_t i = 1; i <= quadrangle_count; ++i)
        data.quadrangles.push_back({i, i + 1, last - i, last + 1 - i});
    return data;
}

StoredMesh::StoredMesh(korvane_context_t *context, const MeshData &data)
    : OwnedMesh(korvane_mesh_new_in_memory(context))
{
    const auto fill = [&](const auto &elements, auto set_count, auto set) {
        set_count(*this, static_cast<int32_t>(elements.size()));
        for (size_t i = 0; i < elements.size(); ++i)
            set(*this, static_cast<int32_t>(i + 1), elements[i].data());
    };
    fill(data.points, korvane_mesh_set_vertex_count, korvane_mesh_set_vertex_coordinates);
    fill(data.edges, korvane_mesh_set_edge_count, korvane_mesh_set_edge_vertices);
    fill(data.triangles, korvane_mesh_set_triangle_count, korvane_mesh_set_triangle_vertices);
    fill(data.quadrangles, korvane_mesh_set_quadrangle_count, korvane_mesh_set_quadrangle_vertices);
    fill(data.tetrahedra, korvane_mesh_set_tetrahedron_count, korvane_mesh_set_tetrahedron_vertices);
    fill(data.hexahedra, korvane_mesh_set_hexahedron_count, korvane_mesh_set_hexahedron_vertices);
    fill(data.pyramids, korvane_mesh_set_pyramid_count, korvane_mesh_set_pyramid_vertices);
}

bool MeshServer::begin(const char *what, int32_t index)
{
    if (notes_calls)
        calls.push_back(index == 0 ? std::string(what) : what + (' ' + std::to_string(index)));
    if (on_call)
        on_call();
    return ++call_count != failing_call;
}

void MeshServer::serve(korvane_mesh_t *mesh, const std::function<bool(int slot)> &chosen)
{
#define SERVE_KIND(slot, kind, member)                                                                       \
    if (chosen(slot))                                                                                        \
        korvane_mesh_set_get_##kind##_count(                                                                 \
            mesh,                                                                                            \
            [](int32_t *count, void *server) {                                                               \
                return serve_count<&MeshData::member>(#kind " count", count, server);                        \
            },                                                                                               \
            this);
#define SERVE_ELEMENTS(slot, kind, attribute, member, Value, what)                                           \
    if (chosen(slot))                                                                                        \
        korvane_mesh_set_get_##kind##_##attribute(                                                           \
            mesh,                                                                                            \
            [](int32_t index, Value *values, void *server) {                                                 \
                return serve_element<&MeshData::member>(what, index, values, server);                        \
            },                                                                                               \
            this);
    SERVE_KIND(0, vertex, points)
    SERVE_ELEMENTS(1, vertex, coordinates, points, double, "coordinates")
    SERVE_KIND(2, edge, edges)
    SERVE_ELEMENTS(3, edge, vertices, edges, int32_t, "edge")
    SERVE_KIND(4, triangle, triangles)
    SERVE_ELEMENTS(5, triangle, vertices, triangles, int32_t, "triangle")
    SERVE_KIND(6, quadrangle, quadrangles)
    SERVE_ELEMENTS(7, quadrangle, vertices, quadrangles, int32_t, "quadrangle")
    SERVE_KIND(8, tetrahedron, tetrahedra)
    SERVE_ELEMENTS(9, tetrahedron, vertices, tetrahedra, int32_t, "tetrahedron")
    SERVE_KIND(10, hexahedron, hexahedra)
    SERVE_ELEMENTS(11, hexahedron, vertices, hexahedra, int32_t, "hexahedron")
    SERVE_KIND(12, pyramid, pyramids)
    SERVE_ELEMENTS(13, pyramid, vertices, pyramids, int32_t, "pyramid")
#undef SERVE_KIND
#undef SERVE_ELEMENTS
}

} // namespace korvane::testing
