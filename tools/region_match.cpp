// Three or four points of the source that lie far from one another are the base. Whatever in the target has
// the same distances may be its image; the library fits a map to each, and the map that brings most points of
// the source upon points of the target is taken. Should points of the base have no image, others are tried.
//
// n points cost O(n^2) comparisons of distances, and O(n sqrt(n)) for each map that is not given up early.
#include "region_match.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <tuple>

namespace korvane::tools {

namespace {

using Points = std::vector<RegionPoint>;

constexpr int most_bases = 6;

struct DeleteModel {
    void operator()(korvane_cad_t *cad) const { korvane_cad_delete(cad); }
};

double distance(const RegionPoint &a, const RegionPoint &b)
{
    return norm(a.position - b.position);
}

double &coordinate(Vec3 &v, int axis)
{
    return axis == 0 ? v.x : axis == 1 ? v.y : v.z;
}

Vec3 extent_of(const Points &points)
{
    Vec3 low = points.front().position, high = low;
    for (const RegionPoint &point : points)
        for (int axis = 0; axis < 3; ++axis) {
            Vec3 position = point.position;
            coordinate(low, axis) = std::fmin(coordinate(low, axis), coordinate(position, axis));
            coordinate(high, axis) = std::fmax(coordinate(high, axis), coordinate(position, axis));
        }
    return high - low;
}

/// Finds points by their position: sorted along the longest side of their box.
class Lookup {
  public:
    explicit Lookup(const Points &points) : sorted(points)
    {
        Vec3 extent = extent_of(points);
        for (int i = 1; i < 3; ++i)
            if (coordinate(extent, i) > coordinate(extent, axis))
                axis = i;
        std::ranges::sort(sorted, {}, [this](const RegionPoint &point) { return along(point.position); });
    }

    /// The index of the nearest point that is not taken, or -1 if none is within reach.
    [[nodiscard]] int64_t nearest(Vec3 position, double reach, const std::vector<bool> &taken) const
    {
        const auto key = [this](const RegionPoint &point) { return along(point.position); };
        const auto first = std::ranges::lower_bound(sorted, along(position) - reach, {}, key);
        int64_t found = -1;
        for (auto i = first; i != sorted.end() && key(*i) <= along(position) + reach; ++i) {
            const double away = norm(i->position - position);
            const auto index = i - sorted.begin();
            if (away <= reach && !taken[static_cast<std::size_t>(index)]) {
                reach = away;
                found = index;
            }
        }
        return found;
    }

    Points sorted;

  private:
    [[nodiscard]] double along(Vec3 position) const { return coordinate(position, axis); }

    int axis = 0;
};

class Matcher {
  public:
    Matcher(korvane_context_t *where, const Points &from, const Points &to, double allowed)
        : context(where), source(from), target(to), lookup(to), tolerance(allowed), size(size_of(from))
    {}

    std::optional<RegionMatch> match()
    {
        Points candidates = source;
        for (int tries = 0; tries < most_bases && candidates.size() >= 3; ++tries) {
            const Points base = base_of(candidates);
            if (base.empty())
                break;
            Points image;
            extend(base, image);
            if (best && best->unmatched_source.empty())
                break;
            std::erase_if(candidates, [&](const RegionPoint &point) {
                return std::ranges::find(base, point.vertex, &RegionPoint::vertex) != base.end();
            });
        }
        const std::size_t enough = (std::min(source.size(), target.size()) + 1) / 2;
        return best && best->pairs.size() >= enough ? std::move(best) : std::nullopt;
    }

  private:
    /// Points that fix a map: two far apart, one as far to their side, one above the three if there is any.
    /// Empty if all lie in one line.
    [[nodiscard]] static Points base_of(const Points &points)
    {
        const auto far_from = [&](Vec3 from) {
            return *std::ranges::max_element(
                points, {}, [&](const RegionPoint &point) { return norm(point.position - from); });
        };
        const RegionPoint first = far_from(points.front().position), second = far_from(first.position);
        const Vec3 u = second.position - first.position;
        // The sine of the angle, for which more distant points count more.
        const auto aside = [&](const RegionPoint &point) {
            const Vec3 v = point.position - first.position;
            return norm(v) > 0 ? norm(cross(u, v)) / norm(v) * std::sqrt(norm(v)) : 0;
        };
        const RegionPoint third = *std::ranges::max_element(points, {}, aside);
        const Vec3 v = third.position - first.position, normal = cross(u, v);
        constexpr double least_sine = 0.15, least_volume = 0.05; // clear of what the library refuses
        if (!(norm(normal) > least_sine * norm(u) * norm(v)))
            return {};
        const auto volume = [&](const RegionPoint &point) {
            const Vec3 w = point.position - first.position;
            return norm(w) > 0 ? std::fabs(dot(normal, w)) / (norm(u) * norm(v) * norm(w)) : 0;
        };
        const RegionPoint fourth = *std::ranges::max_element(points, {}, volume);
        if (volume(fourth) < least_volume)
            return {first, second, third};
        return {first, second, third, fourth};
    }

