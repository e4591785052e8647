// Prints what the library adds to the work that cannot be avoided. The exit code tells whether everything could be
// measured, not how fast it was: that depends on the machine. Google Benchmark's options apply.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <vector>

#include "comparison.h"
#include "ratio_reporter.h"
#include "scanners.h"

namespace {

const std::vector<Comparison> comparisons = {
    {"export call on an open device", 1.25, export_call, export_call_parts},
    {"submit, fill, get of 1608 x 1000", 1.06, frame_through_the_queue, frame_copy},
    {"disabled log line", 1.5, disabled_log_line, manager_owner_copy},
    {"VyraBrenvoZultaReadUniformityBuffers", 1.1, read_uniformity_buffers, calibration_copy},
};

int run(int argc, char** argv)
{
    // Both sides in many short turns, mixed, so that a change of the machine's speed meets both. The caller's options
    // come later and win.
    char mixed[] = "--benchmark_enable_random_interleaving=true";
    char repetitions[] = "--benchmark_repetitions=41";
    char turn[] = "--benchmark_min_time=0.02";
    std::vector<char*> arguments = {argv[0], mixed, repetitions, turn};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 2;
    }
    for (const Comparison& comparison : comparisons) {
        benchmark::RegisterBenchmark(Ratio_reporter::measured_name(comparison).c_str(), comparison.measured);
        benchmark::RegisterBenchmark(Ratio_reporter::reference_name(comparison).c_str(), comparison.reference);
    }
    const Open_scanners scanners;
    Ratio_reporter reporter(comparisons);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.failed() ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vyra_bench: %s\n", error.what());
        return 1;
    }
}
