// A mesh of one kind of entity served by callbacks that note their calls and fail where they are told to.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <korvane.h>

namespace korvane::testing {

struct Served {
    std::vector<std::string> calls;
    int32_t count = 0;
    korvane_status_t count_status = STATUS_OK;
    int32_t failing_values = 0; // the index whose vertices or coordinates fail
    korvane_status_t values_status = STATUS_ERROR;
    int32_t failing_tag = 0;
    std::vector<int32_t> flags;
    int32_t failing_flag = 0;
    std::function<void()> after_flag = [] {};

    static Served &self(void *user_data) { return *static_cast<Served *>(user_data); }

    /// Notes a call, which has the status if it is for the failing index.
    korvane_status_t note(
        const char *what, int32_t index, int32_t failing, korvane_status_t status = STATUS_ERROR)
    {
        calls.push_back(what + std::to_string(index));
        return index == failing ? status : korvane_status_t{STATUS_OK};
    }
    template <class Value>
    static korvane_status_t get_values(int32_t index, Value *values, Value second, void *user_data)
    {
        Served &served = self(user_data);
        values[0] = static_cast<Value>(index);
        values[1] = second;
        return served.note("values", index, served.failing_values, served.values_status);
    }

    static korvane_status_t get_count(int32_t *count, void *user_data)
    {
        *count = self(user_data).count;
        self(user_data).calls.push_back("count");
        return self(user_data).count_status;
    }
    static korvane_status_t get_coordinates(int32_t index, double *xyz, void *user_data)
    {
        return get_values(index, xyz, 0.5, user_data);
    }
    static korvane_status_t get_vertices(int32_t index, int32_t *vertices, void *user_data)
    {
        return get_values(index, vertices, 9, user_data);
    }
    static korvane_status_t get_tag(int32_t index, int32_t *tag, void *user_data)
    {
        *tag = 100 + index;
        return self(user_data).note("tag", index, self(user_data).failing_tag);
    }
    static korvane_status_t get_flag(int32_t index, int32_t *flag, void *user_data)
    {
        Served &served = self(user_data);
        *flag = served.flags.empty() ? 0 : served.flags[static_cast<std::size_t>(index - 1)];
        const korvane_status_t status = served.note("flag", index, served.failing_flag);
        served.after_flag();
        return status;
    }

    void serve_vertices(korvane_mesh_t *mesh)
    {
        korvane_mesh_set_get_vertex_count(mesh, get_count, this);
        korvane_mesh_set_get_vertex_coordinates(mesh, get_coordinates, this);
        korvane_mesh_set_get_vertex_tag(mesh, get_tag, this);
        korvane_mesh_set_get_vertex_required_status(mesh, get_flag, this);
    }

    void serve_edges(korvane_mesh_t *mesh)
    {
        korvane_mesh_set_get_edge_count(mesh, get_count, this);
        korvane_mesh_set_get_edge_vertices(mesh, get_vertices, this);
        korvane_mesh_set_get_edge_tag(mesh, get_tag, this);
        korvane_mesh_set_get_edge_required_status(mesh, get_flag, this);
    }
};

/// What makes a mesh serve elements of a kind, and the plural by which its writers name them.
struct ServedKind {
    korvane_status_t (*set_get_count)(korvane_mesh_t *, korvane_mesh_count_getter_t, void *);
    korvane_status_t (*set_get_vertices)(korvane_mesh_t *, korvane_mesh_values_getter_t, void *);
    const char *plural;

    void serve(korvane_mesh_t *mesh, Served &served) const
    {
        set_get_count(mesh, Served::get_count, &served);
        set_get_vertices(mesh, Served::get_vertices, &served);
    }
};

/// In the order in which files hold them.
inline constexpr ServedKind served_kinds[] = {
    {korvane_mesh_set_get_edge_count, korvane_mesh_set_get_edge_vertices, "edges"},
    {korvane_mesh_set_get_triangle_count, korvane_mesh_set_get_triangle_vertices, "triangles"},
    {korvane_mesh_set_get_quadrangle_count, korvane_mesh_set_get_quadrangle_vertices, "quadrilaterals"},
    {korvane_mesh_set_get_tetrahedron_count, korvane_mesh_set_get_tetrahedron_vertices, "tetrahedra"},
    {korvane_mesh_set_get_hexahedron_count, korvane_mesh_set_get_hexahedron_vertices, "hexaedra"},
    {korvane_mesh_set_get_pyramid_count, korvane_mesh_set_get_pyramid_vertices, "pyramid"},
};

} // namespace korvane::testing
