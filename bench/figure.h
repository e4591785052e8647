// What the benchmarks measure: figures, each with the work of the library beside the same work done otherwise.
#pragma once

#include <functional>
#include <string>
#include <vector>

// One way of doing a figure's work. A turn does it for some milliseconds and returns what one piece of it costs, in the
// figure's unit. Throws std::runtime_error when the work cannot be done.
struct Side {
    std::string name;
    std::function<double()> turn;
};

// The library's side is compared with its limit: the part of the work that nobody can do without, or the peer of the
// name. Without a limit the goal is for the figure itself.
struct Figure {
    std::string name;
    std::string unit;
    double goal;  // not to be exceeded by the ratio to the limit
    Side ours;
    std::string limit;
    std::vector<Side> others;  // the limit and the peers
};

std::vector<Figure> frame_figures();
std::vector<Figure> hand_over_figures();
std::vector<Figure> latency_figures();
std::vector<Figure> call_figures();
std::vector<Figure> log_figures();
std::vector<Figure> path_figures();
std::vector<Figure> calibration_figures();
std::vector<Figure> start_figures();

// The names of figures that peers take part in.
namespace figure_name {

constexpr char hand_over[] = "hand-over back to back, queue and callback";
constexpr char busy_latency_median[] = "latency, polled without pause, median";
constexpr char busy_latency_p99[] = "latency, polled without pause, p99";
constexpr char paced_latency_median[] = "latency, polled each 50 us, median";
constexpr char paced_latency_p99[] = "latency, polled each 50 us, p99";
constexpr char busy_extraction_median[] = "latency, extraction thread, without pause, median";
constexpr char busy_extraction_p99[] = "latency, extraction thread, without pause, p99";
constexpr char paced_extraction_median[] = "latency, extraction thread, each 50 us, median";
constexpr char paced_extraction_p99[] = "latency, extraction thread, each 50 us, p99";
constexpr char poll[] = "poll with nothing ready";
constexpr char durable_line[] = "durable log line";
constexpr char disabled_line[] = "disabled log line";
constexpr char path_match[] = "device path, match";
constexpr char path_no_match[] = "device path, no match";

}  // namespace figure_name

// A peer's side of a figure. Peers are found by the build: each is a file of its own, which registers what it can do.
class Peer {
public:
    Peer(const char* figure, Side side);

    // Registered for the figure of the name.
    static std::vector<Side> of(const std::string& figure);
};
