// Polylines in the parameter plane, parametrised by chord length, which may remember the edges and parameters
// that their points come from.
//
// Invariants: s and uv hold n >= 1 points; s does not decrease, and stays where the original edge changes.
// The record holds one reference per run, and the edge pins the run edges. Cost: a bisection per evaluation.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

#include "cad/accessors.h"
#include "cad/derived/plain_record.h"
#include "cad/lifetime.h"
#include "cad/units.h"
#include "common/array.h"
#include "common/memory.h"

namespace korvane {

namespace {

// -- Record

struct Polyline {
    int32_t n;
    Array<double> s;      // abscissas
    Array<double> uv;     // 2 per point
    Array<double> params; // per point, or none
    int32_t run_count;    // runs of points from the same original edge
    Array<korvane_cad_edge_t *> run_edges;
    Array<int32_t> run_starts; // first point of each run, from 0
};

// -- Evaluate

using Vector = std::array<double, 2>;

struct Interval {
    std::size_t lo, hi;
};

/// The segment that t lies in: the first or last one outside, the later one at equal abscissas. Without a
/// branch on t, which is as good as random.
Interval find_segment(const Polyline &polyline, double t)
{
    std::size_t lo = 0;
    std::size_t hi = static_cast<std::size_t>(polyline.n) - 1;
    while (hi - lo > 1) {
        const std::size_t mid = (lo + hi) / 2;
        const bool is_later = polyline.s[mid] > t;
        lo = is_later ? lo : mid;
        hi = is_later ? mid : hi;
    }
    return {lo, hi};
}

/// Kept on purpose: a segment of no length has a large factor instead of none, because its slope then still
/// has a direction.
double inverse(double length)
{
    return length > 0 ? 1 / length : 10000;
}

double fraction(const Polyline &polyline, Interval segment, double t)
{
    const double length = polyline.s[segment.hi] - polyline.s[segment.lo];
    return length > 0 ? (t - polyline.s[segment.lo]) / length : 0;
}

Vector slope(const Polyline &polyline, std::size_t i, std::size_t j)
{
    const double factor = inverse(polyline.s[j] - polyline.s[i]);
    return {(polyline.uv[2 * j] - polyline.uv[2 * i]) * factor,
        (polyline.uv[2 * j + 1] - polyline.uv[2 * i + 1]) * factor};
}

/// Kept on purpose: the difference of slopes is divided by the length of the current segment, also where the
/// centres of the two segments are another distance apart, because clients rely on the values.
Vector second_derivative(const Polyline &polyline, Interval segment)
{
    const auto [lo, hi] = segment;
    const auto last = static_cast<std::size_t>(polyline.n) - 1;
    if (polyline.n <= 2)
        return {0, 0};
    const bool forward = hi != last; // the next segment takes part
    const bool backward = lo != 0;   // the one before takes part
    const Vector after = forward ? slope(polyline, hi, hi + 1) : slope(polyline, lo, hi);
    const Vector before = backward ? slope(polyline, lo - 1, lo) : slope(polyline, lo, hi);
    const double factor = inverse(polyline.s[hi] - polyline.s[lo]);
    return {(after[0] - before[0]) * factor, (after[1] - before[1]) * factor};
}

korvane_status_t evaluate(double t, double *uv, double *dt, double *dtt, void *user_data)
{
    const auto &polyline = *static_cast<const Polyline *>(user_data);
    const Interval segment = find_segment(polyline, t);
    if (uv != nullptr) {
        const double a = fraction(polyline, segment, t);
        const double *from = &polyline.uv[2 * segment.lo];
        const double *to = &polyline.uv[2 * segment.hi];
        put_uv(uv, (1 - a) * from[0] + a * to[0], (1 - a) * from[1] + a * to[1]);
    }
    if (dt != nullptr) {
        const Vector first = slope(polyline, segment.lo, segment.hi);
        put_uv(dt, first[0], first[1]);
    }
    if (dtt != nullptr) {
        const Vector second = second_derivative(polyline, segment);
        put_uv(dtt, second[0], second[1]);
    }
    return STATUS_OK;
}

// -- Origin

/// The run of the point at the start of a segment.
std::size_t find_run(const Polyline &polyline, std::size_t lo)
{
    const auto after =
        std::upper_bound(polyline.run_starts.begin(), polyline.run_starts.end(), static_cast<int32_t>(lo));
    return static_cast<std::size_t>(after - polyline.run_starts.begin()) - 1;
}

korvane_status_t find_origin(
    double t, korvane_cad_edge_t **edge, double *t_out, double *tmin_out, double *tmax_out, void *user_data)
{
    const auto &polyline = *static_cast<const Polyline *>(user_data);
    if (polyline.run_count == 0) // a copy, which has this hook but no runs
        return STATUS_ERROR;
    const Interval segment = find_segment(polyline, t);
    korvane_cad_edge_t *run_edge = polyline.run_edges[find_run(polyline, segment.lo)];
    if (!is_alive(*run_edge))
        return STATUS_ERROR;
    put_output(edge, run_edge);
    // Kept on purpose: no interval without the parameter, because it belongs to the parameter.
    if (t_out == nullptr)
        return STATUS_OK;
    const double a = fraction(polyline, segment, t);
    const double from = polyline.params[segment.lo];
    const double to = polyline.params[segment.hi];
    *t_out = (1 - a) * from + a * to;
    put_output(tmin_out, std::min(from, to));
    put_output(tmax_out, std::max(from, to));
    return STATUS_OK;
}

// -- Clone

/// Kept on purpose: a copy takes neither parameters nor runs, because it would hold the run edges.
void *clone(void *user_data)
{
    const auto &original = *static_cast<const Polyline *>(user_data);
    Owned<Polyline> copy = create_owned<Polyline>();
    if (!copy || !try_assign(copy->s, original.s.data(), original.s.size()) ||
        !try_assign(copy->uv, original.uv.data(), original.uv.size()))
        return nullptr;
    copy->n = original.n;
    return copy.release();
}

// -- Release

void release_polyline(void *user_data)
{
    Owned<Polyline> polyline(static_cast<Polyline *>(user_data));
    for (korvane_cad_edge_t *edge : polyline->run_edges)
        release(*edge);
}

// -- Constructor

bool begins_run(korvane_cad_edge_t *const *edges, std::size_t i)
{
    return i == 0 || edges[i] != edges[i - 1];
}

/// False if memory runs out or a run has no edge.
[[nodiscard]] bool try_set_runs(Polyline &polyline, korvane_cad_edge_t *const *edges)
{
    const auto n = static_cast<std::size_t>(polyline.n);
    std::size_t count = 0;
    for (std::size_t i = 0; i < n; ++i)
        count += begins_run(edges, i);
    if (!polyline.run_edges.try_resize(count) || !polyline.run_starts.try_resize(count))
        return false;
    std::size_t run = 0;
    for (std::size_t i = 0; i < n; ++i) {
        if (!begins_run(edges, i))
            continue;
        if (edges[i] == nullptr)
            return false;
        polyline.run_edges[run] = edges[i];
        polyline.run_starts[run] = static_cast<int32_t>(i);
        ++run;
    }
    polyline.run_count = static_cast<int32_t>(count);
    return true;
}

/// No length is counted where the original edge changes.
void set_abscissas(Polyline &polyline, korvane_cad_edge_t *const *edges)
{
    polyline.s[0] = 0;
    for (std::size_t i = 1; i < polyline.s.size(); ++i) {
        const double du = polyline.uv[2 * i] - polyline.uv[2 * i - 2];
        const double dv = polyline.uv[2 * i + 1] - polyline.uv[2 * i - 1];
        const bool counted = edges == nullptr || !begins_run(edges, i);
        polyline.s[i] = polyline.s[i - 1] + (counted ? std::sqrt(du * du + dv * dv) : 0);
    }
}

[[nodiscard]] Owned<Polyline> try_create_polyline(
    int32_t n, const double *uv, korvane_cad_edge_t *const *edges, const double *params)
{
    const auto count = static_cast<std::size_t>(n);
    Owned<Polyline> polyline = create_owned<Polyline>();
    if (!polyline || !polyline->s.try_resize(count) || !try_assign(polyline->uv, uv, 2 * count))
        return nullptr;
    polyline->n = n;
    if (edges != nullptr && !try_set_runs(*polyline, edges))
        return nullptr;
    if (params != nullptr && !try_assign(polyline->params, params, count))
        return nullptr;
    set_abscissas(*polyline, edges);
    return polyline;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_cad_edge_t *korvane_cad_edge_new_newton1(
    korvane_cad_face_t *face, uint32_t id, int32_t n, const double *uv)
{
    return korvane_cad_edge_new_newton1_with_ea(face, id, n, uv, nullptr, nullptr);
}

korvane_cad_edge_t *korvane_cad_edge_new_newton1_with_ea(korvane_cad_face_t *face, uint32_t id, int32_t n,
    const double *uv, korvane_cad_edge_t *const *edges, const double *params)
{
    if (face == nullptr || n < 1 || uv == nullptr)
        return nullptr;
    Owned<korvane_cad_edge_t> edge = try_begin_edge(face);
    Owned<Polyline> polyline = try_create_polyline(n, uv, edges, params);
    if (!edge || !polyline ||
        !try_assign(edge->sources, polyline->run_edges.data(), polyline->run_edges.size()))
        return nullptr;
    for (korvane_cad_edge_t *run_edge : edge->sources)
        retain(*run_edge);
    edge->id = id;
    edge->tmin = 0;
    edge->tmax = polyline->s[static_cast<std::size_t>(n) - 1];
    give_curve(*edge, evaluate, std::move(polyline), release_polyline, clone);
    edge->origin_function = edges != nullptr && params != nullptr ? find_origin : nullptr;
    return place(std::move(edge), face);
}

} // extern "C"
