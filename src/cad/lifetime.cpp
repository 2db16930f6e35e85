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
// How a unit ends, and in which order, is told in teardown.cpp. From the moment when its last reference is
// given back, references that are given back to it have no effect.
#include "cad/lifetime.h"

#include <utility>

#include "cad/list_growth.h"
#include "cad/teardown.h"
#include "cad/units.h"
#include "common/try.h"

namespace korvane {

namespace {

// -- Counting

void leave_context(korvane_cad_t &cad)
{
    korvane_context_delete_attached_object(cad.context, &cad);
}

/// Only models are attached to a context.
template <class Counted>
void leave_context(Counted &)
{}

/// A counter below 1 is that of the copy of an attached edge.
template <class Counted>
void release_unit(Counted &unit)
{
    if (unit.lifespan.stage != Stage::alive || --unit.reference_count > 0)
        return;
    leave_context(unit);
    end_unit(unit_of(unit));
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

template <class Object>
void pin_sources(const Object &object)
{
    on_source_units(object, [](auto &unit) { ++unit.lifespan.pin_count; });
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

/// Makes room for one more object; an owner that is ending takes none.
korvane_status_t make_room(korvane_cad_t &cad)
{
    if (!is_alive(cad))
        return STATUS_ERROR;
    return try_make_place(cad.faces, cad.face_capacity, cad.face_count) ? STATUS_OK : STATUS_NOMEM;
}

korvane_status_t make_room(korvane_cad_face_t &face)
{
    if (!is_alive(face))
        return STATUS_ERROR;
    return try_make_place(face.edges, face.edge_capacity, face.edge_count) ? STATUS_OK : STATUS_NOMEM;
}

template <class Object, class Owner>
korvane_status_t attach_to(Object &object, bool has_owner, Owner &owner)
{
    // An object that has an owner is refused, because two owners would both free it.
    if (has_owner || !is_alive(object))
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
    end_unit(unit_of(*static_cast<korvane_cad_t *>(cad)));
}

} // namespace korvane
