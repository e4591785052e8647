// What the control functions share.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>

#include "brenvozulta_simulator/control.h"
#include "bus.h"
#include "capture.h"
#include "simulator.h"

namespace brenvozulta_simulator {

// The lock and the present state, for the length of one control function.
class Control {
public:
    Control() : held_(simulator().lock), state_(simulator().state) {}

    State* operator->() const { return state_.get(); }
    State& operator*() const { return *state_; }
    const std::shared_ptr<State>& state() const { return state_; }
    Held_lock& held() { return held_; }
    void changed() const { simulator().changed.notify_all(); }

    // 1 as soon as the condition is true, 0 when it is not in time or when the state is gone.
    template <class Condition>
    int wait(std::uint32_t timeout_ms, Condition condition)
    {
        const bool in_time = wait_for(held_, timeout_ms, [&] { return state_->retired || condition(); });
        test_bench::take_over(&state_->callbacks);
        return in_time && condition() ? 1 : 0;
    }

    // 1 when action() says that it is done; 0 when it does not, or when there is no thread or memory for it.
    template <class Action>
    int attempt(Action action)
    {
        try {
            return action() ? 1 : 0;
        } catch (const std::exception&) {
            return 0;
        }
    }

private:
    Held_lock held_;
    const std::shared_ptr<State> state_;
};

inline std::size_t copy_text(const std::string& from, char* text, std::size_t capacity)
{
    if (text != nullptr && capacity > 0) {
        const std::size_t length = std::min(from.size(), capacity - 1);
        std::memcpy(text, from.data(), length);
        text[length] = '\0';
    }
    return from.size();
}

inline std::shared_ptr<Delivery> delivery_of(const brenvozulta_sim_image& image)
{
    auto delivery = std::make_shared<Delivery>();
    delivery->null_pixels = image.pixels == nullptr;
    if (image.pixels != nullptr) {
        delivery->pixels.assign(image.pixels, image.pixels + image.length);
    }
    delivery->width = image.width;
    delivery->height = image.height;
    delivery->use_context = image.use_context != 0;
    delivery->context = image.context;
    return delivery;
}

// Runs change(scanner) for a scanner that has been heard of; 0 for any other.
template <class Change>
int change_scanner(const char* name, Change change)
{
    Control control;
    const auto scanner = find_scanner(*control, name);
    if (scanner == nullptr) {
        return 0;
    }
    change(*scanner);
    control.changed();
    return 1;
}

}  // namespace brenvozulta_simulator
