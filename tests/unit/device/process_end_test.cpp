// The end of the process, which natively is only told: nothing waits any more for what other threads were to do.
#include "device/process_end.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "device/records.h"
#include "device/stop_handshake.h"

namespace {

using namespace kvs::brenvozulta;

TEST(Process_end, A_Process_At_Work_Is_Not_Ending)
{
    EXPECT_FALSE(process_is_ending());
}

class Ending_process : public testing::Test {
protected:
    void SetUp() override
    {
        system_ = LoadLibraryA("ntdll.dll");
        ASSERT_NE(system_, nullptr);
    }
    void TearDown() override { EXPECT_TRUE(FreeLibrary(system_)); }

private:
    HMODULE system_ = nullptr;
};

TEST_F(Ending_process, Is_Known_By_The_Systems_Word)
{
    EXPECT_TRUE(process_is_ending());
}

TEST_F(Ending_process, No_Thread_Is_Left_To_Answer_A_Stop)
{
    Stop_handshake handshake;
    Video_data video;
    handshake.begin(video, {});
    handshake.wait();
}

}  // namespace
