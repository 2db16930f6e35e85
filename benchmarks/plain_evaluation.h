// Geometry of a client, and the evaluation of derived geometry written down as plainly as it can be: what it
// costs to zero the outputs, to call the client's function and to do the arithmetic.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include <korvane.h>

namespace korvane::benchmarks {

using Uv = std::array<double, 2>;

struct SurfaceValues {
    double xyz[3], du[3], dv[3], duu[3], duv[3], dvv[3];
};

struct CurveValues {
    double uv[2], dt[2], dtt[2];
};

// The client's functions.

/// (u, v, u^2 + v^2) with its derivatives.
korvane_status_t paraboloid(const double *uv, double *xyz, double *du, double *dv, double *duu, double *duv,
    double *dvv, void *user_data);

/// (t, t^2) with its derivatives.
korvane_status_t parabola(double t, double *uv, double *dt, double *dtt, void *user_data);

/// (t, t^2, t^3).
korvane_status_t twisted_cubic(double t, double *xyz, void *user_data);

// Plain evaluations: all outputs are wanted.

korvane_status_t zero_and_call(korvane_cad_surface_t surface, const Uv &uv, SurfaceValues &values);
korvane_status_t zero_and_call(korvane_cad_curve_t curve, double t, CurveValues &values);
korvane_status_t zero_and_call(korvane_cad_curve3d_t curve, double t, double xyz[3]);

/// The surface at (factors[0] u + offsets[0], factors[1] v + offsets[1]).
korvane_status_t evaluate_transformed(
    korvane_cad_surface_t surface, const Uv &factors, const Uv &offsets, const Uv &uv, SurfaceValues &values);

/// (factors[0] u + offsets[0], factors[1] v + offsets[1]) of the curve.
korvane_status_t evaluate_image(
    korvane_cad_curve_t curve, const Uv &factors, const Uv &offsets, double t, CurveValues &values);

korvane_status_t evaluate_segment(const Uv &start, const Uv &end, double t, CurveValues &values);

/// A polyline of three points or more, by the lengths of its chords.
struct PlainPolyline {
    explicit PlainPolyline(const std::vector<Uv> &points);

    std::vector<double> s;
    std::vector<Uv> points;
};
korvane_status_t evaluate_polyline(const PlainPolyline &polyline, double t, CurveValues &values);

/// Central differences over h: the curve must go on beyond t on either side.
korvane_status_t evaluate_differences(korvane_cad_curve_t curve, double h, double t, CurveValues &values);

} // namespace korvane::benchmarks
