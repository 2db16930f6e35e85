// One object of every kind, with something in each, for the calls that sweeps make.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>
#include <korvane.h>

namespace korvane::testing {

inline constexpr int32_t entity_count = 4;  // of each kind in `mesh`
inline constexpr int32_t payload_count = 5; // of each payload of `message`

/// What is called `spare_` is like the one without, for functions that take it over or delete it: they are
/// to set it to null here. Everything else is deleted by the destructor.
struct Objects {
    Objects();
    ~Objects();
    Objects(const Objects &) = delete;
    Objects &operator=(const Objects &) = delete;

    /// Everything that the public functions tell of the objects, to be compared.
    [[nodiscard]] std::string describe() const;

    // First, because callbacks write here until the last object is deleted.
    std::string messages; // number and text of each, as they came
    int releases = 0;     // of attached objects
    int deletions = 0;    // of the user data of faces and edges

    korvane_context_t *context = nullptr, *spare_context = nullptr;
    korvane_message_t *message = nullptr, *spare_message = nullptr;
    korvane_tag_system_t *tag_system = nullptr, *spare_tag_system = nullptr; // base tags 1, 2, 3; 4 = {1, 2}
    korvane_mesh_t *mesh = nullptr, *spare_mesh = nullptr;                   // in memory; without tag system
    korvane_mesh_t *tagged_mesh = nullptr;                          // without callbacks, with a tag system
    korvane_sizemap_t *sizemap = nullptr, *spare_sizemap = nullptr; // per vertex of `mesh`
    korvane_cad_t *cad = nullptr,
                  *spare_cad = nullptr; // one face, edge, point, and one periodicity of each kind
    korvane_cad_face_t *face = nullptr, *free_face = nullptr, *spare_face = nullptr; // the spare one is free
    korvane_cad_edge_t *edge = nullptr, *free_edge = nullptr, *spare_edge = nullptr; // the spare one is free
    korvane_cad_point_t *point = nullptr, *spare_point = nullptr;
    korvane_dcad_t *dcad = nullptr, *spare_dcad = nullptr;
    korvane_dcad_edge_discretization_t *discretization = nullptr; // of `edge`, with 3 vertices
    void *mesh_buffer = nullptr, *cad_buffer = nullptr;           // generic ones, for the taking
};

/// Compares what objects tell with what they told before; says where it begins to differ.
::testing::AssertionResult is_described_as(const Objects &objects, const std::string &wanted);

// Arguments with content, as many values as any function asks for.
inline constexpr std::array<int32_t, 8> some_integers = {1, 2, 3, 4, 1, 2, 3, 4};
inline constexpr std::array<double, 12> some_reals = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};

// Callbacks with some content.
korvane_status_t some_surface(const double uv[2], double xyz[3], double du[3], double dv[3], double duu[3],
    double duv[3], double dvv[3], void *user_data);
korvane_status_t some_curve(double t, double uv[2], double dt[2], double dtt[2], void *user_data);
korvane_status_t some_curve3d(double t, double xyz[3], void *user_data);
korvane_status_t some_transformation(const double source[3], double target[3], void *user_data);
korvane_status_t some_size(int32_t vertex, double *size, void *user_data);
korvane_status_t note_message(korvane_message_t *message, void *objects); // into `messages`
korvane_status_t some_interrupt(int32_t *interrupt, void *user_data);
void note_release(void *objects);  // into `releases`
void note_deletion(void *objects); // into `deletions`

/// Makes the sample files below, if that was not done.
void make_sample_files();

/// The name of a file for this process to write, in a folder that goes with it.
std::string scratch_file(const std::string &name);

/// The name of a file with a mesh of a few entities of every kind, some of them required.
const std::string &sample_mesh_file(const std::string &extension = "mesh");

/// The name of a file with the size at every vertex of `Objects::mesh`.
const std::string &sample_solution_file(const std::string &extension = "sol");

} // namespace korvane::testing
