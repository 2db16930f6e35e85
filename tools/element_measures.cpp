#include "element_measures.h"

#include <algorithm>
#include <cmath>

#include "stats/quality.h"

namespace korvane::tools {

namespace {

using Badness = double (*)(std::span<const double>);

/// What is not a number is the worst.
double known(double badness)
{
    return std::isnan(badness) ? HUGE_VAL : badness;
}

/// Negative ratios are those of inverted elements.
double high_ratio(std::span<const double> values)
{
    return values.front() < 0 ? HUGE_VAL : known(values.front());
}

double low_planarity(std::span<const double> values)
{
    return known(-values.front());
}

/// The largest deviation from the angle of the regular element.
double odd_angle(std::span<const double> values)
{
    const double regular = values.size() == 3 ? 60 : 90;
    double worst = 0;
    for (const double angle : values)
        worst = std::max(worst, known(std::fabs(angle - regular)));
    return worst;
}

template <auto quality>
KindMeasure row(const char *kind, std::string_view name, Badness badness)
{
    static_assert(quality.values_per_element <= std::tuple_size_v<MeasuredValues>);
    return {find_kind(kind), name, quality.values_per_element,
        [](const korvane_mesh_t *mesh, uint32_t number, double *values) { quality(mesh, number, values); },
        badness};
}

} // namespace

std::span<const KindMeasure> element_measures()
{
    static const KindMeasure rows[] = {
        row<quality_triangle_aspect_ratio>("triangle", "aspect_ratio", high_ratio),
        row<quality_triangle_angles>("triangle", "angles", odd_angle),
        row<quality_quadrangle_aspect_ratio>("quadrangle", "aspect_ratio", high_ratio),
        row<quality_quadrangle_angles>("quadrangle", "angles", odd_angle),
        row<quality_quadrangle_planarity>("quadrangle", "planarity", low_planarity),
        row<quality_tetrahedron_aspect_ratio>("tetrahedron", "aspect_ratio", high_ratio),
        row<quality_hexahedron_aspect_ratio>("hexahedron", "aspect_ratio", high_ratio),
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
