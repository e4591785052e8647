// A capture for which there is no memory.
#include <sys/resource.h>

#include "in_process.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

class Out_of_memory_test : public In_process_test {
protected:
    Out_of_memory_test()
    {
        getrlimit(RLIMIT_AS, &limit_);
        const rlimit small{rlim_t{8} << 30, limit_.rlim_max};  // far less than the buffers of a capture reserve
        setrlimit(RLIMIT_AS, &small);
    }

    ~Out_of_memory_test() override { setrlimit(RLIMIT_AS, &limit_); }

private:
    rlimit limit_{};
};

TEST_F(Out_of_memory_test, ends_a_capture_with_its_summary)
{
    const std::string folder = ::testing::TempDir() + "vyra_out_of_memory";
    const Result result = run_and_listen({"capture", "--out", folder, "--json"});
    EXPECT_EQ(result.code, 1);
    const Json summary = Json::parse(result.out, nullptr, false);
    ASSERT_TRUE(summary.is_object()) << result.out;
    EXPECT_EQ(summary["complete"], false);
    EXPECT_EQ(summary["frames"], 0);
    EXPECT_EQ(summary["error"]["message"], "out of memory");
    EXPECT_EQ(Json::parse(result.err)["error"], summary["error"]);
}

}  // namespace
}  // namespace tool_tests
