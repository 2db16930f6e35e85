#include "element_measures.h"

#include <algorithm>

#include "stats/quality.h"

namespace korvane::tools {

namespace {

template <auto quality>
KindMeasure row(const char *kind, std::string_view name)
{
    static_assert(quality.values_per_element <= std::tuple_size_v<MeasuredValues>);
    return {find_kind(kind), name, quality.values_per_element,
        [](const korvane_mesh_t *mesh, uint32_t number, double *values) { quality(mesh, number, values); }};
}

} // namespace

std::span<const KindMeasure> element_measures()
{
    static const KindMeasure rows[] = {
        row<quality_triangle_aspect_ratio>("triangle", "aspect_ratio"),
        row<quality_triangle_angles>("triangle", "angles"),
        row<quality_quadrangle_aspect_ratio>("quadrangle", "aspect_ratio"),
        row<quality_quadrangle_angles>("quadrangle", "angles"),
        row<quality_quadrangle_planarity>("quadrangle", "planarity"),
        row<quality_tetrahedron_aspect_ratio>("tetrahedron", "aspect_ratio"),
        row<quality_hexahedron_aspect_ratio>("hexahedron", "aspect_ratio"),
    };
    return rows;
}

const KindMeasure *find_measure(std::string_view full_name)
{
    const auto rows = element_measures();
    const auto found = std::ranges::find_if(rows, [&](const KindMeasure &row) {
        const std::string name = row.full_name();
        return name == full_name || (row.name == "angles" && name == std::string(full_name) + "s");
    });
    return found == rows.end() ? nullptr : &*found;
}

} // namespace korvane::tools
