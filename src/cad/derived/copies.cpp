// Copies of faces, edges and points.
//
// Plain values are copied as one struct and what is owned one by one. The user data come last, when the copy
// stands for itself: a clone function of the client may give back the last handle of the original.
#include <utility>

#include "cad/lifetime.h"
#include "cad/teardown.h"
#include "common/memory.h"

namespace korvane {

namespace {

/// Without a clone function the user data are shared. False if the library's own could not be copied; what a
/// client's function gives is taken as it is.
[[nodiscard]] bool try_copy_user_data(const Care &care, void *&user_data)
{
    if (care.clone_function == nullptr)
        return true;
    user_data = care.clone_function(user_data);
    return user_data != nullptr || !care.library_clones;
}

template <class Object>
[[nodiscard]] bool try_copy_original_ids(Object &copy, const Object &original)
{
    if (!original.original_ids)
        return true;
    copy.original_ids = try_copy(*original.original_ids);
    return copy.original_ids != nullptr;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_cad_face_t *korvane_cad_face_new_copy(const korvane_cad_face_t *face)
{
    if (face == nullptr)
        return nullptr;
    Owned<korvane_cad_face_t> copy = try_begin_face(nullptr);
    if (!copy || !try_copy_original_ids(*copy, *face))
        return nullptr;
    static_cast<FaceValues &>(*copy) = *face;
    put_flag(copy->flags, FACE_ATTACHED, false);
    copy->source = face->source;
    korvane_cad_face_t *placed = place(std::move(copy), nullptr);
    if (try_copy_user_data(*placed, placed->surface_user_data))
        return placed;
    withdraw(*placed);
    return nullptr;
}

korvane_cad_edge_t *korvane_cad_edge_new_copy(const korvane_cad_edge_t *edge)
{
    if (edge == nullptr)
        return nullptr;
    Owned<korvane_cad_edge_t> copy = try_begin_edge(nullptr);
    if (!copy || !try_copy_original_ids(*copy, *edge) ||
        !try_assign(copy->sources, edge->sources.data(), edge->sources.size()))
        return nullptr;
    static_cast<EdgeValues &>(*copy) = *edge;
    put_flag(copy->flags, EDGE_ATTACHED, false);
    copy->support_vertices = share(edge->support_vertices);
    korvane_cad_edge_t *placed = place_copy(std::move(copy), *edge);
    if (try_copy_user_data(*placed, placed->curve_user_data))
        return placed;
    withdraw(*placed);
    return nullptr;
}

korvane_status_t korvane_cad_face_clone_points(const korvane_cad_face_t *face, korvane_cad_face_t *target)
{
    if (face == nullptr)
        return STATUS_ERROR;
    for (int32_t i = 0; i < face->point_count; ++i) {
        const korvane_cad_point_t *point = face->points[static_cast<std::size_t>(i)];
        // Kept on purpose: the copy goes at once, because no list takes it.
        Owned<korvane_cad_point_t> copy = create_owned<korvane_cad_point_t>();
        if (point == nullptr || !copy)
            return STATUS_NOMEM;
        *copy = *point;
        copy->face = target;
    }
    return STATUS_OK;
}

} // extern "C"
