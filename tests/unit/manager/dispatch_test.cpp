// The frame that all operations of one open scanner share.
#include "device_operations.h"

#include <stdexcept>

#include "support/driver_calls.h"

using namespace manager_tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class Dispatch_test : public Manager_test {
protected:
    void SetUp() override
    {
        Manager_test::SetUp();
        brenvozulta_sim_set_idle_stop_result(
            driver_wrong_state);  // a start then finds nothing to stop, and does not pause
    }
};

class Not_a_standard_exception {};

void throw_runtime_error(void* context)
{
    throw std::runtime_error(static_cast<const char*>(context));
}

void throw_bad_alloc(void* /*context*/)
{
    throw std::bad_alloc();
}

void throw_something_else(void* /*context*/)
{
    throw Not_a_standard_exception();
}

bool another_thread_gets_the_lock()
{
    return std::async(std::launch::async,
                      [] {
                          const boost::unique_lock<kvs::brenvozulta::recursive_timed_mutex> lock(access::lock(),
                                                                                                 boost::try_to_lock);
                          return lock.owns_lock();
                      })
        .get();
}

}  // namespace

TEST_F(Dispatch_test, there_are_20_operations)
{
    EXPECT_EQ(device_operations().size(), 20U);
}

TEST_F(Dispatch_test, every_operation_reaches_its_scanner_and_returns_its_status)
{
    for (const auto& operation : device_operations()) {
        SCOPED_TRACE(operation.export_name);
        brenvozulta_sim_reset();
        brenvozulta_sim_set_frame_rate(0);
        const brenvozulta_sim_restart for_good = {0, 0, 0};
        brenvozulta_sim_set_restart(&for_good);
        brenvozulta_sim_set_idle_stop_result(operation.export_name == "VyraStopVideo" ? 0 : 19);
        open_scanners(2);
        EXPECT_THAT(take_log(), ::testing::IsEmpty());
        EXPECT_EQ(operation.call(1), operation.status);
        EXPECT_EQ(take_log(), operation.lines);
        brenvozulta_sim_call call = {};
        for (std::size_t i = 0; i < operation.driver_calls.size(); ++i) {
            ASSERT_EQ(brenvozulta_sim_get_call(i, &call), 1);
            EXPECT_EQ(call.arguments[0], reinterpret_cast<std::uintptr_t>(brenvozulta_sim_handle(scanner_2)));
        }
        EXPECT_EQ(take_driver_calls(), operation.driver_calls);
        EXPECT_TRUE(another_thread_gets_the_lock());
        EXPECT_EQ(access::owners(1), 1) << "the call has left no owner behind";
        VyraTerminate();
        EXPECT_THAT(take_log(), ::testing::IsEmpty());
    }
}

TEST_F(Dispatch_test, not_initialized_comes_before_suspended)
{
    initialize();
    VyraTerminate();
    access::set_suspended(true);
    for (const auto& operation : device_operations()) {
        SCOPED_TRACE(operation.export_name);
        EXPECT_EQ(operation.call(0), VYRA_NOT_INITIALIZED);
        EXPECT_THAT(take_log(), ElementsAre(error_line(operation.log_prefix, VYRA_NOT_INITIALIZED)));
    }
}

TEST_F(Dispatch_test, suspended_is_9110_whatever_the_handle)
{
    open_scanners(1);
    access::set_suspended(true);
    for (const auto& operation : device_operations()) {
        SCOPED_TRACE(operation.export_name);
        for (const std::uint32_t handle : {0U, 1U, VYRA_NO_HANDLE}) {
            EXPECT_EQ(operation.call(handle), VYRA_SCN_UNAVAILABLE);
            EXPECT_THAT(take_log(), ElementsAre(error_line(operation.log_prefix, VYRA_SCN_UNAVAILABLE)));
        }
    }
    EXPECT_THAT(take_driver_calls(), IsEmpty());
}

TEST_F(Dispatch_test, missing_device_is_9005_logged_by_some_and_silent_in_others)
{
    initialize();
    access::store_device(4, nullptr);
    for (const auto& operation : device_operations()) {
        SCOPED_TRACE(operation.export_name);
        EXPECT_EQ(operation.call(4), VYRA_DEVICE_UNAVAIL);
        EXPECT_EQ(take_log(), operation.logs_missing_device
                                  ? Lines{error_line(operation.log_prefix, VYRA_DEVICE_UNAVAIL)}
                                  : Lines{});
    }
}

