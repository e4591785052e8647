#include <gtest/gtest.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include "win32_double/control.h"

namespace {

using win32_double::stale_handles;

HANDLE new_event()
{
    return CreateEventA(nullptr, TRUE, FALSE, nullptr);
}

class Handles_test : public testing::Test {
protected:
    void TearDown() override { win32_double::reuse_handles(false); }
};

TEST_F(Handles_test, are_never_given_twice)
{
    win32_double::reuse_handles(false);
    const HANDLE first = new_event();
    EXPECT_TRUE(CloseHandle(first));
    const HANDLE second = new_event();
    EXPECT_NE(first, second);
    EXPECT_TRUE(CloseHandle(second));
}

TEST_F(Handles_test, are_given_again_at_once_when_they_are_reused)
{
    win32_double::reuse_handles(true);
    const HANDLE first = new_event();
    const HANDLE kept = new_event();
    EXPECT_NE(first, kept);
    EXPECT_TRUE(CloseHandle(first));
    const HANDLE second = new_event();
    EXPECT_EQ(first, second);
    EXPECT_TRUE(CloseHandle(second));
    EXPECT_TRUE(CloseHandle(kept));
}

TEST_F(Handles_test, who_closes_twice_closes_anothers_when_they_are_reused)
{
    win32_double::reuse_handles(true);
    const HANDLE mine = new_event();
    EXPECT_TRUE(CloseHandle(mine));
    const HANDLE others = new_event();
    EXPECT_TRUE(CloseHandle(mine));
    EXPECT_FALSE(SetEvent(others));
}

TEST_F(Handles_test, a_stale_one_is_counted)
{
    win32_double::reuse_handles(false);
    const HANDLE closed = new_event();
    const uint64_t before = stale_handles();
    EXPECT_TRUE(CloseHandle(closed));
    EXPECT_EQ(stale_handles(), before);
    EXPECT_FALSE(CloseHandle(closed));
    EXPECT_FALSE(SetEvent(closed));
    EXPECT_EQ(WaitForSingleObject(closed, 0), WAIT_FAILED);
    EXPECT_FALSE(UnregisterDeviceNotification(closed));
    EXPECT_FALSE(DestroyWindow(static_cast<HWND>(closed)));
    EXPECT_EQ(stale_handles(), before + 5);
}

TEST_F(Handles_test, a_stale_descriptor_is_counted)
{
    const int file =
        _sopen((win32_double::program_data() + "/stale").c_str(), _O_RDWR | _O_CREAT, _SH_DENYNO, _S_IREAD | _S_IWRITE);
    ASSERT_NE(file, -1);
    EXPECT_EQ(_close(file), 0);
    const uint64_t before = stale_handles();
    EXPECT_EQ(_close(file), -1);
    EXPECT_EQ(_write(file, "x", 1), -1);
    EXPECT_EQ(stale_handles(), before + 2);
}

}  // namespace
