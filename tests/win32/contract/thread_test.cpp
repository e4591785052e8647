#include <gtest/gtest.h>
#include <windows.h>

#include <thread>

namespace {

struct Asked {
    HANDLE may_end = nullptr;
    DWORD number = 0;
};

DWORD WINAPI tell_and_wait(LPVOID argument)
{
    auto& asked = *static_cast<Asked*>(argument);
    asked.number = GetCurrentThreadId();
    WaitForSingleObject(asked.may_end, INFINITE);
    return 0;
}

class Thread_contract_test : public testing::Test {
protected:
    void SetUp() override
    {
        asked_.may_end = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        thread_ = CreateThread(nullptr, 0, tell_and_wait, &asked_, 0, &number_);
        ASSERT_NE(thread_, nullptr);
    }
    void TearDown() override
    {
        SetEvent(asked_.may_end);
        EXPECT_EQ(WaitForSingleObject(thread_, INFINITE), DWORD{WAIT_OBJECT_0});
        EXPECT_TRUE(CloseHandle(thread_));
        EXPECT_TRUE(CloseHandle(asked_.may_end));
    }

    Asked asked_;
    HANDLE thread_ = nullptr;
    DWORD number_ = 0;
};

TEST_F(Thread_contract_test, runs_under_the_number_that_its_creator_is_told)
{
    EXPECT_NE(number_, GetCurrentThreadId());
    SetEvent(asked_.may_end);
    EXPECT_EQ(WaitForSingleObject(thread_, INFINITE), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(asked_.number, number_);
}

TEST_F(Thread_contract_test, its_end_ends_every_wait_for_it)
{
    EXPECT_EQ(WaitForSingleObject(thread_, 0), DWORD{WAIT_TIMEOUT});
    SetEvent(asked_.may_end);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(MsgWaitForMultipleObjectsEx(1, &thread_, INFINITE, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE),
                  DWORD{WAIT_OBJECT_0});
    }
}

TEST_F(Thread_contract_test, a_wait_for_several_ends_by_the_first_that_is_signalled)
{
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const HANDLE objects[] = {event, thread_};
    const auto wait = [&](DWORD milliseconds) {
        const DWORD with_messages =
            MsgWaitForMultipleObjectsEx(2, objects, milliseconds, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE);
        EXPECT_EQ(WaitForMultipleObjects(2, objects, FALSE, milliseconds), with_messages);
        return with_messages;
    };
    EXPECT_EQ(wait(0), DWORD{WAIT_TIMEOUT});
    SetEvent(asked_.may_end);
    EXPECT_EQ(wait(INFINITE), DWORD{WAIT_OBJECT_0 + 1});
    SetEvent(event);
    EXPECT_EQ(wait(INFINITE), DWORD{WAIT_OBJECT_0});
    EXPECT_TRUE(CloseHandle(event));
}

TEST_F(Thread_contract_test, can_be_opened_by_itself)
{
    HANDLE opened = nullptr;
    std::thread([&] {
        opened = OpenThread(SYNCHRONIZE, FALSE, GetCurrentThreadId());
        EXPECT_EQ(WaitForSingleObject(opened, 0), DWORD{WAIT_TIMEOUT});
    }).join();
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(WaitForSingleObject(opened, INFINITE), DWORD{WAIT_OBJECT_0});
    EXPECT_TRUE(CloseHandle(opened));
}

}  // namespace
