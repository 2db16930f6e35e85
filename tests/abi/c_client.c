/* A client in C with nothing but the public header and the shared library: fills a mesh, has it judged,
 * writes it, reads it back and compares. */
#include <korvane.h>

#include <stdio.h>
#include <string.h>

#include "../support/check.h"

static const double corners[4][3] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
static const int32_t tetrahedron[4] = {1, 2, 3, 4};
static const int32_t tag = 17;

/* Counts the reports of a measure. */
static korvane_status_t look_for_measure(korvane_message_t *message, void *found)
{
    const char *text = NULL;
    CHECK(korvane_message_get_description(message, &text) == STATUS_OK);
    if (strstr(text, "VALID.client.tetrahedron.aspect_ratio.min = ") == text)
        ++*(int *)found;
    return STATUS_OK;
}

static korvane_mesh_t *make_mesh(korvane_context_t *context)
{
    korvane_mesh_t *mesh = korvane_mesh_new_in_memory(context);
    int32_t i;
    CHECK(mesh != NULL);
    CHECK(korvane_mesh_set_vertex_count(mesh, 4) == STATUS_OK);
    for (i = 1; i <= 4; ++i)
        CHECK(korvane_mesh_set_vertex_coordinates(mesh, i, corners[i - 1]) == STATUS_OK);
    CHECK(korvane_mesh_set_tetrahedron_count(mesh, 1) == STATUS_OK);
    CHECK(korvane_mesh_set_tetrahedron_vertices(mesh, 1, tetrahedron) == STATUS_OK);
    CHECK(korvane_mesh_set_tetrahedron_tag(mesh, 1, &tag) == STATUS_OK);
    return mesh;
}

static void compare_mesh(const korvane_mesh_t *mesh)
{
    int32_t count = 0, vertices[4] = {0, 0, 0, 0}, read_tag = 0, i;
    double xyz[3];
    CHECK(korvane_mesh_get_vertex_count(mesh, &count) == STATUS_OK && count == 4);
    for (i = 1; i <= 4; ++i) {
        CHECK(korvane_mesh_get_vertex_coordinates(mesh, i, xyz) == STATUS_OK);
        CHECK(memcmp(xyz, corners[i - 1], sizeof xyz) == 0);
    }
    CHECK(korvane_mesh_get_tetrahedron_count(mesh, &count) == STATUS_OK && count == 1);
    CHECK(korvane_mesh_get_tetrahedron_vertices(mesh, 1, vertices) == STATUS_OK);
    CHECK(memcmp(vertices, tetrahedron, sizeof vertices) == 0);
    CHECK(korvane_mesh_get_tetrahedron_tag(mesh, 1, &read_tag) == STATUS_OK && read_tag == tag);
}

int main(void)
{
    static const char *const names[] = {"c_client.mesh", "c_client.meshb"};
    korvane_context_t *context = korvane_context_new();
    korvane_mesh_t *mesh = make_mesh(context);
    int found = 0;
    int i;
    CHECK(STATUS_OK == 0 && STATUS_ERROR == -1 && STATUS_NOMEM == -5);
    CHECK(korvane_context_set_message_callback(context, look_for_measure, &found) == STATUS_OK);
    CHECK(korvane_mesh_compute_statistics_valid(mesh, "client") == STATUS_OK);
    CHECK(found == 1);
    for (i = 0; i < 2; ++i) {
        korvane_mesh_t *copy;
        CHECK(korvane_mesh_write_mesh(mesh, names[i]) == STATUS_OK);
        copy = korvane_mesh_new_read_mesh(context, names[i]);
        CHECK(copy != NULL);
        compare_mesh(copy);
        korvane_mesh_delete(copy);
        CHECK(remove(names[i]) == 0);
    }
    korvane_context_delete(context);
    return failures == 0 ? 0 : 1;
}
