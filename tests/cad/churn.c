/* A client in C with nothing but the public header and the shared library: builds models of 1,000 faces and
 * 5,000 edges, derives and copies at random, and gives all its handles back in random order. Afterwards every
 * piece of user data must have been deleted once; the sanitizers watch the rest. */
#include <korvane.h>

#include <stdio.h>
#include <stdlib.h>

#include "../support/check.h"

enum { FACE_COUNT = 1000, EDGE_COUNT = 5000, DERIVATION_COUNT = 6000, HANDLE_CAPACITY = 40000 };

enum kind { MODEL, FACE, EDGE };

struct handle {
    enum kind kind;
    void *object;
};

static struct handle handles[HANDLE_CAPACITY];
static int handle_count = 0;
static korvane_cad_edge_t *model_edges[EDGE_COUNT];
static long created = 0; /* user data */
static long deleted = 0;

static int random_below(int bound)
{
    static uint64_t state = 20110805;
    state = state * 6364136223846793005u + 1442695040888963407u;
    return (int)((state >> 33) % (uint64_t)bound);
}

static void *new_data(void)
{
    double *data = malloc(sizeof *data);
    if (data == NULL)
        abort();
    *data = 1;
    ++created;
    return data;
}

static void delete_data(void *user_data)
{
    free(user_data);
    ++deleted;
}

static void *clone_data(void *user_data)
{
    (void)user_data;
    return new_data();
}

static korvane_status_t plane(const double uv[2], double xyz[3], double du[3], double dv[3], double duu[3],
    double duv[3], double dvv[3], void *user_data)
{
    (void)du, (void)dv, (void)duu, (void)duv, (void)dvv;
    if (xyz != NULL) {
        xyz[0] = uv[0];
        xyz[1] = uv[1];
        xyz[2] = *(const double *)user_data;
    }
    return STATUS_OK;
}

static korvane_status_t diagonal(double t, double uv[2], double dt[2], double dtt[2], void *user_data)
{
    (void)dt, (void)dtt;
    if (uv != NULL)
        uv[0] = uv[1] = t * *(const double *)user_data;
    return STATUS_OK;
}

static void *keep(enum kind kind, void *object)
{
    CHECK(object != NULL && handle_count < HANDLE_CAPACITY);
    handles[handle_count].kind = kind;
    handles[handle_count].object = object;
    ++handle_count;
    return object;
}

static void give_back(struct handle handle)
{
    if (handle.kind == MODEL)
        korvane_cad_delete(handle.object);
    else if (handle.kind == FACE)
        korvane_cad_face_delete(handle.object);
    else
        korvane_cad_edge_delete(handle.object);
}

static void *any(enum kind kind)
{
    for (;;) {
        const struct handle handle = handles[random_below(handle_count)];
        if (handle.kind == kind)
            return handle.object;
    }
}

static korvane_cad_t *build(korvane_context_t *context)
{
    korvane_cad_t *cad = keep(MODEL, korvane_cad_new(context));
    int i;
    for (i = 0; i < FACE_COUNT; ++i) {
        korvane_cad_face_t *face = keep(FACE, korvane_cad_face_new(cad, (uint32_t)i + 1, plane, new_data()));
        CHECK(korvane_cad_face_set_delete_function(face, delete_data) == STATUS_OK);
        CHECK(korvane_cad_face_set_clone_function(face, clone_data) == STATUS_OK);
    }
    for (i = 0; i < EDGE_COUNT; ++i) {
        korvane_cad_edge_t *edge =
            keep(EDGE, korvane_cad_edge_new(any(FACE), (uint32_t)i + 1, 0, 1, diagonal, new_data()));
        CHECK(korvane_cad_edge_set_delete_function(edge, delete_data) == STATUS_OK);
        CHECK(korvane_cad_edge_set_clone_function(edge, clone_data) == STATUS_OK);
        model_edges[i] = edge;
    }
    return cad;
}

