// The life of models, faces and edges: the only file that reads or writes a reference_count.
//
// A unit of lifetime is a model with its faces and their edges, or a face without a model with its edges, or
// an edge without a face. It is counted, and ends, as a whole.
//
//   who                                   takes                           gives back
//   ------------------------------------  ------------------------------  ----------------------------------
//   handle of a model                     1 at creation                   korvane_cad_delete
//   handle of a face or edge with owner   1 at creation, on the owner     its _delete, on the owner
//   handle of a free-standing one         1 at creation, on itself        its _delete
//   handle of the copy of a face          1, on itself                    its _delete
//   handle of the copy of an edge         what the own counter of the     its _delete; one at 0 ends the edge
//                                         original says
//   attaching                             1 on the owner; the own         _delete, on the owner, once
//                                         counter becomes 0
//   _clone                                1                               _delete
//   point                                 none                            none
//   face with transformed parameters      none: takes over the caller's   its delete function
//   copy of such a face                   1                               its delete function
//   edge by affine image                  none                            none
//   copy of such an edge                  1                               never
//   polyline                              1 per run of original edges     its delete function
//   copy of a polyline                    none: it has no runs            none
//   the end of the context                none                            all: the model ends
//
// Beside references there are pins: each face or edge that is derived from others pins them from its
// placement to the end of its unit, whatever it counts. A unit that has ended keeps its records, out of use,
// until no pin is left: so what the counting rules would touch after its end is still there.
//
// The end of a unit. First all delete functions run, while every record exists; releasing the unit has no
// effect any more. Then its own pins are given up, and the records go unless they are pinned. Units that lose
// their last reference by the delete function of a derived object wait until the unit that it belongs to is
// through, so that a chain of units of any length ends without recursion.
#include "cad/lifetime.h"

#include <span>
#include <utility>

#include "cad/doubling.h"
#include "common/try.h"

namespace korvane {

/// The units that wait for their end, in the order in which they came to it.
template <class Unit>
struct WaitingUnits {
    Unit *first;
    Unit *last;

    void add(Unit &unit)
    {
        unit.lifespan.next = nullptr;
        (first == nullptr ? first : last->lifespan.next) = &unit;
        last = &unit;
    }
    Unit *take()
    {
        Unit *taken = first;
        if (taken != nullptr)
            first = taken->lifespan.next;
        return taken;
    }
};

struct Teardown {
    WaitingUnits<korvane_cad_t> models;
    WaitingUnits<korvane_cad_face_t> faces;
    WaitingUnits<korvane_cad_edge_t> edges;