TEST_F(Dispatch_test, null_port_type_is_9109_even_before_initialization_and_without_the_lock)
{
    initialize();
    VyraTerminate();
    EXPECT_EQ(VyraBrenvoZultaGetPortType(0, nullptr), VYRA_BAD_PARAMETER);
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_port_type", VYRA_BAD_PARAMETER)));
    const Lock_held_elsewhere busy;
    EXPECT_EQ(VyraBrenvoZultaGetPortType(0, nullptr), VYRA_BAD_PARAMETER);
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_port_type", VYRA_BAD_PARAMETER)));
}

TEST_F(Dispatch_test, null_firmware_is_9109_after_the_suspended_check_and_before_the_handle)
{
    const std::string line = "update_firmware:   Error : 9109 Error 9109 \r\n";
    open_scanners(1);
    EXPECT_EQ(VyraPutMemory(0, nullptr, 10), VYRA_BAD_PARAMETER);
    EXPECT_EQ(VyraPutMemory(77, nullptr, 10), VYRA_BAD_PARAMETER);
    EXPECT_THAT(take_log(), ElementsAre(line, line));
    access::set_suspended(true);
    EXPECT_EQ(VyraPutMemory(0, nullptr, 10), VYRA_SCN_UNAVAILABLE);
    access::set_suspended(false);
    VyraTerminate();
    EXPECT_EQ(VyraPutMemory(0, nullptr, 10), VYRA_NOT_INITIALIZED);
    EXPECT_THAT(take_log(), ElementsAre(error_line("update_firmware", VYRA_SCN_UNAVAILABLE),
                                        error_line("update_firmware", VYRA_NOT_INITIALIZED)));
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_UpdateFirmware"), 0U);
}

TEST_F(Dispatch_test, arguments_reach_the_driver_unchanged)
{
    open_scanners(1);
    std::vector<unsigned char> bytes(4096);
    brenvozulta_sim_fail("QXDR_GetSnapshotAcquisition", driver_ok, 1);
    brenvozulta_sim_fail("QXDR_UpdateFirmware", driver_timeout, 1);
    EXPECT_EQ(VyraBrenvoZultaGetSnapshotAcquisition(0, bytes.data(), 1, 0x80000002, 0xFFFFFFFF), VYRA_OK);
    EXPECT_EQ(VyraBrenvoZultaReadGlobalParam(0, bytes.data() + 1, 77), VYRA_OK);
    EXPECT_EQ(VyraPutMemory(0, bytes.data() + 2, 4000), VYRA_DEVICE_TIMEOUT);
    EXPECT_THAT(test_support::call_text(0), ::testing::HasSubstr("a=1, b=2147483650, c=4294967295)"));
    EXPECT_THAT(test_support::call_text(1), ::testing::HasSubstr("size=77)"));
    EXPECT_THAT(test_support::call_text(2), ::testing::HasSubstr("length=4000)"));
    brenvozulta_sim_call call = {};
    for (const std::size_t i : {0U, 1U, 2U}) {
        brenvozulta_sim_get_call(i, &call);
        EXPECT_EQ(call.arguments[1], reinterpret_cast<std::uintptr_t>(bytes.data() + i));
    }
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_UpdateFirmware", 9)));
}

TEST_F(Dispatch_test, a_standard_exception_is_logged_and_9000)
{
    open_scanners(1);
    char text[] = "the host's own trouble";
    ASSERT_EQ(VyraBrenvoSetUICallBack(0, throw_runtime_error, text), VYRA_OK);
    EXPECT_EQ(show_something(0), VYRA_INTERNAL);
    EXPECT_THAT(take_log(), ElementsAre("Exception : the host's own trouble\r\n"));
    EXPECT_TRUE(another_thread_gets_the_lock());
}

TEST_F(Dispatch_test, a_failed_allocation_is_logged_and_9001)
{
    open_scanners(1);
    ASSERT_EQ(VyraBrenvoSetUICallBack(0, throw_bad_alloc, nullptr), VYRA_OK);
    EXPECT_EQ(show_something(0), VYRA_OUT_OF_RESOURCE);
    EXPECT_THAT(take_log(), ElementsAre(std::string("Exception : ") + std::bad_alloc().what() + "\r\n"));
    EXPECT_TRUE(another_thread_gets_the_lock());
}

TEST_F(Dispatch_test, any_other_exception_is_logged_and_9000)
{
    open_scanners(1);
    ASSERT_EQ(VyraBrenvoSetUICallBack(0, throw_something_else, nullptr), VYRA_OK);
    EXPECT_EQ(show_something(0), VYRA_INTERNAL);
    EXPECT_THAT(take_log(), ElementsAre("Exception : not a standard exception\r\n"));
    EXPECT_TRUE(another_thread_gets_the_lock());
}
