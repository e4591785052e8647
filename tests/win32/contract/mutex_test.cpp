#include <gtest/gtest.h>
#include <windows.h>

#include <thread>

namespace {

class Mutex_contract_test : public testing::Test {
protected:
    void SetUp() override
    {
        mutex_ = CreateMutexA(nullptr, FALSE, nullptr);
        ASSERT_NE(mutex_, nullptr);
    }
    void TearDown() override { EXPECT_TRUE(CloseHandle(mutex_)); }

    DWORD try_to_own() const { return WaitForSingleObject(mutex_, 0); }
    DWORD try_with_messages() const
    {
        return MsgWaitForMultipleObjectsEx(1, &mutex_, 0, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE);
    }
    template <class Call>
    static void on_another_thread(Call call)
    {
        std::thread(call).join();
    }

    HANDLE mutex_ = nullptr;
};

TEST_F(Mutex_contract_test, is_owned_by_the_thread_whose_wait_ended)
{
    EXPECT_EQ(try_to_own(), DWORD{WAIT_OBJECT_0});
    on_another_thread([this] {
        EXPECT_EQ(try_to_own(), DWORD{WAIT_TIMEOUT});
        EXPECT_EQ(try_with_messages(), DWORD{WAIT_TIMEOUT});
        SetLastError(0);
        EXPECT_FALSE(ReleaseMutex(mutex_));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_OWNER});
    });
    EXPECT_TRUE(ReleaseMutex(mutex_));
    on_another_thread([this] {
        EXPECT_EQ(try_with_messages(), DWORD{WAIT_OBJECT_0});
        EXPECT_TRUE(ReleaseMutex(mutex_));
    });
}

TEST_F(Mutex_contract_test, is_given_up_as_often_as_it_was_taken)
{
    EXPECT_EQ(try_to_own(), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(try_with_messages(), DWORD{WAIT_OBJECT_0});
    EXPECT_TRUE(ReleaseMutex(mutex_));
    on_another_thread([this] { EXPECT_EQ(try_to_own(), DWORD{WAIT_TIMEOUT}); });
    EXPECT_TRUE(ReleaseMutex(mutex_));
    SetLastError(0);
    EXPECT_FALSE(ReleaseMutex(mutex_));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_OWNER});
    on_another_thread([this] {
        EXPECT_EQ(try_to_own(), DWORD{WAIT_OBJECT_0});
        EXPECT_TRUE(ReleaseMutex(mutex_));
    });
}

TEST_F(Mutex_contract_test, its_release_ends_the_wait_of_another)
{
    ASSERT_EQ(try_to_own(), DWORD{WAIT_OBJECT_0});
    DWORD answer = WAIT_FAILED;
    std::thread waiting([&] {
        answer = MsgWaitForMultipleObjectsEx(1, &mutex_, INFINITE, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE);
        ReleaseMutex(mutex_);
    });
    EXPECT_TRUE(ReleaseMutex(mutex_));
    waiting.join();
    EXPECT_EQ(answer, DWORD{WAIT_OBJECT_0});
}

TEST_F(Mutex_contract_test, of_a_thread_that_ended_is_abandoned_once)
{
    on_another_thread([this] {
        EXPECT_EQ(try_to_own(), DWORD{WAIT_OBJECT_0});
        EXPECT_EQ(try_to_own(), DWORD{WAIT_OBJECT_0});
    });
    EXPECT_EQ(WaitForSingleObject(mutex_, INFINITE), DWORD{WAIT_ABANDONED});
    EXPECT_EQ(try_to_own(), DWORD{WAIT_OBJECT_0});
    EXPECT_TRUE(ReleaseMutex(mutex_));
    EXPECT_TRUE(ReleaseMutex(mutex_));
    EXPECT_EQ(try_with_messages(), DWORD{WAIT_OBJECT_0});
    EXPECT_TRUE(ReleaseMutex(mutex_));
}

}  // namespace
