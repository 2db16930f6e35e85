#include "stats/running_statistics.h"

#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace korvane {
namespace {

constexpr double infinite = HUGE_VAL;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

RunningStatistics statistics_of(const std::vector<double> &values)
{
    RunningStatistics statistics;
    int32_t element = 0;
    for (const double value : values)
        statistics.add(value, ++element);
    return statistics;
}

/// The definition of the reported numbers, step by step.
struct Transcription {
    double minimum = infinite, maximum = -infinite, sum = 0, variance = 0;
    int minimum_element = 0, maximum_element = 0, n = 0;

    void add(double x, int i)
    {
        if (x < minimum)
            minimum_element = i;
        if (x > maximum)
            maximum_element = i;
        minimum = x < minimum ? x : minimum;
        maximum = x > maximum ? x : maximum;
        n = n + 1;
        if (n == 1) {
            sum = x;
        } else if (variance < infinite && sum < infinite) {
            const double next = sum + x;
            const double a = sum / n - next / n;
            const double b = x - next / n;
            variance = (variance + a * a) * (n - 1) / n + b * b / n;
            sum = next;
        } else {
            variance = infinite;
            sum = x + infinite;
        }
    }
};

bool same(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(RunningStatistics, AgreesToTheBitWithItsDefinition)
{
    std::mt19937 generator(1);
    for (const double scale : {1e-3, 1.0, 1e6, 1e300}) {
        std::lognormal_distribution<double> value(0, 2);
        RunningStatistics statistics;
        Transcription expected;
        for (int i = 1; i <= 5000; ++i) {
            const double x = scale * value(generator);
            statistics.add(x, i);
            expected.add(x, i);
            ASSERT_TRUE(same(statistics.minimum, expected.minimum));
            ASSERT_TRUE(same(statistics.maximum, expected.maximum));
            ASSERT_EQ(statistics.minimum_element, expected.minimum_element);
            ASSERT_EQ(statistics.maximum_element, expected.maximum_element);
            ASSERT_EQ(statistics.count, expected.n);
            ASSERT_TRUE(same(statistics.mean(), expected.sum / expected.n));
            ASSERT_TRUE(same(statistics.variance(), expected.variance));
        }
    }
}

TEST(RunningStatistics, AgreesWithTwoPassesOverTheData)
{
    std::mt19937 generator(2);
    std::normal_distribution<double> value(3, 2);
    std::vector<double> values(20000);
    for (double &x : values)
        x = value(generator);
    long double sum = 0;
    for (const double x : values)
        sum += x;
    const long double mean = sum / static_cast<long double>(values.size());
    long double squares = 0;
    for (const double x : values)
        squares += (x - mean) * (x - mean);
    const RunningStatistics statistics = statistics_of(values);
    EXPECT_NEAR(statistics.mean(), static_cast<double>(mean), 1e-12);
    // The running update weighs the shift of the mean by another formula, so that it agrees in the limit
    // only.
    EXPECT_NEAR(
        statistics.variance(), static_cast<double>(squares) / static_cast<double>(values.size()), 0.02);
}

TEST(RunningStatistics, OfOneValue)
{
    const RunningStatistics statistics = statistics_of({2.5});
    EXPECT_EQ(statistics.minimum, 2.5);
    EXPECT_EQ(statistics.maximum, 2.5);
    EXPECT_EQ(statistics.mean(), 2.5);
    EXPECT_EQ(statistics.variance(), 0);
    EXPECT_EQ(statistics.count, 1);
    EXPECT_EQ(statistics.minimum_element, 1);
    EXPECT_EQ(statistics.maximum_element, 1);
}

TEST(RunningStatistics, EqualValuesKeepTheFirstElement)
{
    const RunningStatistics statistics = statistics_of({1, 1, 1});
    EXPECT_EQ(statistics.minimum_element, 1);
    EXPECT_EQ(statistics.maximum_element, 1);
}

TEST(RunningStatistics, AnInfiniteValueMakesMeanAndVarianceInfiniteFromThenOn)
{
    const std::vector<std::vector<double>> sequences{{infinite, 1}, {1, infinite}, {1, 2, infinite},
        {1, infinite, 2}, {infinite, infinite}, {infinite, 1, 2}, {infinite, nan}, {1, infinite, nan},
        {infinite, -infinite}, {-infinite, infinite}, {1, -infinite, 3}, {1, infinite, -infinite},
        {-infinite, 1, 2}, {-infinite, 1, -infinite}};
    for (const auto &values : sequences) {
        const RunningStatistics statistics = statistics_of(values);
        EXPECT_EQ(statistics.mean(), infinite) << ::testing::PrintToString(values);
        EXPECT_EQ(statistics.variance(), infinite) << ::testing::PrintToString(values);
    }
}

TEST(RunningStatistics, AFreshMinusInfinityMakesTheMeanMinusInfinite)
{
    for (const auto &values : {std::vector<double>{1, -infinite}, {-infinite, 1}, {1, 2, -infinite}}) {
        const RunningStatistics statistics = statistics_of(values);
        EXPECT_EQ(statistics.mean(), -infinite);
        EXPECT_EQ(statistics.variance(), infinite);
    }
}

TEST(RunningStatistics, AnInfiniteValueAloneHasNoVariance)
{
    EXPECT_EQ(statistics_of({infinite}).mean(), infinite);
    EXPECT_EQ(statistics_of({infinite}).variance(), 0);
    EXPECT_EQ(statistics_of({-infinite}).mean(), -infinite);
    EXPECT_EQ(statistics_of({-infinite}).variance(), 0);
}

TEST(RunningStatistics, ExtremesStayMeaningfulBesideInfiniteValues)
{
    const RunningStatistics statistics = statistics_of({3, infinite, 1, infinite});
    EXPECT_EQ(statistics.minimum, 1);
    EXPECT_EQ(statistics.minimum_element, 3);
    EXPECT_EQ(statistics.maximum, infinite);
    EXPECT_EQ(statistics.maximum_element, 2);
    EXPECT_EQ(statistics_of({infinite, infinite}).minimum_element, 0); // nothing is below infinity
}

TEST(RunningStatistics, NotANumberChangesNoExtreme)
{
    const RunningStatistics statistics = statistics_of({nan, 2, nan, 1, nan, 3, nan});
    EXPECT_EQ(statistics.minimum, 1);
    EXPECT_EQ(statistics.minimum_element, 4);
    EXPECT_EQ(statistics.maximum, 3);
    EXPECT_EQ(statistics.maximum_element, 6);
    EXPECT_EQ(statistics.count, 7);
    EXPECT_EQ(statistics_of({nan}).minimum, infinite);
    EXPECT_EQ(statistics_of({nan}).maximum, -infinite);
}

TEST(RunningStatistics, NotANumberGoesThroughTheFormulas)
{
    EXPECT_TRUE(std::isnan(statistics_of({1, nan}).mean()));
    EXPECT_TRUE(std::isnan(statistics_of({1, nan}).variance()));
    EXPECT_EQ(statistics_of({1, nan, 2}).mean(), infinite);
    EXPECT_EQ(statistics_of({1, nan, 2}).variance(), infinite);
    EXPECT_TRUE(std::isnan(statistics_of({nan}).mean()));
    EXPECT_EQ(statistics_of({nan}).variance(), 0);
}

TEST(RunningStatistics, ASumThatOverflowsIsInfinite)
{
    const RunningStatistics statistics = statistics_of({1e308, 1e308, 1e308});
    EXPECT_EQ(statistics.mean(), infinite);
    EXPECT_EQ(statistics.variance(), infinite);
    EXPECT_EQ(statistics.maximum, 1e308);
}

} // namespace
} // namespace korvane
