// Acquisition threads: one for each capturing scanner, and one for each image that is delivered while none captures.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "image_source.h"
#include "simulator.h"

namespace brenvozulta_simulator {

// One image on its way to the host by order of the control interface. Under the simulator's lock, but for the pixels,
// which nobody changes.
struct Delivery {
    enum class Progress { waiting, begun, done, dropped };
    bool next_of_source = false;  // the fields down to height are not used then
    bool null_pixels = false;
    std::vector<std::uint8_t> pixels;
    std::uint16_t width = 0;
    std::uint16_t height = 0;
    bool use_context = false;
    void* context = nullptr;

    std::uint64_t ticket = 0;
    Progress progress = Progress::waiting;
    std::int32_t callback_result = 0;
};

// One acquisition thread's orders. Under the simulator's lock. The thread owns it, so that a thread that stays inside
// the host's callback stands on firm ground whatever becomes of the scanner.
struct Capture {
    std::uint64_t scanner_seed = 0;
    Capture_config config{};  // zero size: the thread only serves deliveries and ends after the last
    bool ending = false;      // no callback is entered any more
    bool inside = false;      // the thread is in the host's callback
    bool ended = false;
    std::uint64_t thread = 0;  // its number, once it runs
    std::uint64_t frame = 0;
    std::deque<std::shared_ptr<Delivery>> deliveries;
};

// All under the simulator's lock.
void start_capture(Simulator& simulator, const std::shared_ptr<State>& state, Scanner& scanner,
                   const Capture_config& config);
// Lets the scanner's acquisition thread end, without waiting for it. Returns what wait_for_end takes; null: no capture.
std::shared_ptr<Capture> end_capture(Scanner& scanner);
// Ends every acquisition thread of the state, without waiting for them.
std::vector<std::shared_ptr<Capture>> end_all_captures(State& state);
// Waits until those threads have ended but for the caller's own. For one that stays inside the host's callback it waits
// no longer than the patience of the settings: that one ends by itself. The lock is released meanwhile.
void wait_for_end(Held_lock& held, const State& state, const std::vector<std::shared_ptr<Capture>>& captures);
// The same, and for the listener.
void wait_for_silence(Held_lock& held, const State& state, const std::vector<std::shared_ptr<Capture>>& captures);

// Gives the delivery a ticket and a thread: that of scanner, of the first capturing one (null), or one of its own.
// False when there is no callback, or no capture of the scanner named; std::system_error when there is no thread for
// it.
bool deliver(Simulator& simulator, const std::shared_ptr<State>& state, const Scanner* scanner,
             const std::shared_ptr<Delivery>& delivery);
// Waits until the callback has returned from it, no longer than the patience; not on an acquisition thread, behind
// which it may be queued.
void wait_for_return(Held_lock& held, const State& state, const Delivery& delivery);

}  // namespace brenvozulta_simulator
