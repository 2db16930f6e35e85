/*
 * A plane with four straight edges around the unit square, one of which the client wants to be meshed in its
 * own way: with vertices that crowd at one end. It attaches that discretization to the edge in a discrete CAD
 * and hands it to a mesh generator alongside the model. The generator, here `mesh_edges`, takes the vertices
 * that are prescribed and divides every other edge evenly, into an in-memory mesh.
 */
#include <korvane.h>

#include <math.h>
#include <stdio.h>

enum { edge_count = 4, prescribed_edge = 2, prescribed = 9, even = 5 }; /* vertices per edge */

static korvane_status_t evaluate_plane(const double uv[2], double xyz[3], double du[3], double dv[3],
    double duu[3], double duv[3], double dvv[3], void *user_data)
{
    (void)duu, (void)duv, (void)dvv, (void)user_data; /* zeros, as the library has set them */
    if (xyz)
        xyz[0] = uv[0], xyz[1] = uv[1];
    if (du)
        du[0] = 1;
    if (dv)
        dv[1] = 1;
    return STATUS_OK;
}

/* Prescribes vertices at t = (i / n)^2. */
static int prescribe(korvane_dcad_t *dcad, korvane_cad_face_t *face, korvane_cad_edge_t *edge)
{
    korvane_dcad_edge_discretization_t *vertices;
    int32_t i;
    if (korvane_dcad_get_edge_discretization(dcad, edge, &vertices) != STATUS_OK ||
        korvane_dcad_edge_discretization_set_vertex_count(vertices, prescribed) != STATUS_OK)
        return 0;
    for (i = 1; i <= prescribed; ++i) {
        const double s = (i - 1) / (prescribed - 1.0);
        double uv[2], xyz[3];
        if (korvane_cad_edge_curve(edge, s * s, uv, NULL, NULL) != STATUS_OK ||
            korvane_cad_face_surface(face, uv, xyz, NULL, NULL, NULL, NULL, NULL) != STATUS_OK)
            return 0;
        korvane_dcad_edge_discretization_set_vertex_coordinates(vertices, i, s * s, uv, xyz);
    }
    return 1;
}

/* Adds the vertices of all edges to the mesh and returns how many there are, or 0. */
static int32_t mesh_edges(const korvane_dcad_t *dcad, korvane_cad_face_t *face, korvane_mesh_t *mesh)
{
    int32_t index, i, count, total = 0;
    for (index = 1; index <= edge_count; ++index) {
        korvane_dcad_edge_discretization_t *vertices;
        korvane_cad_edge_t *edge;
        if (korvane_cad_face_get_edge(face, index, &edge) != STATUS_OK)
            return 0;
        korvane_dcad_query_edge_discretization(dcad, edge, &vertices);
        count = even;
        if (vertices)
            korvane_dcad_edge_discretization_get_vertex_count(vertices, &count);
        if (korvane_mesh_set_vertex_count(mesh, total + count) != STATUS_OK)
            return 0;
        for (i = 1; i <= count; ++i) {
            double uv[2], xyz[3];
            if (vertices)
                korvane_dcad_edge_discretization_get_vertex_coordinates(vertices, i, NULL, NULL, xyz);
            else if (korvane_cad_edge_curve(edge, (i - 1) / (count - 1.0), uv, NULL, NULL) != STATUS_OK ||
                     korvane_cad_face_surface(face, uv, xyz, NULL, NULL, NULL, NULL, NULL) != STATUS_OK)
                return 0;
            if (korvane_mesh_set_vertex_coordinates(mesh, ++total, xyz) != STATUS_OK)
                return 0;
        }
    }
    return total;
}

int main(void)
{
    static const double corners[edge_count + 1][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}};
    korvane_context_t *context = korvane_context_new();
    korvane_cad_t *cad = korvane_cad_new(context);
    korvane_cad_face_t *face = korvane_cad_face_new(cad, 1, evaluate_plane, NULL);
    korvane_mesh_t *mesh = korvane_mesh_new_in_memory(context);
    korvane_cad_edge_t *edges[edge_count];
    korvane_dcad_t *dcad;
    double xyz[3] = {0, 0, 0};
    int good, i;
    for (i = 0; i < edge_count; ++i)
        edges[i] = korvane_cad_edge_new_segment(face, (uint32_t)i + 1, corners[i], corners[i + 1]);
    dcad = korvane_dcad_new(cad);
    good = mesh && dcad && prescribe(dcad, face, edges[prescribed_edge - 1]) &&
           mesh_edges(dcad, face, mesh) == (edge_count - 1) * even + prescribed;
    /* The third vertex of the second edge, from (1, 0) to (1, 1), is at t = (2 / 8)^2. */
    good = good && korvane_mesh_get_vertex_coordinates(mesh, even + 3, xyz) == STATUS_OK && xyz[0] == 1 &&
           fabs(xyz[1] - 0.0625) < 1e-15;
    printf("the prescribed vertex lies at (%g, %g)\n", xyz[0], xyz[1]);
    korvane_dcad_delete(dcad); /* before the model, which goes with the context */
    korvane_context_delete(context);
    return good ? 0 : 1;
}
