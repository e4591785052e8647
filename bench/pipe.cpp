#include "pipe.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <thread>
#include <vector>

#include "image.h"
#include "measurement.h"
#include "turn.h"

namespace {

using clock_type = std::chrono::steady_clock;

constexpr std::chrono::microseconds poll_pause(50);
constexpr std::chrono::milliseconds image_pause(2);

double microseconds(clock_type::duration time)
{
    return std::chrono::duration<double, std::micro>(time).count();
}

// Ends the driver's thread whatever comes.
class Driver_thread {
public:
    template <class Run>
    Driver_thread(Pipe& pipe, Run run) : pipe_(pipe), thread_([this, run] { run(ended_); })
    {
    }
    ~Driver_thread()
    {
        ended_ = true;
        pipe_.end();
        thread_.join();
    }

private:
    Pipe& pipe_;
    std::atomic<bool> ended_{false};
    std::thread thread_;
};

void fetch_one(Pipe& pipe, bool paced)
{
    while (!pipe.fetch()) {
        if (paced) {
            std::this_thread::sleep_for(poll_pause);
        }
    }
}

double hand_over(Pipe& pipe)
{
    constexpr int warm_up = 16;
    const std::size_t images = pieces_of_turn(200);
    const Driver_thread driver(pipe, [&pipe](const std::atomic<bool>& ended) {
        while (!ended) {
            pipe.deliver();
        }
    });
    for (int i = 0; i < warm_up; ++i) {
        fetch_one(pipe, true);
    }
    const auto begin = clock_type::now();
    for (std::size_t i = 0; i < images; ++i) {
        fetch_one(pipe, true);
    }
    return microseconds(clock_type::now() - begin) / static_cast<double>(images);
}

// Of a copy that is made as seldom as the images come.
double bare_copy()
{
    std::vector<double> copies;
    for (std::size_t i = 0; i < pieces_of_turn(25); ++i) {
        std::this_thread::sleep_for(image_pause);
        const auto begin = clock_type::now();
        copy_image(host_buffer(i));
        copies.push_back(microseconds(clock_type::now() - begin));
    }
    return quantile(copies, 0.5);
}

std::vector<double> latencies_of(Pipe& pipe, bool paced)
{
    const std::size_t images = pieces_of_turn(150);
    const double copy = bare_copy();
    std::atomic<clock_type::rep> begun{0};
    std::atomic<bool> wanted{true};
    const Driver_thread driver(pipe, [&](const std::atomic<bool>& ended) {
        while (!ended) {
            std::this_thread::sleep_for(image_pause);
            if (wanted.exchange(false)) {
                begun = clock_type::now().time_since_epoch().count();
                pipe.deliver();
            }
        }
    });
    std::vector<double> latencies;
    while (latencies.size() < images) {
        fetch_one(pipe, paced);
        const auto now = clock_type::now().time_since_epoch();
        latencies.push_back(microseconds(now - clock_type::duration(begun)) - copy);
        wanted = true;
    }
    return latencies;
}

void register_latency(const char* median, const char* p99, const Latency_sides& sides)
{
    Peer(median, sides.median);
    Peer(p99, sides.p99);
}

}  // namespace

Side hand_over_side(const char* name, Pipe_maker make)
{
    return {name, [make] { return hand_over(*make()); }};
}

Latency_sides latency_sides(const char* name, const Pipe_maker& make, bool paced)
{
    const auto kept = std::make_shared<std::deque<std::vector<double>>>();
    const auto measure = [=] { kept->push_back(latencies_of(*make(), paced)); };
    const auto median = [=] {
        measure();
        return quantile(kept->back(), 0.5);
    };
    const auto p99 = [=] {
        if (kept->empty()) {
            measure();
        }
        const double value = quantile(kept->front(), 0.99);
        kept->pop_front();
        return value;
    };
    return {{name, median}, {name, p99}};
}

Pipe_peer::Pipe_peer(const char* name, const Pipe_maker& make)
{
    Peer(figure_name::hand_over, hand_over_side(name, make));
    register_latency(figure_name::busy_latency_median, figure_name::busy_latency_p99, latency_sides(name, make, false));
    register_latency(figure_name::paced_latency_median, figure_name::paced_latency_p99,
                     latency_sides(name, make, true));
}

Extraction_peer::Extraction_peer(const char* name, const Pipe_maker& make)
{
    register_latency(figure_name::busy_extraction_median, figure_name::busy_extraction_p99,
                     latency_sides(name, make, false));
    register_latency(figure_name::paced_extraction_median, figure_name::paced_extraction_p99,
                     latency_sides(name, make, true));
}
