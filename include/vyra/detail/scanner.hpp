// An open scanner as an object. Part of vyra.hpp.
#ifndef VYRA_DETAIL_SCANNER_HPP
#define VYRA_DETAIL_SCANNER_HPP

#include <algorithm>
#include <atomic>
#include <cctype>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

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
              if (same_name(device)) {
                  notice(plugged);
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
    bool is_unplugged() const noexcept { return unplugged_; }
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
    // The area and the resolution of a way of capturing; none when the scanner does not have it. The sizes in it are
    // not those of the images: size_of has these.
    std::optional<VyraDeviceCapabilities> capabilities(mode mode) const
    {
        VyraDeviceCapabilities record{};
        const auto index = mode == mode::roll ? VYRA_CAPABILITIES_ROLL : VYRA_CAPABILITIES_FLAT;
        check(functions().VyraBrenvoGetCapabilities(handle_, index, &record), "read the capabilities of");
        return record.constant_0 == 0 ? std::nullopt : std::make_optional(record);
    }
    // The driver's number for the port it is attached to.
    std::uint32_t port_type() const
    {
        std::uint32_t type = 0;
        check(functions().VyraBrenvoZultaGetPortType(handle_, &type), "ask for the port of");
        return type;
    }

    // Its LEDs. A refusal of the scanner has the driver's own number as its code, below 9000; the same LEDs are then
    // not tried again before others are shown.
    void show(const DevUI& leds) { check(functions().VyraBrenvoSetDevUI(handle_, &leds), "set the LEDs of"); }
    // What was shown last; all zero after opening.
    DevUI shown() const
    {
        DevUI leds{};
        check(functions().VyraBrenvoGetDevUI(handle_, &leds), "read the LEDs of");
        return leds;
    }
    // A tone of the computer; returns when it is over, after 300 to 600 ms, while which every other call waits.
    void play(tone tone)
    {
        const auto number = static_cast<std::uint32_t>(tone);
        check(functions().VyraBrenvoSetBuzzer(handle_, number, nullptr, nullptr), "play a tone for");
    }

    // The parameter container that the scanner stores, whose layout is the driver's.
    std::vector<std::uint8_t> parameters() const
    {
        std::uint32_t size = 0;
        check(functions().VyraBrenvoZultaGetGlobalParamSize(handle_, &size), "ask for the parameters of");
        std::vector<std::uint8_t> bytes(size);
        if (size != 0) {
            check(functions().VyraBrenvoZultaReadGlobalParam(handle_, bytes.data(), size), "read the parameters of");
        }
        return bytes;
    }
    // The flat-field image of the scanner's model, calibration_size pixels of 8-bit grey, row after row.
    std::vector<std::uint8_t> calibration() const
    {
        std::vector<std::uint8_t> pixels(VYRA_CALIBRATION_SIZE);
        check(functions().VyraBrenvoZultaReadUniformityBuffers(handle_, pixels.data(), VYRA_CALIBRATION_SIZE),
              "read the calibration image of");
        return pixels;
    }
    // One image beside video. The three values are the driver's own, and with them how many bytes it writes.
    void take_snapshot(std::uint8_t* buffer, std::uint32_t a, std::uint32_t b, std::uint32_t c)
    {
        check(functions().VyraBrenvoZultaGetSnapshotAcquisition(handle_, buffer, a, b, c), "take a snapshot with");
    }

    // Restarts the scanner and waits for it, at most two seconds, while which every other call waits. It stays open
    // with its LEDs off; its video ends. Throws error 9005 when it does not come back.
    void reset()
    {
        restart([&] { return functions().VyraBusReset_N(handle_); }, "reset");
    }
    // Loads a firmware image and restarts the scanner, without waiting for that. Takes as long as the transfer; other
    // calls that wait longer than five seconds for it fail with 9000. Its video ends. A firmware whose restart alone
    // was refused is loaded all the same: the library has one status for both.
    void load_firmware(const std::uint8_t* image, std::size_t bytes)
    {
        restart([&] { return functions().VyraPutMemory(handle_, image, bytes); }, "load firmware into");
    }

    // Closes it now; its video must have ended. While another call holds the library, this waits, also for the end of a
    // firmware transfer: what was handed to the scanner is the host's when it has returned.
    void close() noexcept
    {
        if (handle_ == VYRA_NO_HANDLE) {
            return;
        }
        for (auto status = functions().VyraCloseDevice_N(handle_);
             status == VYRA_INTERNAL || status == VYRA_OUT_OF_RESOURCE;
             status = functions().VyraCloseDevice_N(handle_)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));  // for memory: the library waits by itself
        }
        library_.open_[handle_ % library_.open_.size()] = nullptr;
        handle_ = VYRA_NO_HANDLE;
    }

private:
    friend class video;

    void refuse_beside_video() const
    {
        for (const scanner* const other : library_.open_) {
            if (other != nullptr && other->has_video_) {
                throw std::logic_error("vyra: video of \"" + other->name() + "\" runs already");
            }
        }
    }

    void check(std::int32_t status, const char* action) const
    {
        if (status != VYRA_OK) {
            throw error(std::string(action) + " \"" + name_ + "\"", status);
        }
    }

    // The driver tells of a restart as of any other going and coming, which is not the end of this object: the first of
    // the two events belongs to it, whichever is told, during the call or after it.
    template <class Call>
    void restart(Call call, const char* action)
    {
        restarting_ = true;
        const auto status = call();
        if (status != VYRA_OK) {
            restarting_ = false;
        }
        if (status == VYRA_DEVICE_UNAVAIL) {
            unplugged_ = true;
        }
        if (status == VYRA_OK || status == VYRA_DEVICE_UNAVAIL) {
            ++ends_;
        }
        check(status, action);
    }
    void notice(bool plugged) noexcept
    {
        if (!restarting_.exchange(false) && !plugged) {
            unplugged_ = true;
            ++ends_;
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
    std::atomic<bool> unplugged_{false};
    std::atomic<bool> restarting_{false};
    std::atomic<unsigned> ends_{0};  // how often video could not go on
    bool has_video_ = false;
    detail::subscription<detail::device_subscribers> events_;
};

}  // namespace vyra

#endif
