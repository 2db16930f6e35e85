// What the reader sees of the running sums. The update itself turns into not-a-number where an infinite value
// meets it; after such a value, the reader is told infinite instead.
#include "stats/running_statistics.h"

namespace korvane {

double RunningStatistics::mean() const
{
    const double mean = sum / static_cast<double>(count);
    return std::isnan(mean) && has_met_infinity() ? HUGE_VAL : mean;
}

double RunningStatistics::variance() const
{
    return std::isnan(running_variance) && has_met_infinity() ? HUGE_VAL : running_variance;
}

} // namespace korvane
