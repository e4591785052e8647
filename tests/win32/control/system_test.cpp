#include <gtest/gtest.h>
#include <shlobj.h>
#include <windows.h>

#include <dbt.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "win32_double/control.h"

namespace {

constexpr GUID usb_devices = {0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};
constexpr GUID other_devices = {1, 2, 3, {}};

struct Event {
    UINT message;
    WPARAM wparam;
    std::string device;
    DWORD size;
    bool operator==(const Event& other) const
    {
        return message == other.message && wparam == other.wparam && device == other.device && size == other.size;
    }
};

std::mutex events_lock;  // guards events; a leaf
std::vector<Event> events;

LRESULT CALLBACK record_event(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_POWERBROADCAST) {
        const std::lock_guard<std::mutex> guard(events_lock);
        events.push_back({message, wparam, "", 0});
        return TRUE;
    }
    if (message == WM_DEVICECHANGE) {
        const auto* const record = reinterpret_cast<const DEV_BROADCAST_DEVICEINTERFACE_A*>(lparam);
        const std::lock_guard<std::mutex> guard(events_lock);
        events.push_back({message, wparam, reinterpret_cast<const char*>(record) + 28, record->dbcc_size});
        return TRUE;
    }
    if (message == WM_DESTROY) {
        PostQuitMessage(0);
    }
    return DefWindowProcA(window, message, wparam, lparam);
}

// A thread with a window that is registered for USB devices.
class System_events_test : public testing::Test {
protected:
    void SetUp() override
    {
        events.clear();
        WNDCLASSEXA added{};
        added.cbSize = sizeof added;
        added.lpfnWndProc = record_event;
        added.lpszClassName = "EVENTS";
        ASSERT_NE(RegisterClassExA(&added), 0);
        std::promise<HWND> created;
        thread_ = std::thread([&created] {
            const HWND window =
                CreateWindowExA(0, "EVENTS", "", WS_OVERLAPPEDWINDOW, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
            DEV_BROADCAST_DEVICEINTERFACE_A filter{sizeof filter, DBT_DEVTYP_DEVICEINTERFACE, 0, usb_devices, {}};
            const HDEVNOTIFY registration = RegisterDeviceNotificationA(window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
            created.set_value(window);
            MSG message;
            while (GetMessageA(&message, nullptr, 0, 0) > 0) {
                DispatchMessageA(&message);
            }
            UnregisterDeviceNotification(registration);
        });
        window_ = created.get_future().get();
        ASSERT_NE(window_, nullptr);
    }
    void TearDown() override
    {
        SendMessageA(window_, WM_CLOSE, 0, 0);
        thread_.join();
        EXPECT_TRUE(UnregisterClassA("EVENTS", nullptr));
    }

    std::thread thread_;
    HWND window_ = nullptr;
};

TEST_F(System_events_test, a_broadcast_has_been_handled_when_it_returns)
{
    win32_double::broadcast(WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
    SendMessageA(HWND_BROADCAST, WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, 0);
    EXPECT_EQ(events, (std::vector<Event>{{WM_POWERBROADCAST, PBT_APMSUSPEND, "", 0},
                                          {WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, "", 0}}));
}

TEST_F(System_events_test, a_device_event_reaches_the_windows_registered_for_its_class)
{
    const std::string name = "\\\\?\\USB#VID_1A2B&PID_00FF#1#{a5dcbf10-6530-11d2-901f-00c04fb951ed}";
    EXPECT_EQ(win32_double::device_event(DBT_DEVICEARRIVAL, usb_devices, name), 1U);
    EXPECT_EQ(win32_double::device_event(DBT_DEVICEARRIVAL, other_devices, name), 0U);
    EXPECT_EQ(
        events,
        (std::vector<Event>{{WM_DEVICECHANGE, DBT_DEVICEARRIVAL, name, static_cast<DWORD>(28 + name.size() + 1)}}));
}

TEST(Beeps_test, last_as_long_as_their_tone_when_they_take_time)
{
    win32_double::let_beeps_take_time(true);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_TRUE(Beep(1000, 20));
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(20));
    win32_double::let_beeps_take_time(false);
}

TEST(Beeps_test, are_recorded_in_order_and_forgotten_by_clear)
{
    win32_double::clear();
    EXPECT_TRUE(Beep(1000, 200));
    EXPECT_TRUE(Beep(800, 600));
    const auto tones = win32_double::beeps();
    ASSERT_EQ(tones.size(), 2U);
    EXPECT_EQ(tones[0].frequency, 1000U);
    EXPECT_EQ(tones[0].duration, 200U);
    EXPECT_EQ(tones[1].frequency, 800U);
    EXPECT_EQ(tones[1].duration, 600U);
    win32_double::clear();
    EXPECT_TRUE(win32_double::beeps().empty());
}

std::string known_folder()
{
    PWSTR path = nullptr;
    if (SHGetKnownFolderPath(FOLDERID_ProgramData, 0, nullptr, &path) != S_OK) {
        return "";
    }
    char bytes[256];
    size_t converted = 0;
    const errno_t result = wcstombs_s(&converted, bytes, sizeof bytes, path, _TRUNCATE);
    CoTaskMemFree(path);
    return result == 0 ? bytes : "";
}

TEST(Program_data_test, is_the_folder_that_was_set)
{
    const std::string before = win32_double::program_data();
    EXPECT_EQ(known_folder(), before);
    win32_double::set_program_data("/tmp/d\xc3\xa9p\xc3\xb4t");
    EXPECT_EQ(known_folder(), "/tmp/d\xc3\xa9p\xc3\xb4t");
    win32_double::set_program_data(before);
}

// Each process starts anew: other tests have left threads behind, and those do not outlive a plain fork.
class Program_data_death_test : public testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

// The folder of a process that has set none is there while it runs and gone behind it.
TEST_F(Program_data_death_test, the_folder_of_a_process_is_removed_at_its_end)
{
    // The other process comes here too: it inherits the place from this one, where temporary files then go.
    if (std::getenv("WIN32_DOUBLE_TEST_ROOT") == nullptr) {
        const std::string place = win32_double::program_data() + "/processes";
        std::filesystem::create_directory(place);
        setenv("WIN32_DOUBLE_TEST_ROOT", place.c_str(), 1);
    }
    const std::string root = std::getenv("WIN32_DOUBLE_TEST_ROOT");
    EXPECT_EXIT(
        {
            setenv("TMPDIR", root.c_str(), 1);
            unsetenv("WIN32_DOUBLE_PROGRAMDATA");
            const std::string folder = known_folder();
            std::filesystem::create_directory(folder + "\\Orvane");
            std::fprintf(stderr, "<%s:%d>", folder.c_str(), std::filesystem::is_directory(folder));
            std::exit(0);
        },
        testing::ExitedWithCode(0), "<.*/processes/win32_double\\..*/ProgramData:1>");
    EXPECT_TRUE(std::filesystem::is_empty(root));
}

TEST_F(Program_data_death_test, comes_from_the_environment_when_it_is_set_there)
{
    EXPECT_EXIT(
        {
            setenv("WIN32_DOUBLE_PROGRAMDATA", "/tmp/from the environment", 1);
            win32_double::set_program_data("");
            std::fprintf(stderr, "<%s>", known_folder().c_str());
            std::exit(0);
        },
        testing::ExitedWithCode(0), "</tmp/from the environment>");
}

}  // namespace
