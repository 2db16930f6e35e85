// The plain evaluations. They are in a file of their own, so that no compiler sees through a call.
#include "plain_evaluation.h"

#include <cmath>
#include <cstddef>

namespace korvane::benchmarks {

namespace {

void put(double *output, double x, double y, double z)
{
    if (output == nullptr)
        return;
    output[0] = x;
    output[1] = y;
    output[2] = z;
}

void put(double *output, double u, double v)
{
    if (output == nullptr)
        return;
    output[0] = u;
    output[1] = v;
}

void scale(double (&vector)[3], double factor)
{
    for (double &component : vector)
        component *= factor;
}

} // namespace

korvane_status_t paraboloid(
    const double *uv, double *xyz, double *du, double *dv, double *duu, double *duv, double *dvv, void *)
{
    const double u = uv[0];
    const double v = uv[1];
    put(xyz, u, v, u * u + v * v);
    put(du, 1, 0, 2 * u);
    put(dv, 0, 1, 2 * v);
    put(duu, 0, 0, 2);
    put(duv, 0, 0, 0);
    put(dvv, 0, 0, 2);
    return STATUS_OK;
}

korvane_status_t parabola(double t, double *uv, double *dt, double *dtt, void *)
{
    put(uv, t, t * t);
    put(dt, 1, 2 * t);
    put(dtt, 0, 2);
    return STATUS_OK;
}

korvane_status_t twisted_cubic(double t, double *xyz, void *)
{
    put(xyz, t, t * t, t * t * t);
    return STATUS_OK;
}

korvane_status_t zero_and_call(korvane_cad_surface_t surface, const Uv &uv, SurfaceValues &values)
{
    auto &[xyz, du, dv, duu, duv, dvv] = values;
    for (double *output : {xyz, du, dv, duu, duv, dvv})
        put(output, 0, 0, 0);
    return surface(uv.data(), xyz, du, dv, duu, duv, dvv, nullptr);
}

korvane_status_t zero_and_call(korvane_cad_curve_t curve, double t, CurveValues &values)
{
    auto &[uv, dt, dtt] = values;
    for (double *output : {uv, dt, dtt})
        put(output, 0, 0);
    return curve(t, uv, dt, dtt, nullptr);
}

korvane_status_t zero_and_call(korvane_cad_curve3d_t curve, double t, double xyz[3])
{
    put(xyz, 0, 0, 0);
    return curve(t, xyz, nullptr);
}

korvane_status_t evaluate_transformed(
    korvane_cad_surface_t surface, const Uv &factors, const Uv &offsets, const Uv &uv, SurfaceValues &values)
{
    const auto [ru, rv] = factors;
    const korvane_status_t status =
        zero_and_call(surface, {ru * uv[0] + offsets[0], rv * uv[1] + offsets[1]}, values);
    if (status != STATUS_OK)
        return status;
    scale(values.du, ru);
    scale(values.dv, rv);
    scale(values.duu, ru * ru);
    scale(values.duv, ru * rv);
    scale(values.dvv, rv * rv);
    return STATUS_OK;
}

korvane_status_t evaluate_image(
    korvane_cad_curve_t curve, const Uv &factors, const Uv &offsets, double t, CurveValues &values)
{
    const korvane_status_t status = zero_and_call(curve, t, values);
    if (status != STATUS_OK)
        return status;
    for (std::size_t i = 0; i < 2; ++i) {
        values.uv[i] = factors[i] * values.uv[i] + offsets[i];
        values.dt[i] *= factors[i];
        values.dtt[i] *= factors[i] * factors[i];
    }
    return STATUS_OK;
}

korvane_status_t evaluate_segment(const Uv &start, const Uv &end, double t, CurveValues &values)
{
    for (std::size_t i = 0; i < 2; ++i) {
        values.uv[i] = (1 - t) * start[i] + t * end[i];
        values.dt[i] = end[i] - start[i];
        values.dtt[i] = 0;
    }
    return STATUS_OK;
}

PlainPolyline::PlainPolyline(const std::vector<Uv> &given) : s(given.size()), points(given)
{
    for (std::size_t i = 1; i < s.size(); ++i)
        s[i] = s[i - 1] + std::hypot(points[i][0] - points[i - 1][0], points[i][1] - points[i - 1][1]);
}

korvane_status_t evaluate_polyline(const PlainPolyline &polyline, double t, CurveValues &values)
{
    const auto &[s, points] = polyline;
    const std::size_t last = s.size() - 1;
    std::size_t lo = 0, hi = last;
    while (hi - lo > 1) {
        const std::size_t mid = (lo + hi) / 2;
        const bool is_after = s[mid] > t;
        lo = is_after ? lo : mid;
        hi = is_after ? mid : hi;
    }
    const double inverse = 1 / (s[hi] - s[lo]);
    const double a = (t - s[lo]) * inverse;
    const std::size_t before = lo == 0 ? 0 : lo - 1, after = hi == last ? lo : hi;
    const double inverse_before = 1 / (s[before + 1] - s[before]),
                 inverse_after = 1 / (s[after + 1] - s[after]);
    for (std::size_t i = 0; i < 2; ++i) {
        values.uv[i] = (1 - a) * points[lo][i] + a * points[hi][i];
        values.dt[i] = (points[hi][i] - points[lo][i]) * inverse;
        values.dtt[i] = ((points[after + 1][i] - points[after][i]) * inverse_after -
                            (points[before + 1][i] - points[before][i]) * inverse_before) *
                        inverse;
    }
    return STATUS_OK;
}

korvane_status_t evaluate_differences(korvane_cad_curve_t curve, double h, double t, CurveValues &values)
{
    double a[2], b[2], c[2], after[2], before[2];
    curve(t - h, a, nullptr, nullptr, nullptr);
    curve(t, b, nullptr, nullptr, nullptr);
    curve(t + h, c, nullptr, nullptr, nullptr);
    curve(t + h / 2, after, nullptr, nullptr, nullptr);
    curve(t - h / 2, before, nullptr, nullptr, nullptr);
    for (std::size_t i = 0; i < 2; ++i) {
        values.dtt[i] = (c[i] - 2 * b[i] + a[i]) / (h * h);
        values.dt[i] = (after[i] - before[i]) / h;
    }
    return curve(t, values.uv, nullptr, nullptr, nullptr);
}

} // namespace korvane::benchmarks
