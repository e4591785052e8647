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

void add_latency(std::vector<Figure>& figures, const char* median, const char* p99, double median_goal,
                 const Pipe_maker& make, bool paced)
{
    const Latency_sides ours = latency_sides("", make, paced);
    figures.push_back({median, "us", median_goal, ours.median, "", {}});
    figures.push_back({p99, "us", 0.2, ours.p99, "GStreamer", {}});
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
    std::vector<Figure> figures;
    add_latency(figures, busy_latency_median, busy_latency_p99, 2, make_queue_pipe, false);
    add_latency(figures, paced_latency_median, paced_latency_p99, 10, make_queue_pipe, true);
    add_latency(figures, busy_extraction_median, busy_extraction_p99, 2, make_library_pipe, false);
    add_latency(figures, paced_extraction_median, paced_extraction_p99, 10, make_library_pipe, true);
    return figures;
}
