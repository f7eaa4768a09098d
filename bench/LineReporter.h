#pragma once

#include <benchmark/benchmark.h>
#include <cstdio>
#include <string>

/// Prints one line a benchmark, in the fixed form "case;peer;median;unit;n", and one for each of its
/// counters, "case, counter;peer;median;;n". A benchmark's name is "case/peer".
class LineReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
                continue;
            }
            if (run.aggregate_name != "median")
                continue;
            const std::string name = run.run_name.function_name;
            const std::size_t slash = name.find('/');
            const std::string peer = slash == std::string::npos ? "orvane" : name.substr(slash + 1);
            std::printf("%s;%s;%.3f;%s;%ld\n", name.substr(0, slash).c_str(), peer.c_str(),
                        run.GetAdjustedRealTime(), benchmark::GetTimeUnitString(run.time_unit),
                        static_cast<long>(run.repetitions));
            for (const auto& [counter, value] : run.counters)
                std::printf("%s, %s;%s;%.3f;;%ld\n", name.substr(0, slash).c_str(), counter.c_str(),
                            peer.c_str(), value.value, static_cast<long>(run.repetitions));
            std::fflush(stdout);
        }
    }
};

/// Runs what was registered, five times each unless the command line says otherwise.
inline int runBenchmarks(int argc, char** argv)
{
    std::string repetitions = "--benchmark_repetitions=5";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, repetitions.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 2;
    LineReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
