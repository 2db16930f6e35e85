// Edges: the evaluation of their curves, and what is stored for the client.
//
// Cost: an evaluation zeroes the outputs and makes one indirect call.
#include "cad/accessors.h"
#include "cad/lifetime.h"
#include "common/try.h"

using namespace korvane;

extern "C" {

korvane_cad_edge_t *korvane_cad_edge_new(korvane_cad_face_t *face, uint32_t id, double tmin, double tmax,
    korvane_cad_curve_t curve, void *user_data)
{
    if (face == nullptr)
        return nullptr;
    Owned<korvane_cad_edge_t> edge = try_begin_edge(face);
    if (!edge)
        return nullptr;
    edge->id = id;
    edge->tmin = tmin;
    edge->tmax = tmax;
    edge->curve = curve;
    edge->curve_user_data = user_data;
    return place(std::move(edge), face);
}

void korvane_cad_edge_delete(korvane_cad_edge_t *edge)
{
    if (edge != nullptr)
        release(*edge);
}

korvane_cad_edge_t *korvane_cad_edge_clone(korvane_cad_edge_t *edge)
{
    if (edge != nullptr)
        retain(*edge);
    return edge;
}

korvane_status_t korvane_cad_edge_attach(korvane_cad_edge_t *edge, korvane_cad_face_t *face)
{
    if (edge == nullptr || face == nullptr)
        return STATUS_ERROR;
    return attach(*edge, *face);
}

korvane_status_t korvane_cad_edge_get_face(const korvane_cad_edge_t *edge, korvane_cad_face_t **face)
{
    if (face == nullptr)
        return STATUS_ERROR;
    *face = nullptr;
    return get_field(edge, &korvane_cad_edge_t::face, face);
}

korvane_status_t korvane_cad_edge_curve(
    const korvane_cad_edge_t *edge, double t, double uv[2], double dt[2], double dtt[2])
{
    if (edge == nullptr)
        return STATUS_ERROR;
    clear_output<2>(uv);
    clear_output<2>(dt);
    clear_output<2>(dtt);
    return edge->curve(t, uv, dt, dtt, edge->curve_user_data);
}

korvane_status_t korvane_cad_edge_get_curv(
    const korvane_cad_edge_t *edge, korvane_cad_curve_t *curve, void **user_data)
{
    if (edge == nullptr)
        return STATUS_ERROR;
    *curve = edge->curve;
    *user_data = edge->curve_user_data;
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_set_curve3d(
    korvane_cad_edge_t *edge, korvane_cad_curve3d_t curve3d, void *user_data)
{
    if (edge == nullptr)
        return STATUS_ERROR;
    edge->curve3d = curve3d;
    edge->curve3d_user_data = user_data;
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_has_curve3d(const korvane_cad_edge_t *edge, int32_t *flag)
{
    if (edge == nullptr || flag == nullptr)
        return STATUS_ERROR;
    *flag = edge->curve3d != nullptr;
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_get_curve3d(
    const korvane_cad_edge_t *edge, korvane_cad_curve3d_t *curve3d, void **user_data)
{
    if (edge == nullptr)
        return STATUS_ERROR;
    *curve3d = edge->curve3d;
    *user_data = edge->curve3d_user_data;
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_curve3d(const korvane_cad_edge_t *edge, double t, double xyz[3])
{
    if (edge == nullptr || edge->curve3d == nullptr)
        return STATUS_ERROR;
    clear_output<3>(xyz);
    return edge->curve3d(t, xyz, edge->curve3d_user_data);
}

korvane_status_t korvane_cad_edge_set_range(korvane_cad_edge_t *edge, double tmin, double tmax)
{
    if (edge == nullptr)
        return STATUS_ERROR;
    edge->tmin = tmin;
    edge->tmax = tmax;
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_get_range(const korvane_cad_edge_t *edge, double *tmin, double *tmax)
{
    if (edge == nullptr)
        return STATUS_ERROR;
    *tmin = edge->tmin;
    *tmax = edge->tmax;
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_set_extremities(korvane_cad_edge_t *edge, int32_t first, int32_t second)
{
    return set_pair(edge, &EdgeValues::extremities, first, second);
}

korvane_status_t korvane_cad_edge_get_extremities(
    const korvane_cad_edge_t *edge, int32_t *first, int32_t *second)
{
    return get_pair(edge, &EdgeValues::extremities, first, second);
}

korvane_status_t korvane_cad_edge_set_extremities_tag(
    korvane_cad_edge_t *edge, int32_t first_tag, int32_t second_tag)
{
    TRY(set_pair(edge, &EdgeValues::extremities_tag, first_tag, second_tag));
    note_in_model(edge->face, CAD_USE_VTAG);
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_get_extremities_tag(
    const korvane_cad_edge_t *edge, int32_t *first_tag, int32_t *second_tag)
{
    return get_pair(edge, &EdgeValues::extremities_tag, first_tag, second_tag);
}

korvane_status_t korvane_cad_edge_set_uv_extremities(korvane_cad_edge_t *edge, int32_t first, int32_t second)
{
    return set_pair(edge, &EdgeValues::uv_extremities, first, second);
}

korvane_status_t korvane_cad_edge_get_uv_extremities(
    const korvane_cad_edge_t *edge, int32_t *first, int32_t *second)
{
    return get_pair(edge, &EdgeValues::uv_extremities, first, second);
}

korvane_status_t korvane_cad_edge_set_degenerated(korvane_cad_edge_t *edge, int32_t flag)
{
    if (edge == nullptr)
        return STATUS_ERROR;
    put_flag(edge->flags, EDGE_DEGENERATED, flag != 0);
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_get_degenerated(const korvane_cad_edge_t *edge, int32_t *flag)
{
    return get_flag(edge, EDGE_DEGENERATED, flag);
}

korvane_status_t korvane_cad_edge_get_wdef(const korvane_cad_edge_t *edge, int32_t *wdef)
{
    if (wdef == nullptr)
        return STATUS_ERROR;
    *wdef = 0;
    if (edge == nullptr)
        return STATUS_ERROR;
    *wdef = !has_flag(edge->flags, EDGE_APPROXIMATE_DERIVATIVES);
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_set_property(korvane_cad_edge_t *edge, uint32_t mask)
{
    if (edge == nullptr)
        return STATUS_ERROR;
    edge->properties |= mask;
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_unset_property(korvane_cad_edge_t *edge, uint32_t mask)
{
    if (edge == nullptr)
        return STATUS_ERROR;
    edge->properties &= ~mask;
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_query_property(
    const korvane_cad_edge_t *edge, uint32_t mask, int32_t *result)
{
    if (edge == nullptr)
        return STATUS_ERROR;
    *result = (edge->properties & mask) != 0;
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_set_orientation(korvane_cad_edge_t *edge, int32_t value)
{
    // Kept on purpose: alone among the setters this one does not test for null, because the caller has to.
    edge->orientation = value;
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_get_orientation(const korvane_cad_edge_t *edge, int32_t *value)
{
    return get_field(edge, &Identity::orientation, value);
}

korvane_status_t korvane_cad_edge_set_coorientation(korvane_cad_edge_t *edge, int32_t value)
{
    return set_field(edge, &EdgeValues::coorientation, value);
}

korvane_status_t korvane_cad_edge_get_coorientation(const korvane_cad_edge_t *edge, int32_t *value)
{
    return get_field(edge, &EdgeValues::coorientation, value);
}

korvane_status_t korvane_cad_edge_set_id(korvane_cad_edge_t *edge, uint32_t id)
{
    return set_field(edge, &Identity::id, id);
}

korvane_status_t korvane_cad_edge_get_id(const korvane_cad_edge_t *edge, uint32_t *id)
{
    return get_field(edge, &Identity::id, id);
}

korvane_status_t korvane_cad_edge_set_uid(korvane_cad_edge_t *edge, uint32_t uid)
{
    return set_field(edge, &Identity::uid, uid);
}

korvane_status_t korvane_cad_edge_get_uid(const korvane_cad_edge_t *edge, uint32_t *uid)
{
    return get_field(edge, &Identity::uid, uid);
}

korvane_status_t korvane_cad_edge_set_tag(korvane_cad_edge_t *edge, uint32_t tag)
{
    TRY(set_field(edge, &Identity::tag, tag));
    note_in_model(edge->face, CAD_USE_ETAG);
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_get_tag(const korvane_cad_edge_t *edge, uint32_t *tag)
{
    return get_field(edge, &Identity::tag, tag);
}

korvane_status_t korvane_cad_edge_set_delete_function(
    korvane_cad_edge_t *edge, korvane_user_data_delete_t function)
{
    return set_delete_function(edge, function);
}

korvane_status_t korvane_cad_edge_set_clone_function(
    korvane_cad_edge_t *edge, korvane_user_data_clone_t function)
{
    return set_clone_function(edge, function);
}

} // extern "C"
