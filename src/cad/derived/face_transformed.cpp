// Faces whose parameters are an affine transformation of another face's.
//
// The surface maps (u, v) by u / scale + translation; the range is mapped by scale * u. The record holds one
// reference to the source, and the face pins it. Cost: one evaluation of the source's function.
#include <array>
#include <utility>

#include "cad/derived/plain_record.h"
#include "cad/lifetime.h"
#include "common/try.h"

namespace korvane {

namespace {

// -- Record

struct FaceTransformation {
    double ru, rv; // reciprocals of the scale
    double tu, tv;
    korvane_cad_face_t *source;

    [[nodiscard]] std::array<double, 2> map(const double *uv) const
    {
        return {ru * uv[0] + tu, rv * uv[1] + tv};
    }
};

// -- Evaluate

void scale_derivative(double *derivative, double factor)
{
    if (derivative == nullptr)
        return;
    for (int i = 0; i < 3; ++i)
        derivative[i] *= factor;
}

korvane_status_t evaluate(const double *uv, double *xyz, double *du, double *dv, double *duu, double *duv,
    double *dvv, void *user_data)
{
    const auto &record = *static_cast<const FaceTransformation *>(user_data);
    const double ru = record.ru;
    const double rv = record.rv;
    const korvane_cad_face_t &source = *record.source;
    TRY(source.surface(record.map(uv).data(), xyz, du, dv, duu, duv, dvv, source.surface_user_data));
    scale_derivative(du, ru);
    scale_derivative(dv, rv);
    scale_derivative(duu, ru * ru);
    scale_derivative(duv, ru * rv);
    scale_derivative(dvv, rv * rv);
    return STATUS_OK;
}

// -- Origin

korvane_status_t find_origin(
    const double *uv, korvane_cad_face_t **face, double *uv_out, int64_t *aux, void *user_data)
{
    const auto &record = *static_cast<const FaceTransformation *>(user_data);
    if (uv == nullptr)
        return korvane_cad_face_get_original_geometry(record.source, nullptr, face, uv_out, aux);
    const std::array<double, 2> mapped = record.map(uv);
    return korvane_cad_face_get_original_geometry(record.source, mapped.data(), face, uv_out, aux);
}

// -- Clone

void *clone(void *user_data)
{
    void *copy = copy_record<FaceTransformation>(user_data);
    if (copy != nullptr)
        retain(*static_cast<FaceTransformation *>(copy)->source);
    return copy;
}

// -- Release

void release_transformation(void *user_data)
{
    release(*static_cast<FaceTransformation *>(user_data)->source);
    release_record<FaceTransformation>(user_data);
}

// -- Constructor

/// Tag, orientation, periodicity and range of the source, the latter two scaled.
void take_over(korvane_cad_face_t &face, const korvane_cad_face_t &source, const double *scale)
{
    constexpr auto copied_flags =
        static_cast<uint8_t>(FACE_HAS_PERIODICITY | FACE_PERIODIC_U | FACE_PERIODIC_V | FACE_HAS_RANGE);
    face.tag = source.tag;
    face.orientation = source.orientation;
    face.flags = static_cast<uint8_t>(source.flags & copied_flags);
    face.period_u = scale[0] * source.period_u;
    face.period_v = scale[1] * source.period_v;
    // Kept on purpose: the range is not translated, because clients rely on the values.
    face.umin = scale[0] * source.umin;
    face.umax = scale[0] * source.umax;
    face.vmin = scale[1] * source.vmin;
    face.vmax = scale[1] * source.vmax;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_cad_face_t *korvane_cad_face_new_pafftrans(korvane_cad_t *cad, korvane_cad_face_t *source,
    uint32_t id, const double scale[2], const double translation[2], const void *, int32_t clone_points)
{
    if (source == nullptr || scale == nullptr || translation == nullptr)
        return nullptr;
    Owned<korvane_cad_face_t> face = try_begin_face(cad);
    Owned<FaceTransformation> record = create_owned<FaceTransformation>();
    if (!face || !record)
        return nullptr;
    // The identifiers come before the face is placed, so that a failure leaves nothing behind: no face, and
    // the reference to the source still with the caller.
    face->original_ids = try_derive(source->original_ids.get(), source->id);
    // Kept on purpose: no list takes the copies of the points, because the new face has none.
    if (!face->original_ids ||
        (clone_points != 0 && korvane_cad_face_clone_points(source, face.get()) != STATUS_OK))
        return nullptr;
    // Kept on purpose: the surface divides by the scale and then translates, while points would be multiplied
    // and then translated, because clients rely on either formula.
    *record = {1 / scale[0], 1 / scale[1], translation[0], translation[1], source};
    take_over(*face, *source, scale);
    face->id = id;
    face->surface = evaluate;
    face->surface_user_data = record.release();
    take_care(*face, release_transformation, clone);
    face->origin_function = find_origin;
    face->source = source;
    return place(std::move(face), cad);
}

} // extern "C"
