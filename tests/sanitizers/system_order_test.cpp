// Calls of the system order nothing between threads; what the system carries from one to another does.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <dbt.h>
#include <shlobj.h>

#include <functional>
#include <string>
#include <thread>

#include "planted_race.h"
#include "win32_double/control.h"

namespace sanitizer_tests {
namespace {

struct Call {
    const char* name;
    void (*make)();
};

const HANDLE some_event = CreateEventA(nullptr, TRUE, FALSE, nullptr);

int some_file()
{
    static const int file = _sopen((win32_double::program_data() + "/order").c_str(), _O_RDWR | _O_APPEND | _O_CREAT,
                                   _SH_DENYNO, _S_IREAD | _S_IWRITE);
    return file;
}

const Call calls[] = {
    {"None", [] {}},
    {"Beep", [] { Beep(440, 10); }},
    {"DeleteFileA", [] { DeleteFileA("missing"); }},
    {"FindResourceA", [] { FindResourceA(nullptr, "#1", "none"); }},
    {"FindWindowExA", [] { FindWindowExA(nullptr, nullptr, "none", nullptr); }},
    {"FileLength", [] { _filelength(some_file()); }},
    {"GetModuleHandleA", [] { GetModuleHandleA("none"); }},
    {"OpenAndClose", [] { _close(_sopen((win32_double::program_data() + "/order").c_str(), _O_RDONLY, _SH_DENYNO)); }},
    {"PostMessageA", [] { PostMessageA(nullptr, WM_USER, 0, 0); }},
    {"SetEvent", [] { SetEvent(some_event); }},
    {"KnownFolder",
     [] {
         PWSTR path = nullptr;
         SHGetKnownFolderPath(FOLDERID_ProgramData, 0, nullptr, &path);
         CoTaskMemFree(path);
     }},
    {"WriteFile", [] { _write(some_file(), "line\n", 5); }},
    {"OrderAFailure",
     [] {
         win32_double::fail("MoveFileA");
         MoveFileA("a", "b");
     }},
};

class System_call_test : public ::testing::TestWithParam<Call> {};

TEST_P(System_call_test, hides_no_race)
{
    EXPECT_EQ(races_around(GetParam().make), 1);
}

INSTANTIATE_TEST_SUITE_P(Every, System_call_test, ::testing::ValuesIn(calls),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(System_order_test, an_event_orders_its_setting_and_its_wait)
{
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    int carried = 0;
    EXPECT_EQ(races_between(
                  [&] {
                      carried = 1;
                      SetEvent(event);
                  },
                  [&] {
                      WaitForSingleObject(event, INFINITE);
                      EXPECT_EQ(carried, 1);
                  }),
              0);
    EXPECT_EQ(races_between(
                  [&] {
                      carried = 2;
                      SetEvent(event);
                  },
                  [&] {
                      MsgWaitForMultipleObjectsEx(1, &event, INFINITE, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE);
                      EXPECT_EQ(carried, 2);
                  }),
              0);
    CloseHandle(event);
}

TEST(System_order_test, a_time_that_passes_orders_nothing)
{
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    EXPECT_EQ(races_around([&] { WaitForSingleObject(event, 1); }), 1);
    CloseHandle(event);
}

struct Carried {
    int question = 0;
    int answer = 0;
};

LRESULT CALLBACK answer(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message != WM_USER) {
        return DefWindowProcA(window, message, wparam, lparam);
    }
    auto& carried = *reinterpret_cast<Carried*>(lparam);
    carried.answer = carried.question + 1;
    if (wparam != 0) {
        PostQuitMessage(0);
    }
    return 0;
}

// A window whose thread handles messages until one with a wparam comes.
void run_window(HANDLE ready, HWND& window)
{
    WNDCLASSEXA description = {};
    description.cbSize = sizeof description;
    description.lpfnWndProc = answer;
    description.lpszClassName = "order";
    RegisterClassExA(&description);
    window = CreateWindowExA(0, "order", "order", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    SetEvent(ready);
    MSG message = {};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        DispatchMessageA(&message);
    }
    DestroyWindow(window);
    UnregisterClassA("order", nullptr);
}

// The window's thread comes first, and the sender's waits for nothing but the messages.
int races_with_window(const std::function<void(HWND)>& send)
{
    const HANDLE ready = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    HWND window = nullptr;
    std::thread owner([&] { run_window(ready, window); });
    WaitForSingleObject(ready, INFINITE);
    const int races = races_between([] {}, [&] { send(window); });
    owner.join();
    CloseHandle(ready);
    return races;
}

TEST(System_order_test, a_message_orders_sender_and_receiver_both_ways)
{
    EXPECT_EQ(races_with_window([](HWND window) {
                  Carried carried;
                  carried.question = 41;
                  SendMessageA(window, WM_USER, TRUE, reinterpret_cast<LPARAM>(&carried));
                  EXPECT_EQ(carried.answer, 42);
              }),
              0);
}

TEST(System_order_test, a_posted_message_orders_poster_and_receiver)
{
    static Carried carried;  // nobody waits for the answer
    EXPECT_EQ(races_with_window([](HWND window) {
                  carried.question = 41;
                  PostMessageA(window, WM_USER, TRUE, reinterpret_cast<LPARAM>(&carried));
              }),
              0);
}

}  // namespace
}  // namespace sanitizer_tests