    void add(korvane_cad_t &cad) { models.add(cad); }
    void add(korvane_cad_face_t &face) { faces.add(face); }
    void add(korvane_cad_edge_t &edge) { edges.add(edge); }
};

namespace {

// -- Units

template <class Operation>
void on_unit(korvane_cad_t &cad, Operation operation)
{
    operation(cad);
}

template <class Operation>
void on_unit(korvane_cad_face_t &face, Operation operation)
{
    if (face.cad != nullptr)
        operation(*face.cad);
    else
        operation(face);
}

template <class Operation>
void on_unit(korvane_cad_edge_t &edge, Operation operation)
{
    if (edge.face != nullptr)
        on_unit(*edge.face, operation);
    else
        operation(edge);
}

template <class Operation>
void for_each_object(korvane_cad_edge_t &edge, Operation operation)
{
    operation(edge);
}

template <class Operation>
void for_each_object(korvane_cad_face_t &face, Operation operation)
{
    for (korvane_cad_edge_t *edge : std::span(face.edges.data(), static_cast<std::size_t>(face.edge_count)))
        operation(*edge);
    operation(face);
}

template <class Operation>
void for_each_object(korvane_cad_t &cad, Operation operation)
{
    for (korvane_cad_face_t *face : std::span(cad.faces.data(), static_cast<std::size_t>(cad.face_count)))
        for_each_object(*face, operation);
}

// -- Pins

std::span<korvane_cad_face_t *const> sources_of(const korvane_cad_face_t &face)
{
    return {&face.source, face.source == nullptr ? 0u : 1u};
}

std::span<korvane_cad_edge_t *const> sources_of(const korvane_cad_edge_t &edge)
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

template <class Object>
void pin_sources(const Object &object)
{
    on_source_units(object, [](auto &unit) { ++unit.lifespan.pin_count; });
}

// -- Records

void free_records(korvane_cad_edge_t &edge)
{
    destroy(&edge);
}

void free_records(korvane_cad_face_t &face)
{
    for (korvane_cad_edge_t *edge : std::span(face.edges.data(), static_cast<std::size_t>(face.edge_count)))
        destroy(edge);
    for (korvane_cad_point_t *point :
        std::span(face.points.data(), static_cast<std::size_t>(face.point_count)))
        destroy(point);
    destroy(&face);
}

void free_records(korvane_cad_t &cad)
{
    for (korvane_cad_face_t *face : std::span(cad.faces.data(), static_cast<std::size_t>(cad.face_count)))
        free_records(*face);
    destroy(&cad);
}

// -- The end

void leave_context(korvane_cad_t &cad)
{
    korvane_context_delete_attached_object(cad.context, &cad);
}

/// Only models are attached to a context.
template <class Unit>
void leave_context(Unit &)
{}

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

/// Runs the delete function; units that it releases for the last time wait in `teardown`.
template <class Object>
void run_delete_function(const Object &object, Teardown &teardown)
{
    on_source_units(object, [&](auto &unit) { unit.lifespan.teardown = &teardown; });
    run_delete_function(object);
    on_source_units(object, [](auto &unit) { unit.lifespan.teardown = nullptr; });
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
    edge.delete_function = nullptr;
    edge.clone_function = nullptr;
}

void forget_sources(korvane_cad_face_t &face)
{
    face.source = nullptr;
}

void forget_sources(korvane_cad_edge_t &edge)
{
    edge.sources.clear();
}

template <class Object>
void unpin_sources(Object &object)
{
    on_source_units(object, [](auto &unit) {
        if (--unit.lifespan.pin_count == 0 && unit.lifespan.stage == Stage::gone)
            free_records(unit);
    });
    forget_sources(object);
}

template <class Unit>
void end(Unit &unit, Teardown &teardown)
{
    for_each_object(unit, [&](auto &object) { run_delete_function(object, teardown); });
    for_each_object(unit, [](auto &object) { unpin_sources(object); });
    unit.lifespan.stage = Stage::gone;
    if (unit.lifespan.pin_count == 0)
        free_records(unit);
    else
        for_each_object(unit, [](auto &object) { take_out_of_use(object); });
}

/// Ends a unit at once, and what loses its last reference thereby, or lets it wait if its last reference was
/// one that a derived object gave back.
template <class Unit>
void begin_end(Unit &unit)
{
    unit.lifespan.stage = Stage::ending;
    if (unit.lifespan.teardown != nullptr) {
        unit.lifespan.teardown->add(unit);
        return;
    }
    Teardown teardown{};
    teardown.add(unit);
    for (;;) {
        if (korvane_cad_t *cad = teardown.models.take(); cad != nullptr)
            end(*cad, teardown);
        else if (korvane_cad_face_t *face = teardown.faces.take(); face != nullptr)
            end(*face, teardown);
        else if (korvane_cad_edge_t *edge = teardown.edges.take(); edge != nullptr)
            end(*edge, teardown);
        else
            return;
    }
}

/// A counter below 1 is that of the copy of an attached edge.
template <class Unit>
void release_unit(Unit &unit)
{
    if (unit.lifespan.stage != Stage::alive || --unit.reference_count > 0)
        return;
    leave_context(unit);
    begin_end(unit);
}

// -- The beginning

/// An owner takes over the pins of what enters it.
template <class Object, class Owner>
void count_on(Owner &owner, Object &object)
{
    on_unit(owner, [&](auto &unit) {
        ++unit.reference_count;
        unit.lifespan.pin_count += std::exchange(object.lifespan.pin_count, 0);
    });
}

void enter(korvane_cad_face_t &face, korvane_cad_t &cad)
{
    cad.faces[static_cast<std::size_t>(cad.face_count++)] = &face;
    face.cad = &cad;
    put_flag(face.flags, FACE_ATTACHED, true);
    count_on(cad, face);
}

void enter(korvane_cad_edge_t &edge, korvane_cad_face_t &face)
{
    face.edges[static_cast<std::size_t>(face.edge_count++)] = &edge;
    edge.face = &face;
    put_flag(edge.flags, EDGE_ATTACHED, true);
    count_on(face, edge);
}

template <class Object, class Owner>
Object *place_in(Owned<Object> owned, Owner *owner)
{
    Object *object = owned.release();
    object->reference_count = 1;
    pin_sources(*object);
    if (owner != nullptr)
        enter(*object, *owner);
    return object;
}

template <class Object>
[[nodiscard]] bool is_ending(Object &object)
{
    bool ending = false;
    on_unit(object, [&](auto &unit) { ending = unit.lifespan.stage != Stage::alive; });
    return ending;
}

/// Makes room for one more object; an owner that is ending takes none.
korvane_status_t make_room(korvane_cad_t &cad)
{
    if (is_ending(cad))
        return STATUS_ERROR;
    return try_make_place(cad.faces, cad.face_capacity, cad.face_count) ? STATUS_OK : STATUS_NOMEM;
}

korvane_status_t make_room(korvane_cad_face_t &face)
{
    if (is_ending(face))
        return STATUS_ERROR;
    return try_make_place(face.edges, face.edge_capacity, face.edge_count) ? STATUS_OK : STATUS_NOMEM;
}

template <class Object, class Owner>
korvane_status_t attach_to(Object &object, bool has_owner, Owner &owner)
{
    if (has_owner || is_ending(object))
        return STATUS_ERROR;
    TRY(make_room(owner));
    // Kept on purpose: one reference moves to the owner, however many there were, because handles are
    // expected to be given back before.
    object.reference_count = 0;
    enter(object, owner);
    return STATUS_OK;
}

} // namespace

Owned<korvane_cad_face_t> try_begin_face(korvane_cad_t *cad)
{
    constexpr int32_t initial_edge_capacity = 5;
    constexpr int32_t initial_point_capacity = 1;
    if (cad != nullptr && make_room(*cad) != STATUS_OK)
        return nullptr;
    Owned<korvane_cad_face_t> face = create_owned<korvane_cad_face_t>();
    if (!face || !face->edges.try_resize_zeroed(initial_edge_capacity) ||
        !face->points.try_resize_zeroed(initial_point_capacity))
        return nullptr;
    face->edge_capacity = initial_edge_capacity;
    face->point_capacity = initial_point_capacity;
    return face;
}

Owned<korvane_cad_edge_t> try_begin_edge(korvane_cad_face_t *face)
{
    if (face != nullptr && make_room(*face) != STATUS_OK)
        return nullptr;
    return create_owned<korvane_cad_edge_t>();
}

korvane_cad_t *place(Owned<korvane_cad_t> cad)
{
    cad->reference_count = 1;
    return cad.release();
}

korvane_cad_face_t *place(Owned<korvane_cad_face_t> face, korvane_cad_t *cad)
{
    return place_in(std::move(face), cad);
}

korvane_cad_edge_t *place(Owned<korvane_cad_edge_t> edge, korvane_cad_face_t *face)
{
    return place_in(std::move(edge), face);
}

korvane_cad_edge_t *place_copy(Owned<korvane_cad_edge_t> copy, const korvane_cad_edge_t &original)
{
    korvane_cad_edge_t *edge = place(std::move(copy), nullptr);
    // Kept on purpose: unlike the copy of a face, that of an edge does not begin at 1, because it takes over
    // every field of the original.
    edge->reference_count = original.reference_count;
    return edge;
}

korvane_status_t attach(korvane_cad_face_t &face, korvane_cad_t &cad)
{
    return attach_to(face, face.cad != nullptr, cad);
}

korvane_status_t attach(korvane_cad_edge_t &edge, korvane_cad_face_t &face)
{
    return attach_to(edge, edge.face != nullptr, face);
}

void retain(korvane_cad_face_t &face)
{
    on_unit(face, [](auto &unit) { ++unit.reference_count; });
}

void retain(korvane_cad_edge_t &edge)
{
    on_unit(edge, [](auto &unit) { ++unit.reference_count; });
}

void release(korvane_cad_t &cad)
{
    release_unit(cad);
}

void release(korvane_cad_face_t &face)
{
    on_unit(face, [](auto &unit) { release_unit(unit); });
}

void release(korvane_cad_edge_t &edge)
{
    on_unit(edge, [](auto &unit) { release_unit(unit); });
}

void korvane_cad_release(void *cad)
{
    begin_end(*static_cast<korvane_cad_t *>(cad));
}

} // namespace korvane
