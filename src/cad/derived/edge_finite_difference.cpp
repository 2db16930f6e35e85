// Edges of client functions that give positions only: derivatives are finite differences, kept inside the
// interval by one-sided stencils at its ends.
//
// Cost: up to six calls of the client's function per evaluation, in the order second derivative, first
// derivative, point. Kept on purpose: that order, and the order of the calls within a stencil, because the
// client's function can see it.
#include <algorithm>
#include <array>
#include <utility>

#include "cad/accessors.h"
#include "cad/derived/plain_record.h"
#include "cad/lifetime.h"
#include "common/try.h"

namespace korvane {

namespace {

// -- Record

struct FiniteDifference {
    korvane_cad_curve_t function;
    void *user_data; // not owned
    double h;        // the step
    double tmin, tmax;
};

// -- Evaluate

using Position = std::array<double, 2>;

korvane_status_t locate(const FiniteDifference &record, double t, Position &position)
{
    position = {};
    return record.function(t, position.data(), nullptr, nullptr, record.user_data);
}

/// (c - 2b + a) / h^2 from three neighbouring positions.
korvane_status_t differentiate_twice(const FiniteDifference &record, double t, double *dtt)
{
    const double h = record.h;
    std::array<double, 3> at;
    if (t - h >= record.tmin && t + h <= record.tmax) {
        at = {t - h, t, t + h};
    } else if (t + 2 * h <= record.tmax) {
        at = {t, t + h, t + 2 * h};
    } else if (t - 2 * h >= record.tmin) {
        at = {t, t - h, t - 2 * h};
    } else {
        put_uv(dtt, 0, 0);
        return STATUS_ERROR;
    }
    Position a, b, c;
    TRY(locate(record, at[0], a));
    TRY(locate(record, at[1], b));
    TRY(locate(record, at[2], c));
    put_uv(dtt, (c[0] - 2 * b[0] + a[0]) / (h * h), (c[1] - 2 * b[1] + a[1]) / (h * h));
    return STATUS_OK;
}

/// (after - before) / h from two positions at distance h; the later one is asked for first.
korvane_status_t differentiate(const FiniteDifference &record, double t, double *dt)
{
    const double h = record.h;
    double later = 0;
    double earlier = 0;
    if (t - h / 2 >= record.tmin && t + h / 2 <= record.tmax) {
        later = t + h / 2;
        earlier = t - h / 2;
    } else if (t + h <= record.tmax) {
        later = t + h;
        earlier = t;
    } else if (t - h >= record.tmin) {
        later = t;
        earlier = t - h;
    } else {
        put_uv(dt, 0, 0);
        return STATUS_ERROR;
    }
    Position after, before;
    TRY(locate(record, later, after));
    TRY(locate(record, earlier, before));
    put_uv(dt, (after[0] - before[0]) / h, (after[1] - before[1]) / h);
    return STATUS_OK;
}

korvane_status_t evaluate(double t, double *uv, double *dt, double *dtt, void *user_data)
{
    const auto &record = *static_cast<const FiniteDifference *>(user_data);
    if (dtt != nullptr)
        TRY(differentiate_twice(record, t, dtt));
    if (dt != nullptr)
        TRY(differentiate(record, t, dt));
    return uv == nullptr ? STATUS_OK : record.function(t, uv, nullptr, nullptr, record.user_data);
}

// -- Clone: copy_record; release: release_record

} // namespace

} // namespace korvane

using namespace korvane;

// -- Constructor

extern "C" {

korvane_cad_edge_t *korvane_cad_edge_new0(korvane_cad_face_t *face, uint32_t id, double tmin, double tmax,
    korvane_cad_curve_t function, void *user_data)
{
    if (face == nullptr)
        return nullptr;
    Owned<korvane_cad_edge_t> edge = try_begin_edge(face);
    Owned<FiniteDifference> record = create_owned<FiniteDifference>();
    if (!edge || !record)
        return nullptr;
    *record = {function, user_data, std::max(1e-7, 0.001 * (tmax - tmin)), tmin, tmax};
    edge->id = id;
    edge->tmin = tmin;
    edge->tmax = tmax;
    put_flag(edge->flags, EDGE_APPROXIMATE_DERIVATIVES, true);
    give_curve(*edge, evaluate, std::move(record));
    return place(std::move(edge), face);
}

} // extern "C"
