// Who wants to hear of which USB device.
#pragma once

#include <array>
#include <boost/thread/mutex.hpp>
#include <cstdint>

#include "vyra/notify.h"

namespace kvs::brenvozulta {

class usb_subscriptions {
public:
    static constexpr std::size_t places = 10;

    bool subscribe(int vendor, int product, UsbEventCallback callback);
    bool unsubscribe(int vendor, int product);
    void clear();

    // Calls the subscriber of this pair, if there is one.
    void dispatch(int vendor, int product, bool arrived);

private:
    // A place whose identifiers are both 0 is free.
    struct Subscription {
        int vendor = 0;
        int product = 0;
        UsbEventCallback callback = nullptr;
    };

    Subscription* find(int vendor, int product);

    // Guards the table and the count. Innermost: nothing is taken and nobody is called inside it, so that a subscriber
    // may itself subscribe and unsubscribe.
    boost::mutex mutex_;
    std::array<Subscription, places> table_;
    // Compared for equality only. Ending the subscription of a free place lowers it below zero, where it wraps.
    std::uint32_t count_ = 0;
};

// The one table of the process.
usb_subscriptions& the_usb_subscriptions();

}  // namespace kvs::brenvozulta
