// A system that has no event left for an open or for the end of the notifier.
#include "manager_test.h"
#include "win32_double/control.h"

using namespace manager_tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class Refused_event_test : public Manager_test {
protected:
    void TearDown() override
    {
        win32_double::clear();
        Manager_test::TearDown();
    }
};

}  // namespace

TEST_F(Refused_event_test, an_open_is_refused_before_the_driver_is_asked)
{
    std::uint32_t handle = 7;
    initialize();
    brenvozulta_sim_clear_calls();
    win32_double::fail("CreateEventA", 1);
    EXPECT_EQ(VyraOpenDevice(scanner_1, &handle), VYRA_INTERNAL);
    EXPECT_EQ(handle, VYRA_NO_HANDLE);
    EXPECT_THAT(take_driver_calls(), IsEmpty());
    EXPECT_THAT(take_log(), ElementsAre(::testing::StartsWith("Exception : ")));
    EXPECT_EQ(VyraOpenDevice(scanner_1, &handle), VYRA_OK);
}

TEST_F(Refused_event_test, an_initialize_leads_on_from_a_terminate_whose_stop_was_refused)
{
    initialize();
    ASSERT_NE(wait_for_window(), nullptr);
    win32_double::fail("CreateEventA", 1);
    EXPECT_EQ(VyraTerminate(), VYRA_INTERNAL);
    EXPECT_TRUE(access::initialized());
    EXPECT_EQ(VyraTerminate(), VYRA_INTERNAL) << "the driver is released already";
    EXPECT_EQ(VyraInitialize_N(nullptr, 3, 0), VYRA_OK);
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_EQ(find_window(), nullptr);
    EXPECT_THAT(take_log(), ElementsAre(::testing::StartsWith("Exception : "), error_line("terminate", VYRA_INTERNAL),
                                        "initialize:    clear current initialized api before the initialize\r\n",
                                        error_line("terminate", VYRA_INTERNAL)));
}
