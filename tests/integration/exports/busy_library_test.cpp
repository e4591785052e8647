// Calls that wait for another one for more than five seconds, and the calls after them.
#include <future>
#include <vector>

#include "support/scanner_test.h"

namespace {

using test_support::patience_ms;

class Busy_library_test : public test_support::Scanner_test {
protected:
    void SetUp() override
    {
        Scanner_test::SetUp();
        ASSERT_EQ(VyraInitialize_N(nullptr, 0, test_support::default_limit), VYRA_OK);
        handle_ = open();
    }

    std::int32_t call() const { return VyraBrenvoZultaSetParameters(handle_, 1, 2); }

    // A call that stays in the driver, which others wait for.
    std::future<std::int32_t> begin_long_call() const
    {
        brenvozulta_sim_block("QXDR_GetContainerSize");
        auto busy = std::async(std::launch::async, [handle = handle_] {
            std::uint32_t size = 0;
            return VyraBrenvoZultaGetGlobalParamSize(handle, &size);
        });
        EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_GetContainerSize", 1, patience_ms), 1);
        return busy;
    }
    static void end_long_call(std::future<std::int32_t>& busy)
    {
        brenvozulta_sim_unblock("QXDR_GetContainerSize");
        EXPECT_EQ(busy.get(), VYRA_OK);
    }

    std::vector<std::future<std::int32_t>> wait_in_line(int callers) const
    {
        std::vector<std::future<std::int32_t>> waiting;
        for (int i = 0; i < callers; ++i) {
            waiting.push_back(std::async(std::launch::async, [this] { return call(); }));
        }
        return waiting;
    }

    // A lock that a caller left behind would make each of these wait five seconds, and return 9000.
    void expect_free() const
    {
        EXPECT_EQ(call(), VYRA_OK);
        std::vector<std::future<std::int32_t>> others;
        for (int thread = 0; thread < 3; ++thread) {
            others.push_back(std::async(std::launch::async, [this] {
                std::int32_t status = VYRA_OK;
                for (int i = 0; i < 1000 && status == VYRA_OK; ++i) {
                    status = call();
                }
                return status;
            }));
        }
        for (auto& other : others) {
            EXPECT_EQ(other.get(), VYRA_OK);
        }
        EXPECT_EQ(call(), VYRA_OK);
    }

private:
    std::uint32_t handle_ = VYRA_NO_HANDLE;
};

TEST_F(Busy_library_test, is_free_again_once_the_long_call_has_ended)
{
    auto busy = begin_long_call();
    EXPECT_EQ(wait_in_line(1).front().get(), VYRA_INTERNAL);
    end_long_call(busy);
    expect_free();
}

TEST_F(Busy_library_test, is_free_again_however_many_have_given_up)
{
    auto busy = begin_long_call();
    for (auto& status : wait_in_line(4)) {
        EXPECT_EQ(status.get(), VYRA_INTERNAL);
    }
    end_long_call(busy);
    expect_free();
}

TEST_F(Busy_library_test, gives_the_turn_to_those_who_have_not_given_up)
{
    auto busy = begin_long_call();
    auto impatient = wait_in_line(1);
    EXPECT_EQ(impatient.front().get(), VYRA_INTERNAL);
    auto patient = wait_in_line(3);
    end_long_call(busy);
    for (auto& status : patient) {
        EXPECT_EQ(status.get(), VYRA_OK);
    }
    expect_free();
}

// The end of the wait and the end of the long call meet.
TEST_F(Busy_library_test, is_free_again_when_the_long_call_ends_as_the_wait_does)
{
    auto busy = begin_long_call();
    auto waiting = wait_in_line(8);
    EXPECT_EQ(waiting.front().get(), VYRA_INTERNAL);
    end_long_call(busy);
    for (std::size_t i = 1; i < waiting.size(); ++i) {
        EXPECT_THAT(waiting[i].get(), ::testing::AnyOf(VYRA_OK, VYRA_INTERNAL));
    }
    expect_free();
}

}  // namespace
