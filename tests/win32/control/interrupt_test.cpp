#include <gtest/gtest.h>
#include <windows.h>

#include <csignal>
#include <future>

namespace {

std::promise<DWORD>* handled = nullptr;
DWORD handler_thread = 0;

BOOL WINAPI note_event(DWORD event)
{
    handler_thread = GetCurrentThreadId();
    handled->set_value(event);
    return TRUE;
}

TEST(Interrupt_test, the_handler_runs_on_a_thread_of_its_own)
{
    std::promise<DWORD> event;
    handled = &event;
    ASSERT_TRUE(SetConsoleCtrlHandler(note_event, TRUE));
    std::raise(SIGINT);
    EXPECT_EQ(event.get_future().get(), DWORD{CTRL_C_EVENT});
    EXPECT_NE(handler_thread, GetCurrentThreadId());
    EXPECT_TRUE(SetConsoleCtrlHandler(note_event, FALSE));
}

TEST(Interrupt_test, a_handler_that_declines_leaves_it_to_the_one_before)
{
    std::promise<DWORD> event;
    handled = &event;
    const PHANDLER_ROUTINE declining = [](DWORD) -> BOOL { return FALSE; };
    ASSERT_TRUE(SetConsoleCtrlHandler(note_event, TRUE));
    ASSERT_TRUE(SetConsoleCtrlHandler(declining, TRUE));
    std::raise(SIGINT);
    EXPECT_EQ(event.get_future().get(), DWORD{CTRL_C_EVENT});
    EXPECT_TRUE(SetConsoleCtrlHandler(declining, FALSE));
    EXPECT_TRUE(SetConsoleCtrlHandler(note_event, FALSE));
}

}  // namespace
