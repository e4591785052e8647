// Images from the driver's thread to the host's: how many, and how soon.
#include <chrono>

#include "image.h"
#include "pipe.h"
#include "turn.h"

namespace {

// By the clock, as two threads are measured.
double image_copy()
{
    const std::size_t images = pieces_of_turn(200);
    const auto begin = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < images; ++i) {
        copy_image(host_buffer(i));
    }
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin).count() /
           static_cast<double>(images);
}

const Side memcpy_side = {"memcpy", image_copy};

Figure latency_median(const char* name, double goal, bool paced)
{
    return {name, "us", goal, latency_side("", make_queue_pipe, paced, 0.5), "", {}};
}

Figure latency_p99(const char* name, bool paced)
{
    return {name, "us", 0.2, latency_side("", make_queue_pipe, paced, 0.99), "GStreamer", {}};
}

}  // namespace

std::vector<Figure> hand_over_figures()
{
    return {
        {figure_name::hand_over, "us", 1.05, hand_over_side("", make_queue_pipe), memcpy_side.name, {memcpy_side}},
        {"hand-over back to back, with the extraction thread",
         "us",
         1.1,
         hand_over_side("", make_library_pipe),
         memcpy_side.name,
         {memcpy_side}},
    };
}

std::vector<Figure> latency_figures()
{
    using namespace figure_name;
    return {
        latency_median(busy_latency_median, 2, false),
        latency_p99(busy_latency_p99, false),
        latency_median(paced_latency_median, 10, true),
        latency_p99(paced_latency_p99, true),
        {"latency, polled without pause, extraction thread",
         "us",
         2,
         latency_side("", make_library_pipe, false, 0.5),
         "",
         {}},
        {"latency, polled each 50 us, extraction thread",
         "us",
         10,
         latency_side("", make_library_pipe, true, 0.5),
         "",
         {}},
    };
}
