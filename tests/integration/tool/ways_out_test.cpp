// Whatever ends a capture leaves the scanner stopped and closed, and the driver released.
#include <filesystem>

#include "in_process.h"
#include "interrupt.h"
#include "support/broadcasts.h"
#include "support/waiting.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;

class Ways_out_test : public In_process_test {
protected:
    void SetUp() override
    {
        In_process_test::SetUp();
        brenvozulta_sim_set_frame_rate(50);
        directory_ = (std::filesystem::temp_directory_path() / "vyra_ways_out").generic_u8string();
        std::filesystem::remove_all(directory_);
    }

    void TearDown() override
    {
        In_process_test::TearDown();
        std::error_code ignored;
        std::filesystem::remove_all(directory_, ignored);
    }

    // The tool captures until something ends it; by then it has had images.
    std::unique_ptr<Background_run> endless_capture()
    {
        auto run = std::make_unique<Background_run>(
            std::vector<std::string>{"capture", "--frames", "0", "--out", directory_, "--format", "raw", "--json"});
        EXPECT_EQ(brenvozulta_sim_wait_callbacks_returned(3, test_support::patience_ms), 1);
        return run;
    }

    // The driver calls after the start of the capture.
    static std::vector<std::string> calls_since_start()
    {
        std::vector<std::string> calls = take_driver_calls();
        const auto start = std::find(calls.begin(), calls.end(), "QXDR_StartCapture");
        EXPECT_NE(start, calls.end());
        return {start == calls.end() ? start : start + 1, calls.end()};
    }

    static void expect_stopped_and_closed()
    {
        EXPECT_EQ(calls_since_start(),
                  (std::vector<std::string>{"QXDR_StopCapture", "QXDR_CloseDevice", "QXDR_Release"}));
        EXPECT_EQ(brenvozulta_sim_wait_acquisition_threads(0, test_support::patience_ms), 1);
    }

    // The summary of a capture: the images that were taken are listed, and their files are whole and all there is.
    Json expect_images_kept(const Result& result) const
    {
        const Json summary = Json::parse(result.out, nullptr, false);
        EXPECT_TRUE(summary.is_object()) << result.out;
        EXPECT_EQ(summary["complete"], result.code == 0);
        EXPECT_EQ(summary.contains("error"), result.code != 0);
        EXPECT_EQ(summary["unwritten"], 0);
        EXPECT_GE(summary["frames"], 2);
        EXPECT_EQ(summary["images"].size(), summary["frames"]);
        std::size_t files = 0;
        for (const auto& entry : std::filesystem::directory_iterator(directory_)) {
            EXPECT_EQ(entry.file_size(), 1600U * 1500U) << entry.path();
            EXPECT_EQ(std::count(summary["images"].begin(), summary["images"].end(), entry.path().generic_u8string()),
                      1);
            ++files;
        }
        EXPECT_EQ(files, summary["images"].size());
        return summary;
    }

    std::string directory_;
};

TEST_F(Ways_out_test, the_last_image)
{
    EXPECT_EQ(run_in_process({"capture", "--frames", "3", "--out", directory_}).code, 0);
    expect_stopped_and_closed();
}

TEST_F(Ways_out_test, ctrl_c)
{
    const auto run = endless_capture();
    vyra_tool::request_interrupt();
    const Result result = run->finish();
    EXPECT_EQ(result.code, 0);
    expect_images_kept(result);
    expect_stopped_and_closed();
}

TEST_F(Ways_out_test, ctrl_c_before_all_images_is_a_failure)
{
    brenvozulta_sim_set_frame_rate(0);
    Background_run run({"capture", "--frames", "2", "--out", directory_});
    ASSERT_EQ(brenvozulta_sim_wait_returned("QXDR_StartCapture", 1, test_support::patience_ms), 1);
    vyra_tool::request_interrupt();
    EXPECT_EQ(run.finish().code, 1);
    expect_stopped_and_closed();
}

TEST_F(Ways_out_test, a_pulled_cable)
{
    const auto run = endless_capture();
    ASSERT_EQ(brenvozulta_sim_unplug(BRENVOZULTA_SIM_DEFAULT_SCANNER), 1);
    const Result result = run->finish();
    EXPECT_EQ(result.code, 4);
    EXPECT_THAT(expect_images_kept(result)["error"]["message"], HasSubstr("was unplugged"));
    expect_stopped_and_closed();
}

