// Values counted between bounds, and what describes a set of values beside that.
#pragma once

#include <cstdint>
#include <vector>

#include "output.h"

namespace korvane::tools {

class Histogram {
  public:
    /// Bounds in rising order; one more range than bounds, of which the outer two are open.
    explicit Histogram(std::vector<double> rising_bounds);

    void add(double value);

    /// Low and high bound, null where open, and count of each range that is not open, or holds something, or
    /// all of them.
    [[nodiscard]] Json as_json(bool with_empty_ends) const;

  private:
    std::vector<double> bounds;
    std::vector<int64_t> counts;
};

/// One line with a bar per range.
void print_histogram(const Json &ranges);

/// Count, extremes and mean.
struct Summary {
    double low;
    double high;
    double sum = 0;
    int64_t count = 0;

    Summary();
    void add(double value);
    [[nodiscard]] Json as_json() const;
};

/// The lines of a summary under its title and count.
void print_summary(const char *title, const Json &summary);

} // namespace korvane::tools
