// Copies of faces, edges and points.
//
// Plain values are copied as one struct, what is owned one by one, and the user data last, so that a failure
// leaves nothing behind.
#include <utility>

#include "cad/lifetime.h"
#include "common/memory.h"

namespace korvane {

namespace {

/// Without a clone function the user data are shared. False if they cannot be copied.
[[nodiscard]] bool try_copy_user_data(korvane_user_data_clone_t function, void *&user_data)
{
    if (function == nullptr)
        return true;
    void *original = std::exchange(user_data, function(user_data));
    return user_data != nullptr || original == nullptr;
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
    if (!try_copy_user_data(copy->clone_function, copy->surface_user_data))
        return nullptr;
    return place(std::move(copy), nullptr);
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
    if (!try_copy_user_data(copy->clone_function, copy->curve_user_data))
        return nullptr;
    return place_copy(std::move(copy), *edge);
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
