// Edges that are affine images of other edges in the parameter plane.
//
// The record holds no reference to the source, but its copies do; the edge pins the source. Cost: one
// evaluation of the source's function.
#include <utility>

#include "cad/derived/plain_record.h"
#include "cad/lifetime.h"
#include "common/try.h"

namespace korvane {

namespace {

// -- Record

struct EdgeTransformation {
    double au, av; // factors
    double bu, bv; // offsets
    korvane_cad_edge_t *source;
};

// -- Evaluate

void scale(double *uv, double factor_u, double factor_v)
{
    if (uv == nullptr)
        return;
    uv[0] *= factor_u;
    uv[1] *= factor_v;
}

void translate(double *uv, double offset_u, double offset_v)
{
    if (uv == nullptr)
        return;
    uv[0] += offset_u;
    uv[1] += offset_v;
}

korvane_status_t evaluate(double t, double *uv, double *dt, double *dtt, void *user_data)
{
    const auto &[au, av, bu, bv, source] = *static_cast<const EdgeTransformation *>(user_data);
    TRY(source->curve(t, uv, dt, dtt, source->curve_user_data));
    scale(uv, au, av);
    translate(uv, bu, bv);
    scale(dt, au, av);
    // Kept on purpose: the second derivative takes the square of the factors, although it is linear in them,
    // because clients rely on the values.
    scale(dtt, au * au, av * av);
    return STATUS_OK;
}

// -- Origin

korvane_status_t find_origin(
    double t, korvane_cad_edge_t **edge, double *t_out, double *tmin_out, double *tmax_out, void *user_data)
{
    const auto &record = *static_cast<const EdgeTransformation *>(user_data);
    return korvane_cad_edge_get_original_geometry(record.source, t, edge, t_out, tmin_out, tmax_out);
}

// -- Clone

/// Kept on purpose: the copy takes a reference that release does not give back, because copies keep their
/// source alive.
void *clone(void *user_data)
{
    void *copy = copy_record<EdgeTransformation>(user_data);
    if (copy != nullptr)
        retain(*static_cast<EdgeTransformation *>(copy)->source);
    return copy;
}

// -- Release: release_record

} // namespace

} // namespace korvane

using namespace korvane;

// -- Constructor

extern "C" {

korvane_cad_edge_t *korvane_cad_edge_new_afftrans(korvane_cad_face_t *face, korvane_cad_edge_t *source,
    uint32_t id, const double factors[2], const double offsets[2])
{
    if (source == nullptr || factors == nullptr || offsets == nullptr)
        return nullptr;
    Owned<korvane_cad_edge_t> edge = try_begin_edge(face);
    Owned<EdgeTransformation> record = create_owned<EdgeTransformation>();
    if (!edge || !record || !try_assign(edge->sources, &source, 1))
        return nullptr;
    // The identifiers come before the edge is placed, so that a failure leaves nothing behind: no edge, and
    // the reference to the source still with the caller.
    edge->original_ids = try_derive(source->original_ids.get(), source->id);
    if (!edge->original_ids)
        return nullptr;
    *record = {factors[0], factors[1], offsets[0], offsets[1], source};
    edge->id = id;
    edge->tag = source->tag;
    edge->orientation = source->orientation;
    edge->tmin = source->tmin;
    edge->tmax = source->tmax;
    edge->properties = source->properties;
    edge->flags = source->flags & EDGE_APPROXIMATE_DERIVATIVES;
    give_curve(*edge, evaluate, std::move(record), release_record<EdgeTransformation>, clone);
    edge->origin_function = find_origin;
    return place(std::move(edge), face);
}

} // extern "C"
