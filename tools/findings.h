// What is wrong with a mesh, entity by entity.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "limits.h"
#include "mesh_kinds.h"

namespace korvane::tools {

class Progress;

/// What every mesh has to keep to; the limits are numbered from `first_limit` on.
enum Rule : std::size_t {
    vertex_out_of_range,
    repeated_vertex,
    duplicate_element,
    inverted_element,
    inconsistent_orientation,
    unused_vertex,
    first_limit
};

struct Finding {
    const MeshKind *kind;
    int32_t number;
    std::size_t rule;
};

std::string name_of_rule(std::size_t rule, std::span<const Limit> limits);

/// By kind, number and rule. Elements that name vertices out of range or one twice are held to no other rule.
std::vector<Finding> find_all(const korvane_mesh_t *mesh, std::span<const Limit> limits, Progress &progress);

} // namespace korvane::tools
