// Who wants to hear of sleep and resume.
#pragma once

#include <array>
#include <cstddef>

#include "locks/locks.h"
#include "notify/waiting.h"
#include "vyra/notify.h"

namespace kvs::brenvozulta {

class power_subscriptions {
public:
    static constexpr std::size_t places = 10;

    bool subscribe(PowerEventCallback callback);
    bool unsubscribe(PowerEventCallback callback);

    // Calls every subscriber, in the order of the places.
    void dispatch(SysPowerEventType event);

private:
    // Held while subscribers run, so that none runs any more once its unsubscription has returned. A subscriber takes
    // what it likes inside it, which the compiler does not see; the manager's takes the manager lock. So this lock
    // comes first, and who holds the manager lock while asking for this one can make that subscriber's wait for it run
    // out, after 5000 ms. Recursive, because a host that shuts the library down when the system goes to sleep
    // unsubscribes from inside a subscriber: it would otherwise wait for itself for ever. Free again when a subscriber
    // ends the thread: the table is whole at every moment, since each place is written at once.
    dispatch_mutex mutex_;
    // A null place is free. The scan of a subscription ends at the first free place: a function that stands behind a
    // place freed since can therefore come to stand in both.
    std::array<PowerEventCallback, places> table_ GUARDED_BY(mutex_){};
};

// The one table of the process.
power_subscriptions& the_power_subscriptions();

}  // namespace kvs::brenvozulta
