// Every export with each of its allocations refused in turn: no exception leaves, the status says so, the locks are
// free and the library goes on.
#include <string>

#include "driver/driver.h"
#include "unit/api/allocation_test.h"
#include "unit/api/export_calls.h"

namespace {

using allocation_tests::Allocation_test;
using allocation_tests::status_on_another_thread;

constexpr char long_name[] = "a name of no attached scanner that is too long to be kept without an allocation";

TEST_F(Allocation_test, initialize)
{
    const auto call = [] { return VyraInitialize_N(nullptr, 0, 0); };
    EXPECT_GT(refuse_each([] {}, call), 0);
}

TEST_F(Allocation_test, open_leaves_no_handle_behind)
{
    std::uint32_t handle = 0;
    const auto call = [&] {
        handle = 7;
        const std::int32_t status = VyraOpenDevice(quiet_driver::first_scanner, &handle);
        EXPECT_EQ(handle, status == VYRA_OK ? 0 : VYRA_NO_HANDLE);
        EXPECT_EQ(quiet_driver::open_scanners(), status == VYRA_OK ? 1 : 0) << "none stays open in the driver";
        return status;
    };
    EXPECT_GT(refuse_each([&] { start(); }, call), 3);
}

TEST_F(Allocation_test, open_of_a_long_name_can_be_repeated_at_once)
{
    start();
    std::uint32_t handle = 0;
    for (int n = 1;; ++n) {
        failing_new::fail_allocation(n);
        const std::int32_t status = VyraBrenvoZultaOpenDevice(long_name, &handle, 1);
        if (!failing_new::stop()) {
            EXPECT_EQ(status, VYRA_OK);
            break;
        }
        ASSERT_EQ(status, VYRA_OUT_OF_RESOURCE);
        ASSERT_EQ(handle, VYRA_NO_HANDLE);
    }
    EXPECT_EQ(handle, 0U) << "no refused open took a handle";
}

TEST_F(Allocation_test, device_lists)
{
    char names[2 * 255 + 305];
    DeviceListRecord records[2];
    std::uint32_t count = 0;
    refuse_each([&] { start(); },
                [&] {
                    count = 2;
                    return VyraGetDeviceList(&count, names);
                });
    EXPECT_GT(refuse_each([&] { start(); },
                          [&] {
                              count = 2;
                              return VyraGetDeviceList_N(&count, records);
                          }),
              0);
    EXPECT_EQ(count, 2U);
}

TEST_F(Allocation_test, list_for_more_records_than_memory_can_hold_is_refused)
{
    start();
    std::uint32_t count = 0xFFFFFFFF;
    failing_new::fail_allocation(1);
    EXPECT_EQ(VyraGetDeviceList_N(&count, nullptr), VYRA_OUT_OF_RESOURCE);
    EXPECT_TRUE(failing_new::stop());
    EXPECT_EQ(count, 0xFFFFFFFF);
}

TEST_F(Allocation_test, identity_by_name)
{
    DeviceInfo info;
    refuse_each([&] { start(); }, [&] { return VyraBrenvoMGGetDeviceInfo(long_name, nullptr, &info); });
    refuse_each([&] { start(); },
                [&] { return VyraBrenvoMGGetDeviceInfo(quiet_driver::second_scanner, nullptr, &info); });
}

// How many there are is the thread library's business; on Windows it has memory of its own.
TEST_F(Allocation_test, start_of_video)
{
    const auto prepare = [&] {
        start();
        open();
    };
    refuse_each(prepare, [] { return VyraBrenvoStartVideo(0, 1, 0); });
    refuse_each(prepare, [] { return VyraBrenvoZultaStartCamera(0); });
}

TEST_F(Allocation_test, video_can_be_stopped_and_started_after_a_refused_start)
{
    start();
    open();
    for (int n = 1;; ++n) {
        failing_new::fail_allocation(n);
        const std::int32_t status = VyraBrenvoStartVideo(0, 1, 0);
        const bool refused = failing_new::stop();
        EXPECT_EQ(status, refused ? VYRA_OUT_OF_RESOURCE : VYRA_OK);
        // The stop does not wait for a thread that there is not; the driver refuses it when nothing was started.
        const std::int32_t stopped = quiet_driver::is_capturing() ? VYRA_OK : VYRA_DEVICE_UNAVAIL;
        EXPECT_EQ(VyraStopVideo(0), stopped);
        if (!refused || HasFailure()) {
            break;
        }
    }
    EXPECT_EQ(VyraBrenvoStartVideo(0, 1, 0), VYRA_OK);
    EXPECT_EQ(VyraStopVideo(0), VYRA_OK);
}

TEST_F(Allocation_test, frame_cycle_needs_no_memory)
{
    start();
    const std::uint32_t handle = open();
    ASSERT_EQ(VyraBrenvoStartVideo(handle, 1, 0), VYRA_OK);
    unsigned char image[16] = {};
    failing_new::fail_allocation(1);
    for (int queued = 0; queued < 8; ++queued) {
        EXPECT_EQ(VyraSubmitVideoRequest(handle, image, 1), VYRA_OK) << queued;
    }
    EXPECT_EQ(VyraSubmitVideoRequest(handle, image, 1), VYRA_TOO_MANY_FRAMES);
    EXPECT_EQ(quiet_driver::deliver(), 0);
    void* filled = nullptr;
    EXPECT_EQ(VyraGetVideoResult(handle, &filled, nullptr), VYRA_OK);
    EXPECT_FALSE(failing_new::stop());
    EXPECT_EQ(failing_new::allocations(), 0);
    EXPECT_EQ(filled, image);
    EXPECT_EQ(image[2], 3);
    EXPECT_EQ(VyraStopVideo(handle), VYRA_OK);
}

TEST_F(Allocation_test, stop_and_close)
{
    const auto prepare = [&] {
        start();
        open();
        ASSERT_EQ(VyraBrenvoStartVideo(0, 1, 0), VYRA_OK);
    };
    refuse_each(prepare, [] { return VyraStopVideo(0); });
    refuse_each(prepare, [] { return VyraCloseDevice_N(0); });
}

// What each of them does without memory is 9001 or its usual result; a status wait would wait.
TEST_F(Allocation_test, every_other_operation_of_a_scanner)
{
    for (const auto& each : export_calls::handle_exports()) {
        const std::string name = each.name;
        if (name == "VyraGetStatus" || name == "VyraCloseDevice_N") {
            continue;
        }
        SCOPED_TRACE(name);
        export_calls::Arguments usual;
        usual.result.fill(0);
        start();
        usual.handle = open();
        const std::int32_t usual_status = each.call(usual);
        ASSERT_EQ(status_on_another_thread(), VYRA_OK);
        export_calls::Arguments arguments;
        arguments.result.fill(0);
        refuse_each(
            [&] {
                start();
                arguments.handle = open();
            },
            [&] { return each.call(arguments); }, usual_status);
    }
}

TEST_F(Allocation_test, status_wait_of_a_closed_handle)
{
    refuse_each([&] { start(); }, [] { return VyraGetStatus(3); });
}

TEST_F(Allocation_test, plug_and_unplug_events_are_dropped_and_the_next_is_handled)
{
    for (const std::int32_t event : {driver_event_plugged, driver_event_unplugged}) {
        const auto announce = [event] {
            quiet_driver::announce(event);
            return VYRA_OK;
        };
        for (int n = 1; !HasFailure(); ++n) {
            start();
            open();
            failing_new::fail_allocation(n);
            EXPECT_NO_THROW(announce());
            const bool refused = failing_new::stop();
            announce();
            EXPECT_EQ(status_on_another_thread(), VYRA_OK);
            if (!refused) {
                break;
            }
        }
    }
}

}  // namespace
