// One happening of a timeline: when, and what.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace brenvozulta_simulator {

struct Delivery;

// The moments of a driver call. Inside the call, what happens then happens on the caller's thread.
enum class Moment { after_call, on_entry, on_return };
constexpr std::size_t moment_count = 3;

struct Timeline_entry {
    enum class What { unplug, plug, image };
    Moment moment;
    std::string function;  // empty: at_ms counts from QXDR_Initialize
    std::uint64_t count;
    std::uint32_t at_ms;
    What what;
    std::string scanner;                    // that comes or goes
    std::uint32_t late_ms;                  // how much later it is announced
    std::shared_ptr<const Delivery> image;  // that is delivered
};

}  // namespace brenvozulta_simulator
