// Faces: the evaluation of their surfaces, what is stored for the client, their ranges and periodicity.
//
// Cost: an evaluation zeroes the outputs and makes one indirect call.
#include <cmath>

#include "cad/accessors.h"
#include "cad/lifetime.h"
#include "common/try.h"

namespace korvane {

namespace {

/// How often one parameter is clamped; what is not a number stays. Kept on purpose: an inverted range clamps
/// twice and leaves the upper bound, because either bound is compared for itself.
int32_t clamp(double &parameter, double lower, double upper)
{
    int32_t count = 0;
    if (lower > parameter) {
        parameter = lower;
        ++count;
    }
    if (parameter > upper) {
        parameter = upper;
        ++count;
    }
    return count;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_cad_face_t *korvane_cad_face_new(
    korvane_cad_t *cad, uint32_t id, korvane_cad_surface_t surface, void *user_data)
{
    if (cad == nullptr)
        return nullptr;
    Owned<korvane_cad_face_t> face = try_begin_face(cad);
    if (!face)
        return nullptr;
    face->id = id;
    face->surface = surface;
    face->surface_user_data = user_data;
    return place(std::move(face), cad);
}

void korvane_cad_face_delete(korvane_cad_face_t *face)
{
    if (face != nullptr)
        release(*face);
}

korvane_cad_face_t *korvane_cad_face_clone(korvane_cad_face_t *face)
{
    if (face != nullptr)
        retain(*face);
    return face;
}

korvane_status_t korvane_cad_face_attach(korvane_cad_face_t *face, korvane_cad_t *cad)
{
    if (face == nullptr || cad == nullptr)
        return STATUS_ERROR;
    return attach(*face, *cad);
}

korvane_status_t korvane_cad_face_get_cad(const korvane_cad_face_t *face, korvane_cad_t **cad)
{
    if (cad == nullptr)
        return STATUS_ERROR;
    return get_field(face, &korvane_cad_face_t::cad, cad);
}

korvane_status_t korvane_cad_face_surface(const korvane_cad_face_t *face, const double uv[2], double xyz[3],
    double du[3], double dv[3], double duu[3], double duv[3], double dvv[3])
{
    if (face == nullptr)
        return STATUS_ERROR;
    clear_output<3>(xyz);
    clear_output<3>(du);
    clear_output<3>(dv);
    clear_output<3>(duu);
    clear_output<3>(duv);
    clear_output<3>(dvv);
    return face->surface(uv, xyz, du, dv, duu, duv, dvv, face->surface_user_data);
}

korvane_status_t korvane_cad_face_get_surf(
    const korvane_cad_face_t *face, korvane_cad_surface_t *surface, void **user_data)
{
    if (face == nullptr)
        return STATUS_ERROR;
    *surface = face->surface;
    *user_data = face->surface_user_data;
    return STATUS_OK;
}

korvane_status_t korvane_cad_face_set_delete_function(
    korvane_cad_face_t *face, korvane_user_data_delete_t function)
{
    return set_delete_function(face, function);
}

korvane_status_t korvane_cad_face_set_clone_function(
    korvane_cad_face_t *face, korvane_user_data_clone_t function)
{
    return set_clone_function(face, function);
}

korvane_status_t korvane_cad_face_set_id(korvane_cad_face_t *face, uint32_t id)
{
    return set_field(face, &Identity::id, id);
}

korvane_status_t korvane_cad_face_get_id(const korvane_cad_face_t *face, uint32_t *id)
{
    return get_field(face, &Identity::id, id);
}

korvane_status_t korvane_cad_face_set_uid(korvane_cad_face_t *face, uint32_t uid)
{
    return set_field(face, &Identity::uid, uid);
}

korvane_status_t korvane_cad_face_get_uid(const korvane_cad_face_t *face, uint32_t *uid)
{
    return get_field(face, &Identity::uid, uid);
}

korvane_status_t korvane_cad_face_set_orientation(korvane_cad_face_t *face, int32_t orientation)
{
    return set_field(face, &Identity::orientation, orientation);
}

korvane_status_t korvane_cad_face_get_orientation(const korvane_cad_face_t *face, int32_t *orientation)
{
    return get_field(face, &Identity::orientation, orientation);
}

korvane_status_t korvane_cad_face_set_tag(korvane_cad_face_t *face, uint32_t tag)
{
    TRY(set_field(face, &Identity::tag, tag));
    note_in_model(face, CAD_USE_FTAG);
    return STATUS_OK;
}

korvane_status_t korvane_cad_face_get_tag(const korvane_cad_face_t *face, uint32_t *tag)
{
    return get_field(face, &Identity::tag, tag);
}

korvane_status_t korvane_cad_face_set_surface_parametric_range(
    korvane_cad_face_t *face, const double urange[2], const double vrange[2])
{
    if (face == nullptr || urange == nullptr || vrange == nullptr)
        return STATUS_ERROR;
    face->umin = urange[0];
    face->umax = urange[1];
    face->vmin = vrange[0];
    face->vmax = vrange[1];
    put_flag(face->flags, FACE_HAS_RANGE, true);
    return STATUS_OK;
}

korvane_status_t korvane_cad_face_has_surface_parametric_range(const korvane_cad_face_t *face, int32_t *flag)
{
    if (flag == nullptr)
        return STATUS_ERROR;
    return get_flag(face, FACE_HAS_RANGE, flag);
}

korvane_status_t korvane_cad_face_get_surface_parametric_range(
    const korvane_cad_face_t *face, double urange[2], double vrange[2])
{
    if (face == nullptr)
        return STATUS_ERROR;
    const bool bounded = has_flag(face->flags, FACE_HAS_RANGE);
    urange[0] = bounded ? face->umin : -HUGE_VAL;
    urange[1] = bounded ? face->umax : HUGE_VAL;
    vrange[0] = bounded ? face->vmin : -HUGE_VAL;
    vrange[1] = bounded ? face->vmax : HUGE_VAL;
    return STATUS_OK;
}

korvane_status_t korvane_cad_face_check_point_parametric_range(
    const korvane_cad_face_t *face, double uv[2], int32_t *clamp_count)
{
    if (face == nullptr)
        return STATUS_ERROR;
    if (!has_flag(face->flags, FACE_HAS_RANGE))
        return STATUS_OK;
    int32_t count = 0;
    if (!has_flag(face->flags, FACE_PERIODIC_U))
        count += clamp(uv[0], face->umin, face->umax);
    if (!has_flag(face->flags, FACE_PERIODIC_V))
        count += clamp(uv[1], face->vmin, face->vmax);
    put_output(clamp_count, count);
    return STATUS_OK;
}

korvane_status_t korvane_cad_face_set_surface_periodicity(
    korvane_cad_face_t *face, int32_t periodic_u, int32_t periodic_v, double period_u, double period_v)
{
    if (face == nullptr)
        return STATUS_ERROR;
    put_flag(face->flags, FACE_PERIODIC_U, periodic_u != 0);
    put_flag(face->flags, FACE_PERIODIC_V, periodic_v != 0);
    if (periodic_u != 0)
        face->period_u = period_u;
    if (periodic_v != 0)
        face->period_v = period_v;
    // Kept on purpose: also for no direction, because that is a declaration, too.
    put_flag(face->flags, FACE_HAS_PERIODICITY, true);
    return STATUS_OK;
}

korvane_status_t korvane_cad_face_has_surface_periodicity(const korvane_cad_face_t *face, int32_t *flag)
{
    if (flag == nullptr)
        return STATUS_ERROR;
    return get_flag(face, FACE_HAS_PERIODICITY, flag);
}

korvane_status_t korvane_cad_face_get_surface_periodicity(const korvane_cad_face_t *face, int32_t *periodic_u,
    int32_t *periodic_v, double *period_u, double *period_v)
{
    if (face == nullptr)
        return STATUS_ERROR;
    const bool declared = has_flag(face->flags, FACE_HAS_PERIODICITY);
    const bool in_u = declared && has_flag(face->flags, FACE_PERIODIC_U);
    const bool in_v = declared && has_flag(face->flags, FACE_PERIODIC_V);
    put_output(periodic_u, int32_t{in_u});
    put_output(periodic_v, int32_t{in_v});
    put_output(period_u, in_u ? face->period_u : 0);
    put_output(period_v, in_v ? face->period_v : 0);
    return STATUS_OK;
}

korvane_status_t korvane_cad_face_get_edge_count(const korvane_cad_face_t *face, int32_t *count)
{
    return get_field(face, &korvane_cad_face_t::edge_count, count);
}

korvane_status_t korvane_cad_face_get_edge(
    const korvane_cad_face_t *face, int32_t index, korvane_cad_edge_t **edge)
{
    if (face == nullptr)
        return STATUS_ERROR;
    return get_element(face->edges, face->edge_count, index, edge);
}

korvane_status_t korvane_cad_face_get_point_count(const korvane_cad_face_t *face, int32_t *count)
{
    return get_field(face, &korvane_cad_face_t::point_count, count);
}

korvane_status_t korvane_cad_face_get_point(
    const korvane_cad_face_t *face, int32_t index, korvane_cad_point_t **point)
{
    if (face == nullptr)
        return STATUS_ERROR;
    return get_element(face->points, face->point_count, index, point);
}

} // extern "C"
