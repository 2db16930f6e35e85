// A client that serves a small mesh by callbacks, deviates at one call, and notes what its callbacks should
// not have been given: indices that nobody stated, and outputs that do not hold zeros.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <malloc.h>

#include <korvane.h>

namespace korvane::testing {

/// Fills the stack below the caller, so that what is used without being initialised shows.
[[gnu::noinline]] inline void poison_stack()
{
    std::array<volatile unsigned char, 1 << 19> bytes;
    for (volatile unsigned char &byte : bytes)
        byte = 0x5a;
}

/// Fills memory that is not initialised with a byte that follows from this one, or, for 0, leaves it alone.
inline void perturb_memory([[maybe_unused]] int byte)
{
#if defined(__GLIBC__)
    mallopt(M_PERTURB, byte);
#endif
}

/// What a callback does at the call that deviates.
enum class Deviation {
    fails,         // writes nothing
    fails_halfway, // writes a part
    stops_halfway  // writes a part and calls that success
};

inline constexpr std::array all_deviations = {
    Deviation::fails, Deviation::fails_halfway, Deviation::stops_halfway};

enum class Call { count, element, tag, flag };

/// `elements_per_kind` elements of every kind, on the corners of the unit cube.
class HostileClient {
  public:
    static constexpr korvane_status_t failure = 77;
    static constexpr int32_t elements_per_kind = 2;
    static constexpr int32_t vertex_count = 8;

    explicit HostileClient(korvane_context_t *context) : mesh(korvane_mesh_new(context))
    {
        perturb_memory(0x5a);
        serve_vertices();
        serve_elements();
        serve_flags();
    }
    ~HostileClient()
    {
        perturb_memory(0);
        korvane_mesh_delete(mesh);
    }
    HostileClient(const HostileClient &) = delete;
    HostileClient &operator=(const HostileClient &) = delete;
    operator korvane_mesh_t *() const { return mesh; }

    /// No call deviates from here on.
    void behave() { deviate_at(0, Deviation::fails); }

    /// Starts counting calls anew; the given one deviates.
    void deviate_at(int64_t call, Deviation how)
    {
        calls = 0;
        deviating_call = call;
        deviation = how;
        deviated = false;
        delivered.clear();
        largest_count = vertex_count;
    }

    int64_t calls = 0;
    bool deviated = false;
    Call deviated_in = Call::count;
    std::vector<std::string> complaints;
    std::function<int32_t()> lie; // if there is one, the count of any kind

    /// Vertex `position` of an element, all of them positions from 0.
    static int32_t vertex_of(int32_t element, int32_t position) { return (element + position) % 8 + 1; }
    static double coordinate(int32_t vertex, int32_t axis)
    {
        // The first four corners are one side of the cube, in turn.
        const int32_t corner = (vertex - 1) % 4;
        const bool is_one = axis == 0 ? corner == 1 || corner == 2 : (axis == 1 ? corner >= 2 : vertex > 4);
        return is_one ? 1 : 0;
    }

  private:
    /// How much of `width` values is to be written, and what to return.
    struct Answer {
        int32_t written;
        korvane_status_t status;
    };
    Answer begin(Call call, int32_t width)
    {
        if (++calls != deviating_call)
            return {width, STATUS_OK};
        deviated = true;
        deviated_in = call;
        if (deviation == Deviation::fails)
            return {0, failure};
        return {width / 2, deviation == Deviation::fails_halfway ? failure : korvane_status_t{STATUS_OK}};
    }
    template <class Value>
    void examine(const char *what, bool known, int32_t index, const Value *values, int32_t width)
    {
        if (!known)
            complaints.push_back(what + (" " + std::to_string(index)));
        if (std::any_of(values, values + width, [](Value value) { return value != 0; }))
            complaints.push_back(what + std::string(" with values"));
    }
    bool is_counted(int32_t index) const { return index >= 1 && index <= largest_count; }

