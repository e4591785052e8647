// Hosts whose process ends while the library is at work, and who clean up at the last moment.
#include "lifetime_test.h"

namespace lifetime_tests {
namespace {

using ::testing::Combine;
using ::testing::Values;

// What the library was doing, how the host cleans up, and when.
using Ending = std::tuple<const char*, const char*, const char*>;

class Process_exit_test : public ::testing::TestWithParam<Ending> {
protected:
    static void end_process(int times)
    {
        const auto& [state, clean_up, when] = GetParam();
        for (int i = 0; i < times && !HasFailure(); ++i) {
            const auto result = run_host("exit_host", {state, clean_up, when});
            expect_good_end(result);
            EXPECT_EQ(result.err, lines_of(clean_up)) << "time " << i;
        }
    }

private:
    static std::string lines_of(const std::string& clean_up)
    {
        if (clean_up == "stop_notifier") {
            return "TerminateUsbNotifier 0\n";
        }
        return std::string(clean_up == "stop" ? "VyraStopVideo 0\n" : "") +
               (clean_up == "terminate" ? "" : "VyraCloseDevice_N 0\n") + "VyraTerminate 0\n";
    }
};

std::string name_of(const ::testing::TestParamInfo<Ending>& info)
{
    const auto& [state, clean_up, when] = info.param;
    return std::string(state) + "_" + clean_up + "_" + when;
}

const auto moments = Values("atexit", "destructor");

TEST_P(Process_exit_test, the_clean_up_goes_through_and_the_process_ends)
{
    end_process(1);
}

INSTANTIATE_TEST_SUITE_P(Notifier, Process_exit_test, Combine(Values("notifier"), Values("stop_notifier"), moments),
                         name_of);
INSTANTIATE_TEST_SUITE_P(Library, Process_exit_test, Combine(Values("initialized"), Values("terminate"), moments),
                         name_of);
INSTANTIATE_TEST_SUITE_P(Scanner, Process_exit_test, Combine(Values("open"), Values("terminate", "close"), moments),
                         name_of);
INSTANTIATE_TEST_SUITE_P(Waiting, Process_exit_test,
                         Combine(Values("waiting"), Values("terminate", "close", "stop"), moments), name_of);

// On Windows the copy ends with its thread only, so that there is nothing to clean up before that.
INSTANTIATE_TEST_SUITE_P(Copying, Process_exit_test,
                         Combine(Values("copying"), Values("terminate", "close", "stop"), Values("destructor")),
                         name_of);

// The system ends the threads wherever they are: it takes a few times to meet them in different places.
using Process_exit_amid_images_test = Process_exit_test;

TEST_P(Process_exit_amid_images_test, the_clean_up_goes_through_and_the_process_ends_wherever_the_threads_are)
{
    end_process(20);
}

INSTANTIATE_TEST_SUITE_P(Video, Process_exit_amid_images_test,
                         Combine(Values("video"), Values("terminate", "close", "stop"), moments), name_of);

}  // namespace
}  // namespace lifetime_tests
