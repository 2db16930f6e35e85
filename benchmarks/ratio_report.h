// Benchmarks that stand beside plain code: "read binary/raw read" is what the job "read binary" is held
// against. At the end a table gives the time of every job as a ratio to each of its plain benchmarks.
#pragma once

#include <cstddef>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace korvane::benchmarks {

/// Prints the runs as they come and keeps their times, for the table of ratios.
class RatioReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs)
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                medians[run.run_name.function_name] = {
                    run.GetAdjustedCPUTime(), benchmark::GetTimeUnitString(run.time_unit)};
    }

    void print_table() const
    {
        std::printf("\n%-34s %-22s %12s %12s %8s\n", "job", "against", "time", "plain", "ratio");
        for (const auto &[name, plain] : medians) {
            const std::size_t slash = name.rfind('/');
            if (slash == std::string::npos) {
                const auto next = medians.upper_bound(name);
                if (next == medians.end() || !next->first.starts_with(name + "/"))
                    std::printf("%-34s %-22s %9.2f %s\n", name.c_str(), "", plain.time, plain.unit);
                continue;
            }
            const auto found = medians.find(name.substr(0, slash));
            if (found == medians.end())
                continue;
            const auto &[job_name, job] = *found;
            std::printf("%-34s %-22s %9.2f %s %9.2f %s %8.2f\n", job_name.c_str(),
                name.substr(slash + 1).c_str(), job.time, job.unit, plain.time, plain.unit,
                job.time / plain.time);
        }
    }

  private:
    struct Median {
        double time = 0;
        const char *unit = "";
    };
    std::map<std::string, Median> medians;
};

/// Runs what was registered, interleaved at random and repeated, and prints the table. The result is main's.
inline int run_with_ratios(int argc, char **argv)
{
    std::vector<char *> arguments(argv, argv + argc);
    std::string repetitions = "--benchmark_repetitions=5", time = "--benchmark_min_time=0.05";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, {repetitions.data(), time.data(), interleaving.data()});
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 2;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.print_table();
    return 0;
}

} // namespace korvane::benchmarks
