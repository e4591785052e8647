// One figure of the benchmark: a piece of the library's work beside what of it cannot be avoided.
#pragma once

#include <benchmark/benchmark.h>

struct Comparison {
    const char* name;
    double bound;  // what the ratio of measured to reference should stay within
    void (*measured)(benchmark::State& state);
    void (*reference)(benchmark::State& state);
};

// calls.cpp
void export_call(benchmark::State& state);
void export_call_parts(benchmark::State& state);
void disabled_log_line(benchmark::State& state);
void manager_owner_copy(benchmark::State& state);

// frames.cpp
void frame_through_the_queue(benchmark::State& state);
void frame_copy(benchmark::State& state);

// calibration.cpp
void read_uniformity_buffers(benchmark::State& state);
void calibration_copy(benchmark::State& state);
