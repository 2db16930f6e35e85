// Straight edges in the parameter plane, over [0, 1] and linearly on beyond.
//
// The record owns nothing, and the edge has no source. Cost: constant.
#include <utility>

#include "cad/accessors.h"
#include "cad/derived/plain_record.h"
#include "cad/lifetime.h"

namespace korvane {

namespace {

// -- Record

struct Segment {
    double start_u, start_v;
    double end_u, end_v;
};

// -- Evaluate

korvane_status_t evaluate(double t, double *uv, double *dt, double *dtt, void *user_data)
{
    const auto &[start_u, start_v, end_u, end_v] = *static_cast<const Segment *>(user_data);
    put_uv(uv, (1 - t) * start_u + t * end_u, (1 - t) * start_v + t * end_v);
    put_uv(dt, end_u - start_u, end_v - start_v);
    put_uv(dtt, 0, 0);
    return STATUS_OK;
}

// -- Clone: copy_record; release: release_record

} // namespace

} // namespace korvane

using namespace korvane;

// -- Constructor

extern "C" {

korvane_cad_edge_t *korvane_cad_edge_new_segment(
    korvane_cad_face_t *face, uint32_t id, const double uv0[2], const double uv1[2])
{
    Owned<korvane_cad_edge_t> edge = try_begin_edge(face);
    Owned<Segment> record = create_owned<Segment>();
    if (!edge || !record)
        return nullptr;
    *record = {uv0[0], uv0[1], uv1[0], uv1[1]};
    edge->id = id;
    edge->tmin = 0;
    edge->tmax = 1;
    give_curve(*edge, evaluate, std::move(record));
    return place(std::move(edge), face);
}

} // extern "C"
