// Evaluations of faces and edges, one per iteration, each beside the direct call of the client's function and
// beside the same evaluation written plainly. The table at the end gives the times per call and their ratios.
//
// Parameters are random, so that neither a bisection nor a branch is foreseen.
#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <korvane.h>

#include "plain_evaluation.h"
#include "ratio_report.h"

namespace korvane::benchmarks {
namespace {

constexpr std::size_t place_count = 1024;

/// Inside of all intervals, and far enough from their ends for central differences.
const std::vector<Uv> &places()
{
    static const std::vector<Uv> random_places = [] {
        std::mt19937 engine(20110810);
        std::uniform_real_distribution<double> inside(0.01, 0.99);
        std::vector<Uv> made(place_count);
        for (Uv &place : made)
            place = {inside(engine), inside(engine)};
        return made;
    }();
    return random_places;
}

/// Of a thousand points on a circle.
std::vector<Uv> circle()
{
    std::vector<Uv> points;
    for (int i = 0; i < 1000; ++i)
        points.push_back({std::cos(0.006 * i), std::sin(0.006 * i)});
    return points;
}

/// `evaluate` takes a place, for curves the number that it begins with.
template <class Evaluate>
void add(const std::string &name, Evaluate evaluate)
{
    benchmark::RegisterBenchmark(name.c_str(), [evaluate](benchmark::State &state) {
        const Uv *place = places().data();
        std::size_t i = 0;
        for ([[maybe_unused]] auto _ : state) {
            benchmark::DoNotOptimize(evaluate(place[i++ % place_count]));
            benchmark::ClobberMemory();
        }
    });
}

/// A function of the client that no compiler knows at the place of the call.
template <class Function>
Function opaque(Function function)
{
    benchmark::DoNotOptimize(function);
    return function;
}

SurfaceValues surface_values;
CurveValues curve_values;
double position[3];

korvane_status_t evaluate(const korvane_cad_face_t *face, const Uv &uv)
{
    auto &[xyz, du, dv, duu, duv, dvv] = surface_values;
    return korvane_cad_face_surface(face, uv.data(), xyz, du, dv, duu, duv, dvv);
}

korvane_status_t evaluate(const korvane_cad_edge_t *edge, double t)
{
    auto &[uv, dt, dtt] = curve_values;
    return korvane_cad_edge_curve(edge, t, uv, dt, dtt);
}

void add_face(const std::string &name, const korvane_cad_face_t *face)
{
    const korvane_cad_surface_t surface = opaque(paraboloid);
    add(name, [face](const Uv &uv) { return evaluate(face, uv); });
    add(name + "/direct call", [surface](const Uv &uv) {
        auto &[xyz, du, dv, duu, duv, dvv] = surface_values;
        return surface(uv.data(), xyz, du, dv, duu, duv, dvv, nullptr);
    });
}

void add_edge(const std::string &name, const korvane_cad_edge_t *edge)
{
    const korvane_cad_curve_t curve = opaque(parabola);
    add(name, [edge](const Uv &place) { return evaluate(edge, place[0]); });
    add(name + "/direct call", [curve](const Uv &place) {
        auto &[uv, dt, dtt] = curve_values;
        return curve(place[0], uv, dt, dtt, nullptr);
    });
}

void add_faces(korvane_cad_t *cad)
{
    const korvane_cad_surface_t surface = opaque(paraboloid);
    const Uv scale = {2, 4}, translation = {0.25, -0.5}, reciprocal = {0.5, 0.25};
    korvane_cad_face_t *face = korvane_cad_face_new(cad, 1, paraboloid, nullptr);
    korvane_cad_face_t *transformed = korvane_cad_face_new_pafftrans(
        cad, korvane_cad_face_clone(face), 2, scale.data(), translation.data(), nullptr, 0);
    korvane_cad_face_t *copy = korvane_cad_face_new_copy(face);
    korvane_cad_face_t *copy_of_transformed = korvane_cad_face_new_copy(transformed);
    korvane_cad_face_attach(copy, cad);
    korvane_cad_face_attach(copy_of_transformed, cad);

    const auto add_plain = [surface](const std::string &name) {
        add(name + "/zero and call",
            [surface](const Uv &uv) { return zero_and_call(surface, uv, surface_values); });
    };
    const auto add_plain_transformed = [=](const std::string &name) {
        add(name + "/plain arithmetic", [=](const Uv &uv) {
            return evaluate_transformed(surface, reciprocal, translation, uv, surface_values);
        });
    };
    add_face("face", face);
    add_plain("face");
    add_face("copy of face", copy);
    add_plain("copy of face");
    add_face("transformed face", transformed);
    add_plain_transformed("transformed face");
    add_face("copy of transformed face", copy_of_transformed);
    add_plain_transformed("copy of transformed face");
}

void add_edges_of_curve(korvane_cad_face_t *face)
{
    const korvane_cad_curve_t curve = opaque(parabola);
    const Uv factors = {2, 4}, offsets = {0.25, -0.5};
    korvane_cad_edge_t *edge = korvane_cad_edge_new(face, 1, 0, 1, parabola, nullptr);
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    korvane_cad_edge_attach(copy, face);
    korvane_cad_edge_t *image = korvane_cad_edge_new_afftrans(face, edge, 2, factors.data(), offsets.data());
    korvane_cad_edge_t *differences = korvane_cad_edge_new0(face, 3, 0, 1, parabola, nullptr);

    for (const auto &[name, each] : {std::pair("edge", edge), std::pair("copy of edge", copy)}) {
        add_edge(name, each);
        add(std::string(name) + "/zero and call",
            [curve](const Uv &place) { return zero_and_call(curve, place[0], curve_values); });
    }
    add_edge("transformed edge", image);
    add("transformed edge/plain arithmetic",
        [=](const Uv &place) { return evaluate_image(curve, factors, offsets, place[0], curve_values); });
    add_edge("finite-difference edge", differences);
    add("finite-difference edge/plain arithmetic",
        [curve](const Uv &place) { return evaluate_differences(curve, 0.001, place[0], curve_values); });
}

void add_edge_in_space(korvane_cad_face_t *face)
{
    const korvane_cad_curve3d_t curve = opaque(twisted_cubic);
    korvane_cad_edge_t *edge = korvane_cad_edge_new(face, 1, 0, 1, parabola, nullptr);
    korvane_cad_edge_set_curve3d(edge, twisted_cubic, nullptr);
    add("edge in space",
        [edge](const Uv &place) { return korvane_cad_edge_curve3d(edge, place[0], position); });
    add("edge in space/direct call", [curve](const Uv &place) { return curve(place[0], position, nullptr); });
    add("edge in space/zero and call",
        [curve](const Uv &place) { return zero_and_call(curve, place[0], position); });
}

void add_edges_of_points(korvane_cad_face_t *face)
{
    static const Uv start = {0.1, 0.2}, end = {0.7, 0.9};
    static const PlainPolyline plain(circle());
    const double length = plain.s.back();
    korvane_cad_edge_t *segment = korvane_cad_edge_new_segment(face, 1, start.data(), end.data());
    korvane_cad_edge_t *polyline = korvane_cad_edge_new_newton1(
        face, 2, static_cast<int32_t>(plain.points.size()), plain.points.front().data());
    add("segment", [segment](const Uv &place) { return evaluate(segment, place[0]); });
    add("segment/plain arithmetic",
        [](const Uv &place) { return evaluate_segment(start, end, place[0], curve_values); });
    add("polyline", [=](const Uv &place) { return evaluate(polyline, place[0] * length); });
    add("polyline/plain arithmetic",
        [=](const Uv &place) { return evaluate_polyline(plain, place[0] * length, curve_values); });
}

} // namespace
} // namespace korvane::benchmarks

int main(int argc, char **argv)
{
    using namespace korvane::benchmarks;
    korvane_context_t *context = korvane_context_new();
    korvane_cad_t *cad = korvane_cad_new(context);
    korvane_cad_face_t *face = korvane_cad_face_new(cad, 9, paraboloid, nullptr);
    if (face == nullptr)
        return 1;
    add_faces(cad);
    add_edges_of_curve(face);
    add_edge_in_space(face);
    add_edges_of_points(face);
    const int result = run_with_ratios(argc, argv);
    korvane_context_delete(context);
    return result;
}
