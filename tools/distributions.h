// How the values of the measures of a mesh are spread.
#pragma once

#include "commands.h"
#include "element_measures.h"

namespace korvane::tools {

/// One JSON object for each measure of each kind that the mesh has: count, extremes, mean, percentiles, and
/// what is asked for of histogram, the same by tag, and the worst elements.
Json distributions_of(const korvane_mesh_t *mesh, const StatsOptions &options, const std::string &title);

void print_distribution(const Json &distribution);

} // namespace korvane::tools
