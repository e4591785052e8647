// A manager that takes down the calls that reach it and answers as it is told, in the place of the real one.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

namespace recording_manager {

struct Call {
    std::string operation;
    std::vector<std::uint64_t> arguments;

    bool operator==(const Call& other) const { return operation == other.operation && arguments == other.arguments; }
};

inline std::ostream& operator<<(std::ostream& stream, const Call& call)
{
    stream << call.operation << std::hex;
    for (const std::uint64_t value : call.arguments) {
        stream << " 0x" << value;
    }
    return stream << std::dec;
}

// Addresses and numbers alike.
template <class Value>
std::uint64_t argument(Value value)
{
    if constexpr (std::is_pointer_v<Value>) {
        return reinterpret_cast<std::uintptr_t>(value);
    } else {
        return static_cast<std::uint64_t>(value);
    }
}

struct State {
    std::vector<Call> calls;
    std::int32_t answer = 0;
    int managers_obtained = 0;
    long owners_during_call = 0;
};

State& state();
void reset();

// Owners of the manager at this moment.
long owners();

}  // namespace recording_manager
