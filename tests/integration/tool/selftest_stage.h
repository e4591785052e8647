// The stage of the self-test's tests: a scanner that is quick and whose images are known.
#pragma once

#include "in_process.h"
#include "selftest.h"
#include "tool_test.h"

namespace tool_tests {

class Selftest_stage : public In_process_test {
public:
    // Lets images of this size and these seeds come; 0 is one of a single grey.
    static void use_images(std::uint32_t width, std::uint32_t height, const std::vector<std::uint32_t>& seeds);

protected:
    static void TearDownTestSuite();
    void SetUp() override;

    // The names of the checks that failed.
    static std::vector<std::string> failed(const std::vector<vyra_tool::Outcome>& outcomes);
    // The same with how they failed.
    static std::string explained(const std::vector<vyra_tool::Outcome>& outcomes);
};

}  // namespace tool_tests
