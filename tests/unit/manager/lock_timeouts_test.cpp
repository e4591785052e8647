// What every operation does while another one holds the manager lock for too long.
#include "device_operations.h"

#include "support/log_lines.h"

using namespace manager_tests;

namespace {

struct Waiting_call {
    std::string line;  // with the file's own line ends
    std::future<std::int32_t> status;
};

// The threads end all at once, and the pieces of their lines mix in the file: the messages are counted, each of which
// is one piece.
std::size_t times_in(const std::string& bytes, const std::string& message)
{
    std::size_t times = 0;
    for (auto at = bytes.find(message); at != std::string::npos; at = bytes.find(message, at + 1)) {
        ++times;
    }
    return times;
}

std::string on_disk(std::string message)
{
    return message.replace(message.size() - 2, 2, "\r\r\n");
}

class Lock_timeouts_test : public Manager_test {
protected:
    void call(const std::string& log_prefix, std::function<std::int32_t()> operation)
    {
        calls.push_back(
            {on_disk(error_line(log_prefix, VYRA_INTERNAL)), std::async(std::launch::async, std::move(operation))});
    }
    void call_session_operations()
    {
        call("terminate", [] { return VyraTerminate(); });
        call("get_device_list", [this] { return VyraGetDeviceList(&count, buffer); });
        call("get_device_list_N", [this] { return VyraGetDeviceList_N(&count, nullptr); });
        call("get_device_info", [] { return VyraBrenvoMGGetDeviceInfo(scanner_1, nullptr, nullptr); });
        call("open_device", [this] { return VyraOpenDevice(scanner_1, &handle); });
        call("close_device", [] { return VyraCloseDevice_N(0); });
        call("reset_device", [] { return VyraBusReset_N(0); });
    }
    void call_event_handlers()
    {
        call("ManagePlugEvent lock", [] { return kvs::brenvozulta::hot_plug_listener(1, nullptr), VYRA_INTERNAL; });
        call("ManageUnplugEvent lock", [] { return access::manager().ManageUnplugEvent(nullptr), VYRA_INTERNAL; });
        call("ManagePowerEvent lock", [] { return access::manager().ManagePowerEvent(true), VYRA_INTERNAL; });
    }

    std::uint32_t count = 1;
    std::uint32_t handle = 7;
    char buffer[VYRA_NAME_SLOT] = {};
    std::vector<Waiting_call> calls;
};

}  // namespace

TEST_F(Lock_timeouts_test, every_operation_ends_with_9000_and_every_event_is_dropped_with_its_line)
{
    open_scanners(1);
    VyraBrenvoZultaGetPortType(0, nullptr);  // opens the log, which takes no lock, before many write to it
    {
        const Lock_held_elsewhere busy;
        for (const auto& operation : device_operations()) {
            call(operation.log_prefix, [&operation] { return operation.call(0); });
        }
        call_session_operations();
        call_event_handlers();
        EXPECT_EQ(calls.size(), 30U);
        for (auto& waiting : calls) {
            EXPECT_EQ(waiting.status.get(), VYRA_INTERNAL) << waiting.line;
        }
    }
    const std::string bytes = test_support::file_bytes(test_support::log_path());
    for (const auto& waiting : calls) {
        const auto same =
            std::count_if(calls.begin(), calls.end(), [&](const auto& other) { return other.line == waiting.line; });
        EXPECT_EQ(times_in(bytes, waiting.line), static_cast<std::size_t>(same)) << waiting.line;
    }
    EXPECT_EQ(times_in(bytes, "Error="), calls.size() + 1);

    EXPECT_EQ(handle, VYRA_NO_HANDLE);
    EXPECT_EQ(count, 1U);
    EXPECT_TRUE(access::initialized());
    EXPECT_FALSE(access::suspended());
    EXPECT_TRUE(access::device_detected()) << "set by the listener before it asks for the lock";
    EXPECT_EQ(access::open_devices().size(), 1U);
    EXPECT_EQ(access::detected_names(), Lines{scanner_1});
    EXPECT_THAT(take_driver_calls(), ::testing::IsEmpty());

    VyraTerminate();
    test_support::remove_logs();
}

TEST_F(Lock_timeouts_test, every_operation_goes_on_when_the_lock_comes_in_time)
{
    open_scanners(1);
    std::future<std::int32_t> waiting;
    {
        const Lock_held_elsewhere busy;
        waiting = std::async(std::launch::async, [] { return VyraBrenvoZultaSetParameters(0, 1, 2); });
        EXPECT_NE(waiting.wait_for(std::chrono::milliseconds(50)), std::future_status::ready);
    }
    EXPECT_EQ(waiting.get(), VYRA_OK);
}

TEST_F(Lock_timeouts_test, the_lock_is_recursive)
{
    open_scanners(1);
    const boost::unique_lock<kvs::brenvozulta::recursive_timed_mutex> held(access::lock());
    EXPECT_EQ(VyraBrenvoZultaSetParameters(0, 1, 2), VYRA_OK);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
}
