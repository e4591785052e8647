#include "unit/device/device_test.h"

#include <boost/thread/future.hpp>
#include <cinttypes>
#include <cstdio>
#include <regex>

#include "support/driver_calls.h"

namespace test_support {

namespace {

constexpr std::uint32_t nothing_to_stop = 19;

}  // namespace

std::string address_text(const void* address)
{
    char text[24];
    std::snprintf(text, sizeof text, "0x%" PRIxPTR, reinterpret_cast<std::uintptr_t>(address));
    return text;
}

std::string scanner_call_of(const char* scanner, const std::string& function, const std::string& more_arguments,
                            std::uint32_t result)
{
    return function + "(driver_handle=" + address_text(brenvozulta_sim_handle(scanner)) +
           (more_arguments.empty() ? "" : ", " + more_arguments) + ") = " + std::to_string(result);
}

std::string scanner_call(const std::string& function, const std::string& more_arguments, std::uint32_t result)
{
    return scanner_call_of(first_scanner, function, more_arguments, result);
}

testing::Matcher<std::string> address_line()
{
    const auto shows_another_number = [](const std::string& line) {
        static const std::regex form("reset:\\t reset Error (-?[0-9]+)\\r\\n");
        std::smatch match;
        return std::regex_match(line, match, form) && match.str(1) != "9110";
    };
    return testing::Truly(shows_another_number);
}

std::string already_answered_line()
{
    boost::promise<int> promise;
    promise.set_value(0);
    try {
        promise.set_value(0);
    } catch (const std::exception& error) {
        return std::string("#DV# Video_extraction:\t error promise Exception: ") + error.what() + "\r\n";
    }
    return "no exception";
}

void Device_test::SetUp()
{
    Scanner_test::SetUp();
    initialize();
    brenvozulta_sim_set_idle_stop_result(nothing_to_stop);
    brenvozulta_sim_clear_calls();
    device_ = std::make_unique<brenvozulta_device>();
}

void Device_test::TearDown()
{
    drop_device();
    Scanner_test::TearDown();
}

kvs::brenvozulta::brenvozulta_device& Device_test::open_device(const std::string& name)
{
    EXPECT_EQ(device().open(name, 0), 0);
    brenvozulta_sim_clear_calls();
    return device();
}

kvs::brenvozulta::brenvozulta_device& Device_test::running_device(const std::string& name)
{
    open_device(name);
    EXPECT_EQ(device().start_camera(), 0);
    brenvozulta_sim_clear_calls();
    return device();
}

std::vector<std::string> Device_test::take_calls()
{
    auto calls = call_texts();
    brenvozulta_sim_clear_calls();
    return calls;
}

std::int32_t Device_test::deliver(const std::vector<std::uint8_t>& pixels, std::uint16_t width, std::uint16_t height)
{
    brenvozulta_sim_image image = {pixels.data(), pixels.size(), width, height, nullptr, 0, nullptr};
    std::int32_t result = -1;
    EXPECT_EQ(brenvozulta_sim_deliver(&image, patience_ms, &result), 1) << "the callback did not return";
    return result;
}

std::int32_t Device_test::deliver_to(void* context, const std::vector<std::uint8_t>& pixels)
{
    brenvozulta_sim_image image = {pixels.data(), pixels.size(), image_width, image_height, nullptr, 1, context};
    std::int32_t result = -1;
    EXPECT_EQ(brenvozulta_sim_deliver(&image, patience_ms, &result), 1) << "the callback did not return";
    return result;
}

std::uint64_t Device_test::deliver_waiting(const std::vector<std::uint8_t>& pixels, const char* scanner)
{
    brenvozulta_sim_image image = {pixels.data(), pixels.size(), image_width, image_height, scanner, 0, nullptr};
    const std::uint64_t delivery = brenvozulta_sim_deliver_async(&image);
    EXPECT_EQ(brenvozulta_sim_wait_delivery_begun(delivery, patience_ms), 1);
    EXPECT_EQ(brenvozulta_sim_wait_delivery_done(delivery, moment_ms, nullptr), 0) << "the callback did not wait";
    return delivery;
}

std::int32_t Device_test::result_of(std::uint64_t delivery)
{
    std::int32_t result = -1;
    EXPECT_EQ(brenvozulta_sim_wait_delivery_done(delivery, patience_ms, &result), 1) << "the callback did not return";
    return result;
}

std::vector<std::uint8_t> image_of(std::uint8_t value)
{
    return std::vector<std::uint8_t>(std::size_t{image_width} * image_height, value);
}

}  // namespace test_support
