#include <gtest/gtest.h>
#include <windows.h>

#include <thread>

#include "recording_window.h"

namespace {

using contract::recorder;

constexpr UINT sent_message = WM_APP + 1;

class Event_contract_test : public testing::Test {
protected:
    void SetUp() override
    {
        recorder().clear();
        contract::register_recorder_class();
        window_ = contract::create_recorder_window();
        drain();
        event_ = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        ASSERT_NE(event_, nullptr);
    }
    void TearDown() override
    {
        EXPECT_TRUE(CloseHandle(event_));
        drain();
        EXPECT_TRUE(DestroyWindow(window_));
        contract::unregister_recorder_class();
    }

    static void drain()
    {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        }
    }
    DWORD wait_for_event_or_message(DWORD milliseconds) const
    {
        return MsgWaitForMultipleObjectsEx(1, &event_, milliseconds, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE);
    }
    // Handles what has been sent and leaves what has been posted.
    static BOOL handle_sent_messages()
    {
        MSG message;
        return PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }

    HWND window_ = nullptr;
    HANDLE event_ = nullptr;
};

TEST_F(Event_contract_test, is_not_set_at_first)
{
    EXPECT_EQ(WaitForSingleObject(event_, 0), DWORD{WAIT_TIMEOUT});
    EXPECT_EQ(WaitForSingleObject(event_, 1), DWORD{WAIT_TIMEOUT});
    EXPECT_EQ(wait_for_event_or_message(0), DWORD{WAIT_TIMEOUT});
}

TEST_F(Event_contract_test, stays_set)
{
    EXPECT_TRUE(SetEvent(event_));
    EXPECT_TRUE(SetEvent(event_));
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(WaitForSingleObject(event_, INFINITE), DWORD{WAIT_OBJECT_0});
        EXPECT_EQ(wait_for_event_or_message(INFINITE), DWORD{WAIT_OBJECT_0});
    }
}

TEST_F(Event_contract_test, ends_the_waits_of_other_threads)
{
    DWORD alone = WAIT_FAILED;
    DWORD with_messages = WAIT_FAILED;
    std::thread first([&] { alone = WaitForSingleObject(event_, INFINITE); });
    std::thread second([&] { with_messages = wait_for_event_or_message(INFINITE); });
    EXPECT_TRUE(SetEvent(event_));
    first.join();
    second.join();
    EXPECT_EQ(alone, DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(with_messages, DWORD{WAIT_OBJECT_0});
}

TEST_F(Event_contract_test, without_manual_reset_ends_one_wait_and_is_kept_until_then)
{
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    ASSERT_NE(event, nullptr);
    EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_TIMEOUT});
    EXPECT_TRUE(SetEvent(event));
    EXPECT_TRUE(SetEvent(event));
    EXPECT_EQ(WaitForSingleObject(event, INFINITE), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_TIMEOUT});
    DWORD waited = WAIT_FAILED;
    std::thread waiting([&] { waited = WaitForSingleObject(event, INFINITE); });
    EXPECT_TRUE(SetEvent(event));
    waiting.join();
    EXPECT_EQ(waited, DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_TIMEOUT});
    EXPECT_TRUE(CloseHandle(event));
}

TEST_F(Event_contract_test, a_closed_handle_is_refused)
{
    const HANDLE closed = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    ASSERT_TRUE(CloseHandle(closed));
    const auto refused = [](auto&& call) {
        SetLastError(0);
        call();
        return GetLastError() == ERROR_INVALID_HANDLE;
    };
    EXPECT_TRUE(refused([=] { EXPECT_FALSE(SetEvent(closed)); }));
    EXPECT_TRUE(refused([=] { EXPECT_FALSE(CloseHandle(closed)); }));
    EXPECT_TRUE(refused([=] { EXPECT_EQ(WaitForSingleObject(closed, 0), WAIT_FAILED); }));
    EXPECT_TRUE(refused([=] {
        EXPECT_EQ(MsgWaitForMultipleObjectsEx(1, &closed, 0, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE), WAIT_FAILED);
    }));
}

TEST_F(Event_contract_test, a_sent_message_ends_the_wait_for_it)
{
    recorder().answer(sent_message, 42);
    LRESULT answer = 0;
    std::thread sender([&] { answer = SendMessageA(window_, sent_message, 0, 0); });
    EXPECT_EQ(wait_for_event_or_message(INFINITE), DWORD{WAIT_OBJECT_0 + 1});
    // It is there until it is handled, for every wait.
    EXPECT_EQ(wait_for_event_or_message(0), DWORD{WAIT_OBJECT_0 + 1});
    EXPECT_EQ(recorder().handler_of(sent_message), 0U);
    EXPECT_FALSE(handle_sent_messages());
    EXPECT_EQ(recorder().handler_of(sent_message), GetCurrentThreadId());
    EXPECT_EQ(wait_for_event_or_message(0), DWORD{WAIT_TIMEOUT});
    sender.join();
    EXPECT_EQ(answer, 42);
}

// Seen under Wine only: what comes first when both are there is not documented.
TEST_F(Event_contract_test, the_event_comes_before_the_message)
{
    EXPECT_TRUE(SetEvent(event_));
    std::thread sender([&] { SendMessageA(window_, sent_message, 0, 0); });
    EXPECT_EQ(wait_for_event_or_message(INFINITE), DWORD{WAIT_OBJECT_0});
    while (recorder().handler_of(sent_message) == 0) {
        handle_sent_messages();
    }
    sender.join();
}

TEST_F(Event_contract_test, a_posted_message_is_left_alone)
{
    EXPECT_TRUE(PostMessageA(window_, sent_message, 0, 0));
    EXPECT_EQ(wait_for_event_or_message(0), DWORD{WAIT_TIMEOUT});
    EXPECT_FALSE(handle_sent_messages());
    MSG message;
    EXPECT_TRUE(PeekMessageA(&message, nullptr, sent_message, sent_message, PM_REMOVE));
}

}  // namespace
