// The stage of the manager's tests: what hosts, drivers and the system do to it, and what is to be seen of it.
#pragma once

#include <boost/weak_ptr.hpp>
#include <functional>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "manager_test_access.h"
#include "support/broadcasts.h"
#include "support/scanner_test.h"

namespace manager_tests {

using test_support::becomes_true;
using test_support::driver_error_line;
using test_support::error_line;
using test_support::find_window;
using test_support::patience_ms;
using test_support::send_device_change;
using test_support::send_power_event;
using test_support::wait_for_window;

using access = kvs::brenvozulta::manager_test_access;

constexpr const char* scanner_1 = BRENVOZULTA_SIM_DEFAULT_SCANNER;
constexpr const char* scanner_2 = "RQ7-3050 #2";
constexpr const char* scanner_3 = "RQ7-3050 #3";

using Lines = std::vector<std::string>;
using Calls = std::vector<std::string>;

// Awake, without a device and without a status change left by an earlier test.
class Manager_test : public test_support::Scanner_test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Initializes the library with further scanners attached, and opens them all: handles 0, 1, ...
    void open_scanners(std::size_t count);

    // The scanner comes or goes, and the library has dealt with it.
    static void plug(const char* scanner);
    static void unplug(const char* scanner);

    // The driver handles that QXDR_CloseDevice was given since the record was cleared.
    static std::vector<void*> closed_in_driver();
};

// "RQ7-3050 #1", "RQ7-3050 #2", ... of open_scanners.
std::string scanner_name(std::size_t number);

// What an arrival and a removal log, with the line that the host's callback is told when it is told of a scanner.
Lines plug_lines(const std::string& told = {});
Lines unplug_lines(const std::string& told = {});
Lines joined(const std::vector<Lines>& parts);

// Waits until a message is in the log file, which another thread is writing: what is there of it may end anywhere.
bool wait_for_message(const std::string& message);

// What the device-event callback was told.
struct Host_event {
    std::int32_t event;
    std::string name;
    std::int32_t plugged;

    bool operator==(const Host_event& other) const
    {
        return event == other.event && name == other.name && plugged == other.plugged;
    }
};
void PrintTo(const Host_event& event, std::ostream* out);

std::int32_t host_callback(std::int32_t event, const char* name, std::int32_t plugged);
std::vector<Host_event> take_host_events();
// Runs inside the next callbacks, on the driver's thread; empty for none.
void react_to_host_events(std::function<void(const Host_event&)> reaction);

// Shows another LED pattern each time, so that the host's UI callback is called.
std::int32_t show_something(std::uint32_t handle);

// Another thread that holds the manager lock.
class Lock_held_elsewhere {
public:
    Lock_held_elsewhere();
    ~Lock_held_elsewhere();
    Lock_held_elsewhere(const Lock_held_elsewhere&) = delete;
    Lock_held_elsewhere& operator=(const Lock_held_elsewhere&) = delete;

private:
    std::promise<void> release_;
    std::thread holder_;
};

// A thread of the host in VyraGetStatus.
class Status_waiter {
public:
    explicit Status_waiter(std::uint32_t handle);
    ~Status_waiter();
    Status_waiter(Status_waiter&&) = default;

    bool has_returned() const;
    // The status with which the wait ended; -1 when it does not end.
    std::int32_t result();

private:
    std::future<std::int32_t> status_;
};

// Waits until so many threads of the host are inside VyraGetStatus for a scanner.
bool waiters_inside(std::uint32_t handle, long count);

// The waiter stays where it is, although it is given every opportunity to go on.
void expect_still_waiting(const Status_waiter& waiter);

// A USB subscriber of the host's, called by the notifier and inside until it is released. Needs the notifier's window.
class Busy_usb_subscriber {
public:
    Busy_usb_subscriber();
    ~Busy_usb_subscriber();
    Busy_usb_subscriber(const Busy_usb_subscriber&) = delete;
    Busy_usb_subscriber& operator=(const Busy_usb_subscriber&) = delete;

    void release();

private:
    std::promise<void> entered_;
    std::promise<void> leave_;
    std::future<void> event_;
};

}  // namespace manager_tests