    template <int32_t count>
    static korvane_status_t get_count(int32_t *output, void *client)
    {
        auto &self = *static_cast<HostileClient *>(client);
        const Answer answer = self.begin(Call::count, 1);
        self.examine("count", true, 0, output, 1);
        if (answer.written > 0)
            *output = self.lie ? self.lie() : count;
        self.largest_count = std::max(self.largest_count, *output);
        return answer.status;
    }
    static korvane_status_t get_coordinates(int32_t index, double *xyz, void *client)
    {
        auto &self = *static_cast<HostileClient *>(client);
        const Answer answer = self.begin(Call::element, 3);
        // Writers ask for all vertices; what an element left out is vertex 0.
        self.examine("coordinates", index == 0 || self.is_counted(index) || self.delivered.contains(index),
            index, xyz, 3);
        if (index < 1 || index > vertex_count)
            return failure;
        for (int32_t axis = 0; axis < answer.written; ++axis)
            xyz[axis] = coordinate(index, axis);
        return answer.status;
    }
    template <int32_t width>
    static korvane_status_t get_vertices(int32_t index, int32_t *vertices, void *client)
    {
        auto &self = *static_cast<HostileClient *>(client);
        const Answer answer = self.begin(Call::element, width);
        self.examine("element", self.is_counted(index), index, vertices, width);
        if (index < 1 || index > elements_per_kind)
            return failure;
        for (int32_t position = 0; position < answer.written; ++position) {
            vertices[position] = vertex_of(index - 1, position);
            self.delivered.insert(vertices[position]);
        }
        return answer.status;
    }
    template <Call call>
    static korvane_status_t get_value(int32_t index, int32_t *value, void *client)
    {
        auto &self = *static_cast<HostileClient *>(client);
        const Answer answer = self.begin(call, 1);
        self.examine("value", self.is_counted(index), index, value, 1);
        if (answer.written > 0)
            *value = 100 + index;
        return answer.status;
    }

    void serve_vertices()
    {
        korvane_mesh_set_get_vertex_count(mesh, get_count<vertex_count>, this);
        korvane_mesh_set_get_vertex_coordinates(mesh, get_coordinates, this);
        korvane_mesh_set_get_vertex_tag(mesh, get_value<Call::tag>, this);
    }
    void serve_elements()
    {
#define SERVE(kind, width)                                                                                   \
    korvane_mesh_set_get_##kind##_count(mesh, get_count<elements_per_kind>, this);                           \
    korvane_mesh_set_get_##kind##_vertices(mesh, get_vertices<width>, this);                                 \
    korvane_mesh_set_get_##kind##_tag(mesh, get_value<Call::tag>, this);
        SERVE(edge, 2)
        SERVE(triangle, 3)
        SERVE(quadrangle, 4)
        SERVE(tetrahedron, 4)
        SERVE(hexahedron, 8)
        SERVE(pyramid, 5)
#undef SERVE
    }
    void serve_flags()
    {
        for (const auto set : {korvane_mesh_set_get_vertex_required_status,
                 korvane_mesh_set_get_edge_required_status, korvane_mesh_set_get_triangle_required_status,
                 korvane_mesh_set_get_quadrangle_required_status})
            set(mesh, get_value<Call::flag>, this);
    }

    korvane_mesh_t *mesh;
    int64_t deviating_call = 0;
    Deviation deviation = Deviation::fails;
    std::set<int32_t> delivered; // vertices of elements
    int32_t largest_count = vertex_count;
};

/// Lets every call of the callbacks deviate in turn, in every way, while `use` works on the mesh.
inline void sweep_deviations(HostileClient &client, const std::function<void(Deviation)> &use)
{
    for (const Deviation how : all_deviations) {
        for (int64_t call = 1;; ++call) {
            client.deviate_at(call, how);
            poison_stack();
            use(how);
            if (!client.deviated)
                break;
        }
    }
    client.behave();
}

} // namespace korvane::testing
