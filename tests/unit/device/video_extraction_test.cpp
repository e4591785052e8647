// The extraction thread: what ends it, and what it does at its end.
#include "device/video_extraction.h"

#include <boost/chrono/duration.hpp>
#include <boost/thread/thread.hpp>

#include "device/stop_handshake.h"
#include "device/video_state.h"
#include "support/boost_waiting.h"
#include "support/log_lines.h"
#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using kvs::brenvozulta::Stop_handshake;
using kvs::brenvozulta::Video_data;
using kvs::brenvozulta::Video_extraction;
using testing::ElementsAre;

class Video_extraction_test : public Device_test {
protected:
    void run_here() { Video_extraction::run(video_, handshake_); }
    boost::thread run_beside()
    {
        return boost::thread([this] { run_here(); });
    }

    Video_data video_;
    Stop_handshake handshake_;
};

TEST_F(Video_extraction_test, it_answers_a_stop_request)
{
    video_.video_state = video_stop_requested;
    run_here();
    EXPECT_EQ(video_.video_state, video_stopped);
    handshake_.wait();
}

TEST_F(Video_extraction_test, it_polls_through_every_other_state)
{
    boost::thread extraction = run_beside();
    for (const std::uint32_t state : {video_idle, video_running, video_stopped}) {
        video_.video_state = state;
        EXPECT_FALSE(extraction.try_join_for(moment)) << state;
        EXPECT_EQ(video_.video_state, state);
    }
    video_.video_state = video_stop_requested;
    EXPECT_TRUE(extraction.try_join_for(patience));
    EXPECT_EQ(video_.video_state, video_stopped);
}

TEST_F(Video_extraction_test, the_video_is_stopped_before_the_handshake_is_fulfilled)
{
    boost::thread extraction = run_beside();
    std::uint32_t seen = video_idle;
    boost::thread waiting([&] {
        handshake_.wait();
        seen = video_.video_state;
    });
    video_.video_state = video_stop_requested;
    waiting.join();
    extraction.join();
    EXPECT_EQ(seen, video_stopped);
}

TEST_F(Video_extraction_test, it_ends_when_its_device_is_dropped_and_leaves_the_state)
{
    video_.video_state = video_running;
    boost::thread extraction = run_beside();
    EXPECT_FALSE(extraction.try_join_for(moment));
    video_.dropped = true;
    EXPECT_TRUE(extraction.try_join_for(patience));
    EXPECT_EQ(video_.video_state, video_running);
}

TEST_F(Video_extraction_test, it_ends_at_once_when_its_device_is_dropped_already)
{
    video_.dropped = true;
    for (const std::uint32_t state : {video_running, video_stop_requested}) {
        video_.video_state = state;
        run_here();
        EXPECT_EQ(video_.video_state, state);
    }
}

// Requests and starts in turn, as fast as they go: no request is answered for the start after it, whose state stays
// until it is stopped itself.
TEST_F(Video_extraction_test, a_request_that_a_start_ended_is_missed)
{
    video_.video_state = video_stopped;
    for (int round = 0; round < 1000; ++round) {
        handshake_.begin(video_, {});
        boost::thread extraction = run_beside();
        video_.video_state = video_stop_requested;
        handshake_.begin(video_, {});
        const std::uint32_t begun = video_.video_state;
        ASSERT_EQ(begun, video_running) << round;
        // Whether the request was answered or missed, the promise is nobody's yet.
        boost::thread waiting([&] { handshake_.wait(); });
        ASSERT_EQ(video_.video_state, video_running) << round;
        video_.video_state = video_stop_requested;
        if (!extraction.try_join_for(boost::chrono::milliseconds(0))) {
            extraction.join();
        }
        if (video_.video_state == video_stop_requested) {
            run_here();
        }
        waiting.join();
        ASSERT_EQ(video_.video_state, video_stopped) << round;
    }
    EXPECT_THAT(take_log(), testing::IsEmpty());
}

TEST_F(Video_extraction_test, it_logs_that_another_was_quicker)
{
    video_.video_state = video_stop_requested;
    run_here();
    video_.video_state = video_stop_requested;
    run_here();
    EXPECT_EQ(video_.video_state, video_stopped);
    EXPECT_THAT(take_log(), ElementsAre(already_answered_line()));
    handshake_.wait();
}

TEST_F(Video_extraction_test, two_starts_leave_two_threads_of_which_one_answers_and_one_logs)
{
    running_device();
    ASSERT_EQ(device().start_camera(), 0);
    device().request_stop();
    // A thread that missed the short time of the request goes on until the next one.
    ASSERT_TRUE(becomes_true([this] { return device().video_state() == video_stopped; }));
    device().request_stop();
    // Its line comes piece by piece.
    EXPECT_TRUE(becomes_true([] {
        const std::string log = file_bytes(log_path());
        return log.find("promise Exception") != std::string::npos && log.back() == '\n';
    }));
    EXPECT_THAT(take_log(), ElementsAre(already_answered_line()));
    EXPECT_EQ(device().stop_video(), 0);
}

TEST_F(Video_extraction_test, a_stop_after_two_starts_returns)
{
    running_device();
    ASSERT_EQ(device().start_camera(), 0);
    ASSERT_EQ(device().start_camera(), 0);
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(device().video_state(), video_stopped);
    // Whether the others saw this request or wait for the next is a matter of time; they end with the device.
    drop_device();
    EXPECT_THAT(take_log(), testing::Each(already_answered_line()));
}

TEST_F(Video_extraction_test, a_stop_after_two_starts_and_a_suspend_does_not_wait)
{
    running_device();
    ASSERT_EQ(device().start_camera(), 0);
    device().request_stop();
    EXPECT_EQ(device().stop_video(), 0);
    drop_device();
    EXPECT_THAT(take_log(), testing::Each(already_answered_line()));
}

}  // namespace
