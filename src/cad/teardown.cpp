// The end of units of lifetime, of chains of any length, without recursion.
//
// The order of delete functions is that of a recursion: those of a face's edges, then its own, face by face;
// and the units whose last reference a derived object gives back end, in the order of their release, before
// the next object. In its place there is a stack of units, of which each knows how far it has come. Records
// stay until the whole stack is through, because what runs meanwhile may hold handles of every unit on it;
// then each unit gives up its pins, and its records go unless it is pinned itself.
//
// Invariants: a unit enters one teardown, once, because `ending` units are not released. A delete function of
// the client may begin a teardown of its own, inside of that which called it; the library's own ones let what
// they release wait. Cost: constant per object and per source.
#include "cad/teardown.h"

#include <span>
#include <utility>

#include "cad/units.h"

namespace korvane {

/// Units on the stack run their delete functions, or wait to; those in `ended` are through.
struct Teardown {
    Unit top{};
    Unit ended{};
    Unit *place = &top; // the link for the next unit that is released: under those released before it

    void add(const Unit &unit)
    {
        Lifespan &lifespan = lifespan_of(unit);
        lifespan.next = std::exchange(*place, unit);
        place = &lifespan.next;
    }
    void end_top()
    {
        const Unit unit = top;
        top = std::exchange(lifespan_of(unit).next, ended);
        ended = unit;
    }
    Unit take_ended()
    {
        const Unit unit = ended;
        ended = lifespan_of(unit).next;
        return unit;
    }
};

namespace {

std::span<korvane_cad_face_t *const> faces_of(const korvane_cad_t &cad)
{
    return {cad.faces.data(), static_cast<std::size_t>(cad.face_count)};
}

std::span<korvane_cad_edge_t *const> edges_of(const korvane_cad_face_t &face)
{
    return {face.edges.data(), static_cast<std::size_t>(face.edge_count)};
}

std::span<korvane_cad_point_t *const> points_of(const korvane_cad_face_t &face)
{
    return {face.points.data(), static_cast<std::size_t>(face.point_count)};
}

// -- Delete functions

void run_delete_function(const korvane_cad_face_t &face)
{
    if (face.delete_function != nullptr)
        face.delete_function(face.surface_user_data);
}

void run_delete_function(const korvane_cad_edge_t &edge)
{
    if (edge.delete_function != nullptr)
        edge.delete_function(edge.curve_user_data);
}

void take_out_of_use(korvane_cad_face_t &face)
{
    face.surface = [](const double *, double *, double *, double *, double *, double *, double *, void *) {
        return korvane_status_t{STATUS_ERROR};
    };
    face.origin_function = [](const double *, korvane_cad_face_t **, double *, int64_t *, void *) {
        return korvane_status_t{STATUS_ERROR};
    };
    face.surface_user_data = nullptr;
    face.delete_function = nullptr;
    face.clone_function = nullptr;
}

void take_out_of_use(korvane_cad_edge_t &edge)
{
    edge.curve = [](double, double *, double *, double *, void *) { return korvane_status_t{STATUS_ERROR}; };
    edge.origin_function = [](double, korvane_cad_edge_t **, double *, double *, double *, void *) {
        return korvane_status_t{STATUS_ERROR};
    };
    edge.curve_user_data = nullptr;
    edge.curve3d = nullptr;
    edge.curve3d_user_data = nullptr;
    edge.support_vertices.reset();
    edge.delete_function = nullptr;
    edge.clone_function = nullptr;
}

/// What the library's own function releases waits in the teardown; a function of the client does what it does
/// at once, and may delete the context of a source.
template <class Object>
void end_object(Object &object, Teardown &teardown)
{
    teardown.place = &teardown.top;
    Teardown *waiting_place = object.library_deletes ? &teardown : nullptr;
    on_source_units(object, [&](auto &unit) { unit.lifespan.teardown = waiting_place; });
    run_delete_function(object);
    on_source_units(object, [](auto &unit) { unit.lifespan.teardown = nullptr; });
    take_out_of_use(object);
}

/// Ends the next object of a unit. False if there is none left.
bool end_next(korvane_cad_edge_t &edge, Teardown &teardown)
{
    if (edge.lifespan.position > 0)
        return false;
    ++edge.lifespan.position;
    end_object(edge, teardown);
    return true;
}

/// The face itself comes after its edges.
bool end_next(korvane_cad_face_t &face, Teardown &teardown)
{
    if (face.lifespan.position > face.edge_count)
        return false;
    const int32_t position = face.lifespan.position++;
    if (position < face.edge_count)
        end_object(*face.edges[static_cast<std::size_t>(position)], teardown);
    else
        end_object(face, teardown);
    return true;
}

bool end_next(korvane_cad_t &cad, Teardown &teardown)
{
    for (int32_t &position = cad.lifespan.position; position < cad.face_count; ++position) {
        if (end_next(*cad.faces[static_cast<std::size_t>(position)], teardown))
            return true;
    }
    return false;
}

// -- Records

void free_records(korvane_cad_edge_t &edge)
{
    destroy(&edge);
}

void free_records(korvane_cad_face_t &face)
{
    for (korvane_cad_edge_t *edge : edges_of(face))
        destroy(edge);
    for (korvane_cad_point_t *point : points_of(face))
        destroy(point);
    destroy(&face);
}

void free_records(korvane_cad_t &cad)
{
    for (korvane_cad_face_t *face : faces_of(cad))
        free_records(*face);
    destroy(&cad);
}

/// The source units that have gone already go for good with their last pin.
template <class Object>
void give_up_pins(const Object &object)
{
    on_source_units(object, [](auto &unit) {
        if (--unit.lifespan.pin_count == 0 && unit.lifespan.stage == Stage::gone)
            free_records(unit);
    });
}

void unpin_sources(korvane_cad_edge_t &edge)
{
    give_up_pins(edge);
    edge.sources.clear();
}

void unpin_sources(korvane_cad_face_t &face)
{
    for (korvane_cad_edge_t *edge : edges_of(face))
        unpin_sources(*edge);
    give_up_pins(face);
    face.source = nullptr;
}

void unpin_sources(const korvane_cad_t &cad)
{
    for (korvane_cad_face_t *face : faces_of(cad))
        unpin_sources(*face);
}

template <class Ended>
void go(Ended &unit)
{
    unpin_sources(unit);
    unit.lifespan.stage = Stage::gone;
    if (unit.lifespan.pin_count == 0)
        free_records(unit);
}

} // namespace

void withdraw(korvane_cad_face_t &face)
{
    go(face);
}

void withdraw(korvane_cad_edge_t &edge)
{
    go(edge);
}

void end_unit(const Unit &unit)
{
    Lifespan &lifespan = lifespan_of(unit);
    lifespan.stage = Stage::ending;
    if (lifespan.teardown != nullptr) {
        lifespan.teardown->add(unit);
        return;
    }
    Teardown teardown;
    teardown.add(unit);
    while (!is_none(teardown.top)) {
        if (!visit(teardown.top, [&](auto &top) { return end_next(top, teardown); }))
            teardown.end_top();
    }
    while (!is_none(teardown.ended))
        visit(teardown.take_ended(), [](auto &ended) { go(ended); });
}

} // namespace korvane
