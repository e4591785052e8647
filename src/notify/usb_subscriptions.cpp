#include "notify/usb_subscriptions.h"

#include <algorithm>

#include "lifetime/never_destroyed.h"

namespace kvs::brenvozulta {

usb_subscriptions::Subscription* usb_subscriptions::find(int vendor, int product)
{
    const auto place = std::find_if(table_.begin(), table_.end(), [=](const Subscription& entry) {
        return entry.vendor == vendor && entry.product == product;
    });
    return place == table_.end() ? nullptr : &*place;
}

bool usb_subscriptions::subscribe(int vendor, int product, UsbEventCallback callback)
{
    const scoped_lock<plain_mutex> lock(mutex_);
    // The pair 0, 0 finds a free place here and is refused like a pair that is taken.
    if (find(vendor, product) != nullptr) {
        return false;
    }
    // One place always stays free: hosts know a limit of nine.
    if (count_ + 1 == places) {
        return false;
    }
    Subscription* const place = find(0, 0);
    if (place == nullptr) {
        return false;
    }
    *place = {vendor, product, callback};
    ++count_;
    return true;
}

bool usb_subscriptions::unsubscribe(int vendor, int product)
{
    const scoped_lock<plain_mutex> lock(mutex_);
    // The pair 0, 0 finds a free place and lowers the count all the same.
    Subscription* const place = find(vendor, product);
    if (place == nullptr) {
        return false;
    }
    --count_;
    *place = {};
    return true;
}

void usb_subscriptions::clear()
{
    const scoped_lock<plain_mutex> lock(mutex_);
    count_ = 0;
    table_.fill({});
}

void usb_subscriptions::dispatch(int vendor, int product, UsbPlugEventType event)
{
    // Called outside the lock, so a subscriber may still be called once after its unsubscription has returned.
    UsbEventCallback callback = nullptr;
    {
        const scoped_lock<plain_mutex> lock(mutex_);
        if (const Subscription* const place = find(vendor, product)) {
            callback = place->callback;
        }
    }
    if (callback != nullptr) {
        callback(vendor, product, event);
    }
}

usb_subscriptions& the_usb_subscriptions()
{
    return never_destroyed<usb_subscriptions>();
}

}  // namespace kvs::brenvozulta
