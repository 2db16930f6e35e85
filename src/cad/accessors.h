// What the plain setters and getters of models, faces, edges and points have in common: STATUS_ERROR for a
// null object; outputs are not tested.
#pragma once

#include <array>
#include <cstdint>

#include "cad/records.h"

namespace korvane {

template <class Object, class Holder, class Value>
korvane_status_t set_field(Object *object, Value Holder::*field, Value value)
{
    if (object == nullptr)
        return STATUS_ERROR;
    object->*field = value;
    return STATUS_OK;
}

template <class Object, class Holder, class Value>
korvane_status_t get_field(const Object *object, Value Holder::*field, Value *value)
{
    if (object == nullptr)
        return STATUS_ERROR;
    *value = object->*field;
    return STATUS_OK;
}

/// From now on the user data are deleted, or copied, by a function of the client, or not at all.
inline korvane_status_t set_delete_function(Care *care, korvane_user_data_delete_t function)
{
    if (care == nullptr)
        return STATUS_ERROR;
    care->delete_function = function;
    care->library_deletes = false;
    return STATUS_OK;
}

inline korvane_status_t set_clone_function(Care *care, korvane_user_data_clone_t function)
{
    if (care == nullptr)
        return STATUS_ERROR;
    care->clone_function = function;
    care->library_clones = false;
    return STATUS_OK;
}

/// A field of two values, one per end of an edge.
using Pair = std::array<int32_t, 2> EdgeValues::*;

inline korvane_status_t set_pair(korvane_cad_edge_t *edge, Pair field, int32_t first, int32_t second)
{
    if (edge == nullptr)
        return STATUS_ERROR;
    edge->*field = {first, second};
    return STATUS_OK;
}

inline korvane_status_t get_pair(const korvane_cad_edge_t *edge, Pair field, int32_t *first, int32_t *second)
{
    if (edge == nullptr)
        return STATUS_ERROR;
    *first = (edge->*field)[0];
    *second = (edge->*field)[1];
    return STATUS_OK;
}

/// Writes 0 or 1.
template <class Object>
korvane_status_t get_flag(const Object *object, uint8_t flag, int32_t *value)
{
    if (object == nullptr)
        return STATUS_ERROR;
    *value = has_flag(object->flags, flag);
    return STATUS_OK;
}

/// Gives the element of a list whose index runs from 1 to the count.
template <class Object>
korvane_status_t get_element(const Array<Object *> &list, int32_t count, int32_t index, Object **element)
{
    if (index < 1 || index > count)
        return STATUS_ERROR;
    *element = list[static_cast<std::size_t>(index - 1)];
    return STATUS_OK;
}

/// Sets a flag of the model that a face is in, if it is in one.
inline void note_in_model(const korvane_cad_face_t *face, CadFlag flag)
{
    if (face != nullptr && face->cad != nullptr)
        put_flag(face->cad->flags, flag, true);
}

/// Zeroes an output of a surface or curve function, unless it is null.
template <int size>
void clear_output(double *output)
{
    if (output == nullptr)
        return;
    for (int i = 0; i < size; ++i)
        output[i] = 0;
}

/// Writes an output, unless it is null.
template <class Value>
void put_output(Value *output, Value value)
{
    if (output != nullptr)
        *output = value;
}

/// Writes an output in the parameter plane, a point or a derivative, unless it is null.
inline void put_uv(double *output, double u, double v)
{
    if (output == nullptr)
        return;
    output[0] = u;
    output[1] = v;
}

} // namespace korvane
