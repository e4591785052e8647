// The wait for a change, by itself: who a change belongs to.
#include "manager/status_wait.h"

#include <gtest/gtest.h>
#include <boost/thread/thread.hpp>

#include "support/boost_waiting.h"

using kvs::brenvozulta::status_wait;

namespace kvs::brenvozulta {

struct status_wait_test_access {
    static int waiters(status_wait& status)
    {
        const scoped_lock<plain_mutex> lock(status.mutex_);
        return status.waiters_;
    }
};

}  // namespace kvs::brenvozulta

namespace {

using kvs::brenvozulta::status_wait_test_access;

using test_support::moment;
using test_support::patience;

class Status_wait_test : public testing::Test {
protected:
    // Whether a wait of the current session ends at once, and uses a change up. What should end has the time that a
    // busy machine may take.
    bool take_change() { return wait_ends_within(patience); }
    bool no_change_is_left() { return !wait_ends_within(moment); }

    template <class Duration>
    bool wait_ends_within(const Duration& limit)
    {
        boost::thread waiting([this] { status.wait(status.current_session()); });
        if (waiting.try_join_for(limit)) {
            return true;
        }
        status.raise();
        waiting.join();
        return false;
    }

    status_wait status;
};

}  // namespace

TEST_F(Status_wait_test, a_change_is_kept_for_one_wait)
{
    status.raise();
    EXPECT_TRUE(take_change());
    EXPECT_TRUE(no_change_is_left());
}

TEST_F(Status_wait_test, a_change_that_nobody_waited_for_outlives_its_session)
{
    status.raise();
    status.end_session();
    EXPECT_TRUE(take_change());
}

TEST_F(Status_wait_test, the_end_of_the_session_is_no_change)
{
    status.end_session();
    EXPECT_TRUE(no_change_is_left());
}

// As a waiter that the end of its session has released, and that only comes to run after the next change.
TEST_F(Status_wait_test, a_waiter_of_the_session_before_leaves_the_changes_of_the_new_one)
{
    const status_wait::session before = status.current_session();
    status.end_session();
    status.raise();
    status.wait(before);
    EXPECT_TRUE(take_change());
}

// A close raises a change, and the terminate that it belongs to ends the session before the waiter has run.
TEST_F(Status_wait_test, a_change_that_released_a_waiter_ends_with_its_session)
{
    for (int round = 0; round < 100; ++round) {
        boost::thread waiting([this, session = status.current_session()] { status.wait(session); });
        while (status_wait_test_access::waiters(status) == 0) {
            ASSERT_FALSE(waiting.try_join_for(boost::chrono::milliseconds(0))) << "a change was left over";
            boost::this_thread::yield();
        }
        status.raise();
        status.end_session();
        ASSERT_TRUE(waiting.try_join_for(patience));
    }
    EXPECT_TRUE(no_change_is_left());
}

TEST_F(Status_wait_test, all_waiters_of_a_session_are_released_by_its_end)
{
    boost::thread_group waiting;
    for (int i = 0; i < 4; ++i) {
        waiting.create_thread([this, session = status.current_session()] { status.wait(session); });
    }
    status.end_session();
    waiting.join_all();
    EXPECT_TRUE(no_change_is_left());
}
