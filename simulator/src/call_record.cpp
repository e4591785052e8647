#include "call_record.h"

#include <cinttypes>
#include <cstdio>
#include <cstring>

namespace brenvozulta_simulator {
namespace {

constexpr std::size_t record_capacity = 65536;

constexpr const char* function_names[function_count] = {
    "QXDR_Initialize",
    "QXDR_Release",
    "QXDR_GetDevicesList",
    "QXDR_SetListenerCallbackHotPlug",
    "QXDR_GetUsbInfo",
    "QXDR_OpenDevice",
    "QXDR_CloseDevice",
    "QXDR_ResetDevice",
    "QXDR_SetCallbackAcquisition",
    "QXDR_SelectCaptureConfig",
    "QXDR_GetCaptureConfig",
    "QXDR_StartCapture",
    "QXDR_StopCapture",
    "QXDR_GetDeviceInfo",
    "QXDR_GetDeviceInfoSN",
    "QXDR_SetLeds",
    "QXDR_GetContainerSize",
    "QXDR_ReadContainer",
    "QXDR_GetSnapshotAcquisition",
    "QXDR_UpdateFirmware",
};

}  // namespace

std::size_t function_index(const char* name)
{
    std::size_t function = 0;
    while (function < function_count && (name == nullptr || std::strcmp(name, function_names[function]) != 0)) {
        ++function;
    }
    return function;
}

const char* function_name(std::size_t function)
{
    return function_names[function];
}

Argument number(const char* name, std::uint64_t value)
{
    return {name, Argument::Kind::number, value, {}};
}

Argument address(const char* name, const void* value)
{
    return {name, Argument::Kind::address, reinterpret_cast<std::uintptr_t>(value), {}};
}

Argument text(const char* name, const char* value)
{
    return {name, Argument::Kind::text, reinterpret_cast<std::uintptr_t>(value), value == nullptr ? "" : value};
}

std::string to_text(const Argument& argument)
{
    char number_text[24];
    switch (argument.kind) {
        case Argument::Kind::number:
            return std::to_string(argument.value);
        case Argument::Kind::address:
            std::snprintf(number_text, sizeof number_text, "0x%" PRIx64, argument.value);
            return number_text;
        case Argument::Kind::text:
            break;
    }
    return argument.text;
}

std::string to_text(const Call& call)
{
    std::string line = std::string(function_names[call.function]) + "(";
    const char* separator = "";
    for (const Argument& argument : call.arguments) {
        line.append(separator).append(argument.name).append("=");
        if (argument.kind != Argument::Kind::text) {
            line += to_text(argument);
        } else if (argument.value == 0) {
            line += "null";
        } else {
            line.append("\"").append(argument.text).append("\"");
        }
        separator = ", ";
    }
    line += ")";
    return call.finished ? line + " = " + std::to_string(call.result) : line;
}

std::uint64_t Call_record::begin(std::size_t function, std::uint64_t thread, std::vector<Argument> arguments)
{
    const std::uint64_t id = first_id_ + calls_.size();
    calls_.push_back({id - cleared_before_ + 1, thread, function, std::move(arguments), 0, false});
    ++begun_[function];
    if (calls_.size() > record_capacity) {
        calls_.pop_front();
        ++first_id_;
    }
    return id;
}

void Call_record::finish(std::uint64_t id, std::size_t function, std::uint32_t result)
{
    if (id >= cleared_before_) {
        ++returned_[function];
    }
    if (id >= first_id_) {
        Call& call = calls_[id - first_id_];
        call.result = result;
        call.finished = true;
    }
}

void Call_record::clear()
{
    first_id_ += calls_.size();
    cleared_before_ = first_id_;
    calls_.clear();
    begun_.fill(0);
    returned_.fill(0);
}

}  // namespace brenvozulta_simulator
