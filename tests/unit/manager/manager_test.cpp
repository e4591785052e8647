#include "manager_test.h"

#include <windows.h>

#include <dbt.h>

#include <chrono>
#include <cstring>
#include <map>
#include <mutex>

#include "support/log_lines.h"
#include "vyra/notify.h"

namespace manager_tests {

namespace {

constexpr std::chrono::milliseconds patience(test_support::patience_ms);
constexpr const char* notifier_class = "VYRABRENVOZULTA";

struct Host {
    std::mutex mutex;  // guards what follows; the reaction runs outside it
    std::vector<Host_event> events;
    std::function<void(const Host_event&)> reaction;
};

Host& host()
{
    static Host the_host;
    return the_host;
}

}  // namespace

void Manager_test::SetUp()
{
    Scanner_test::SetUp();
    access::set_suspended(false);
    access::set_device_detected(false);
    access::forget_status_change();
    take_host_events();
}

void Manager_test::TearDown()
{
    react_to_host_events(nullptr);
    access::set_suspended(false);
    access::release_status_waiters();
    Scanner_test::TearDown();
}

void Manager_test::open_scanners(std::size_t count)
{
    for (std::size_t number = 2; number <= count; ++number) {
        ASSERT_EQ(brenvozulta_sim_attach(scanner_name(number).c_str()), 1);
    }
    initialize();
    for (std::size_t number = 1; number <= count; ++number) {
        ASSERT_EQ(open(scanner_name(number)), number - 1);
    }
    brenvozulta_sim_clear_calls();
}

void Manager_test::plug(const char* scanner)
{
    EXPECT_EQ(brenvozulta_sim_plug(scanner), 1);
    EXPECT_EQ(brenvozulta_sim_wait_events_done(test_support::patience_ms), 1);
}

void Manager_test::unplug(const char* scanner)
{
    EXPECT_EQ(brenvozulta_sim_unplug(scanner), 1);
    EXPECT_EQ(brenvozulta_sim_wait_events_done(test_support::patience_ms), 1);
}

std::vector<void*> Manager_test::closed_in_driver()
{
    std::vector<void*> handles;
    brenvozulta_sim_call call = {};
    for (std::size_t i = 0; i < brenvozulta_sim_call_count(); ++i) {
        if (brenvozulta_sim_get_call(i, &call) != 0 && std::strcmp(call.function, "QXDR_CloseDevice") == 0) {
            handles.push_back(reinterpret_cast<void*>(static_cast<std::uintptr_t>(call.arguments[1])));
        }
    }
    return handles;
}

std::string scanner_name(std::size_t number)
{
    return "RQ7-3050 #" + std::to_string(number);
}

std::string refusal(const std::string& operation, std::int32_t status)
{
    static const std::map<std::int32_t, std::string> texts = {
        {9000, "Internal VYRA  "}, {9001, "Out of Resource"}, {9005, "Device Unavail "},
        {9101, "Not Initialized"}, {9103, "Buf Too Small  "}, {9105, "Video Stopped  "},
        {9108, "Bad Scanner Idx"}, {9109, "Error 9109"},      {9110, "Error 9110"},
    };
    return test_support::error_line(operation, status, texts.at(status));
}

bool becomes_true(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

bool wait_for_message(const std::string& message)
{
    return becomes_true(
        [&] { return test_support::file_bytes(test_support::log_path()).find(message) != std::string::npos; });
}

void PrintTo(const Host_event& event, std::ostream* out)
{
    *out << "(" << event.event << ", " << event.name << ", " << event.plugged << ")";
}

std::int32_t host_callback(std::int32_t event, const char* name, std::int32_t plugged)
{
    const Host_event told{event, name, plugged};
    std::function<void(const Host_event&)> reaction;
    {
        const std::lock_guard<std::mutex> lock(host().mutex);
        host().events.push_back(told);
        reaction = host().reaction;
    }
    if (reaction) {
        reaction(told);
    }
    return -1;  // the library does not care
}

std::vector<Host_event> take_host_events()
{
    const std::lock_guard<std::mutex> lock(host().mutex);
    std::vector<Host_event> events;
    events.swap(host().events);
    return events;
}

void react_to_host_events(std::function<void(const Host_event&)> reaction)
{
    const std::lock_guard<std::mutex> lock(host().mutex);
    host().reaction = std::move(reaction);
}

Lock_held_elsewhere::Lock_held_elsewhere()
{
    std::promise<void> held;
    holder_ = std::thread([&held, released = release_.get_future()] {
        const boost::unique_lock<kvs::brenvozulta::recursive_timed_mutex> guard(access::lock());
        held.set_value();
        released.wait();
    });
    held.get_future().wait();
}

Lock_held_elsewhere::~Lock_held_elsewhere()
{
    release_.set_value();
    holder_.join();
}

Status_waiter::Status_waiter(std::uint32_t handle)
    : status_(std::async(std::launch::async, [handle] { return VyraGetStatus(handle); }))
{
}

Status_waiter::~Status_waiter()
{
    if (status_.valid() && !has_returned()) {
        access::release_status_waiters();
    }
}

bool Status_waiter::has_returned() const
{
    return status_.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

std::int32_t Status_waiter::result()
{
    return status_.wait_for(patience) == std::future_status::ready ? status_.get() : -1;
}

bool waiters_inside(std::uint32_t handle, long count)
{
    return becomes_true([=] { return access::owners(handle) == count + 1; });
}

void expect_still_waiting(const Status_waiter& waiter)
{
    for (int call = 0; call < 200; ++call) {
        const boost::unique_lock<kvs::brenvozulta::recursive_timed_mutex> guard(access::lock());
        std::this_thread::yield();
    }
    EXPECT_FALSE(waiter.has_returned());
}

bool notifier_window_exists()
{
    return FindWindowA(notifier_class, nullptr) != nullptr;
}

bool wait_for_notifier_window()
{
    return becomes_true(notifier_window_exists);
}

void broadcast_power(std::uintptr_t event)
{
    SendMessageA(FindWindowA(notifier_class, nullptr), WM_POWERBROADCAST, event, 0);
}

void broadcast_usb(std::uintptr_t event, const std::string& device_path)
{
    const std::size_t size = sizeof(DEV_BROADCAST_DEVICEINTERFACE_A) + device_path.size();
    std::vector<std::max_align_t> storage(size / sizeof(std::max_align_t) + 1);
    auto* const record = reinterpret_cast<DEV_BROADCAST_DEVICEINTERFACE_A*>(storage.data());
    record->dbcc_size = static_cast<DWORD>(size);
    record->dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    std::memcpy(record->dbcc_name, device_path.c_str(), device_path.size() + 1);
    SendMessageA(FindWindowA(notifier_class, nullptr), WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(record));
}

namespace {

// What the subscriber, which has no context, tells and waits for.
std::promise<void>* subscriber_entered;
std::shared_future<void> subscriber_leaves;

}  // namespace

Busy_usb_subscriber::Busy_usb_subscriber()
{
    subscriber_entered = &entered_;
    subscriber_leaves = leave_.get_future().share();
    EXPECT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) {
        subscriber_entered->set_value();
        subscriber_leaves.wait();
    }));
    event_ = std::async(std::launch::async, [] { broadcast_usb(usb_arrival, "USB#VID_0001&PID_0002#1"); });
    entered_.get_future().wait();
}

Busy_usb_subscriber::~Busy_usb_subscriber()
{
    if (event_.valid()) {
        release();
    }
}

void Busy_usb_subscriber::release()
{
    leave_.set_value();
    event_.get();
}

}  // namespace manager_tests
