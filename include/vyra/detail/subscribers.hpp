// Who is to be told of an event of the library. Part of vyra.hpp.
//
// The library's callbacks carry no context, so there is one table for the process and each kind of event.
#ifndef VYRA_DETAIL_SUBSCRIBERS_HPP
#define VYRA_DETAIL_SUBSCRIBERS_HPP

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "../functions.h"

namespace vyra::detail {

template <class... Arguments>
class subscribers {
public:
    using function = std::function<void(Arguments...)>;

    void add(const std::shared_ptr<const function>& subscriber)
    {
        const std::lock_guard<std::recursive_mutex> lock(mutex_);
        const auto place = std::find(places_.begin(), places_.end(), nullptr);
        if (place == places_.end()) {
            throw std::length_error("vyra: too many subscriptions of one kind");
        }
        *place = subscriber;
    }

    // Once this has returned, the subscriber is not called any more: it waits for a call under way on another thread.
    void remove(const std::shared_ptr<const function>& subscriber) noexcept
    {
        const std::lock_guard<std::recursive_mutex> lock(mutex_);
        std::replace(places_.begin(), places_.end(), subscriber, std::shared_ptr<const function>());
    }

    // A subscriber that throws ends the program: there is nobody above it who could catch.
    void call(Arguments... arguments) noexcept
    {
        const std::lock_guard<std::recursive_mutex> lock(mutex_);
        for (const auto& place : places_) {
            const auto subscriber = place;  // which may end its own subscription
            if (subscriber != nullptr) {
                (*subscriber)(arguments...);
            }
        }
    }

private:
    // Recursive: a subscriber may call the library, which may tell of the next event inside that call.
    std::recursive_mutex mutex_;
    std::array<std::shared_ptr<const function>, 32> places_{};
};

// One subscriber, for as long as the object lives.
template <class Subscribers>
class subscription {
public:
    subscription(Subscribers& all, typename Subscribers::function subscriber)
        : all_(all), subscriber_(std::make_shared<const typename Subscribers::function>(std::move(subscriber)))
    {
        all_.add(subscriber_);
    }
    ~subscription() { all_.remove(subscriber_); }
    subscription(const subscription&) = delete;
    subscription& operator=(const subscription&) = delete;

private:
    Subscribers& all_;
    const std::shared_ptr<const typename Subscribers::function> subscriber_;
};

using device_subscribers = subscribers<const char*, bool>;
using power_subscribers = subscribers<bool>;
using usb_subscribers = subscribers<int, int, bool>;
using led_subscribers = subscribers<const void*>;

// Never destroyed: events may come while the process ends.
template <class Subscribers>
Subscribers& all()
{
    static Subscribers& table = *new Subscribers;
    return table;
}

inline std::int32_t on_device_event(std::int32_t, const char* name, std::int32_t plugged)
{
    all<device_subscribers>().call(name, plugged != 0);
    return 0;
}

inline void on_power_event(SysPowerEventType event)
{
    all<power_subscribers>().call(event == SysPowerSleep);
}

inline void on_usb_event(int vendor, int product, UsbPlugEventType event)
{
    all<usb_subscribers>().call(vendor, product, event == UsbDevicePlugged);
}

inline void on_led_command(void* scanner)
{
    all<led_subscribers>().call(scanner);
}

}  // namespace vyra::detail

#endif
