#include <gtest/gtest.h>
#include <io.h>
#include <shlobj.h>
#include <sys/timeb.h>
#include <windows.h>

#include <dbt.h>

#include <cerrno>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>

#include "win32_double/control.h"

namespace {

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    return DefWindowProcA(window, message, wparam, lparam);
}

int format(char* text, ...)
{
    va_list arguments;
    va_start(arguments, text);
    const int length = wvsprintfA(text, "%d", arguments);
    va_end(arguments);
    return length;
}

// A function, a call of it, and whether the call's result is the failure's.
struct Failing_call {
    const char* function;
    std::function<bool()> fails;
    bool by_errno = false;
    bool by_result = false;  // the error is the result itself
};

std::ostream& operator<<(std::ostream& out, const Failing_call& call)
{
    return out << call.function;
}

class Failing_test : public testing::TestWithParam<Failing_call> {
protected:
    void SetUp() override { win32_double::clear(); }
    void TearDown() override { win32_double::clear(); }
};

TEST_P(Failing_test, an_ordered_failure_gives_the_failure_value_and_the_error)
{
    const Failing_call& call = GetParam();
    win32_double::fail(call.function, 1, 1234);
    SetLastError(0);
    errno = 0;
    EXPECT_TRUE(call.fails());
    if (call.by_errno) {
        EXPECT_EQ(errno, 1234);
    } else if (!call.by_result) {
        EXPECT_EQ(GetLastError(), 1234U);
    }
    EXPECT_EQ(win32_double::calls(call.function), 1U);
}

MSG message{};
char text[64];
__time64_t some_time = 0;
size_t count = 0;
wchar_t* folder = nullptr;
HMODULE pinned = nullptr;
constexpr DWORD pin_flags = GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;

DWORD WINAPI no_thread(LPVOID)
{
    return 0;
}

INSTANTIATE_TEST_SUITE_P(
    Runtime, Failing_test,
    testing::Values(Failing_call{"_sopen", [] { return _sopen("/dev/null", _O_RDWR, _SH_DENYNO) == -1; }, true},
                    Failing_call{"_close", [] { return _close(0) == -1; }, true},
                    Failing_call{"_write", [] { return _write(1, text, 0) == -1; }, true},
                    Failing_call{"_commit", [] { return _commit(1) == -1; }, true},
                    Failing_call{"_filelength", [] { return _filelength(1) == -1; }, true},
                    Failing_call{"_ctime64", [] { return _ctime64(&some_time) == nullptr; }, true},
                    Failing_call{"wcstombs_s", [] { return wcstombs_s(&count, text, 64, L"a", 1) == 1234; }, false,
                                 true},
                    Failing_call{"SHGetKnownFolderPath",
                                 [] { return SHGetKnownFolderPath(FOLDERID_ProgramData, 0, nullptr, &folder) == 1234; },
                                 false, true},
                    Failing_call{"wvsprintfA", [] { return format(text, 1) == 0; }}));

