// The tool inside the test's own process, where the simulated driver's control interface reaches it.
#pragma once

#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "support/child_process.h"
#include "support/scanner_test.h"

namespace tool_tests {

using test_support::Result;

// The stage: the simulated driver without configuration, and a tool that nobody has interrupted. What the tool says on
// standard error goes to the test's.
class In_process_test : public test_support::Scanner_test {
protected:
    void SetUp() override;
};

// The tool at work on a thread of its own.
class Background_run {
public:
    explicit Background_run(const std::vector<std::string>& arguments);
    ~Background_run();
    Background_run(const Background_run&) = delete;
    Background_run& operator=(const Background_run&) = delete;

    // Waits for its end; err of the result is empty.
    Result finish();

private:
    std::string file_;
    std::FILE* results_;
    int code_ = -1;
    std::thread thread_;
};

Result run_in_process(const std::vector<std::string>& arguments);
// The same with what the tool says on standard error as well, for tests of which no other thread says anything there.
Result run_and_listen(const std::vector<std::string>& arguments);

}  // namespace tool_tests
