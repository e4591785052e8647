#include "notify/power_subscriptions.h"

#include <algorithm>

#include "lifetime/never_destroyed.h"
#include "log/log_exceptions.h"

namespace kvs::brenvozulta {

bool power_subscriptions::subscribe(PowerEventCallback callback)
{
    const scoped_lock<dispatch_mutex> lock(mutex_);
    // A null callback matches a free place, and is stored in it without a trace.
    const auto place = std::find_if(table_.begin(), table_.end(),
                                    [=](PowerEventCallback entry) { return entry == callback || entry == nullptr; });
    if (place == table_.end()) {
        return false;
    }
    *place = callback;
    return true;
}

bool power_subscriptions::unsubscribe(PowerEventCallback callback)
{
    const scoped_lock<dispatch_mutex> lock(mutex_);
    const auto place = std::find(table_.begin(), table_.end(), callback);
    if (place == table_.end()) {
        return false;
    }
    *place = nullptr;
    return true;
}

void power_subscriptions::dispatch(SysPowerEventType event)
{
    const scoped_lock<dispatch_mutex> lock(mutex_);
    // By place, since a subscriber may change the table; and each guarded, since one that throws must not keep the
    // others from learning that the system sleeps.
    for (const PowerEventCallback& place : table_) {
        if (const PowerEventCallback callback = place) {
            log_exceptions([=] { callback(event); });
        }
    }
}

power_subscriptions& the_power_subscriptions()
{
    return never_destroyed<power_subscriptions>();
}

}  // namespace kvs::brenvozulta
