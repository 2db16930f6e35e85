// Units of lifetime: a model with its faces and their edges, or a face without a model with its edges, or an
// edge without a face. How to get from an object to the unit that it is in, and to those of its sources.
#pragma once

#include <span>

#include "cad/records.h"

namespace korvane {

// -- One of three

inline Unit unit_of(korvane_cad_t &cad)
{
    return {&cad, nullptr, nullptr};
}

inline Unit unit_of(korvane_cad_face_t &face)
{
    return {nullptr, &face, nullptr};
}

inline Unit unit_of(korvane_cad_edge_t &edge)
{
    return {nullptr, nullptr, &edge};
}

inline bool is_none(const Unit &unit)
{
    return unit.cad == nullptr && unit.face == nullptr && unit.edge == nullptr;
}

/// Calls the operation on the model, face or edge that the unit is.
template <class Operation>
decltype(auto) visit(const Unit &unit, Operation operation)
{
    if (unit.cad != nullptr)
        return operation(*unit.cad);
    if (unit.face != nullptr)
        return operation(*unit.face);
    return operation(*unit.edge);
}

inline Lifespan &lifespan_of(const Unit &unit)
{
    return visit(unit, [](auto &each) -> Lifespan & { return each.lifespan; });
}

// -- From objects to units

template <class Operation>
decltype(auto) on_unit(korvane_cad_t &cad, Operation operation)
{
    return operation(cad);
}

template <class Operation>
decltype(auto) on_unit(korvane_cad_face_t &face, Operation operation)
{
    return face.cad != nullptr ? operation(*face.cad) : operation(face);
}

template <class Operation>
decltype(auto) on_unit(korvane_cad_edge_t &edge, Operation operation)
{
    return edge.face != nullptr ? on_unit(*edge.face, operation) : operation(edge);
}

/// False from the moment when the unit that the object is in begins to end.
template <class Object>
[[nodiscard]] bool is_alive(Object &object)
{
    return on_unit(object, [](auto &unit) { return unit.lifespan.stage == Stage::alive; });
}

// -- Sources

inline std::span<korvane_cad_face_t *const> sources_of(const korvane_cad_face_t &face)
{
    return {&face.source, face.source == nullptr ? 0u : 1u};
}

inline std::span<korvane_cad_edge_t *const> sources_of(const korvane_cad_edge_t &edge)
{
    return {edge.sources.data(), edge.sources.size()};
}

/// Calls the operation on the unit of each object that `object` is derived from.
template <class Object, class Operation>
void on_source_units(const Object &object, Operation operation)
{
    for (auto *source : sources_of(object))
        on_unit(*source, operation);
}

} // namespace korvane
