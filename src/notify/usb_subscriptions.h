// Who wants to hear of which USB device.
#pragma once

#include <array>
#include <cstdint>

#include "locks/locks.h"
#include "vyra/notify.h"

namespace kvs::brenvozulta {

class usb_subscriptions {
public:
    static constexpr std::size_t places = 10;

    bool subscribe(int vendor, int product, UsbEventCallback callback) EXCLUDES(mutex_);
    bool unsubscribe(int vendor, int product) EXCLUDES(mutex_);
    void clear() EXCLUDES(mutex_);

    // Calls the subscriber of this pair, if there is one.
    void dispatch(int vendor, int product, UsbPlugEventType event) EXCLUDES(mutex_);

private:
    // A place whose identifiers are both 0 is free.
    struct Subscription {
        int vendor = 0;
        int product = 0;
        UsbEventCallback callback = nullptr;
    };

    Subscription* find(int vendor, int product) REQUIRES(mutex_);

    // Nothing is taken and nobody is called inside it, so that a subscriber may itself subscribe and unsubscribe.
    plain_mutex mutex_ ACQUIRED_AFTER(lock_order::inside_notifier);
    std::array<Subscription, places> table_ GUARDED_BY(mutex_);
    // Compared for equality only. Ending the subscription of a free place lowers it below zero, where it wraps.
    std::uint32_t count_ GUARDED_BY(mutex_) = 0;
};

// The one table of the process.
usb_subscriptions& the_usb_subscriptions();

}  // namespace kvs::brenvozulta
