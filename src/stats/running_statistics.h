// Extremes, mean and variance of a sequence of values, taken one at a time. Knows no mesh: an element is a
// number that the values come with.
#pragma once

#include <cmath>
#include <cstdint>

namespace korvane {

struct RunningStatistics {
    double minimum = HUGE_VAL;
    double maximum = -HUGE_VAL;
    int32_t minimum_element = 0; // the first that reached it, 0 if none did
    int32_t maximum_element = 0;
    int64_t count = 0; // of values

    /// A value that is not a number changes neither the extremes nor their elements.
    void add(double value, int32_t element)
    {
        if (value < minimum) {
            minimum = value;
            minimum_element = element;
        }
        if (value > maximum) {
            maximum = value;
            maximum_element = element;
        }
        ++count;
        if (count == 1)
            sum = value;
        else
            update_sums(value);
    }

    /// Infinite from the first infinite value on.
    [[nodiscard]] double mean() const;

    /// Of the population, by the running update. Infinite from the first infinite value on, if it is not the
    /// only value.
    [[nodiscard]] double variance() const;

  private:
    double sum = 0;
    double running_variance = 0;

    void update_sums(double value)
    {
        if (running_variance < HUGE_VAL && sum < HUGE_VAL) {
            const auto n = static_cast<double>(count);
            const double new_sum = sum + value;
            // Kept on purpose: the previous sum is divided by the new count, because this defines the
            // reported numbers.
            const double shift = sum / n - new_sum / n;
            const double deviation = value - new_sum / n;
            running_variance = (running_variance + shift * shift) * (n - 1) / n + deviation * deviation / n;
            sum = new_sum;
        } else {
            running_variance = HUGE_VAL;
            sum = value + HUGE_VAL;
        }
    }

    [[nodiscard]] bool has_met_infinity() const { return maximum == HUGE_VAL || minimum == -HUGE_VAL; }
};

} // namespace korvane
