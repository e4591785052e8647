#include "capture.h"

#include <algorithm>
#include <new>

#include "pace.h"
#include "platform.h"

namespace brenvozulta_simulator {
namespace {

using Clock = Pace::Clock;

constexpr std::size_t tickets_kept = 4096;

// The body of one acquisition thread.
class Acquisition {
public:
    Acquisition(Simulator& simulator, std::shared_ptr<State> state, std::shared_ptr<Capture> capture)
        : simulator_(simulator), state_(std::move(state)), capture_(std::move(capture))
    {
    }

    void run()
    {
        Held_lock held(simulator_.lock);
        capture_->thread = this_thread_id();
        start_pace();
        while (!capture_->ending && !state_->retired) {
            if (!capture_->deliveries.empty()) {
                run_delivery(held);
            } else if (serves_deliveries_only()) {
                capture_->ending = true;
            } else if (pace_.rate() != state_->settings.frame_rate) {
                start_pace();
            } else if (pace_.rate() == 0) {
                simulator_.changed.wait(held);
            } else if (Clock::now() < pace_.due()) {
                const Clock::time_point due = pace_.due();
                simulator_.changed.wait_until(held, due);
            } else {
                run_frame(held);
            }
        }
        end();
    }

private:
    bool serves_deliveries_only() const { return capture_->config.width == 0; }

    void start_pace() { pace_ = Pace(state_->settings.frame_rate, Clock::now()); }

    void run_frame(Held_lock& held)
    {
        const Image* const image = next_image(held);
        pace_.advance(Clock::now());
        if (image != nullptr && !capture_->ending && !state_->retired) {
            call(held, image->pixels.data(), image->width, image->height, nullptr);
        }
    }

    void run_delivery(Held_lock& held)
    {
        const std::shared_ptr<Delivery> delivery = capture_->deliveries.front();
        const Image* image = nullptr;
        if (delivery->next_of_source) {
            image = next_image(held);
            if (capture_->ending || state_->retired) {
                return;  // still in the queue: it is dropped with the rest
            }
        }
        capture_->deliveries.pop_front();
        if (image != nullptr) {
            call(held, image->pixels.data(), image->width, image->height, delivery.get());
        } else if (delivery->next_of_source) {
            drop(*delivery);
            simulator_.changed.notify_all();
        } else {
            const std::uint8_t* pixels = delivery->null_pixels ? nullptr : delivery->pixels.data();
            call(held, pixels, delivery->width, delivery->height, delivery.get());
            free_pixels(*delivery);
        }
    }

