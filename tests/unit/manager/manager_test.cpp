#include "manager_test.h"

#include <chrono>
#include <mutex>

#include "vyra/notify.h"

namespace manager_tests {

namespace {

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
    EXPECT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
}

void Manager_test::unplug(const char* scanner)
{
    EXPECT_EQ(brenvozulta_sim_unplug(scanner), 1);
    EXPECT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
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

Lines plug_lines(const std::string& told)
{
    const Lines traced = {"Device Plugged\n", "ManagePlugEvent event\r\n"};
    return told.empty() ? traced
                        : joined({traced, {"ManagePlugEvent event : sending plug callback for " + told + "\r\n"}});
}

Lines unplug_lines(const std::string& told)
{
    const Lines traced = {"Device UnPlugged\n", "ManageUnplugEvent event\r\n"};
    return told.empty() ? traced
                        : joined({traced, {"ManageUnplugEvent event : sending unplug callback for " + told + "\r\n"}});
}

Lines joined(const std::vector<Lines>& parts)
{
    Lines all;
    for (const Lines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
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

std::int32_t show_something(std::uint32_t handle)
{
    static std::uint32_t value = 0;
    const DevUI ui = {{1, 2, 3, ++value}, {}, {}, 1, 0, 0};
    return VyraBrenvoSetDevUI(handle, &ui);
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
    return status_.wait_for(std::chrono::milliseconds(patience_ms)) == std::future_status::ready ? status_.get() : -1;
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
    event_ = std::async(std::launch::async, [] { send_device_change(DBT_DEVICEARRIVAL, "USB#VID_0001&PID_0002#1"); });
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
