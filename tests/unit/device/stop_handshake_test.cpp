// The handshake between a stop and an extraction thread.
#include "device/stop_handshake.h"

#include <gtest/gtest.h>

#include <boost/thread/thread.hpp>

#include "device/records.h"
#include "unit/device/patience.h"

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

TEST_F(Stop_handshake_test, A_Begin_Runs_The_Video)
{
    begin();
    EXPECT_EQ(video.video_state, VIDEO_RUNNING);
}

TEST_F(Stop_handshake_test, A_Wait_Ends_With_The_Answer)
{
    begin();
    boost::thread waiting([&] { handshake.wait(); });
    EXPECT_FALSE(waiting.try_join_for(moment));
    EXPECT_TRUE(answer_request());
    EXPECT_EQ(video.video_state, VIDEO_STOPPED);
    EXPECT_TRUE(waiting.try_join_for(patience));
}

TEST_F(Stop_handshake_test, A_Wait_After_The_Answer_Returns_At_Once)
{
    begin();
    EXPECT_TRUE(answer_request());
    boost::thread waiting([&] { handshake.wait(); });
    EXPECT_TRUE(waiting.try_join_for(patience));
}

// A thread that has seen a request and is then held up may find anything.
TEST_F(Stop_handshake_test, What_Is_No_Request_Is_Not_Answered)
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

TEST_F(Stop_handshake_test, A_Second_Answer_Is_An_Error_And_Stops_The_Video_All_The_Same)
{
    begin();
    EXPECT_TRUE(answer_request());
    EXPECT_THROW(answer_request(), boost::promise_already_satisfied);
    EXPECT_EQ(video.video_state, VIDEO_STOPPED);
}

TEST_F(Stop_handshake_test, A_Start_Without_A_Thread_Fulfils_It_Itself)
{
    begin();
    handshake.fulfil();
    EXPECT_EQ(video.video_state, VIDEO_RUNNING);
    handshake.wait();
    EXPECT_THROW(handshake.fulfil(), boost::promise_already_satisfied);
}

TEST_F(Stop_handshake_test, A_Second_Wait_Is_An_Error)
{
    begin();
    EXPECT_TRUE(answer_request());
    handshake.wait();
    EXPECT_THROW(handshake.wait(), boost::future_already_retrieved);
}

TEST_F(Stop_handshake_test, Begun_Again_It_Is_Waited_For_And_Answered_Anew)
{
    for (int round = 0; round < 3; ++round) {
        begin();
        boost::thread waiting([&] { handshake.wait(); });
        EXPECT_FALSE(waiting.try_join_for(moment));
        EXPECT_TRUE(answer_request());
        EXPECT_TRUE(waiting.try_join_for(patience));
    }
}

TEST_F(Stop_handshake_test, One_That_Was_Never_Begun_Works_As_Well)
{
    EXPECT_TRUE(answer_request());
    handshake.wait();
}

}  // namespace