TEST_F(Ways_out_test, a_disk_that_takes_no_more)
{
    const auto run = endless_capture();
    // Somewhere a folder in which a file is being written cannot be moved.
    const std::string elsewhere = directory_ + "_moved";
    EXPECT_TRUE(test_support::becomes_true([&] {
        std::error_code busy;
        std::filesystem::rename(directory_, elsewhere, busy);
        return !busy;
    }));
    EXPECT_EQ(run->finish().code, 5);
    std::filesystem::remove_all(elsewhere);
    expect_stopped_and_closed();
}

TEST_F(Ways_out_test, a_scanner_that_falls_silent)
{
    brenvozulta_sim_set_frame_rate(0);
    EXPECT_EQ(run_in_process({"capture", "--timeout", "0.1", "--out", directory_}).code, 1);
    expect_stopped_and_closed();
}

TEST_F(Ways_out_test, a_scanner_that_falls_silent_after_some_images)
{
    Background_run run(
        {"capture", "--frames", "0", "--timeout", "3", "--out", directory_, "--format", "raw", "--json"});
    EXPECT_EQ(brenvozulta_sim_wait_callbacks_returned(3, test_support::patience_ms), 1);
    brenvozulta_sim_set_frame_rate(0);
    const Result result = run.finish();
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(expect_images_kept(result)["error"]["name"], "VYRA_VIDEO_TIMEOUT");
    expect_stopped_and_closed();
}

TEST_F(Ways_out_test, a_computer_that_goes_to_sleep)
{
    const auto run = endless_capture();
    ASSERT_NE(test_support::wait_for_window(), nullptr);
    test_support::send_power_event(PBT_APMSUSPEND);
    const Result result = run->finish();
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(expect_images_kept(result)["error"]["message"],
                HasSubstr("the computer went to sleep during the capture"));
    // The library stays asleep until it hears of the resume.
    ASSERT_EQ(VyraInitialize_N(nullptr, 0, 0), VYRA_OK);
    ASSERT_NE(test_support::wait_for_window(), nullptr);
    test_support::send_power_event(PBT_APMRESUMESUSPEND);
}

TEST_F(Ways_out_test, an_image_of_a_wrong_size)
{
    EXPECT_EQ(run_in_process({"capture", "--size", "1600x1501", "--out", directory_}).code, 1);
    expect_stopped_and_closed();
}

TEST_F(Ways_out_test, a_stop_that_is_refused)
{
    const auto run = endless_capture();
    ASSERT_EQ(brenvozulta_sim_fail("QXDR_StopCapture", 9, 1), 1);
    vyra_tool::request_interrupt();
    const Result result = run->finish();
    EXPECT_EQ(result.code, 1);
    const Json error = expect_images_kept(result)["error"];
    EXPECT_EQ(error["code"], VYRA_DEVICE_TIMEOUT);
    EXPECT_EQ(error["try"], "try again; if it stays, plug the scanner out and in") << "no other program is to blame";
    expect_stopped_and_closed();
}

class Ctrl_c_test : public Tool_test {};

TEST_F(Ctrl_c_test, ends_a_capture_process_in_order)
{
    Child_process child(tool({"capture", "--frames", "0", "--out", path("images")}));
    ASSERT_TRUE(child.wait_for_output("image_0002.png\n")) << child.err();
    child.interrupt();
    EXPECT_EQ(child.wait(), 0) << child.err();
    EXPECT_THAT(child.out(), HasSubstr(" frames/s  "));
}

TEST_F(Ctrl_c_test, a_closed_console_ends_a_capture_process_in_order)
{
    Child_process child(tool({"capture", "--frames", "0", "--out", path("images"), "--json"}));
    ASSERT_TRUE(test_support::becomes_true([&] { return std::filesystem::exists(path("images/image_0002.png")); }));
    child.close_console();
    EXPECT_EQ(child.wait(), 0) << child.err();
    const Json summary = Json::parse(child.out());
    const std::filesystem::directory_iterator written(path("images"));
    EXPECT_EQ(summary["images"].size(), static_cast<std::size_t>(std::distance(begin(written), end(written))));
}

TEST_F(Ctrl_c_test, ends_a_watch_process)
{
    Child_process child(tool({"watch"}));
    ASSERT_TRUE(child.wait_for_error("watching; Ctrl-C ends\n"));
    child.interrupt();
    EXPECT_EQ(child.wait(), 0) << child.err();
}

}  // namespace
}  // namespace tool_tests
