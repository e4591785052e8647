// The stage of the simulator's own tests: the driver's functions as a host calls them, and a host that notes what
// comes.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "brenvozulta_simulator/control.h"
#include "driver/driver.h"
#include "support/driver_calls.h"
#include "support/waiting.h"

namespace simulator_test {

using test_support::call_names;
using test_support::call_text;
using test_support::patience_ms;

constexpr const char* scanner = BRENVOZULTA_SIM_DEFAULT_SCANNER;

// Every test starts with the unconfigured simulator, without automatic images, and leaves no acquisition thread behind.
class Driver_test : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    static void initialize() { ASSERT_EQ(QXDR_Initialize(), 0U); }
    static void* open(const char* name = scanner);
    // Opens the scanner, registers the host's callback and starts a capture.
    static void* start_capture(const char* name = scanner, std::uint8_t config = 1);
};

struct Received_image {
    std::vector<std::uint8_t> pixels;
    std::uint16_t width;
    std::uint16_t height;
    void* context;
    std::uint64_t thread;
};

// A host whose acquisition callback can be parked.
class Host {
public:
    static void reset();
    static std::int32_t callback(const std::uint8_t* image, std::uint16_t width, std::uint16_t height, void* context);
    static void park();
    static void release();
    static std::vector<Received_image> images();
};

struct Received_event {
    std::int32_t code;
    void* driver_handle;
    std::uint64_t thread;
};

// A host whose hot-plug listener can be held.
class Listener {
public:
    static void reset();
    static void listen(std::int32_t code, void* driver_handle);
    static void hold(std::function<bool(const Received_event&)> which);
    static void release();
    static std::vector<Received_event> events();
    static std::vector<std::int32_t> codes();
};

brenvozulta_sim_image small_image(const std::vector<std::uint8_t>& pixels, std::uint16_t width);
std::string load_error(const std::string& scenario, const char* source = "dir/s.json");
// Loads a scenario or fails the test with its message.
void load(const std::string& scenario);

// A new empty folder for the test, and files in it.
std::string make_folder();
void write_file(const std::string& path, const std::string& content);
std::string pgm(std::uint16_t width, std::uint16_t height, const std::vector<std::uint8_t>& pixels);

}  // namespace simulator_test