    /// Adds each point of the target that has the right distances to those of the image so far.
    void extend(const Points &base, Points &image)
    {
        if (image.size() == base.size()) {
            try_map(base, image);
            return;
        }
        const RegionPoint &next = base[image.size()];
        for (const RegionPoint &point : target) {
            bool fits = true;
            for (std::size_t i = 0; fits && i < image.size(); ++i)
                fits = std::fabs(distance(point, image[i]) - distance(next, base[i])) <= 2 * tolerance;
            if (!fits)
                continue;
            image.push_back(point);
            extend(base, image);
            image.pop_back();
        }
    }

    void try_map(const Points &base, const Points &image)
    {
        RegionMatch match;
        if (!fit(base, image, match) || !pair_up(match))
            return;
        match.isometry = classify(match.matrix, match.offset, size, tolerance);
        const auto rank = [](const RegionMatch &m) {
            return std::tuple(
                m.unmatched_source.size(), m.isometry.kind, std::round(m.isometry.angle * 1e6), m.residual);
        };
        if (!best || rank(match) < rank(*best))
            best = std::move(match);
    }

    /// Has the library fit the map. False if it finds none.
    bool fit(const Points &base, const Points &image, RegionMatch &match) const
    {
        const std::unique_ptr<korvane_cad_t, DeleteModel> cad(korvane_cad_new(context));
        std::vector<double> from, to;
        for (const RegionPoint &point : base)
            from.insert(from.end(), {point.position.x, point.position.y, point.position.z});
        for (const RegionPoint &point : image)
            to.insert(to.end(), {point.position.x, point.position.y, point.position.z});
        int32_t id = 1, other_id = 2, count = 1;
        const auto points = static_cast<int32_t>(base.size());
        korvane_cad_transformation_t transform = nullptr;
        void *data = nullptr;
        if (!cad ||
            korvane_cad_add_face_multiple_periodicity_with_transformation_function_by_points(
                cad.get(), &id, 1, &other_id, 1, from.data(), points, to.data(), points) != STATUS_OK ||
            korvane_cad_get_face_multiple_periodicity(
                cad.get(), 1, &id, &count, &other_id, &count, &transform, &data) != STATUS_OK ||
            transform == nullptr)
            return false;
        const auto apply = [&](Vec3 v) {
            const double in[3] = {v.x, v.y, v.z};
            double out[3] = {0, 0, 0};
            transform(in, out, data);
            return Vec3{out[0], out[1], out[2]};
        };
        const Vec3 origin = base.front().position, image_of_origin = apply(origin);
        const auto column = [&](Vec3 step) { return (apply(origin + size * step) - image_of_origin) / size; };
        match.matrix = matrix_of_columns(column({1, 0, 0}), column({0, 1, 0}), column({0, 0, 1}));
        match.offset = image_of_origin - match.matrix * origin;
        return true;
    }

    /// False as soon as the match is worse than the best one.
    bool pair_up(RegionMatch &match) const
    {
        std::vector<bool> taken(lookup.sorted.size());
        const std::size_t most_unmatched = best ? best->unmatched_source.size() : source.size();
        for (const RegionPoint &point : source) {
            const Vec3 image = match.matrix * point.position + match.offset;
            const int64_t index = lookup.nearest(image, tolerance, taken);
            if (index < 0) {
                match.unmatched_source.push_back(point.vertex);
                if (match.unmatched_source.size() > most_unmatched)
                    return false;
                continue;
            }
            const RegionPoint &partner = lookup.sorted[static_cast<std::size_t>(index)];
            taken[static_cast<std::size_t>(index)] = true;
            match.pairs.emplace_back(point.vertex, partner.vertex);
            match.residual = std::fmax(match.residual, norm(partner.position - image));
        }
        for (std::size_t i = 0; i < taken.size(); ++i)
            if (!taken[i])
                match.unmatched_target.push_back(lookup.sorted[i].vertex);
        std::ranges::sort(match.unmatched_target);
        return true;
    }

    korvane_context_t *context;
    const Points &source;
    const Points &target;
    Lookup lookup;
    double tolerance;
    double size;
    std::optional<RegionMatch> best;
};

} // namespace

double size_of(const std::vector<RegionPoint> &points)
{
    return points.empty() ? 0 : norm(extent_of(points));
}

std::optional<RegionMatch> match_regions(korvane_context_t *context, const std::vector<RegionPoint> &source,
    const std::vector<RegionPoint> &target, double tolerance)
{
    if (source.size() < 3 || target.size() < 3)
        return {};
    return Matcher(context, source, target, tolerance).match();
}

} // namespace korvane::tools
