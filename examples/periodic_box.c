/*
 * A box of 3 by 2 by 1 whose opposite faces are periodic, as for a material that repeats in all directions.
 * The client describes the six faces by a function and declares each pair of opposite faces periodic, not by
 * a formula but by three corners of the one and the corresponding corners of the other: the library fits the
 * transformation. A mesh generator, here `check_pair`, reads the declarations back and carries points of the
 * source face to the target face.
 */
#include <korvane.h>

#include <math.h>
#include <stdio.h>

static const double size[3] = {3, 2, 1};

/* Side 0 to 5 of the box: two across each axis, at 0 and at the far end. The parameters (u, v), from 0 to 1,
 * run along the two other axes. Second derivatives are 0, as the library has set them. */
static korvane_status_t evaluate_side(const double uv[2], double xyz[3], double du[3], double dv[3],
    double duu[3], double duv[3], double dvv[3], void *user_data)
{
    const int side = *(const int *)user_data, across = side / 2;
    const int along_u = (across + 1) % 3, along_v = (across + 2) % 3;
    (void)duu, (void)duv, (void)dvv;
    if (xyz) {
        xyz[across] = side % 2 * size[across];
        xyz[along_u] = uv[0] * size[along_u];
        xyz[along_v] = uv[1] * size[along_v];
    }
    if (du)
        du[along_u] = size[along_u];
    if (dv)
        dv[along_v] = size[along_v];
    return STATUS_OK;
}

/* The identifier of a face is its index in this model. */
static int evaluate(const korvane_cad_t *cad, int32_t id, double u, double v, double xyz[3])
{
    const double uv[2] = {u, v};
    korvane_cad_face_t *face;
    return korvane_cad_get_face(cad, id, &face) == STATUS_OK &&
           korvane_cad_face_surface(face, uv, xyz, NULL, NULL, NULL, NULL, NULL) == STATUS_OK;
}

static int declare_pair(korvane_cad_t *cad, int32_t source, int32_t target)
{
    double from[3][3], to[3][3];
    int i;
    for (i = 0; i < 3; ++i) /* the corners (0, 0), (1, 0) and (0, 1) */
        if (!evaluate(cad, source, i == 1, i == 2, from[i]) || !evaluate(cad, target, i == 1, i == 2, to[i]))
            return 0;
    return korvane_cad_add_face_multiple_periodicity_with_transformation_function_by_points(
               cad, &source, 1, &target, 1, from[0], 3, to[0], 3) == STATUS_OK;
}

/* Each list has one face here, so that plain variables are room enough to read it. */
static int check_pair(const korvane_cad_t *cad, int32_t index)
{
    int32_t source, source_count, target, target_count;
    korvane_cad_transformation_t transformation;
    void *data;
    int i, k;
    if (korvane_cad_get_face_multiple_periodicity(
            cad, index, &source, &source_count, &target, &target_count, &transformation, &data) != STATUS_OK)
        return 0;
    for (i = 0; i < 100; ++i) {
        double point[3], image[3], expected[3];
        if (!evaluate(cad, source, i / 10 / 9.0, i % 10 / 9.0, point) ||
            !evaluate(cad, target, i / 10 / 9.0, i % 10 / 9.0, expected) ||
            transformation(point, image, data) != STATUS_OK)
            return 0;
        for (k = 0; k < 3; ++k)
            if (fabs(image[k] - expected[k]) > 1e-12)
                return 0;
    }
    printf("face %d is carried to face %d\n", (int)source, (int)target);
    return 1;
}

int main(void)
{
    static int sides[6] = {0, 1, 2, 3, 4, 5};
    korvane_context_t *context = korvane_context_new();
    korvane_cad_t *cad = korvane_cad_new(context);
    int32_t i, pairs = 0;
    int good = cad != NULL;
    for (i = 0; i < 6 && good; ++i)
        good = korvane_cad_face_new(cad, (uint32_t)i + 1, evaluate_side, &sides[i]) != NULL;
    for (i = 1; i < 6 && good; i += 2)
        good = declare_pair(cad, i, i + 1);
    good = good && korvane_cad_get_face_multiple_periodicity_count(cad, &pairs) == STATUS_OK && pairs == 3;
    for (i = 1; i <= pairs && good; ++i)
        good = check_pair(cad, i);
    korvane_context_delete(context); /* and with it the model and its faces */
    return good ? 0 : 1;
}
