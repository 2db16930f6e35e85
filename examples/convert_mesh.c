/*
 * Converts a mesh file into another, usually text into binary:
 *
 *     example_convert_mesh FROM.mesh TO.meshb
 *
 * All that goes wrong is told by messages of the library, so that the program needs no words of its own for
 * it: its message callback sends errors to the standard error, counts them and keeps the first one's number.
 * Then the program reads the new file again and compares what it holds. It ends with 0 if nothing was
 * reported and both files hold the same number of everything, 1 if not, 2 if it was called in another way.
 */
#include <korvane.h>

#include <stdio.h>

struct problems {
    int count;
    int32_t first; /* STATUS_NOMEM tells a lack of memory from a bad file */
};

static korvane_status_t receive(korvane_message_t *message, void *user_data)
{
    struct problems *problems = (struct problems *)user_data;
    const char *text = "";
    int32_t number = 0;
    korvane_message_get_number(message, &number);
    korvane_message_get_description(message, &text);
    if (number < 0 && problems->count++ == 0)
        problems->first = number;
    fputs(text, number < 0 ? stderr : stdout); /* the text ends with a newline */
    return STATUS_OK;
}

typedef korvane_status_t (*count_t)(const korvane_mesh_t *mesh, int32_t *count);

static const struct {
    const char *name;
    count_t count;
} kinds[] = {
    {"vertices", korvane_mesh_get_vertex_count},
    {"edges", korvane_mesh_get_edge_count},
    {"triangles", korvane_mesh_get_triangle_count},
    {"quadrangles", korvane_mesh_get_quadrangle_count},
    {"tetrahedra", korvane_mesh_get_tetrahedron_count},
    {"hexahedra", korvane_mesh_get_hexahedron_count},
    {"pyramids", korvane_mesh_get_pyramid_count},
};
enum { kind_count = sizeof kinds / sizeof *kinds };

static int hold_the_same(const korvane_mesh_t *a, const korvane_mesh_t *b)
{
    int i, same = 1;
    for (i = 0; i < kind_count; ++i) {
        int32_t in_a = 0, in_b = 0;
        kinds[i].count(a, &in_a);
        kinds[i].count(b, &in_b);
        if (in_a > 0)
            printf("%-12s %d\n", kinds[i].name, (int)in_a);
        same = same && in_a == in_b;
    }
    return same;
}

/* The context takes what is left with it, so that no path has to clean up. */
static int convert(korvane_context_t *context, const char *from, const char *to)
{
    const korvane_mesh_t *written;
    const korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, from);
    if (mesh == NULL || korvane_mesh_write_mesh(mesh, to) != STATUS_OK)
        return 0;
    written = korvane_mesh_new_read_mesh(context, to);
    return written != NULL && hold_the_same(mesh, written);
}

int main(int argc, char **argv)
{
    struct problems problems = {0, 0};
    korvane_context_t *context;
    int good;
    if (argc != 3) {
        fprintf(stderr, "usage: %s FROM TO\n", argv[0]);
        return 2;
    }
    context = korvane_context_new();
    if (context == NULL)
        return 1;
    korvane_context_set_message_callback(context, receive, &problems);
    good = convert(context, argv[1], argv[2]);
    korvane_context_delete(context);
    if (problems.count > 0)
        fprintf(stderr, "%d problems, the first %s\n", problems.count,
            problems.first == STATUS_NOMEM ? "for lack of memory" : "with a file");
    return good && problems.count == 0 ? 0 : 1;
}
