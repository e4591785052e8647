// A capture whose disk takes its time, and the writer's order: the encoder stands for the disk.
#include <atomic>
#include <filesystem>
#include <future>
#include <optional>

#include "capture.h"
#include "failure.h"
#include "in_process.h"
#include "interrupt.h"
#include "support/waiting.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using namespace std::chrono_literals;
using vyra_tool::Capture;
using vyra_tool::Capture_buffers;
using vyra_tool::Capture_plan;
using vyra_tool::Image_writer;
using vyra_tool::Taken_image;

class Slow_disk_test : public In_process_test {
protected:
    static constexpr vyra_tool::Image_size size{31, 17};

    void SetUp() override
    {
        In_process_test::SetUp();
        brenvozulta_sim_set_frame_rate(0);
        // One for each test: the threads that one leaves behind still write.
        static int number = 0;
        const auto name = "vyra_slow_disk_" + std::to_string(++number);
        directory_ = (std::filesystem::temp_directory_path() / name).generic_u8string();
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directory(directory_);
        plan_.size = size;
        plan_.frames = 0;
        plan_.timeout = 1s;
        plan_.directory = directory_;
        plan_.extension = ".raw";
        plan_.encode = [held = held_.get_future().share()](const Taken_image&) {
            held.wait();
            return std::vector<std::uint8_t>{1};
        };
    }

    void TearDown() override
    {
        In_process_test::TearDown();
        std::error_code ignored;
        std::filesystem::remove_all(directory_, ignored);
    }

    // Runs the capture on a thread of its own; its failure ends up in the future.
    void start()
    {
        scanner_.emplace(library_.emplace(0), BRENVOZULTA_SIM_DEFAULT_SCANNER);
        capture_.emplace(
            *scanner_, std::make_shared<Capture_buffers>(size), plan_,
            [this](const vyra_tool::Capture_result& result, const std::string&) { taken_ = result.meter.frames(); });
        ended_ = std::async(std::launch::async, [this] { capture_->run(); });
        ASSERT_EQ(brenvozulta_sim_wait_returned("QXDR_StartCapture", 1, test_support::patience_ms), 1);
    }

    // Delivers images until the capture has so many: one that finds no request is lost, or waits for one.
    void deliver_until(std::uint64_t taken) const
    {
        const Image image = noise(size.width, size.height, 1);
        const brenvozulta_sim_image delivered{
            image.pixels.data(), image.pixels.size(), size.width, size.height, nullptr, 0, nullptr};
        std::uint64_t ticket = 0;
        ASSERT_TRUE(test_support::becomes_true([&] {
            if (taken_ < taken && (ticket == 0 || brenvozulta_sim_wait_delivery_done(ticket, 0, nullptr) != 0)) {
                ticket = brenvozulta_sim_deliver_async(&delivered);
                EXPECT_NE(ticket, 0U);
            }
            return taken_ >= taken;
        }));
    }

    void close()
    {
        capture_.reset();
        scanner_.reset();
        library_.reset();
    }

    std::string directory_;
    std::promise<void> held_;  // until it is fulfilled, the disk takes nothing
    Capture_plan plan_;
    std::optional<vyra_tool::Library> library_;
    std::optional<vyra_tool::Scanner> scanner_;
    std::optional<Capture> capture_;
    std::atomic<std::uint64_t> taken_{0};
    std::future<void> ended_;
};

TEST_F(Slow_disk_test, a_writer_that_was_held_up_is_no_silent_scanner)
{
    plan_.frames = Capture_buffers(size).count() + 1;
    start();
    deliver_until(plan_.frames - 1);  // all buffers are with the writer: nobody waits for an image
    EXPECT_EQ(ended_.wait_for(plan_.timeout + 200ms), std::future_status::timeout);
    held_.set_value();
    deliver_until(plan_.frames);
    EXPECT_NO_THROW(ended_.get());
    EXPECT_EQ(capture_->files().size(), plan_.frames);
    close();
}

TEST_F(Slow_disk_test, a_scanner_that_falls_silent_meanwhile_costs_no_image)
{
    start();
    deliver_until(3);
    // The first stop is the one with which every start begins.
    ASSERT_EQ(brenvozulta_sim_wait_returned("QXDR_StopCapture", 2, test_support::patience_ms), 1);
    held_.set_value();
    EXPECT_THROW(ended_.get(), vyra_tool::Failure);
    EXPECT_EQ(capture_->files().size(), taken_);
    EXPECT_EQ(capture_->result().unwritten, 0U);
    close();
}

TEST_F(Slow_disk_test, an_interrupted_capture_waits_for_the_disk_as_long_as_it_may)
{
    start();
    deliver_until(3);
    vyra_tool::request_interrupt(0s);
    const bool in_time =
        ended_.wait_for(std::chrono::milliseconds(test_support::patience_ms)) == std::future_status::ready;
    EXPECT_TRUE(in_time);
    if (!in_time) {
        held_.set_value();
    }
    try {
        ended_.get();
        ADD_FAILURE() << "the disk had no time";
    } catch (const vyra_tool::Failure& failure) {
        EXPECT_EQ(failure.what(), "interrupted: the disk had no time for " + std::to_string(taken_) + " images");
        EXPECT_EQ(failure.cause(), vyra_tool::Cause::file);
    }
    EXPECT_EQ(capture_->result().unwritten, taken_);
    // The threads that the disk holds up keep what they need.
    const auto closed = std::async(std::launch::async, [this] { close(); });
    EXPECT_EQ(closed.wait_for(std::chrono::milliseconds(test_support::patience_ms)), std::future_status::ready);
    if (in_time) {
        held_.set_value();
    }
}

TEST_F(Slow_disk_test, images_are_numbered_and_given_back_in_their_order_whoever_is_quicker)
{
    std::promise<void> second_written;
    std::atomic<int> images{0};
    const std::vector<std::uint8_t> pixels{10, 20, 30};
    {
        Image_writer writer(
            vyra_tool::Image_folder(directory_, ".raw"),
            [&](const Taken_image& image) {
                if (*image.pixels == 10) {
                    second_written.get_future().wait();
                } else if (++images == 2) {
                    second_written.set_value();
                }
                return std::vector<std::uint8_t>{*image.pixels};
            },
            nullptr);
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            writer.put({i, &pixels[i], {}});
        }
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            const auto written = writer.take(std::chrono::milliseconds(test_support::patience_ms));
            ASSERT_TRUE(written);
            EXPECT_EQ(written->buffer, i);
            EXPECT_EQ(written->number, i + 1);
            EXPECT_EQ(read_bytes(directory_ + "/image_000" + std::to_string(i + 1) + ".raw"), Bytes{pixels[i]});
        }
    }
}

TEST(Capture_result_test, keeps_runs_of_numbers_so_that_an_endless_capture_does_not_grow)
{
    vyra_tool::Capture_result result;
    for (std::uint64_t number = 5; number <= 100'000; ++number) {
        result.add(number);
    }
    result.add(200'000);
    EXPECT_EQ(result.images, (std::vector<std::pair<std::uint64_t, std::uint64_t>>{{5, 100'000}, {200'000, 200'000}}));
}

}  // namespace
}  // namespace tool_tests
