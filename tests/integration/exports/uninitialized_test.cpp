// The exports before the library is initialized and after it was terminated, and those that do not care.
#include "integration/exports/fixed_with_arguments.h"
#include "support/export_list.h"
#include "support/scanner_test.h"
#include "unit/api/export_calls.h"

namespace {

using export_calls::Arguments;
using export_calls::Export;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// What the tests below do with every export, they do with each that there is.
TEST(Export_calls_test, hold_every_export_once)
{
    std::vector<std::string> held;
    for (const auto* exports :
         {&export_calls::fixed_exports(), &export_calls::handle_exports(), &export_calls::other_exports()}) {
        for (const Export& each : *exports) {
            held.emplace_back(each.name);
        }
    }
    EXPECT_THAT(held, ::testing::UnorderedElementsAreArray(test_support::scanner_exports()));
}

class Uninitialized_test : public test_support::Scanner_test {
protected:
    // Every forwarding export but the one that initializes. Refusals are logged once a session has asked for it.
    void expect_all_refused(bool logged)
    {
        for (const auto* exports : {&export_calls::handle_exports(), &export_calls::other_exports()}) {
            for (const Export& each : *exports) {
                if (std::string(each.name) != "VyraInitialize_N") {
                    Arguments arguments;
                    arguments.result.fill(0xA5);
                    const auto untouched = arguments.result;
                    EXPECT_EQ(each.call(arguments), VYRA_NOT_INITIALIZED) << each.name;
                    EXPECT_EQ(arguments.result, untouched) << each.name;
                    EXPECT_EQ(arguments.handle, VYRA_NO_HANDLE) << each.name;
                    EXPECT_EQ(arguments.number, 1U) << each.name;
                    const auto line = test_support::error_line(each.operation, VYRA_NOT_INITIALIZED);
                    EXPECT_EQ(take_log(), logged ? std::vector<std::string>{line} : std::vector<std::string>{});
                }
            }
        }
    }

    static int wrong_fixed_results()
    {
        char text[] = "text";
        return count_wrong_fixed_results(0, nullptr, 0) +
               count_wrong_fixed_results(0xFFFFFFFF, text, 0xFFFFFFFFFFFFFFFF) +
               count_wrong_fixed_results(77, text, 9019);
    }
};

TEST_F(Uninitialized_test, every_forwarding_export_refuses_and_touches_no_result_before_initialization)
{
    expect_all_refused(false);
    EXPECT_THAT(take_driver_calls(), IsEmpty());
}

TEST_F(Uninitialized_test, every_forwarding_export_refuses_after_terminate)
{
    initialize();
    ASSERT_EQ(VyraTerminate(), VYRA_OK);
    take_driver_calls();
    expect_all_refused(true);
    EXPECT_THAT(take_driver_calls(), IsEmpty());
}

TEST_F(Uninitialized_test, older_initializations_succeed_and_initialize_nothing)
{
    char names[255 + 305];
    std::uint32_t count = 1;
    EXPECT_EQ(VyraInitialize(), VYRA_OK);
    EXPECT_EQ(VyraInitialization(), VYRA_OK);
    EXPECT_EQ(VyraGetDeviceList(&count, names), VYRA_NOT_INITIALIZED);
    EXPECT_THAT(take_driver_calls(), IsEmpty());
}

TEST_F(Uninitialized_test, null_port_type_is_refused_even_before_initialization)
{
    EXPECT_EQ(VyraBrenvoZultaGetPortType(0, nullptr), VYRA_BAD_PARAMETER);
}

TEST_F(Uninitialized_test, fixed_results_are_the_same_before_during_and_after_a_session_whatever_the_arguments)
{
    EXPECT_EQ(wrong_fixed_results(), 0);
    initialize();
    open();
    take_driver_calls();
    EXPECT_EQ(wrong_fixed_results(), 0);
    EXPECT_EQ(VyraGetVerInfo(nullptr), VYRA_OK);
    EXPECT_EQ(VyraGetVersion(nullptr, 0xFFFFFFFF), VYRA_OK);
    EXPECT_THAT(take_driver_calls(), IsEmpty());
    ASSERT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_EQ(wrong_fixed_results(), 0);
}

TEST_F(Uninitialized_test, cycle_may_start_again_after_terminate)
{
    for (int cycle = 0; cycle < 3; ++cycle) {
        initialize();
        EXPECT_EQ(open(), 0U);
        EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
    }
}

TEST_F(Uninitialized_test, second_initialization_terminates_the_first)
{
    initialize();
    const std::uint32_t handle = open();
    take_driver_calls();
    initialize();
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_CloseDevice", "QXDR_Release", "QXDR_Initialize",
                                                 "QXDR_GetDevicesList", "QXDR_SetListenerCallbackHotPlug"));
    EXPECT_EQ(VyraStopVideo(handle), VYRA_BAD_SCANNER_IDX);
    EXPECT_THAT(take_log(), ElementsAre("initialize:    clear current initialized api before the initialize\r\n",
                                        test_support::error_line("stop_video", 9108)));
}

}  // namespace
