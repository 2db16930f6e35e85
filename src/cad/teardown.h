// The end of units of lifetime: delete functions in their order, then the records. When it begins is the
// business of lifetime.cpp.
#pragma once

#include "cad/records.h"

namespace korvane {

/// Ends a unit, and what loses its last reference thereby. A unit whose last reference is given back by the
/// library's own delete function of a derived object waits for that function to return.
void end_unit(const Unit &unit);

/// Takes back a free-standing object that nobody has seen, without its delete function.
void withdraw(korvane_cad_face_t &face);
void withdraw(korvane_cad_edge_t &edge);

} // namespace korvane
