// Handles of CAD models, faces and edges, for machines that hold many of them and choose among them.
#pragma once

#include <cstddef>
#include <vector>

#include <korvane.h>

namespace korvane::testing {

struct CadHandle {
    korvane_cad_t *cad = nullptr; // one of the three
    korvane_cad_face_t *face = nullptr;
    korvane_cad_edge_t *edge = nullptr;

    /// One reference less.
    void give_back() const
    {
        korvane_cad_delete(cad);
        korvane_cad_face_delete(face);
        korvane_cad_edge_delete(edge);
    }
};

inline bool is_model(const CadHandle &handle)
{
    return handle.cad != nullptr;
}

inline bool is_face(const CadHandle &handle)
{
    return handle.face != nullptr;
}

inline bool is_edge(const CadHandle &handle)
{
    return handle.edge != nullptr;
}

/// The model, or null if there is none.
inline korvane_cad_t *model_of(const CadHandle *handle)
{
    return handle == nullptr ? nullptr : handle->cad;
}

inline korvane_cad_face_t *face_of(const CadHandle *handle)
{
    return handle == nullptr ? nullptr : handle->face;
}

/// One of the objects for which a condition holds, or null. `choose` gives a number below the one it gets.
template <class Objects, class Condition, class Choose>
auto pick_from(Objects &objects, Condition condition, Choose choose)
{
    std::vector<typename Objects::value_type *> found;
    for (auto &object : objects)
        if (condition(object))
            found.push_back(&object);
    return found.empty() ? nullptr : found[choose(found.size())];
}

} // namespace korvane::testing
