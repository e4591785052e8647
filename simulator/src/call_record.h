// The record of all driver calls. Not synchronised: it belongs to the simulator's state, under its lock.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace brenvozulta_simulator {

constexpr std::size_t function_count = 20;

// The place of a driver function in the driver's export order, or function_count for an unknown name.
std::size_t function_index(const char* name);
const char* function_name(std::size_t function);

struct Argument {
    enum class Kind { number, address, text };
    const char* name;
    Kind kind;
    std::uint64_t value;
    std::string text;
};

Argument number(const char* name, std::uint64_t value);
Argument address(const char* name, const void* value);
Argument text(const char* name, const char* value);

struct Call {
    std::uint64_t order;
    std::uint64_t thread;
    std::size_t function;
    std::vector<Argument> arguments;
    std::uint32_t result;
    bool finished;
};

std::string to_text(const Argument& argument);
std::string to_text(const Call& call);

class Call_record {
public:
    // Adds a call and returns the number under which finish knows it.
    std::uint64_t begin(std::size_t function, std::uint64_t thread, std::vector<Argument> arguments);
    void finish(std::uint64_t id, std::size_t function, std::uint32_t result);
    void clear();

    std::size_t size() const { return calls_.size(); }
    const Call* at(std::size_t index) const { return index < calls_.size() ? &calls_[index] : nullptr; }
    std::uint64_t begun(std::size_t function) const { return begun_[function]; }
    std::uint64_t returned(std::size_t function) const { return returned_[function]; }

private:
    std::deque<Call> calls_;
    std::uint64_t first_id_ = 1;        // of calls_.front()
    std::uint64_t cleared_before_ = 1;  // calls with a smaller id were cleared: their return is not counted
    std::array<std::uint64_t, function_count> begun_{};
    std::array<std::uint64_t, function_count> returned_{};
};

}  // namespace brenvozulta_simulator
