/*
 * A mesh that lives in the client: a square of N x N cells, two triangles each, of which nothing is stored.
 * The library asks for counts, coordinates and vertices through callbacks, and reports the statistics of the
 * mesh as messages "VALID.<name>.<key> = <value>". The program prints the messages, picks some values out of
 * them, and ends with 0 if they are those of right-angled triangles.
 */
#include <korvane.h>

#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { N = 10 };

static korvane_status_t vertex_count(int32_t *count, void *user_data)
{
    (void)user_data;
    *count = (N + 1) * (N + 1);
    return STATUS_OK;
}

static korvane_status_t vertex_coordinates(int32_t index, double *xyz, void *user_data)
{
    (void)user_data;
    xyz[0] = (index - 1) % (N + 1);
    xyz[1] = (index - 1) / (N + 1);
    xyz[2] = 0;
    return STATUS_OK;
}

static korvane_status_t triangle_count(int32_t *count, void *user_data)
{
    (void)user_data;
    *count = 2 * N * N;
    return STATUS_OK;
}

/* Triangles 2c + 1 and 2c + 2 are the lower right and the upper left half of cell c. */
static korvane_status_t triangle_vertices(int32_t index, int32_t *vertices, void *user_data)
{
    const int32_t cell = (index - 1) / 2;
    const int32_t corner = cell / N * (N + 1) + cell % N + 1;
    (void)user_data;
    vertices[0] = corner;
    vertices[1] = index % 2 == 1 ? corner + 1 : corner + N + 2;
    vertices[2] = index % 2 == 1 ? corner + N + 2 : corner + N + 1;
    return STATUS_OK;
}

/* A value of the report that is looked for. */
struct expectation {
    const char *key;
    double value;
    int met;
};

static struct expectation expectations[] = {
    {"VALID.square.triangle.count = ", 2 * N *N, 0},
    {"VALID.square.triangle.aspect_ratio.max = ", 1.393847, 0}, /* (1 + sqrt(2)) / sqrt(3) */
    {"VALID.square.triangle.angles.max = ", 90, 0},
    {"VALID.square.surface_edges.length.min = ", 1, 0},
    {"VALID.square.surface_edges.length.max = ", 1.414214, 0},
};
enum { EXPECTATION_COUNT = sizeof expectations / sizeof *expectations };

static korvane_status_t receive(korvane_message_t *message, void *user_data)
{
    const char *text = NULL;
    int i;
    (void)user_data;
    korvane_message_get_description(message, &text);
    fputs(text, stdout);
    for (i = 0; i < EXPECTATION_COUNT; ++i) {
        const size_t length = strlen(expectations[i].key);
        if (strncmp(text, expectations[i].key, length) == 0)
            expectations[i].met = fabs(atof(text + length) - expectations[i].value) < 1e-4;
    }
    return STATUS_OK;
}

int main(void)
{
    korvane_context_t *context = korvane_context_new();
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    int i, wrong;
    korvane_context_set_message_callback(context, receive, NULL);
    korvane_mesh_set_get_vertex_count(mesh, vertex_count, NULL);
    korvane_mesh_set_get_vertex_coordinates(mesh, vertex_coordinates, NULL);
    korvane_mesh_set_get_triangle_count(mesh, triangle_count, NULL);
    korvane_mesh_set_get_triangle_vertices(mesh, triangle_vertices, NULL);
    wrong = korvane_mesh_compute_statistics_valid(mesh, "square") != STATUS_OK;
    for (i = 0; i < EXPECTATION_COUNT; ++i)
        wrong += !expectations[i].met;
    korvane_context_delete(context); /* and with it the mesh */
    return wrong == 0 ? 0 : 1;
}
