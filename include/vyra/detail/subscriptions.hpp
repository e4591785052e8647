// Subscriptions as objects: once one has ended, its subscriber is not called any more. Part of vyra.hpp.
#ifndef VYRA_DETAIL_SUBSCRIPTIONS_HPP
#define VYRA_DETAIL_SUBSCRIPTIONS_HPP

#include <functional>
#include <utility>

#include "library.hpp"
#include "scanner.hpp"
#include "subscribers.hpp"

namespace vyra {

// Tells of scanners that come (plugged is true) and go, by name. The name is valid during the call.
class device_subscription {
public:
    device_subscription(library&, std::function<void(const char* name, bool plugged)> subscriber)
        : subscription_(detail::all<detail::device_subscribers>(), std::move(subscriber))
    {
    }

private:
    detail::subscription<detail::device_subscribers> subscription_;
};

// Tells that the computer goes to sleep (asleep is true) and that it has resumed.
class power_subscription {
public:
    power_subscription(library&, std::function<void(bool asleep)> subscriber)
        : subscription_(detail::all<detail::power_subscribers>(), std::move(subscriber))
    {
    }

private:
    detail::subscription<detail::power_subscribers> subscription_;
};

// Tells of any USB device with these identifiers: arrived is true when it has come, false when it has gone.
class usb_subscription {
public:
    // Throws error 9109 when the pair is 0 and 0 or has a subscription already, or nine pairs have one.
    usb_subscription(library& library, int vendor, int product, std::function<void(bool arrived)> subscriber)
        : functions_(library.functions()),
          vendor_(vendor),
          product_(product),
          subscription_(detail::all<detail::usb_subscribers>(),
                        [vendor, product, subscriber = std::move(subscriber)](int v, int p, bool arrived) {
                            if (v == vendor && p == product) {
                                subscriber(arrived);
                            }
                        })
    {
        if (!functions_.SubscribeToUsbEvent(vendor, product, detail::on_usb_event)) {
            throw error("subscribe to a USB device", VYRA_BAD_PARAMETER);
        }
    }
    ~usb_subscription() { functions_.UnSubscribeToUsbEvent(vendor_, product_); }
    usb_subscription(const usb_subscription&) = delete;
    usb_subscription& operator=(const usb_subscription&) = delete;

private:
    const VyraFunctions& functions_;
    const int vendor_;
    const int product_;
    detail::subscription<detail::usb_subscribers> subscription_;
};

// Tells after every LED command of a scanner, inside scanner::show.
class led_subscription {
public:
    // Throws error when the scanner is not open.
    led_subscription(scanner& scanner, std::function<void()> subscriber)
        : subscription_(detail::all<detail::led_subscribers>(),
                        [&scanner, subscriber = std::move(subscriber)](const void* which) {
                            if (which == &scanner) {
                                subscriber();
                            }
                        })
    {
        const auto handle = scanner.handle();
        // Once is enough until the scanner is closed; the address is never looked behind.
        if (const auto status = scanner.functions().VyraBrenvoSetUICallBack(handle, detail::on_led_command, &scanner)) {
            throw error("follow the LEDs of \"" + scanner.name() + "\"", status);
        }
    }

private:
    detail::subscription<detail::led_subscribers> subscription_;
};

}  // namespace vyra

#endif
