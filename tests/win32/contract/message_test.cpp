#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <future>
#include <thread>

#include "recording_window.h"

namespace {

using contract::recorder;

constexpr UINT first_message = WM_APP + 1;
constexpr UINT second_message = WM_APP + 2;

class Message_contract_test : public testing::Test {
protected:
    void SetUp() override
    {
        recorder().clear();
        contract::register_recorder_class();
        drain();
    }
    void TearDown() override
    {
        contract::unregister_recorder_class();
        drain();
    }

private:
    static void drain()
    {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        }
    }
};

TEST_F(Message_contract_test, a_message_sent_within_the_thread_is_handled_at_once)
{
    recorder().answer(first_message, 42);
    const HWND window = contract::create_recorder_window();
    EXPECT_EQ(SendMessageA(window, first_message, 0, 0), 42);
    EXPECT_EQ(recorder().handler_of(first_message), GetCurrentThreadId());
    EXPECT_TRUE(DestroyWindow(window));
}

TEST_F(Message_contract_test, a_message_sent_to_another_thread_is_handled_by_its_owner_before_the_sender_goes_on)
{
    recorder().answer(first_message, 42);
    const contract::Window_thread owner;
    ASSERT_NE(owner.window(), nullptr);
    EXPECT_EQ(SendMessageA(owner.window(), first_message, 0, 0), 42);
    EXPECT_EQ(recorder().handler_of(first_message), owner.id());
    EXPECT_NE(owner.id(), GetCurrentThreadId());
}

TEST_F(Message_contract_test, a_sent_close_has_destroyed_the_window_when_it_returns)
{
    const contract::Window_thread owner;
    ASSERT_NE(owner.window(), nullptr);
    SendMessageA(owner.window(), WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindow(owner.window()));
    EXPECT_EQ(recorder().handler_of(WM_NCDESTROY), owner.id());
}

TEST_F(Message_contract_test, a_posted_message_is_dispatched_to_its_window)
{
    const HWND window = contract::create_recorder_window();
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    }
    EXPECT_TRUE(PostMessageA(window, first_message, 5, -6));
    EXPECT_EQ(recorder().handler_of(first_message), 0U);
    ASSERT_EQ(GetMessageA(&message, nullptr, first_message, first_message), 1);
    EXPECT_EQ(message.hwnd, window);
    EXPECT_EQ(message.message, first_message);
    EXPECT_EQ(message.wParam, 5U);
    EXPECT_EQ(message.lParam, -6);
    EXPECT_FALSE(TranslateMessage(&message));
    recorder().answer(first_message, 42);
    EXPECT_EQ(DispatchMessageA(&message), 42);
    EXPECT_TRUE(DestroyWindow(window));
}

// Seen under Wine only: Windows documents that the quit is a flag of the queue, not when it is seen.
TEST_F(Message_contract_test, the_quit_comes_behind_everything_posted)
{
    const DWORD self = GetCurrentThreadId();
    MSG message;
    PostQuitMessage(3);
    EXPECT_TRUE(PostThreadMessageA(self, first_message, 0, 0));
    EXPECT_TRUE(PostThreadMessageA(self, second_message, 0, 0));
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 1);
    EXPECT_EQ(message.message, first_message);
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 1);
    EXPECT_EQ(message.message, second_message);
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, UINT{WM_QUIT});
    EXPECT_EQ(message.wParam, 3U);
    EXPECT_FALSE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
}

TEST_F(Message_contract_test, a_posted_quit_message_ends_a_loop_too)
{
    MSG message;
    EXPECT_TRUE(PostThreadMessageA(GetCurrentThreadId(), WM_QUIT, 9, 0));
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.wParam, 9U);
}

TEST_F(Message_contract_test, peeking_leaves_or_takes_a_message)
{
    MSG message;
    EXPECT_FALSE(PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE));
    EXPECT_TRUE(PostThreadMessageA(GetCurrentThreadId(), first_message, 0, 0));
    EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE));
    EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_FALSE(PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE));
}

TEST_F(Message_contract_test, getting_messages_of_no_window_fails)
{
    const HWND window = contract::create_recorder_window();
    ASSERT_TRUE(DestroyWindow(window));
    MSG message;
    SetLastError(0);
    EXPECT_EQ(GetMessageA(&message, window, 0, 0), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_WINDOW_HANDLE});
}

TEST_F(Message_contract_test, an_ended_thread_gets_no_messages)
{
    DWORD ended = 0;
    std::thread([&] { ended = GetCurrentThreadId(); }).join();
    EXPECT_FALSE(PostThreadMessageA(ended, first_message, 0, 0));
}

// While a thread waits for an answer it still handles what is sent to it.
TEST_F(Message_contract_test, threads_that_send_to_each_other_do_not_stand_still)
{
    static HWND back = nullptr;
    static LRESULT answer = 0;
    WNDCLASSEXA replying{};
    replying.cbSize = sizeof replying;
    replying.hInstance = GetModuleHandleA(nullptr);
    replying.lpszClassName = "CONTRACT_REPLYING";
    replying.lpfnWndProc = [](HWND window, UINT message, WPARAM wparam, LPARAM lparam) -> LRESULT {
        if (message != first_message) {
            return DefWindowProcA(window, message, wparam, lparam);
        }
        answer = SendMessageA(back, second_message, 0, 0);
        return 1;
    };
    ASSERT_NE(RegisterClassExA(&replying), 0);
    recorder().answer(second_message, 42);
    back = contract::create_recorder_window();
    std::promise<HWND> created;
    std::thread other([&] {
        created.set_value(CreateWindowExA(0, "CONTRACT_REPLYING", "", WS_OVERLAPPEDWINDOW, 0, 0, 120, 100, nullptr,
                                          nullptr, GetModuleHandleA(nullptr), nullptr));
        MSG message;
        while (GetMessageA(&message, nullptr, 0, 0) > 0) {
            DispatchMessageA(&message);
        }
    });
    const HWND window = created.get_future().get();
    EXPECT_EQ(SendMessageA(window, first_message, 0, 0), 1);
    EXPECT_EQ(answer, 42);
    EXPECT_EQ(recorder().handler_of(second_message), GetCurrentThreadId());
    EXPECT_TRUE(PostThreadMessageA(GetWindowThreadProcessId(window, nullptr), WM_QUIT, 0, 0));
    other.join();
    EXPECT_TRUE(DestroyWindow(back));
    EXPECT_TRUE(UnregisterClassA("CONTRACT_REPLYING", GetModuleHandleA(nullptr)));
}

TEST_F(Message_contract_test, threads_have_numbers_of_their_own)
{
    DWORD other = 0;
    std::thread([&] { other = GetCurrentThreadId(); }).join();
    EXPECT_NE(other, 0U);
    EXPECT_NE(other, GetCurrentThreadId());
    EXPECT_EQ(GetCurrentThreadId(), GetCurrentThreadId());
}

TEST_F(Message_contract_test, the_last_error_belongs_to_the_thread)
{
    std::atomic<bool> set_there{false};
    std::atomic<bool> set_here{false};
    DWORD there = 0;
    // Waiting must not call the system, which may set the last error: it is by turning.
    std::thread other([&] {
        SetLastError(7);
        set_there = true;
        while (!set_here) {
        }
        there = GetLastError();
    });
    while (!set_there) {
    }
    SetLastError(5);
    set_here = true;
    const DWORD here = GetLastError();
    other.join();
    EXPECT_EQ(here, 5U);
    EXPECT_EQ(there, 7U);
}

}  // namespace
