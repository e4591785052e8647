#include "ratio_reporter.h"

#include <algorithm>
#include <cstdio>

namespace {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

}  // namespace

std::string Ratio_reporter::measured_name(const Comparison& comparison)
{
    return std::string(comparison.name) + " (measured)";
}

std::string Ratio_reporter::reference_name(const Comparison& comparison)
{
    return std::string(comparison.name) + " (reference)";
}

bool Ratio_reporter::ReportContext(const Context& context)
{
    std::printf("%d processors of %.0f MHz\n", context.cpu_info.num_cpus, context.cpu_info.cycles_per_second / 1e6);
    return true;
}

void Ratio_reporter::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        if (run.error_occurred) {
            failed_ = true;
            std::printf("%s: %s\n", run.run_name.function_name.c_str(), run.error_message.c_str());
        } else if (run.run_type == Run::RT_Iteration) {
            // The thread's own time: what other programs take meanwhile is no cost of the library's.
            const double seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
            nanoseconds_[run.run_name.function_name].push_back(seconds * 1e9);
        }
    }
}

void Ratio_reporter::Finalize()
{
    std::printf("\n%-44s %14s %14s %7s %6s\n", "median of processor time", "measured ns", "reference ns", "ratio",
                "bound");
    for (const Comparison& comparison : comparisons_) {
        const auto& measured = nanoseconds_[measured_name(comparison)];
        const auto& reference = nanoseconds_[reference_name(comparison)];
        if (measured.empty() || reference.empty()) {
            continue;  // not chosen by --benchmark_filter
        }
        const double ratio = median(measured) / median(reference);
        std::printf("%-44s %14.1f %14.1f %7.3f %6.2f  %s\n", comparison.name, median(measured), median(reference),
                    ratio, comparison.bound, ratio <= comparison.bound ? "within" : "above");
    }
}
