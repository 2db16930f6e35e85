// Small meshes for the tests of measures and statistics: data that are either put into an in-memory mesh or
// served by callbacks, which note their calls and can be told to fail.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <korvane.h>

namespace korvane::testing {

struct MeshData {
    std::vector<std::array<double, 3>> points;
    std::vector<std::array<int32_t, 2>> edges;
    std::vector<std::array<int32_t, 3>> triangles;
    std::vector<std::array<int32_t, 4>> quadrangles;
    std::vector<std::array<int32_t, 4>> tetrahedra;
    std::vector<std::array<int32_t, 8>> hexahedra;
    std::vector<std::array<int32_t, 5>> pyramids;
};

/// A straight row of unit squares whose two long sides are numbered in opposite directions, so that the
/// numbers of all edges across it have the same sum.
MeshData ribbon(int32_t quadrangle_count);

/// Deletes itself; converts to the handle.
class OwnedMesh {
  public:
    explicit OwnedMesh(korvane_mesh_t *owned) : mesh(owned) {}
    ~OwnedMesh() { korvane_mesh_delete(mesh); }
    OwnedMesh(const OwnedMesh &) = delete;
    OwnedMesh &operator=(const OwnedMesh &) = delete;
    operator korvane_mesh_t *() const { return mesh; }

  private:
    korvane_mesh_t *mesh;
};

/// An in-memory mesh of the data.
class StoredMesh : public OwnedMesh {
  public:
    StoredMesh(korvane_context_t *context, const MeshData &data);
};

/// Serves the data from callbacks. An index out of range fails without writing anything.
class MeshServer {
  public:
    explicit MeshServer(MeshData served) : data(std::move(served)) {}
    MeshServer(const MeshServer &) = delete;
    MeshServer &operator=(const MeshServer &) = delete;

    /// Registers the getters of all slots, or of the chosen ones, on a mesh.
    void serve(korvane_mesh_t *mesh)
    {
        serve(mesh, [](int) { return true; });
    }
    void serve(korvane_mesh_t *mesh, const std::function<bool(int slot)> &chosen);

    MeshData data;
    std::vector<std::string> calls; // "triangle 1", "coordinates 5", "triangle count"
    bool notes_calls = false;
    int64_t call_count = 0;
    int64_t failing_call = 0; // by ordinal from 1: fails with a status of the client's own, writing nothing
    std::function<void()> on_call;

    static constexpr korvane_status_t failure = 77;

    /// For the callbacks: notes a call. False if it is to fail.
    bool begin(const char *what, int32_t index);
};

/// A mesh whose getters are all served by callbacks.
class ServedMesh : public OwnedMesh {
  public:
    ServedMesh(korvane_context_t *context, MeshServer &server) : OwnedMesh(korvane_mesh_new(context))
    {
        server.serve(*this);
    }
};

} // namespace korvane::testing
