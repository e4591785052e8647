// What the simulator has to say reaches a host without a standard error too.
#include <windows.h>

#include "driver_stage.h"
#include "system.h"

namespace simulator_test {
namespace {

std::string debug_output;

// The system hands what a program tells its debugger around as an exception, with the length and the text.
LONG CALLBACK note_debug_output(EXCEPTION_POINTERS* pointers)
{
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (record.ExceptionCode == DBG_PRINTEXCEPTION_C && record.NumberParameters >= 2) {
        debug_output += reinterpret_cast<const char*>(record.ExceptionInformation[1]);
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

class Debug_output_test : public Driver_test {};

TEST_F(Debug_output_test, tells_why_a_scenario_cannot_be_used)
{
    set_environment("BRENVOZULTA_SCENARIO", R"({"frame_rate": -1})");
    void* const noting = AddVectoredExceptionHandler(1, note_debug_output);
    testing::internal::CaptureStderr();
    EXPECT_EQ(QXDR_Initialize(), 14U);
    RemoveVectoredExceptionHandler(noting);
    set_environment("BRENVOZULTA_SCENARIO", "");
    EXPECT_EQ(debug_output, "BrenvoZulta_USB: BRENVOZULTA_SCENARIO:1: frame_rate: is not from 0 to 1000\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), debug_output);
}

}  // namespace
}  // namespace simulator_test
