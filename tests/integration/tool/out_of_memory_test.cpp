// A capture for which there is no memory, or not for all of it.
#include <sys/resource.h>

#include <optional>

#include "image_writer.h"
#include "in_process.h"
#include "support/failing_new.h"
#include "support/waiting.h"
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

class Memory_for_writers_test : public Tool_test {};

TEST_F(Memory_for_writers_test, a_writer_has_the_threads_there_is_memory_for_or_is_none)
{
    const vyra_tool::Image_writer::Encoder encode = [](const auto&) { return Bytes{1}; };
    int writers = 0;
    bool refused = true;
    for (long allocation = 1; refused; ++allocation) {
        std::optional<vyra_tool::Image_writer> writer;
        vyra_tool::Image_folder folder(path(""), ".raw");
        failing_new::fail_allocation(allocation);
        try {
            writer.emplace(folder, encode, nullptr);
        } catch (const std::bad_alloc&) {
        }
        refused = failing_new::stop();
        if (writer) {
            ++writers;
            writer->put({0, nullptr, ""});
            EXPECT_TRUE(writer->take(std::chrono::milliseconds(test_support::patience_ms)));
        }
    }
    EXPECT_GT(writers, 1) << "memory for one thread is enough";
}

}  // namespace
}  // namespace tool_tests