INSTANTIATE_TEST_SUITE_P(
    Kernel, Failing_test,
    testing::Values(
        Failing_call{"DeleteFileA", [] { return !DeleteFileA("/nothing"); }},
        Failing_call{"MoveFileA", [] { return !MoveFileA("/nothing", "/nothing else"); }},
        Failing_call{"CreateEventA", [] { return CreateEventA(nullptr, TRUE, FALSE, nullptr) == nullptr; }},
        Failing_call{"SetEvent", [] { return !SetEvent(nullptr); }},
        Failing_call{"CloseHandle", [] { return !CloseHandle(nullptr); }},
        Failing_call{"WaitForSingleObject", [] { return WaitForSingleObject(nullptr, 0) == WAIT_FAILED; }},
        Failing_call{"CreateMutexA", [] { return CreateMutexA(nullptr, FALSE, nullptr) == nullptr; }},
        Failing_call{"ReleaseMutex", [] { return !ReleaseMutex(nullptr); }},
        Failing_call{"CreateThread",
                     [] { return CreateThread(nullptr, 0, no_thread, nullptr, 0, nullptr) == nullptr; }},
        Failing_call{"OpenThread", [] { return OpenThread(SYNCHRONIZE, FALSE, GetCurrentThreadId()) == nullptr; }},
        Failing_call{"WaitForMultipleObjects",
                     [] { return WaitForMultipleObjects(0, nullptr, FALSE, 0) == WAIT_FAILED; }},
        Failing_call{"Beep", [] { return !Beep(1000, 100); }},
        Failing_call{"GetModuleHandleA", [] { return GetModuleHandleA(nullptr) == nullptr; }},
        Failing_call{"GetModuleHandleExA", [] { return !GetModuleHandleExA(pin_flags, text, &pinned); }},
        Failing_call{"GetModuleFileNameA", [] { return GetModuleFileNameA(nullptr, text, 64) == 0; }},
        Failing_call{"LoadLibraryA", [] { return LoadLibraryA("c") == nullptr; }},
        Failing_call{"FreeLibrary", [] { return !FreeLibrary(nullptr); }},
        Failing_call{"GetProcAddress", [] { return GetProcAddress(nullptr, "main") == nullptr; }},
        Failing_call{"FindResourceA", [] { return FindResourceA(nullptr, "#1", "a") == nullptr; }},
        Failing_call{"LoadResource", [] { return LoadResource(nullptr, reinterpret_cast<HRSRC>(&text)) == nullptr; }},
        Failing_call{"LockResource", [] { return LockResource(&text) == nullptr; }},
        Failing_call{"SizeofResource", [] { return SizeofResource(nullptr, reinterpret_cast<HRSRC>(&text)) == 0; }},
        Failing_call{"SetConsoleCtrlHandler", [] { return !SetConsoleCtrlHandler(nullptr, FALSE); }}));

const HWND no_window = nullptr;
const HANDLE no_event = nullptr;
const WNDCLASSEXA window_class{
    sizeof(WNDCLASSEXA), 0, procedure, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, "FAILING", nullptr};
WNDCLASSEXA class_info{};

INSTANTIATE_TEST_SUITE_P(
    User, Failing_test,
    testing::Values(
        Failing_call{"RegisterClassExA", [] { return RegisterClassExA(&window_class) == 0; }},
        Failing_call{"UnregisterClassA", [] { return !UnregisterClassA("FAILING", nullptr); }},
        Failing_call{"GetClassInfoExA", [] { return !GetClassInfoExA(nullptr, "FAILING", &class_info); }},
        Failing_call{"CreateWindowExA",
                     [] {
                         return CreateWindowExA(0, "FAILING", "", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr) ==
                                nullptr;
                     }},
        Failing_call{"DestroyWindow", [] { return !DestroyWindow(no_window); }},
        Failing_call{"IsWindow", [] { return !IsWindow(no_window); }},
        Failing_call{"FindWindowExA", [] { return FindWindowExA(nullptr, nullptr, "FAILING", nullptr) == nullptr; }},
        Failing_call{"GetWindowThreadProcessId", [] { return GetWindowThreadProcessId(no_window, nullptr) == 0; }},
        Failing_call{"GetWindowLongPtrA", [] { return GetWindowLongPtrA(no_window, 8) == 0; }},
        Failing_call{"SetWindowLongPtrA", [] { return SetWindowLongPtrA(no_window, 8, 1) == 0; }},
        Failing_call{"DefWindowProcA", [] { return DefWindowProcA(no_window, WM_NCCREATE, 0, 0) == 0; }},
        Failing_call{"SendMessageA", [] { return SendMessageA(no_window, WM_NULL, 0, 0) == 0; }},
        Failing_call{"PostMessageA", [] { return !PostMessageA(nullptr, WM_NULL, 0, 0); }},
        Failing_call{"PostThreadMessageA", [] { return !PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0); }},
        Failing_call{"GetMessageA", [] { return GetMessageA(&message, nullptr, 0, 0) == -1; }},
        Failing_call{"PeekMessageA", [] { return !PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE); }},
        Failing_call{"MsgWaitForMultipleObjectsEx",
                     [] {
                         return MsgWaitForMultipleObjectsEx(1, &no_event, 0, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE) ==
                                WAIT_FAILED;
                     }},
        Failing_call{"DispatchMessageA", [] { return DispatchMessageA(&message) == 0; }},
        Failing_call{"RegisterDeviceNotificationA",
                     [] { return RegisterDeviceNotificationA(nullptr, nullptr, 0) == nullptr; }},
        Failing_call{"UnregisterDeviceNotification", [] { return !UnregisterDeviceNotification(nullptr); }}));

