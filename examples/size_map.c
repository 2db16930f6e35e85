/*
 * A size map from a function of the client: small elements near the origin, larger ones further out. It is
 * written to a solution file (text, "wanted.sol" in the current folder), as a mesh generator in another
 * process would get it, and read back onto the same mesh. The program compares both at every vertex, shows
 * what a vertex beyond the last one gives, and ends with 0 if the sizes agree to the digits of the file.
 */
#include <korvane.h>

#include <math.h>
#include <stdio.h>

enum { side = 5, vertex_count = side * side };

struct grading {
    const korvane_mesh_t *mesh;
    double smallest, growth;
};

static korvane_status_t graded_size(int32_t vertex, double *size, void *user_data)
{
    const struct grading *grading = (const struct grading *)user_data;
    double xyz[3];
    const korvane_status_t status = korvane_mesh_get_vertex_coordinates(grading->mesh, vertex, xyz);
    if (status == STATUS_OK)
        *size = grading->smallest + grading->growth * sqrt(xyz[0] * xyz[0] + xyz[1] * xyz[1]);
    return status;
}

/* A square of vertices; a size map needs no elements. */
static korvane_mesh_t *make_vertices(korvane_context_t *context)
{
    korvane_mesh_t *mesh = korvane_mesh_new_in_memory(context);
    int32_t i;
    if (mesh == NULL || korvane_mesh_set_vertex_count(mesh, vertex_count) != STATUS_OK)
        return NULL;
    for (i = 1; i <= vertex_count; ++i) {
        const int32_t column = (i - 1) % side, row = (i - 1) / side;
        const double xyz[3] = {column, row, 0};
        if (korvane_mesh_set_vertex_coordinates(mesh, i, xyz) != STATUS_OK)
            return NULL;
    }
    return mesh;
}

/* The largest relative difference of two size maps, or a negative number if one of them fails. */
static double difference(const korvane_sizemap_t *a, const korvane_sizemap_t *b)
{
    double largest = 0;
    int32_t i;
    for (i = 1; i <= vertex_count; ++i) {
        double size_a = 0, size_b = 0;
        if (korvane_sizemap_iso_mesh_vertex_get_size(a, i, &size_a) != STATUS_OK ||
            korvane_sizemap_iso_mesh_vertex_get_size(b, i, &size_b) != STATUS_OK)
            return -1;
        largest = fmax(largest, fabs(size_a - size_b) / size_a);
    }
    return largest;
}

int main(void)
{
    static const char file_name[] = "wanted.sol";
    korvane_context_t *context = korvane_context_new();
    korvane_mesh_t *mesh = make_vertices(context);
    struct grading grading = {NULL, 0.1, 0.25};
    korvane_sizemap_t *ours, *read;
    double worst = -1, beyond = -1;
    int good = 0;
    grading.mesh = mesh;
    ours = korvane_sizemap_new(mesh, KORVANE_SIZEMAP_ISO_MESH_VERTEX, graded_size, &grading);
    if (ours != NULL && korvane_sizemap_write_sol(ours, file_name) == STATUS_OK) {
        read = korvane_sizemap_new_read_sol(mesh, file_name);
        worst = difference(ours, read);
        good = worst >= 0 && worst < 1e-14; /* the file has 15 digits */
        good =
            good && korvane_sizemap_iso_mesh_vertex_get_size(read, vertex_count + 1, &beyond) == STATUS_ERROR;
        good = good && beyond == 0;
    }
    printf("%d sizes in %s, relative difference %g\n", (int)vertex_count, file_name, worst);
    korvane_context_delete(context); /* and with it both size maps and the mesh */
    return good ? 0 : 1;
}
