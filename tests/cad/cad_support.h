// What the tests of CAD models have in common: a model to work on, geometry with known derivatives, and user
// data that note what happens to them.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "support/failing_allocations.h"

namespace korvane::testing {

using Uv = std::array<double, 2>;
using Xyz = std::array<double, 3>;

/// User data that count how often they are deleted.
struct Counted {
    int deleted = 0;
};

inline void count_deletion(void *user_data)
{
    ++static_cast<Counted *>(user_data)->deleted;
}

/// A surface function that writes nothing.
inline korvane_status_t blank_surface(
    const double *, double *, double *, double *, double *, double *, double *, void *)
{
    return STATUS_OK;
}

/// A curve function that writes nothing.
inline korvane_status_t blank_curve(double, double *, double *, double *, void *)
{
    return STATUS_OK;
}

inline void write(double *output, double x, double y, double z)
{
    if (output != nullptr) {
        output[0] = x;
        output[1] = y;
        output[2] = z;
    }
}

inline void write(double *output, double u, double v)
{
    if (output != nullptr) {
        output[0] = u;
        output[1] = v;
    }
}

/// (u^2 v, u + 3 v^2, u v) with its derivatives.
inline korvane_status_t polynomial_surface(
    const double *uv, double *xyz, double *du, double *dv, double *duu, double *duv, double *dvv, void *)
{
    const double u = uv[0];
    const double v = uv[1];
    write(xyz, u * u * v, u + 3 * v * v, u * v);
    write(du, 2 * u * v, 1, v);
    write(dv, u * u, 6 * v, u);
    write(duu, 2 * v, 0, 0);
    write(duv, 2 * u, 0, 1);
    write(dvv, 0, 6, 0);
    return STATUS_OK;
}

/// (t^3, 1 - t^2) with its derivatives.
inline korvane_status_t polynomial_curve(double t, double *uv, double *dt, double *dtt, void *)
{
    write(uv, t * t * t, 1 - t * t);
    write(dt, 3 * t * t, -2 * t);
    write(dtt, 6 * t, -2);
    return STATUS_OK;
}

/// All that a surface gives at one place.
struct SurfaceValues {
    korvane_status_t status = STATUS_ERROR;
    Xyz xyz{}, du{}, dv{}, duu{}, duv{}, dvv{};
};

inline SurfaceValues evaluate(const korvane_cad_face_t *face, Uv uv)
{
    SurfaceValues values;
    values.status = korvane_cad_face_surface(face, uv.data(), values.xyz.data(), values.du.data(),
        values.dv.data(), values.duu.data(), values.duv.data(), values.dvv.data());
    return values;
}

/// All that a curve gives at one place.
struct CurveValues {
    korvane_status_t status = STATUS_ERROR;
    Uv uv{}, dt{}, dtt{};
};

inline CurveValues evaluate(const korvane_cad_edge_t *edge, double t)
{
    CurveValues values;
    values.status = korvane_cad_edge_curve(edge, t, values.uv.data(), values.dt.data(), values.dtt.data());
    return values;
}

/// What a getter with one output gives; the call must succeed.
template <class Value, class Object>
Value got(korvane_status_t (*getter)(const Object *, Value *), const Object *object)
{
    Value value{};
    EXPECT_EQ(getter(object, &value), STATUS_OK);
    return value;
}

/// The range of a face.
struct Ranges {
    Uv u, v;
    bool operator==(const Ranges &) const = default;
};

inline Ranges ranges_of(const korvane_cad_face_t *face)
{
    Ranges ranges{{-99, -99}, {-99, -99}};
    EXPECT_EQ(
        korvane_cad_face_get_surface_parametric_range(face, ranges.u.data(), ranges.v.data()), STATUS_OK);
    return ranges;
}

/// The periodicity of a face.
struct Periods {
    int32_t is_periodic_u, is_periodic_v;
    double u, v;
    bool operator==(const Periods &) const = default;
};

inline Periods periods_of(const korvane_cad_face_t *face)
{
    Periods periods{-99, -99, -99, -99};
    EXPECT_EQ(korvane_cad_face_get_surface_periodicity(
                  face, &periods.is_periodic_u, &periods.is_periodic_v, &periods.u, &periods.v),
        STATUS_OK);
    return periods;
}

/// The interval of an edge.
inline std::array<double, 2> range_of(const korvane_cad_edge_t *edge)
{
    std::array<double, 2> range = {-99, -99};
    EXPECT_EQ(korvane_cad_edge_get_range(edge, &range[0], &range[1]), STATUS_OK);
    return range;
}

/// A context with a model, which goes with it. A test leaves no memory behind.
class Cad : public ::testing::Test {
  protected:
    ~Cad() override
    {
        korvane_context_delete(context);
        EXPECT_EQ(live_block_count(), blocks_before);
    }

    korvane_cad_face_t *new_face(uint32_t id = 1, void *user_data = nullptr)
    {
        return korvane_cad_face_new(cad, id, blank_surface, user_data);
    }
    static korvane_cad_edge_t *new_edge(korvane_cad_face_t *face, uint32_t id = 1, void *user_data = nullptr)
    {
        return korvane_cad_edge_new(face, id, 0, 1, blank_curve, user_data);
    }
    /// A face whose deletions are counted.
    korvane_cad_face_t *new_counted_face(Counted &data)
    {
        korvane_cad_face_t *face = new_face(1, &data);
        korvane_cad_face_set_delete_function(face, count_deletion);
        return face;
    }
    static korvane_cad_edge_t *new_counted_edge(korvane_cad_face_t *face, Counted &data)
    {
        korvane_cad_edge_t *edge = new_edge(face, 1, &data);
        korvane_cad_edge_set_delete_function(edge, count_deletion);
        return edge;
    }
    void delete_context() { korvane_context_delete(std::exchange(context, nullptr)); }

    const int64_t blocks_before = live_block_count();
    Counted counted; // outlives the model
    korvane_context_t *context = korvane_context_new();
    korvane_cad_t *cad = korvane_cad_new(context);
};

} // namespace korvane::testing
