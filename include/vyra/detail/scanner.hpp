// An open scanner as an object. Part of vyra.hpp.
#ifndef VYRA_DETAIL_SCANNER_HPP
#define VYRA_DETAIL_SCANNER_HPP

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include "basics.hpp"
#include "library.hpp"
#include "subscribers.hpp"

namespace vyra {

// An open scanner. Of all that are open in a process, the one that was opened last delivers images.
class scanner {
public:
    // Throws error (9005: no scanner of that name is attached; 9110: it is open already), and std::logic_error when the
    // handle that the library would give belongs to another scanner: close in reverse order of opening.
    scanner(vyra::library& library, std::string name)
        : library_(library),
          name_(std::move(name)),
          events_(detail::all<detail::device_subscribers>(), [this](const char* device, bool plugged) {
              if (!plugged && same_name(device)) {
                  ++removals_;
              }
          })
    {
        auto& open = library_.open_;
        const auto others = static_cast<std::size_t>(
            std::count_if(open.begin(), open.end(), [](const scanner* each) { return each != nullptr; }));
        if (others < open.size() && open[others] != nullptr) {
            throw std::logic_error("vyra: opening \"" + name_ + "\" would displace \"" + open[others]->name_ +
                                   "\": close scanners in reverse order of opening");
        }
        if (const auto status = functions().VyraOpenDevice(name_.c_str(), &handle_)) {
            throw error("open \"" + name_ + "\"", status);
        }
        open[handle_ % open.size()] = this;
        library_.last_opened_ = this;
    }
    ~scanner() { close(); }
    scanner(const scanner&) = delete;
    scanner& operator=(const scanner&) = delete;

    const std::string& name() const noexcept { return name_; }
    std::uint32_t handle() const noexcept { return handle_; }  // VYRA_NO_HANDLE once it is closed
    const VyraFunctions& functions() const noexcept { return library_.functions(); }

    // Whether it was unplugged since it was opened. It does not work again before it is opened anew.
    bool is_unplugged() const noexcept { return removals_ != 0; }
    // Whether another scanner was opened since.
    bool is_silenced() const noexcept { return library_.last_opened_ != this; }

    DeviceInfo info() const
    {
        DeviceInfo record{};
        check(functions().VyraBrenvoGetDeviceInfo(handle_, &record), "read the identity of");
        return record;
    }
    bool can_roll() const
    {
        std::uint8_t supported = 0;
        check(functions().VyraBrenvoZultaIsRollSupported(handle_, &supported), "ask for roll capture of");
        return supported != 0;
    }
    // Its LEDs. A refusal of the scanner has the driver's own number as its code, below 9000.
    void show(const DevUI& leds) { check(functions().VyraBrenvoSetDevUI(handle_, &leds), "set the LEDs of"); }
    // A tone of the computer, VYRA_TONE_DOUBLE to VYRA_TONE_LOW; returns when it is over.
    void play(std::uint32_t tone)
    {
        check(functions().VyraBrenvoSetBuzzer(handle_, tone, nullptr, nullptr), "play a tone for");
    }

    // Closes it now; its video must have ended. While another call holds the library, this waits, up to a minute.
    void close() noexcept
    {
        if (handle_ == VYRA_NO_HANDLE) {
            return;
        }
        std::int32_t status = VYRA_INTERNAL;
        for (int tries = 12; tries > 0 && (status == VYRA_INTERNAL || status == VYRA_OUT_OF_RESOURCE); --tries) {
            status = functions().VyraCloseDevice_N(handle_);
        }
        library_.open_[handle_ % library_.open_.size()] = nullptr;
        handle_ = VYRA_NO_HANDLE;
    }

private:
    friend class video;

    void check(std::int32_t status, const char* action) const
    {
        if (status != VYRA_OK) {
            throw error(std::string(action) + " \"" + name_ + "\"", status);
        }
    }

    // As the library compares names: whatever the letters' case.
    bool same_name(const char* other) const noexcept
    {
        const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
        return std::equal(name_.begin(), name_.end(), other, other + std::char_traits<char>::length(other),
                          [&](char a, char b) { return lower(a) == lower(b); });
    }

    vyra::library& library_;
    const std::string name_;
    std::uint32_t handle_ = VYRA_NO_HANDLE;
    std::atomic<unsigned> removals_{0};
    bool has_video_ = false;
    detail::subscription<detail::device_subscribers> events_;
};

}  // namespace vyra

#endif
