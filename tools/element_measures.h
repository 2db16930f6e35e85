// The measures of elements, as a table for whoever walks over all of them.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "mesh_kinds.h"

namespace korvane::tools {

using MeasuredValues = std::array<double, 4>;

struct KindMeasure {
    const MeshKind *kind;
    std::string_view name; // as keyed reports have it: "aspect_ratio", "angles", "planarity"
    std::size_t width;     // values per element
    void (*measure)(const korvane_mesh_t *, uint32_t number, double *values);
    double (*badness)(std::span<const double> values); // the higher the worse, infinite at most

    [[nodiscard]] std::string full_name() const
    {
        return std::string(kind->singular).append(".").append(name);
    }
};

/// In the order of the reports.
std::span<const KindMeasure> element_measures();

/// By its full name; the plural "angles" may stand in the singular. Null if there is none.
const KindMeasure *find_measure(std::string_view full_name);

/// The values of an element; those behind the width of the measure are not set.
inline std::span<const double> measure(
    const KindMeasure &row, const korvane_mesh_t *mesh, int32_t number, MeasuredValues &values)
{
    row.measure(mesh, static_cast<uint32_t>(number), values.data());
    return {values.data(), row.width};
}

} // namespace korvane::tools
