// Benchmarks that stand beside plain code: "read binary/raw read" is what the job "read binary" is held
// against. At the end a table gives the time of every job as a ratio to each of its plain benchmarks, with
// the ratio that we want where there is one. Times are processor times, the least of all repetitions: what
// others do on the machine only ever adds to them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

namespace korvane::benchmarks {

class RatioReporter : public benchmark::BenchmarkReporter {
  public:
    /// Takes the greatest ratios that are wanted, by the names of the plain benchmarks.
    explicit RatioReporter(std::map<std::string, double> ratios) : wanted(std::move(ratios)) {}

    bool ReportContext(const Context &context) override
    {
        PrintBasicContext(&GetErrorStream(), context);
        return true;
    }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type != Run::RT_Iteration)
                continue;
            const Time time = {run.GetAdjustedCPUTime(), benchmark::GetTimeUnitString(run.time_unit)};
            Time &least = times.try_emplace(run.run_name.function_name, time).first->second;
            least.value = std::min(least.value, time.value);
        }
    }

    void print_table() const
    {
        std::printf("%-34s %-22s %12s %12s %8s %8s\n", "job", "against", "time", "plain", "ratio", "wanted");
        for (const auto &[name, plain] : times) {
            const std::size_t slash = name.rfind('/');
            if (slash == std::string::npos) {
                const auto next = times.upper_bound(name);
                if (next == times.end() || !next->first.starts_with(name + "/"))
                    std::printf("%-34s %-22s %9.2f %s\n", name.c_str(), "", plain.value, plain.unit);
                continue;
            }
            const auto found = times.find(name.substr(0, slash));
            if (found == times.end())
                continue;
            const auto &[job_name, job] = *found;
            const double ratio = job.value / plain.value;
            std::printf("%-34s %-22s %9.2f %s %9.2f %s %8.3f", job_name.c_str(),
                name.substr(slash + 1).c_str(), job.value, job.unit, plain.value, plain.unit, ratio);
            if (const auto goal = wanted.find(name); goal != wanted.end())
                std::printf(" %8.3f%s", goal->second, ratio <= goal->second ? "" : " missed");
            std::printf("\n");
        }
    }

  private:
    struct Time {
        double value = 0;
        const char *unit = "";
    };
    std::map<std::string, Time> times;
    std::map<std::string, double> wanted;
};

/// Runs what was registered, interleaved at random and repeated, and prints the table. The result is main's.
inline int run_with_ratios(int argc, char **argv, std::map<std::string, double> wanted = {})
{
    std::vector<char *> arguments(argv, argv + argc);
    std::string repetitions = "--benchmark_repetitions=5", time = "--benchmark_min_time=0.05";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, {repetitions.data(), time.data(), interleaving.data()});
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 2;
    RatioReporter reporter(std::move(wanted));
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.print_table();
    return 0;
}

} // namespace korvane::benchmarks