static korvane_cad_face_t *any_model_face(const korvane_cad_t *cad)
{
    korvane_cad_face_t *face = NULL;
    CHECK(korvane_cad_get_face(cad, 1 + random_below(FACE_COUNT), &face) == STATUS_OK);
    return face;
}

/* An edge that counts on the model: the copy of one that counts for itself would start at that counter. */
static korvane_cad_edge_t *any_model_edge(const korvane_cad_t *cad)
{
    korvane_cad_face_t *face = any_model_face(cad);
    korvane_cad_edge_t *edge = model_edges[0];
    int32_t count = 0;
    CHECK(korvane_cad_face_get_edge_count(face, &count) == STATUS_OK);
    if (count > 0)
        CHECK(korvane_cad_face_get_edge(face, 1 + random_below(count), &edge) == STATUS_OK);
    return edge;
}

/* Derives or copies something. What is derived stands free unless `cad` is given: a model that holds
 * references to itself goes with its context only, and a free-standing face that does never goes. */
static void derive(korvane_cad_t *cad)
{
    static const double two[2] = {2, 2}, points[6] = {0, 0, 1, 0, 1, 1}, params[3] = {0, 0.5, 1};
    korvane_cad_edge_t *edges[3];
    korvane_cad_face_t *face;
    switch (random_below(cad == NULL ? 4 : 8)) {
    case 0:
        keep(FACE, korvane_cad_face_new_pafftrans(
                       cad, korvane_cad_face_clone(any(FACE)), 1, two, two, NULL, random_below(2)));
        break;
    case 1:
        keep(EDGE, korvane_cad_edge_new_segment(NULL, 1, two, two));
        break;
    case 2:
        keep(FACE, korvane_cad_face_new_copy(any(FACE)));
        break;
    case 3:
        face = keep(FACE, korvane_cad_face_new_copy(any(FACE)));
        edges[0] = edges[1] = any(EDGE);
        edges[2] = any(EDGE);
        keep(EDGE, korvane_cad_edge_new_newton1_with_ea(face, 1, 3, points, edges, params));
        break;
    case 4:
        edges[0] = edges[1] = edges[2] = any(EDGE);
        keep(EDGE, korvane_cad_edge_new_newton1_with_ea(any_model_face(cad), 1, 3, points, edges, params));
        break;
    case 5:
        keep(EDGE, korvane_cad_edge_new_afftrans(
                       any_model_face(cad), model_edges[random_below(EDGE_COUNT)], 1, two, two));
        break;
    case 6:
        keep(EDGE, korvane_cad_edge_new_copy(any_model_edge(cad)));
        break;
    default:
        CHECK(korvane_cad_face_attach(korvane_cad_face_new_copy(any(FACE)), cad) == STATUS_OK);
        break;
    }
}

/* Evaluates a face and an edge. */
static void evaluate(void)
{
    static const double uv[2] = {0.5, 0.25};
    double xyz[3], at[2], dt[2], dtt[2];
    CHECK(korvane_cad_face_surface(any(FACE), uv, xyz, NULL, NULL, NULL, NULL, NULL) == STATUS_OK);
    CHECK(korvane_cad_edge_curve(any(EDGE), 0.5, at, dt, dtt) == STATUS_OK);
}

static void churn(int within_the_model)
{
    korvane_context_t *context = korvane_context_new();
    korvane_cad_t *cad = build(context);
    int i;
    for (i = 0; i < DERIVATION_COUNT; ++i) {
        derive(within_the_model ? cad : NULL);
        evaluate();
    }
    while (handle_count > 0) {
        const int position = random_below(handle_count);
        const struct handle handle = handles[position];
        handles[position] = handles[--handle_count];
        give_back(handle);
    }
    if (!within_the_model)
        CHECK(created == deleted);
    korvane_context_delete(context);
    printf("%ld user data created, %ld deleted\n", created, deleted);
    CHECK(created == deleted);
}

int main(void)
{
    churn(0);
    churn(1);
    return failures == 0 ? 0 : 1;
}
