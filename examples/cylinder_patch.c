/*
 * A CAD model of one face: a piece of a cylinder of radius 2 and height 3, which is periodic in u, with its
 * two rims as edges whose curves the client evaluates, and the seam between them as a straight edge that the
 * library evaluates itself. The program walks along all edges, maps them into space through the surface, and
 * adds up their lengths from the tangents; it ends with 0 if the lengths are right and the rims are closed.
 */
#include <korvane.h>

#include <math.h>
#include <stdio.h>

static const double pi = 3.14159265358979323846;
static const double height = 3;

static void set3(double *output, double x, double y, double z)
{
    if (output != NULL) {
        output[0] = x;
        output[1] = y;
        output[2] = z;
    }
}

/* The point and the derivatives of (r cos u, r sin u, v). Outputs that are not asked for are null; zeros need
 * not be written. */
static korvane_status_t cylinder(const double uv[2], double xyz[3], double du[3], double dv[3], double duu[3],
    double duv[3], double dvv[3], void *user_data)
{
    const double r = *(const double *)user_data;
    (void)duv, (void)dvv;
    set3(xyz, r * cos(uv[0]), r * sin(uv[0]), uv[1]);
    set3(du, -r * sin(uv[0]), r * cos(uv[0]), 0);
    set3(dv, 0, 0, 1);
    set3(duu, -r * cos(uv[0]), -r * sin(uv[0]), 0);
    return STATUS_OK;
}

/* The rim (t, v), with its height v as user data. */
static korvane_status_t rim(double t, double uv[2], double dt[2], double dtt[2], void *user_data)
{
    (void)dtt;
    if (uv != NULL) {
        uv[0] = t;
        uv[1] = *(const double *)user_data;
    }
    if (dt != NULL)
        dt[0] = 1;
    return STATUS_OK;
}

/* The length of an edge in space, from its tangents du u'(t) + dv v'(t); where it starts and ends. */
static double measure(const korvane_cad_edge_t *edge, double start[3], double end[3])
{
    enum { STEPS = 100 };
    korvane_cad_face_t *face = NULL;
    double tmin = 0, tmax = 0, length = 0, uv[2], dt[2], du[3], dv[3];
    int i, k;
    korvane_cad_edge_get_face(edge, &face);
    korvane_cad_edge_get_range(edge, &tmin, &tmax);
    for (i = 0; i <= STEPS; ++i) {
        double square = 0;
        korvane_cad_edge_curve(edge, tmin + (tmax - tmin) * i / STEPS, uv, dt, NULL);
        korvane_cad_face_surface(face, uv, i == 0 ? start : end, du, dv, NULL, NULL, NULL);
        for (k = 0; k < 3; ++k)
            square += (du[k] * dt[0] + dv[k] * dt[1]) * (du[k] * dt[0] + dv[k] * dt[1]);
        length += sqrt(square) * (tmax - tmin) / STEPS * (i == 0 || i == STEPS ? 0.5 : 1);
    }
    return length;
}

int main(void)
{
    double radius = 2, bottom = 0, top = height, start[3], end[3];
    const double urange[2] = {0, 2 * pi}, vrange[2] = {0, height}, uv0[2] = {0, 0}, uv1[2] = {0, height};
    const double expected[3] = {4 * pi, 4 * pi, height};
    korvane_context_t *context = korvane_context_new();
    korvane_cad_t *cad = korvane_cad_new(context);
    korvane_cad_face_t *face = korvane_cad_face_new(cad, 1, cylinder, &radius);
    korvane_cad_edge_t *edges[3];
    int i, k, wrong = 0;
    korvane_cad_face_set_surface_parametric_range(face, urange, vrange);
    korvane_cad_face_set_surface_periodicity(face, 1, 0, 2 * pi, 0);
    edges[0] = korvane_cad_edge_new(face, 1, 0, 2 * pi, rim, &bottom);
    edges[1] = korvane_cad_edge_new(face, 2, 0, 2 * pi, rim, &top);
    edges[2] = korvane_cad_edge_new_segment(face, 3, uv0, uv1);
    for (i = 0; i < 3; ++i) {
        const double length = measure(edges[i], start, end);
        printf("edge %d: length %.6f\n", i + 1, length);
        wrong += !(fabs(length - expected[i]) < 1e-9);
        for (k = 0; i < 2 && k < 3; ++k)
            wrong += !(fabs(end[k] - start[k]) < 1e-9);
    }
    korvane_context_delete(context); /* and with it the model and all that is in it */
    return wrong == 0 ? 0 : 1;
}
