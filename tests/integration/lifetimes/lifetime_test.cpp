#include "lifetime_test.h"

namespace lifetime_tests {

using test_support::Result;

Result run_host(const std::string& host, const std::vector<std::string>& arguments, std::chrono::seconds patience)
{
    std::vector<std::string> command{test_support::program_folder() + "/" + host};
    command.insert(command.end(), arguments.begin(), arguments.end());
    // A start that finds nothing to stop makes no pause.
    const char* const scenario = R"({"idle_stop_result": 4, "frame_rate": 100,
                                     "capture_configs": [{"number": 1, "width": 16, "height": 16}]})";
    return test_support::run_program(command, {{"BRENVOZULTA_SCENARIO", scenario}}, {}, patience);
}

void expect_good_end(const Result& result)
{
    EXPECT_FALSE(result.ended_by_force) << "the host does not end";
    EXPECT_EQ(result.code, 0) << result.out << result.err;
}

}  // namespace lifetime_tests
