// The host's buffers when a scanner is dropped without a close that the driver accepts: they are its own again.
#include <atomic>
#include <cstring>
#include <functional>
#include <thread>

#include "support/waiting.h"
#include "unit/device/device_test.h"
#include "unit/manager/manager_test_access.h"

namespace {

using namespace test_support;
using testing::AnyOfArray;
using testing::Each;

constexpr const char* third_scanner = "RQ7-3050 #3";

// A way of giving up the handle of the scanner that delivers.
struct Way {
    const char* name;
    const char* delivering;
    std::function<void(std::uint32_t)> prepare;
    std::function<void(std::uint32_t)> drop;
};

const std::vector<Way>& ways()
{
    static const std::vector<Way> all = {
        {"a close that the driver refuses", first_scanner, [](std::uint32_t) {},
         [](std::uint32_t handle) {
             brenvozulta_sim_fail("QXDR_CloseDevice", driver_timeout, 1);
             EXPECT_EQ(VyraCloseDevice_N(handle), 0);
         }},
        {"a terminate that leaves a higher handle", second_scanner, [](std::uint32_t) { VyraCloseDevice_N(0); },
         [](std::uint32_t) { EXPECT_EQ(VyraTerminate(), 0); }},
        {"an open that displaces the handle", second_scanner, [](std::uint32_t) { VyraCloseDevice_N(0); },
         [](std::uint32_t handle) {
             std::uint32_t displacing = VYRA_NO_HANDLE;
             EXPECT_EQ(VyraOpenDevice(third_scanner, &displacing), 0);
             EXPECT_EQ(displacing, handle);
         }},
    };
    return all;
}

// What the ways log, and the terminate with which the next one starts over.
std::vector<std::string> lines_of_the_ways()
{
    return {driver_error_line("QXDR_CloseDevice", 9), "close_device:    Error=9016\r\n",
            error_line("close_device", 9108), error_line("terminate", 9101)};
}

class Dropped_buffers_test : public Device_test {
protected:
    // Starts over, with the scanner delivering whose handle will be dropped.
    std::uint32_t start_over(const Way& way)
    {
        VyraTerminate();
        brenvozulta_sim_reset();
        brenvozulta_sim_set_frame_rate(0);
        brenvozulta_sim_set_idle_stop_result(driver_wrong_state);
        brenvozulta_sim_attach(second_scanner);
        brenvozulta_sim_attach(third_scanner);
        initialize();
        std::uint32_t handle = open(first_scanner);
        if (way.delivering != first_scanner) {
            handle = open(way.delivering);
        }
        EXPECT_EQ(VyraBrenvoZultaStartCamera(handle), 0);
        way.prepare(handle);
        return handle;
    }
};

// Large enough for a copy that takes a while.
constexpr std::uint16_t large_width = 4096;
constexpr std::uint16_t large_height = 4096;
constexpr std::size_t large_size = std::size_t{large_width} * large_height;

TEST_F(Dropped_buffers_test, are_not_written_by_a_copy_that_was_under_way)
{
    const std::vector<std::uint8_t> pixels(large_size, 9);
    const std::vector<std::uint8_t> the_hosts(large_size, 1);
    const brenvozulta_sim_image image = {pixels.data(), pixels.size(), large_width, large_height, nullptr, 0, nullptr};
    for (const Way& way : ways()) {
        SCOPED_TRACE(way.name);
        for (int round = 0; round < 5; ++round) {
            const std::uint32_t handle = start_over(way);
            std::vector<std::uint8_t> buffer(large_size, 0);
            ASSERT_EQ(VyraSubmitVideoRequest(handle, buffer.data(), 1), 0);
            const std::uint64_t delivery = brenvozulta_sim_deliver_async(&image);
            ASSERT_EQ(brenvozulta_sim_wait_delivery_begun(delivery, patience_ms), 1);
            std::this_thread::yield();
            way.drop(handle);
            // Whole, or not begun and never to be: the host may use it from now on.
            const bool filled = buffer.front() == 9;
            EXPECT_EQ(buffer.back(), filled ? 9 : 0);
            std::memset(buffer.data(), 1, buffer.size());
            result_of(delivery);
            EXPECT_EQ(std::memcmp(buffer.data(), the_hosts.data(), large_size), 0);
        }
    }
    EXPECT_THAT(take_log(), Each(AnyOfArray(lines_of_the_ways())));
}

TEST_F(Dropped_buffers_test, are_not_written_by_a_callback_that_was_waiting)
{
    const auto pixels = image_of(9);
    const brenvozulta_sim_image image = {pixels.data(), pixels.size(), image_width, image_height, nullptr, 0, nullptr};
    for (const Way& way : ways()) {
        SCOPED_TRACE(way.name);
        for (int round = 0; round < 20; ++round) {
            const std::uint32_t handle = start_over(way);
            const std::uint64_t delivery = brenvozulta_sim_deliver_async(&image);
            ASSERT_EQ(brenvozulta_sim_wait_delivery_begun(delivery, patience_ms), 1);
            auto buffer = image_of(0);
            ASSERT_EQ(VyraSubmitVideoRequest(handle, buffer.data(), 1), 0);
            way.drop(handle);
            std::fill(buffer.begin(), buffer.end(), std::uint8_t{1});
            result_of(delivery);
            EXPECT_EQ(buffer, image_of(1));
        }
    }
    EXPECT_THAT(take_log(), Each(AnyOfArray(lines_of_the_ways())));
}

// A change of status releases one of the threads that wait for it; the other still owns the device.
TEST_F(Dropped_buffers_test, are_the_hosts_although_a_status_wait_still_owns_the_device)
{
    const Way& way = ways().front();
    const std::uint32_t handle = start_over(way);
    void* const context = brenvozulta_sim_callback_context();
    auto buffer = image_of(0);
    ASSERT_EQ(VyraSubmitVideoRequest(handle, buffer.data(), 1), 0);
    kvs::brenvozulta::manager_test_access::forget_status_change();  // it would release one of them at once
    std::atomic<int> released{0};
    std::vector<std::thread> waiting;
    for (int i = 0; i < 2; ++i) {
        waiting.emplace_back([&] {
            VyraGetStatus(handle);
            ++released;
        });
    }
    wait_until([&] { return kvs::brenvozulta::manager_test_access::owners(handle) == 3; });  // the table, and both
    way.drop(handle);
    EXPECT_EQ(deliver_to(context, image_of(9)), 3);
    EXPECT_EQ(buffer, image_of(0));
    EXPECT_EQ(VyraTerminate(), 0);
    for (std::thread& thread : waiting) {
        thread.join();
    }
    EXPECT_EQ(released, 2);
    EXPECT_THAT(take_log(), Each(AnyOfArray(lines_of_the_ways())));
}

}  // namespace