class Failure_orders_test : public testing::Test {
protected:
    void SetUp() override { win32_double::clear(); }
    void TearDown() override { win32_double::clear(); }
};

TEST_F(Failure_orders_test, once_means_the_next_call_only)
{
    win32_double::fail("Beep");
    EXPECT_FALSE(Beep(1000, 1));
    EXPECT_TRUE(Beep(1000, 1));
}

TEST_F(Failure_orders_test, a_number_of_calls_fails)
{
    win32_double::fail("Beep", 2);
    EXPECT_FALSE(Beep(1000, 1));
    EXPECT_FALSE(Beep(1000, 1));
    EXPECT_TRUE(Beep(1000, 1));
}

TEST_F(Failure_orders_test, always_lasts_until_cleared)
{
    win32_double::fail("Beep", win32_double::always);
    for (int i = 0; i < 5; ++i) {
        EXPECT_FALSE(Beep(1000, 1));
    }
    win32_double::clear();
    EXPECT_TRUE(Beep(1000, 1));
}

TEST_F(Failure_orders_test, calls_before_the_failure_still_work)
{
    win32_double::fail("Beep", 1, ERROR_GEN_FAILURE, 2);
    EXPECT_TRUE(Beep(1000, 1));
    EXPECT_TRUE(Beep(1000, 1));
    EXPECT_FALSE(Beep(1000, 1));
    EXPECT_TRUE(Beep(1000, 1));
}

TEST_F(Failure_orders_test, an_order_replaces_the_one_before)
{
    win32_double::fail("Beep", win32_double::always);
    win32_double::fail("Beep", 0);
    EXPECT_TRUE(Beep(1000, 1));
}

TEST_F(Failure_orders_test, other_functions_are_left_alone)
{
    win32_double::fail("DeleteFileA", win32_double::always);
    EXPECT_TRUE(Beep(1000, 1));
}

TEST_F(Failure_orders_test, calls_are_counted_until_cleared)
{
    Beep(1000, 1);
    win32_double::fail("Beep");
    Beep(1000, 1);
    EXPECT_EQ(win32_double::calls("Beep"), 2U);
    win32_double::clear();
    EXPECT_EQ(win32_double::calls("Beep"), 0U);
}

TEST_F(Failure_orders_test, an_unknown_function_is_an_error_of_the_test)
{
    EXPECT_THROW(win32_double::fail("Beeb"), std::invalid_argument);
    EXPECT_THROW(win32_double::calls("Beeb"), std::invalid_argument);
}

TEST_F(Failure_orders_test, a_failing_move_moves_nothing)
{
    const std::string from = win32_double::program_data() + "/from";
    const std::string to = win32_double::program_data() + "/to";
    const int file = _sopen(from.c_str(), _O_RDWR | _O_CREAT, _SH_DENYNO, _S_IREAD | _S_IWRITE);
    ASSERT_NE(file, -1);
    _close(file);
    win32_double::fail("MoveFileA", 1, ERROR_SHARING_VIOLATION);
    EXPECT_FALSE(MoveFileA(from.c_str(), to.c_str()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_FALSE(DeleteFileA(to.c_str()));
    EXPECT_TRUE(DeleteFileA(from.c_str()));
}

TEST_F(Failure_orders_test, a_failing_folder_lookup_gives_the_ordered_result_and_no_path)
{
    win32_double::fail("SHGetKnownFolderPath", 1, static_cast<uint32_t>(E_FAIL));
    wchar_t untouched = L'x';
    PWSTR path = &untouched;
    EXPECT_EQ(SHGetKnownFolderPath(FOLDERID_ProgramData, 0, nullptr, &path), E_FAIL);
    EXPECT_EQ(path, nullptr);
}

}  // namespace
