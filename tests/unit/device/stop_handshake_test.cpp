// The handshake between a stop and an extraction thread.
#include "device/stop_handshake.h"

#include <gtest/gtest.h>

#include <boost/thread/thread.hpp>

#include "device/video_state.h"
#include "support/boost_waiting.h"

namespace {

using namespace kvs::brenvozulta;
using test_support::moment;
using test_support::patience;

class Stop_handshake_test : public testing::Test {
protected:
    void begin() { handshake.begin(video, {}); }
    bool answer_request()
    {
        video.video_state = VIDEO_STOP_REQUESTED;
        return handshake.answer(video);
    }

    Video_data video;
    Stop_handshake handshake;
};

TEST_F(Stop_handshake_test, a_begin_runs_the_video)
{
    begin();
    EXPECT_EQ(video.video_state, VIDEO_RUNNING);
}

TEST_F(Stop_handshake_test, a_wait_ends_with_the_answer)
{
    begin();
    boost::thread waiting([&] { handshake.wait(); });
    EXPECT_FALSE(waiting.try_join_for(moment));
    EXPECT_TRUE(answer_request());
    EXPECT_EQ(video.video_state, VIDEO_STOPPED);
    EXPECT_TRUE(waiting.try_join_for(patience));
}

TEST_F(Stop_handshake_test, a_wait_after_the_answer_returns_at_once)
{
    begin();
    EXPECT_TRUE(answer_request());
    boost::thread waiting([&] { handshake.wait(); });
    EXPECT_TRUE(waiting.try_join_for(patience));
}

// A thread that has seen a request and is then held up may find anything.
TEST_F(Stop_handshake_test, what_is_no_request_is_not_answered)
{
    begin();
    for (const Video_state state : {VIDEO_IDLE, VIDEO_RUNNING, VIDEO_STOPPED}) {
        video.video_state = state;
        EXPECT_FALSE(handshake.answer(video));
        EXPECT_EQ(video.video_state, state);
    }
    boost::thread waiting([&] { handshake.wait(); });
    EXPECT_FALSE(waiting.try_join_for(moment));
    EXPECT_TRUE(answer_request());
    EXPECT_TRUE(waiting.try_join_for(patience));
}

TEST_F(Stop_handshake_test, a_second_answer_is_an_error_and_stops_the_video_all_the_same)
{
    begin();
    EXPECT_TRUE(answer_request());
    EXPECT_THROW(answer_request(), boost::promise_already_satisfied);
    EXPECT_EQ(video.video_state, VIDEO_STOPPED);
}

TEST_F(Stop_handshake_test, a_start_without_a_thread_fulfils_it_itself)
{
    begin();
    handshake.fulfil();
    EXPECT_EQ(video.video_state, VIDEO_RUNNING);
    handshake.wait();
    EXPECT_THROW(handshake.fulfil(), boost::promise_already_satisfied);
}

TEST_F(Stop_handshake_test, a_second_wait_is_an_error)
{
    begin();
    EXPECT_TRUE(answer_request());
    handshake.wait();
    EXPECT_THROW(handshake.wait(), boost::future_already_retrieved);
}

TEST_F(Stop_handshake_test, begun_again_it_is_waited_for_and_answered_anew)
{
    for (int round = 0; round < 3; ++round) {
        begin();
        boost::thread waiting([&] { handshake.wait(); });
        EXPECT_FALSE(waiting.try_join_for(moment));
        EXPECT_TRUE(answer_request());
        EXPECT_TRUE(waiting.try_join_for(patience));
    }
}

TEST_F(Stop_handshake_test, one_that_was_never_begun_works_as_well)
{
    EXPECT_TRUE(answer_request());
    handshake.wait();
}

}  // namespace
