// The one simulator of the process: its lock and its state.
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "agenda.h"
#include "call_record.h"
#include "faults.h"
#include "held_lock.h"
#include "hot_plug.h"
#include "identity.h"
#include "settings.h"

namespace brenvozulta_simulator {

struct Capture;
struct Delivery;

struct Scanner {
    Identity identity;

    void* handle = nullptr;  // of the latest attachment
    bool attached = false;
    bool keeps_handle = false;  // it is not to be given out again yet
    bool restarting = false;    // attached, but off the bus until it has started again
    std::uint64_t restart = 0;  // counts restarts, so that a cancelled one is told from the latest
    bool open = false;
    std::uint8_t config = default_config;
    std::shared_ptr<Capture> capture;  // set while it captures

    std::array<brenvozulta_sim_leds, BRENVOZULTA_SIM_LED_AREAS> leds{};
    std::deque<brenvozulta_sim_leds> led_history;

    std::uint64_t firmware_bytes = 0;
    bool firmware_pending = false;  // written, starts with the next restart
    std::array<char, 3> firmware_version{};
    bool firmware_unreset = false;  // no QXDR_ResetDevice since the last transfer

    bool present() const { return attached && !restarting; }
};

struct Callback_counts {
    std::uint64_t entered = 0;
    std::uint64_t returned = 0;
};

// Everything that a reset throws away. A thread or a call that was under way keeps the state that it began with, so
// that whatever it still does after a reset is done to the old state, which nobody looks at any more.
struct State {
    bool retired = false;  // a reset has replaced this state: threads and calls that work on it end
    bool initialized = false;
    bool scenario_loaded = false;
    std::string last_error;
    Settings settings;

    std::vector<std::shared_ptr<Scanner>> scanners;           // by the time they were first heard of
    std::vector<std::shared_ptr<Scanner>> bus;                // attached ones, by the time of attachment
    std::map<const void*, std::shared_ptr<Scanner>> handles;  // every handle given out, with its latest scanner
    std::vector<void*> free_handles;                          // to be given out again, the last one first

    DriverAcquisitionCallback callback = nullptr;
    void* context = nullptr;
    Callback_counts callbacks;
    std::vector<std::shared_ptr<Capture>> captures;                 // of every acquisition thread that has not ended
    std::map<std::uint64_t, std::shared_ptr<Delivery>> deliveries;  // by ticket
    std::uint64_t last_ticket = 0;

    Call_record calls;
    Faults faults;
    Hot_plug hot_plug;
    Agenda agenda;
};

struct Simulator {
    // Guards everything below and the states that state ever pointed to. It is never held while the host's callback or
    // listener runs nor while an image is made, and no other lock is taken inside it.
    std::mutex lock;
    // Notified after every change that anyone may wait for.
    std::condition_variable changed;
    std::shared_ptr<State> state;
    std::uint32_t acquisition_threads = 0;
    std::uintptr_t last_handle;
};

// Gives a held lock away for the length of a block, however that is left.
class Unlocked {
public:
    explicit Unlocked(Held_lock& held) : held_(held) { held_.unlock(); }
    ~Unlocked() { held_.lock(); }
    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;

private:
    Held_lock& held_;
};

// Never destroyed: driver threads may outlive the process's static objects.
Simulator& simulator();

// A state as it is without configuration.
std::shared_ptr<State> default_state(Simulator& simulator);

// Waits under the held lock until the condition is true; false when it is not after timeout_ms.
template <class Condition>
bool wait_for(Held_lock& held, std::uint32_t timeout_ms, Condition condition)
{
    if (timeout_ms == BRENVOZULTA_SIM_UNLIMITED) {
        simulator().changed.wait(held, condition);
        return true;
    }
    // A wait of no time would still give the lock away.
    return timeout_ms == 0 ? condition()
                           : simulator().changed.wait_for(held, std::chrono::milliseconds(timeout_ms), condition);
}

std::uint64_t this_thread_id();

}  // namespace brenvozulta_simulator
