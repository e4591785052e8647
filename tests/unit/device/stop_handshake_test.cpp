// The handshake between a stop and an extraction thread.
#include "device/stop_handshake.h"

#include <gtest/gtest.h>

#include <boost/thread/thread.hpp>

#include "unit/device/patience.h"

namespace {

using kvs::brenvozulta::Stop_handshake;
using test_support::moment;
using test_support::patience;

TEST(Stop_handshake, A_Wait_Ends_When_It_Is_Fulfilled)
{
    Stop_handshake handshake;
    handshake.renew();
    boost::thread waiting([&] { handshake.wait(); });
    EXPECT_FALSE(waiting.try_join_for(moment));
    handshake.fulfil();
    EXPECT_TRUE(waiting.try_join_for(patience));
}

TEST(Stop_handshake, A_Wait_After_It_Was_Fulfilled_Returns_At_Once)
{
    Stop_handshake handshake;
    handshake.renew();
    handshake.fulfil();
    boost::thread waiting([&] { handshake.wait(); });
    EXPECT_TRUE(waiting.try_join_for(patience));
}

TEST(Stop_handshake, A_Second_Fulfilment_Is_An_Error)
{
    Stop_handshake handshake;
    handshake.renew();
    handshake.fulfil();
    EXPECT_THROW(handshake.fulfil(), boost::promise_already_satisfied);
}

TEST(Stop_handshake, A_Second_Wait_Is_An_Error)
{
    Stop_handshake handshake;
    handshake.renew();
    handshake.fulfil();
    handshake.wait();
    EXPECT_THROW(handshake.wait(), boost::future_already_retrieved);
}

TEST(Stop_handshake, Renewed_It_Is_Waited_For_And_Fulfilled_Anew)
{
    Stop_handshake handshake;
    for (int round = 0; round < 3; ++round) {
        handshake.renew();
        boost::thread waiting([&] { handshake.wait(); });
        EXPECT_FALSE(waiting.try_join_for(moment));
        handshake.fulfil();
        EXPECT_TRUE(waiting.try_join_for(patience));
    }
}

TEST(Stop_handshake, One_That_Was_Never_Renewed_Works_As_Well)
{
    Stop_handshake handshake;
    handshake.fulfil();
    handshake.wait();
}

}  // namespace
