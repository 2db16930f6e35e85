// All values of a measure are held and sorted: 8 bytes each while their measure is worked on, and as many
// again by tag.
#include "distributions.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

#include "histogram.h"
#include "progress.h"

namespace korvane::tools {

namespace {

constexpr double percents[] = {1, 5, 25, 50, 75, 95, 99};
constexpr int range_count = 10; // of a histogram

/// By nearest rank.
Json percentiles_of(const std::vector<double> &sorted)
{
    Json percentiles = Json::array();
    for (const double percent : percents) {
        const double rank = std::ceil(percent / 100 * static_cast<double>(sorted.size()));
        percentiles.push_back(
            {{"percent", percent}, {"value", sorted[static_cast<std::size_t>(std::max(rank, 1.0)) - 1]}});
    }
    return percentiles;
}

/// Ranges of equal width between the extremes that are finite; infinite values are beyond them.
Json histogram_of(const std::vector<double> &sorted)
{
    const auto is_finite = [](double value) { return std::isfinite(value); };
    const auto first = std::ranges::find_if(sorted, is_finite);
    std::vector<double> bounds;
    if (first != sorted.end()) {
        const double low = *first, high = *std::ranges::find_if(sorted.rbegin(), sorted.rend(), is_finite);
        for (int i = 0; i < range_count; ++i)
            bounds.push_back(low + (high - low) * i / range_count);
        bounds.push_back(std::nextafter(high, HUGE_VAL)); // the last range holds its bound
        bounds.erase(std::unique(bounds.begin(), bounds.end()), bounds.end());
    }
    Histogram histogram(std::move(bounds));
    for (const double value : sorted)
        histogram.add(value);
    return histogram.as_json(false);
}

/// How values are spread.
class Spread {
  public:
    void add(double value)
    {
        values.push_back(value);
        summary.add(value);
    }

    /// Sorts the values.
    Json as_json(bool with_histogram)
    {
        std::ranges::sort(values);
        Json made = summary.as_json();
        if (!values.empty())
            made["percentiles"] = percentiles_of(values);
        if (with_histogram)
            made["histogram"] = histogram_of(values);
        return made;
    }

  private:
    Summary summary;
    std::vector<double> values;
};

class Distribution {
  public:
    Distribution(const korvane_mesh_t *measured, const KindMeasure &by, const StatsOptions &asked)
        : mesh(measured), row(by), options(asked)
    {}

    Json make(Progress &progress)
    {
        for (int32_t i = 1, count = count_of(*row.kind, mesh); i <= count; ++i) {
            progress.advance();
            add(i);
        }
        Json made = {{"measure", row.full_name()}, {"not_a_number", strange_count}};
        made.update(all.as_json(options.histogram));
        if (options.by_tag)
            made["by_tag"] = tags_as_json();
        if (options.worst > 0)
            made["worst"] = worst_as_json();
        return made;
    }

  private:
    void add(int32_t number)
    {
        MeasuredValues measured;
        const auto of_element = measure(row, mesh, number, measured);
        for (const double value : of_element) {
            if (std::isnan(value)) {
                ++strange_count;
                continue;
            }
            all.add(value);
            if (options.by_tag)
                by_tag[tag_of(*row.kind, mesh, number)].add(value);
        }
        if (options.worst > 0)
            keep_if_bad({-row.badness(of_element), number});
    }

    /// Holds the worst in a heap whose top is the least bad of them.
    void keep_if_bad(std::pair<double, int32_t> element)
    {
        worst.push_back(element);
        std::ranges::push_heap(worst);
        if (worst.size() > options.worst) {
            std::ranges::pop_heap(worst);
            worst.pop_back();
        }
    }

    Json tags_as_json()
    {
        Json tags = Json::array();
        for (auto &[tag, spread] : by_tag) {
            tags.push_back({{"tag", tag}});
            tags.back().update(spread.as_json(options.histogram));
        }
        return tags;
    }

    Json worst_as_json()
    {
        Json elements = Json::array();
        std::ranges::sort_heap(worst);
        for (const auto &[badness, number] : worst) {
            MeasuredValues measured;
            const auto of_element = measure(row, mesh, number, measured);
            const ElementVertices vertices = vertices_of(*row.kind, mesh, number);
            const auto named = used(*row.kind, vertices);
            Json positions = Json::array();
            for (const int32_t vertex : named)
                positions.push_back(position_of(mesh, vertex));
            elements.push_back(
                {{"number", number}, {"values", std::vector<double>(of_element.begin(), of_element.end())},
                    {"vertices", std::vector<int32_t>(named.begin(), named.end())},
                    {"positions", std::move(positions)}});
        }
        return elements;
    }

    const korvane_mesh_t *mesh;
    const KindMeasure &row;
    const StatsOptions &options;
    int64_t strange_count = 0;
    Spread all;
    std::map<int32_t, Spread> by_tag;
    std::vector<std::pair<double, int32_t>> worst; // how good, and the number
};

void print_spread(const std::string &title, const Json &spread)
{
    print_summary(title.c_str(), spread);
    for (const Json &percentile : spread.value("percentiles", Json::array()))
        std::printf("    %3.0f %% up to %.6g\n", percentile["percent"].get<double>(),
            percentile["value"].get<double>());
    if (spread.contains("histogram"))
        print_histogram(spread["histogram"]);
}

void print_worst(const Json &element)
{
    std::printf("    %s :", text_of(element["number"]).c_str());
    for (const Json &value : element["values"])
        std::printf(" %.6g", value.get<double>());
    std::printf("\n");
    for (std::size_t i = 0; i < element["vertices"].size(); ++i) {
        const Json &position = element["positions"][i];
        std::printf("      vertex %s : %.15g %.15g %.15g\n", text_of(element["vertices"][i]).c_str(),
            position[0].get<double>(), position[1].get<double>(), position[2].get<double>());
    }
}

} // namespace

Json distributions_of(const korvane_mesh_t *mesh, const StatsOptions &options, const std::string &title)
{
    int64_t steps = 0;
    for (const KindMeasure &row : element_measures())
        steps += count_of(*row.kind, mesh);
    Progress progress(title, steps);
    Json distributions = Json::array();
    for (const KindMeasure &row : element_measures())
        if (count_of(*row.kind, mesh) > 0)
            distributions.push_back(Distribution(mesh, row, options).make(progress));
    return distributions;
}

void print_distribution(const Json &distribution)
{
    const std::string measure = text_of(distribution["measure"]);
    print_spread(measure, distribution);
    for (const Json &tag : distribution.value("by_tag", Json::array()))
        print_spread(measure + ", tag " + text_of(tag["tag"]), tag);
    if (distribution.contains("worst"))
        std::printf("  worst by %s\n", measure.c_str());
    for (const Json &element : distribution.value("worst", Json::array()))
        print_worst(element);
}

} // namespace korvane::tools