    // Null when there is no memory to draw it: the image is lost.
    const Image* next_image(Held_lock& held)
    {
        source_ = state_->settings.images;
        const Image_request request{capture_->config.width, capture_->config.height, capture_->scanner_seed,
                                    capture_->frame++};
        const Unlocked unlocked(held);
        try {
            return &source_->image(request, scratch_);
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
    }

    void call(Held_lock& held, const std::uint8_t* pixels, std::uint16_t width, std::uint16_t height,
              Delivery* delivery)
    {
        const DriverAcquisitionCallback callback = state_->callback;
        void* context = state_->context;
        if (delivery != nullptr) {
            delivery->progress = Delivery::Progress::begun;
            context = delivery->use_context ? delivery->context : context;
        }
        if (callback == nullptr) {
            return;
        }
        ++state_->callbacks.entered;
        capture_->inside = true;
        simulator_.changed.notify_all();
        test_bench::take_over(&state_->callback);
        std::int32_t result = 0;
        {
            const Unlocked unlocked(held);
            result = callback(pixels, width, height, context);
        }
        test_bench::hand_over(&state_->callbacks);
        capture_->inside = false;
        ++state_->callbacks.returned;
        if (delivery != nullptr) {
            delivery->progress = Delivery::Progress::done;
            delivery->callback_result = result;
        }
        simulator_.changed.notify_all();
    }

    // Tickets are kept for longer than there is room for images.
    static void free_pixels(Delivery& delivery) { std::vector<std::uint8_t>().swap(delivery.pixels); }

    static void drop(Delivery& delivery)
    {
        delivery.progress = Delivery::Progress::dropped;
        free_pixels(delivery);
    }

    void end()
    {
        for (const auto& delivery : capture_->deliveries) {
            drop(*delivery);
        }
        capture_->deliveries.clear();
        capture_->ending = true;
        capture_->ended = true;
        auto& captures = state_->captures;
        captures.erase(std::remove(captures.begin(), captures.end(), capture_), captures.end());
        test_bench::hand_over(capture_.get());
        test_bench::hand_over(&state_->callbacks);
        --simulator_.acquisition_threads;
        simulator_.changed.notify_all();
    }

    Simulator& simulator_;
    const std::shared_ptr<State> state_;
    const std::shared_ptr<Capture> capture_;
    std::shared_ptr<const Image_source> source_;  // of the latest image, which may be the source's own
    Image scratch_{};
    Pace pace_;
};

void start_thread(Simulator& simulator, const std::shared_ptr<State>& state, const std::shared_ptr<Capture>& capture)
{
    start_driver_thread([&simulator, state, capture] { Acquisition(simulator, state, capture).run(); });
    state->captures.push_back(capture);
    ++simulator.acquisition_threads;
    simulator.changed.notify_all();
}

const Scanner* first_capturing(const State& state)
{
    const auto found = std::find_if(state.bus.begin(), state.bus.end(),
                                    [](const auto& scanner) { return scanner->capture != nullptr; });
    return found == state.bus.end() ? nullptr : found->get();
}

}  // namespace

void start_capture(Simulator& simulator, const std::shared_ptr<State>& state, Scanner& scanner,
                   const Capture_config& config)
{
    auto capture = std::make_shared<Capture>();
    capture->scanner_seed = stable_hash(scanner.identity.name);
    capture->config = config;
    start_thread(simulator, state, capture);
    scanner.capture = std::move(capture);
}

std::shared_ptr<Capture> end_capture(Scanner& scanner)
{
    std::shared_ptr<Capture> capture;
    capture.swap(scanner.capture);
    if (capture != nullptr) {
        capture->ending = true;
        simulator().changed.notify_all();
    }
    return capture;
}

std::vector<std::shared_ptr<Capture>> end_all_captures(State& state)
{
    for (const auto& scanner : state.scanners) {
        end_capture(*scanner);
    }
    for (const auto& capture : state.captures) {
        capture->ending = true;
    }
    simulator().changed.notify_all();
    return state.captures;
}

namespace {

template <class Silent>
void wait_patiently(Held_lock& held, const State& state, const std::vector<std::shared_ptr<Capture>>& captures,
                    Silent silent)
{
    const std::uint64_t caller = this_thread_id();
    const auto runs = [caller](const auto& capture) {
        return capture != nullptr && !capture->ended && capture->thread != caller;
    };
    wait_for(held, state.settings.stop_patience_ms,
             [&] { return silent() && std::none_of(captures.begin(), captures.end(), runs); });
    // What is not inside ends without the host's help, although perhaps not soon: it may be drawing.
    simulator().changed.wait(held, [&] {
        return std::none_of(captures.begin(), captures.end(),
                            [&runs](const auto& capture) { return runs(capture) && !capture->inside; });
    });
    for (const auto& capture : captures) {
        if (capture != nullptr && capture->ended) {
            test_bench::take_over(capture.get());
        }
    }
}

}  // namespace

void wait_for_end(Held_lock& held, const State& state, const std::vector<std::shared_ptr<Capture>>& captures)
{
    wait_patiently(held, state, captures, [] { return true; });
}

void wait_for_silence(Held_lock& held, const State& state, const std::vector<std::shared_ptr<Capture>>& captures)
{
    wait_patiently(held, state, captures, [&state] { return !state.hot_plug.others_inside(); });
}

bool deliver(Simulator& simulator, const std::shared_ptr<State>& state, const Scanner* scanner,
             const std::shared_ptr<Delivery>& delivery)
{
    const bool named = scanner != nullptr;
    if (!named) {
        scanner = first_capturing(*state);
    }
    const bool capturing = scanner != nullptr && scanner->capture != nullptr;
    if (state->callback == nullptr || ((named || delivery->next_of_source) && !capturing)) {
        return false;
    }
    test_bench::hand_over(&state->callback);
    if (capturing) {
        scanner->capture->deliveries.push_back(delivery);
        simulator.changed.notify_all();
    } else {
        auto capture = std::make_shared<Capture>();
        capture->deliveries.push_back(delivery);
        start_thread(simulator, state, capture);
    }
    delivery->ticket = ++state->last_ticket;
    state->deliveries[delivery->ticket] = delivery;
    while (state->deliveries.size() > tickets_kept) {
        state->deliveries.erase(state->deliveries.begin());
    }
    return true;
}

void wait_for_return(Held_lock& held, const State& state, const Delivery& delivery)
{
    const auto& captures = state.captures;
    const std::uint64_t caller = this_thread_id();
    if (std::any_of(captures.begin(), captures.end(),
                    [caller](const auto& capture) { return capture->thread == caller; })) {
        return;
    }
    wait_for(held, state.settings.stop_patience_ms,
             [&] { return state.retired || delivery.progress >= Delivery::Progress::done; });
    // Until somebody is inside, it is not the host that the image waits for.
    simulator().changed.wait(held, [&] {
        return state.retired || delivery.progress != Delivery::Progress::waiting ||
               std::any_of(captures.begin(), captures.end(), [](const auto& capture) { return capture->inside; });
    });
}

}  // namespace brenvozulta_simulator
