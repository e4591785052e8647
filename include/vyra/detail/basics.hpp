// Errors, modes, sizes, images. Part of vyra.hpp.
#ifndef VYRA_DETAIL_BASICS_HPP
#define VYRA_DETAIL_BASICS_HPP

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "../status_text.h"
#include "../vyra.h"

namespace vyra {

// A call of the library failed: what() names the call, the status and its meaning, code() is the status (status.h), for
// which status_text.h has more: whether to try again, what to do.
class error : public std::runtime_error {
public:
    error(const std::string& action, std::int32_t code)
        : std::runtime_error("cannot " + action + ": " + std::to_string(code) + " " + VyraStatusTextOf(code)->name +
                             " (" + VyraStatusTextOf(code)->meaning + ")"),
          code_(code)
    {
    }
    std::int32_t code() const noexcept { return code_; }

private:
    std::int32_t code_;
};

// The scanner was unplugged while video ran. Give it up, wait until it is listed again (change_watch) and open it anew.
class unplugged : public error {
public:
    explicit unplugged(const std::string& name) : error("capture: \"" + name + "\" is unplugged", VYRA_DEVICE_UNAVAIL)
    {
    }
};

enum class mode : std::uint32_t { roll = VYRA_MODE_ROLL, flat = VYRA_MODE_FLAT };

// Tones of the computer.
enum class tone : std::uint32_t {
    double_tone = VYRA_TONE_DOUBLE,
    long_tone = VYRA_TONE_LONG,
    short_tone = VYRA_TONE_SHORT,
    low_tone = VYRA_TONE_LOW,
};

struct image_size {
    std::uint32_t width;
    std::uint32_t height;
    constexpr std::size_t bytes() const noexcept { return std::size_t{width} * height; }
};

// The size of a standard scanner's images.
constexpr image_size size_of(mode mode) noexcept
{
    return mode == mode::roll ? image_size{VYRA_ROLL_WIDTH, VYRA_ROLL_HEIGHT}
                              : image_size{VYRA_FLAT_WIDTH, VYRA_FLAT_HEIGHT};
}

// The size of the flat-field calibration image.
constexpr image_size calibration_size{VYRA_CALIBRATION_WIDTH, VYRA_CALIBRATION_HEIGHT};

// An image in a buffer of the host's: 8-bit grey, one byte a pixel, rows from top to bottom without padding.
struct image {
    std::uint8_t* pixels;
    image_size size;
    std::uint64_t context;  // what was submitted with the buffer
};

// Ends waits from another thread, or from a signal handler.
class stop_signal {
public:
    void request() noexcept { requested_ = true; }
    bool requested() const noexcept { return requested_; }

    // One that nobody gives.
    static const stop_signal& never()
    {
        static const stop_signal signal;
        return signal;
    }

private:
    std::atomic<bool> requested_{false};
};

}  // namespace vyra

#endif
