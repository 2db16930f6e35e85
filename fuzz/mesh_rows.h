// The functions of the attributes of a mesh as tables, for targets that choose among them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include <korvane.h>

namespace korvane::fuzz::rows {

struct KindRow {
    korvane_status_t (*get_count)(const korvane_mesh_t *, int32_t *);
    korvane_status_t (*set_count)(korvane_mesh_t *, int32_t);
    korvane_status_t (*replace_get_count)(korvane_mesh_t *, korvane_mesh_count_getter_t, void *);
};

/// An attribute of so many integers per element of a kind.
struct ValuesRow {
    std::size_t kind;
    std::size_t width;
    korvane_status_t (*get)(const korvane_mesh_t *, int32_t, int32_t *);
    korvane_status_t (*set)(korvane_mesh_t *, int32_t, const int32_t *);
    korvane_status_t (*replace_get)(korvane_mesh_t *, korvane_mesh_values_getter_t, void *);
};

struct ListRow {
    std::size_t kind;
    korvane_status_t (*get)(const korvane_mesh_t *, int32_t, int32_t *, int32_t *);
    korvane_status_t (*set)(korvane_mesh_t *, int32_t, int32_t, const int32_t *);
};

#define KIND(kind)                                                                                           \
    KindRow                                                                                                  \
    {                                                                                                        \
        korvane_mesh_get_##kind##_count, korvane_mesh_set_##kind##_count,                                    \
            korvane_mesh_set_get_##kind##_count                                                              \
    }
#define VALUES(number, width, name)                                                                          \
    ValuesRow                                                                                                \
    {                                                                                                        \
        number, width, korvane_mesh_get_##name, korvane_mesh_set_##name, korvane_mesh_set_get_##name         \
    }
#define LIST(number, kind)                                                                                   \
    ListRow                                                                                                  \
    {                                                                                                        \
        number, korvane_mesh_get_##kind##_extra_vertices, korvane_mesh_set_##kind##_extra_vertices           \
    }

inline constexpr std::array kinds = {KIND(vertex), KIND(edge), KIND(triangle), KIND(quadrangle),
    KIND(tetrahedron), KIND(hexahedron), KIND(pyramid)};

inline constexpr std::array values_rows = {
    VALUES(1, 2, edge_vertices),
    VALUES(2, 3, triangle_vertices),
    VALUES(3, 4, quadrangle_vertices),
    VALUES(4, 4, tetrahedron_vertices),
    VALUES(5, 8, hexahedron_vertices),
    VALUES(6, 5, pyramid_vertices),
    VALUES(0, 1, vertex_tag),
    VALUES(1, 1, edge_tag),
    VALUES(2, 1, triangle_tag),
    VALUES(3, 1, quadrangle_tag),
    VALUES(4, 1, tetrahedron_tag),
    VALUES(5, 1, hexahedron_tag),
    VALUES(6, 1, pyramid_tag),
    VALUES(0, 1, vertex_periodic_id),
    VALUES(1, 1, edge_periodic_id),
    VALUES(2, 1, triangle_periodic_id),
    VALUES(3, 1, quadrangle_periodic_id),
    VALUES(0, 1, vertex_required_status),
    VALUES(1, 1, edge_required_status),
    VALUES(2, 1, triangle_required_status),
    VALUES(3, 1, quadrangle_required_status),
    VALUES(4, 1, tetrahedron_required_status),
    VALUES(5, 1, hexahedron_required_status),
    VALUES(6, 1, pyramid_required_status),
};

inline constexpr std::array list_rows = {
    LIST(1, edge), LIST(2, triangle), LIST(3, quadrangle), LIST(4, tetrahedron)};

#undef KIND
#undef VALUES
#undef LIST

} // namespace korvane::fuzz::rows
