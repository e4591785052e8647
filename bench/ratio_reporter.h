// Collects the repetitions of both sides of each comparison and prints their medians and ratios as a table at the end.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

#include "comparison.h"

class Ratio_reporter : public benchmark::BenchmarkReporter {
public:
    explicit Ratio_reporter(const std::vector<Comparison>& comparisons) : comparisons_(comparisons) {}

    static std::string measured_name(const Comparison& comparison);
    static std::string reference_name(const Comparison& comparison);

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

    // Whether a benchmark could not do its work.
    bool failed() const { return failed_; }

private:
    const std::vector<Comparison>& comparisons_;
    std::map<std::string, std::vector<double>> nanoseconds_;  // of the repetitions, by the benchmark's name
    bool failed_ = false;
};
