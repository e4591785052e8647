// The library as an object. Part of vyra.hpp.
#ifndef VYRA_DETAIL_LIBRARY_HPP
#define VYRA_DETAIL_LIBRARY_HPP

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "../functions.h"
#include "basics.hpp"
#include "subscribers.hpp"

namespace vyra {

// The functions of a host that links the library.
inline const VyraFunctions& linked_functions()
{
#define VYRA_ADDRESS(result, name, parameters, arguments) &::name,
    static const VyraFunctions functions = {VYRA_FUNCTIONS(VYRA_ADDRESS)};
#undef VYRA_ADDRESS
    return functions;
}

class scanner;

// The initialized library. There is one at a time in a process.
class library {
public:
    // log_level and log_limit as for VyraInitialize_N.
    explicit library(std::uint32_t log_level = VYRA_LOG_OFF, std::int32_t log_limit = 0)
        : library(linked_functions(), log_level, log_limit)
    {
    }
    explicit library(const VyraFunctions& functions, std::uint32_t log_level = VYRA_LOG_OFF, std::int32_t log_limit = 0)
        : functions_(functions)
    {
        if (exists().exchange(true)) {
            throw std::logic_error("vyra: the library is initialized already: one object at a time");
        }
        if (const auto status = functions_.VyraInitialize_N(detail::on_device_event, log_level, log_limit)) {
            functions_.VyraTerminate();  // after some failures it is initialized all the same
            exists() = false;
            throw error("initialize the library", status);
        }
        functions_.SubscribeToPowerEvent(detail::on_power_event);
    }

    // Should the driver refuse its release, three times, the library stays initialized; it then calls nobody any more.
    ~library()
    {
        functions_.UnsubscribeToPowerEvent(detail::on_power_event);
        for (int tries = 3; tries > 0 && functions_.VyraTerminate() == VYRA_INTERNAL;) {
            --tries;
        }
        exists() = false;
    }
    library(const library&) = delete;
    library& operator=(const library&) = delete;

    // The names of the attached scanners; empty when there is none, or when the driver cannot list them: the library
    // has one status for both (9000), and the log tells.
    std::vector<std::string> scanners() const
    {
        std::array<DeviceListRecord, VYRA_MAX_SCANNERS> records{};
        std::uint32_t count = VYRA_MAX_SCANNERS;
        const auto status = functions_.VyraGetDeviceList_N(&count, records.data());
        if (status != VYRA_OK && status != VYRA_INTERNAL) {
            throw error("list the scanners", status);
        }
        std::vector<std::string> names;
        for (std::uint32_t i = 0; status == VYRA_OK && i < count; ++i) {
            const char* const name = records[i].name;
            names.emplace_back(name, std::find(name, name + sizeof records[i].name, '\0'));
        }
        return names;
    }

    // The identity of an attached scanner that need not be open, by its exact name.
    // Throws error (9000: no scanner has the name; 9110: the computer sleeps).
    DeviceInfo info(const std::string& name) const
    {
        DeviceInfo record{};
        if (const auto status = functions_.VyraBrenvoMGGetDeviceInfo(name.c_str(), nullptr, &record)) {
            throw error("read the identity of \"" + name + "\"", status);
        }
        return record;
    }

    const VyraFunctions& functions() const noexcept { return functions_; }

private:
    friend class scanner;

    static std::atomic<bool>& exists()
    {
        static std::atomic<bool> flag{false};
        return flag;
    }

    const VyraFunctions functions_;
    std::array<const scanner*, VYRA_MAX_SCANNERS> open_{};  // by handle
    std::atomic<const scanner*> last_opened_{nullptr};
};

}  // namespace vyra

#endif
