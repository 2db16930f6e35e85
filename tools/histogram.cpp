#include "histogram.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>

namespace korvane::tools {

namespace {

/// Empty for an open bound.
std::string text_of_bound(const Json &bound)
{
    if (bound.is_null())
        return {};
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%.4g", bound.get<double>());
    return text.data();
}

} // namespace

Histogram::Histogram(std::vector<double> rising_bounds)
    : bounds(std::move(rising_bounds)), counts(bounds.size() + 1)
{}

void Histogram::add(double value)
{
    const auto above = std::ranges::upper_bound(bounds, value);
    ++counts[static_cast<std::size_t>(above - bounds.begin())];
}

Json Histogram::as_json(bool with_empty_ends) const
{
    Json ranges = Json::array();
    for (std::size_t i = 0; i < counts.size(); ++i) {
        const bool is_end = i == 0 || i == bounds.size();
        if (is_end && counts[i] == 0 && !with_empty_ends)
            continue;
        ranges.push_back({{"low", i == 0 ? Json() : Json(bounds[i - 1])},
            {"high", i == bounds.size() ? Json() : Json(bounds[i])}, {"count", counts[i]}});
    }
    return ranges;
}

void print_histogram(const Json &ranges)
{
    constexpr double bar_length = 40;
    int64_t total = 0;
    for (const Json &range : ranges)
        total += range["count"].get<int64_t>();
    for (const Json &range : ranges) {
        const int64_t count = range["count"];
        const double share = total == 0 ? 0 : static_cast<double>(count) / static_cast<double>(total);
        const std::string bar(static_cast<std::size_t>(std::lround(share * bar_length)), '#');
        std::printf("    %6s .. %-6s %12lld  %5.1f %%%s%s\n", text_of_bound(range["low"]).c_str(),
            text_of_bound(range["high"]).c_str(), static_cast<long long>(count), 100 * share,
            bar.empty() ? "" : "  ", bar.c_str());
    }
}

Summary::Summary() : low(HUGE_VAL), high(-HUGE_VAL) {}

void Summary::add(double value)
{
    low = std::min(low, value);
    high = std::max(high, value);
    sum += value;
    ++count;
}

Json Summary::as_json() const
{
    if (count == 0)
        return {{"count", 0}};
    return {{"count", count}, {"min", low}, {"max", high}, {"mean", sum / static_cast<double>(count)}};
}

void print_summary(const char *title, const Json &summary)
{
    std::printf("  %s : %s\n", title, text_of(summary["count"]).c_str());
    if (summary.contains("min"))
        std::printf("    min  : %.6g\n    max  : %.6g\n    mean : %.6g\n", summary["min"].get<double>(),
            summary["max"].get<double>(), summary["mean"].get<double>());
}

} // namespace korvane::tools
