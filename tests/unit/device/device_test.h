// The stage of the tests that work on a scanner device directly, on top of the simulated driver.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "device/device.h"
#include "driver/driver.h"
#include "support/driver_results.h"
#include "support/scanner_test.h"

namespace test_support {

constexpr const char* first_scanner = BRENVOZULTA_SIM_DEFAULT_SCANNER;
constexpr const char* second_scanner = "RQ7-3050 #2";

constexpr std::uint32_t video_idle = 0;
constexpr std::uint32_t video_running = 1;
constexpr std::uint32_t video_stop_requested = 2;
constexpr std::uint32_t video_stopped = 3;

// As the record of calls shows a pointer.
std::string address_text(const void* address);

// One call of the record: "QXDR_StartCapture(driver_handle=0x51000010) = 0". The first form begins with the handle of
// the first scanner.
std::string scanner_call(const std::string& function, const std::string& more_arguments = "", std::uint32_t result = 0);
std::string scanner_call_of(const char* scanner, const std::string& function, const std::string& more_arguments = "",
                            std::uint32_t result = 0);

// The line of a refused reset, which shows the address of a text as its number.
testing::Matcher<std::string> address_line();

// The line of an extraction thread that finds the stop answered by another, with the future library's own text.
std::string already_answered_line();

// Starts every test with the library initialized, everything logged, no calls recorded, and a driver that answers a
// stop without a capture with 19, so that a start does not pause.
class Device_test : public Scanner_test {
protected:
    using brenvozulta_device = kvs::brenvozulta::brenvozulta_device;

    void SetUp() override;
    void TearDown() override;

    // The device under test; opened, or with video running, and the calls of that forgotten.
    brenvozulta_device& device() { return *device_; }
    brenvozulta_device& open_device(const std::string& name = first_scanner);
    brenvozulta_device& running_device(const std::string& name = first_scanner);
    void drop_device() { device_.reset(); }

    // The calls recorded since the last look, whole.
    static std::vector<std::string> take_calls();

    // Delivers an image through the registered callback, and returns what the callback returned; fails the test when it
    // does not return.
    static std::int32_t deliver(const std::vector<std::uint8_t>& pixels, std::uint16_t width, std::uint16_t height);
    static std::int32_t deliver_to(void* context, const std::vector<std::uint8_t>& pixels);

    // Begins a delivery, of the default scanner or of another, that is to wait for a request, and sees it waiting.
    static std::uint64_t deliver_waiting(const std::vector<std::uint8_t>& pixels, const char* scanner = nullptr);
    // The end of it.
    static std::int32_t result_of(std::uint64_t delivery);

private:
    std::unique_ptr<brenvozulta_device> device_;
};

// A small image of 4 x 2 pixels that all have the value.
constexpr std::uint16_t image_width = 4;
constexpr std::uint16_t image_height = 2;
std::vector<std::uint8_t> image_of(std::uint8_t value);

}  // namespace test_support
