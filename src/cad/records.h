// The records of a CAD model, its faces, edges and points.
//
// A face or edge has two halves: plain values, which a copy takes over as one struct, and the rest, which a
// copy handles one by one. Who may count and free is told in lifetime.h.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <korvane.h>

#include "cad/id_list.h"
#include "cad/multiple_periodicity.h"
#include "cad/support_vertices.h"
#include "common/array.h"
#include "common/memory.h"
#include "tags/tuple_shapes.h"

// The hooks that lead from the parameters of derived geometry to those of its original. Null outputs are
// skipped.
using korvane_cad_face_origin_t = korvane_status_t (*)(
    const double uv[2], korvane_cad_face_t **face, double uv_out[2], int64_t *aux, void *user_data);
using korvane_cad_edge_origin_t = korvane_status_t (*)(
    double t, korvane_cad_edge_t **edge, double *t_out, double *tmin_out, double *tmax_out, void *user_data);

namespace korvane {

enum CadFlag : uint8_t {
    CAD_USE_VTAG = 0x01,   // a tag was set on a point or an end of an edge
    CAD_USE_ETAG = 0x02,   // a tag was set on an edge
    CAD_USE_FTAG = 0x04,   // a tag was set on a face
    CAD_THREAD_SAFE = 0x08 // the client's word
};

enum FaceFlag : uint8_t {
    FACE_ATTACHED = 0x01, // the face is in a model
    FACE_PERIODIC_U = 0x02,
    FACE_PERIODIC_V = 0x04,
    FACE_HAS_RANGE = 0x08,
    FACE_HAS_PERIODICITY = 0x10
};

enum EdgeFlag : uint8_t {
    EDGE_ATTACHED = 0x01, // the edge is on a face
    EDGE_APPROXIMATE_DERIVATIVES = 0x02,
    EDGE_DEGENERATED = 0x04
};

inline bool has_flag(uint8_t flags, uint8_t flag)
{
    return (flags & flag) != 0;
}

inline void put_flag(uint8_t &flags, uint8_t flag, bool on)
{
    flags = static_cast<uint8_t>(on ? flags | flag : flags & ~flag);
}

struct Teardown;

enum class Stage : uint8_t {
    alive,
    ending, // delete functions run, or wait to run
    gone    // they have run; the records stay as long as there are pins
};

/// What is counted, and ends, as a whole: a model, or a face without a model, or an edge without a face. All
/// null for none.
struct Unit {
    korvane_cad_t *cad;
    korvane_cad_face_t *face;
    korvane_cad_edge_t *edge;
};

/// How far a unit of lifetime is on its way, and what keeps its records. Meaningful in a model, in a face
/// without a model and in an edge without a face; the position in every face.
struct Lifespan {
    Stage stage;
    uint32_t pin_count; // of faces and edges derived from those of the unit
    Teardown *teardown; // where to wait for the end, while the library gives up references for a teardown
    Unit next;          // in the list of the teardown that the unit is in
    int32_t position;   // in the list of the object, of what its end has come to
};

/// What faces and edges carry alike.
struct Identity {
    uint32_t id;
    uint32_t tag;
    uint32_t uid;
    int32_t orientation;
};

/// What becomes of the user data of a face or edge, which are owned through delete_function.
struct Care : Identity {
    korvane_user_data_delete_t delete_function;
    korvane_user_data_clone_t clone_function;
    bool library_deletes; // delete_function is the library's own, that of a derived object
    bool library_clones;
};

struct FaceValues : Care {
    double period_u, period_v;     // meaningful with FACE_PERIODIC_U, FACE_PERIODIC_V
    double umin, umax, vmin, vmax; // meaningful with FACE_HAS_RANGE
    korvane_cad_surface_t surface;
    void *surface_user_data;
    korvane_cad_face_origin_t origin_function;
    uint8_t flags;
};

struct EdgeValues : Care {
    int32_t coorientation;
    double tmin, tmax;
    uint32_t properties;
    std::array<int32_t, 2> extremities, extremities_tag, uv_extremities;
    korvane_cad_curve_t curve;
    void *curve_user_data;
    korvane_cad_curve3d_t curve3d;
    void *curve3d_user_data; // not owned
    korvane_cad_edge_origin_t origin_function;
    uint8_t flags;
};

} // namespace korvane

// What it owns by plain pointers goes in its destructor, because smart pointers need not have the standard
// layout; its faces go before.
struct korvane_cad_s {
    korvane_context_t *context; // first, so that korvane_cad_get_context finds it
    int32_t face_capacity;
    int32_t face_count;
    korvane::Array<korvane_cad_face_t *> faces;           // owned
    korvane::face_periodicity_set_t *face_id_periodicity; // owned, as the two below
    korvane::edge_periodicity_set_t *edge_id_periodicity;
    korvane::point_periodicity_set_t *point_id_periodicity;
    int64_t generic_buffer_size; // bytes: more than 32 bits can tell for a long list of identifiers
    int32_t face_multiple_periodicity_count;
    int32_t face_multiple_periodicity_capacity;
    korvane::Array<korvane::MultiplePeriodicity *> face_multiple_periodicities; // owned
    int32_t edge_multiple_periodicity_count;
    int32_t edge_multiple_periodicity_capacity;
    korvane::Array<korvane::MultiplePeriodicity *> edge_multiple_periodicities; // owned
    korvane_tag_system_t *tag_system;                                           // owned
    uint32_t reference_count;
    uint8_t flags;
    korvane::Lifespan lifespan;

    ~korvane_cad_s();
};

struct korvane_cad_face_s : korvane::FaceValues {
    korvane_cad_t *cad; // the owner, or null
    int32_t edge_capacity;
    int32_t edge_count;
    int32_t point_capacity;
    int32_t point_count;
    korvane::Array<korvane_cad_edge_t *> edges;   // owned
    korvane::Array<korvane_cad_point_t *> points; // owned
    korvane::Owned<korvane_id_list_t> original_ids;
    int32_t reference_count; // of a face without a model
    korvane::Lifespan lifespan;
    korvane_cad_face_t *source; // that the surface is derived from, or null; pinned
};

struct korvane_cad_edge_s : korvane::EdgeValues {
    korvane_cad_face_t *face; // the owner, or null
    korvane::Owned<korvane_id_list_t> original_ids;
    korvane::SharedSupportVertices support_vertices;
    int32_t reference_count; // of an edge without a face
    korvane::Lifespan lifespan;
    korvane::Array<korvane_cad_edge_t *> sources; // that the curve is derived from; pinned
};

struct korvane_cad_point_s {
    korvane_cad_face_t *face;
    double u, v;
    uint32_t id;
    uint32_t tag;
};

namespace korvane {

static_assert(std::is_standard_layout_v<korvane_cad_s>);
static_assert(offsetof(korvane_cad_s, context) == 0);

} // namespace korvane
