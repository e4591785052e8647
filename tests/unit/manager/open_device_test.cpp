// Opening scanners: handles and their reuse, refusals, what a failure leaves.
#include "manager_test.h"

using namespace manager_tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const Calls opening = {"QXDR_OpenDevice", "QXDR_SetCallbackAcquisition", "QXDR_SetLeds"};

class Open_device_test : public Manager_test {
protected:
    std::int32_t try_to_open(const std::string& name)
    {
        handle = 7;
        return VyraOpenDevice(name.c_str(), &handle);
    }
    std::uint32_t handle = 7;
};

std::string open_already(const std::string& name)
{
    return "open_device:    Error=9110: Error 9110 " + name + "\r\n";
}

}  // namespace

TEST_F(Open_device_test, gives_the_number_of_open_scanners_as_handle)
{
    open_scanners(8);
    EXPECT_EQ(access::open_devices().size(), 8U);
    EXPECT_EQ(access::device(5).name(), scanner_name(6));
    EXPECT_EQ(access::device(5).driver_handle(), brenvozulta_sim_handle(scanner_name(6).c_str()));
}

TEST_F(Open_device_test, calls_the_driver_in_order_and_logs_nothing)
{
    initialize();
    brenvozulta_sim_clear_calls();
    EXPECT_EQ(try_to_open(scanner_1), VYRA_OK);
    EXPECT_EQ(handle, 0U);
    EXPECT_EQ(take_driver_calls(), opening);
}

TEST_F(Open_device_test, all_three_exports_open)
{
    for (const auto* name : {scanner_2, scanner_3}) {
        brenvozulta_sim_attach(name);
    }
    initialize();
    EXPECT_EQ(VyraOpenDevice(scanner_1, &handle), VYRA_OK);
    EXPECT_EQ(handle, 0U);
    EXPECT_EQ(VyraOpenDevice_N(scanner_2, nullptr, &handle), VYRA_OK);
    EXPECT_EQ(handle, 1U);
    EXPECT_EQ(VyraBrenvoZultaOpenDevice(scanner_3, &handle, 255), VYRA_OK);
    EXPECT_EQ(handle, 2U);
}

TEST_F(Open_device_test, a_ninth_scanner_is_9108)
{
    brenvozulta_sim_attach(scanner_name(9).c_str());
    open_scanners(8);
    EXPECT_EQ(try_to_open(scanner_name(9)), VYRA_BAD_SCANNER_IDX);
    EXPECT_EQ(handle, VYRA_NO_HANDLE);
    EXPECT_THAT(take_log(), ElementsAre(error_line("open_device", VYRA_BAD_SCANNER_IDX)));
    EXPECT_THAT(take_driver_calls(), IsEmpty());
    EXPECT_EQ(access::open_devices().size(), 8U);
}

TEST_F(Open_device_test, with_8_open_even_an_open_name_is_9108)
{
    open_scanners(8);
    EXPECT_EQ(try_to_open(scanner_1), VYRA_BAD_SCANNER_IDX);
    EXPECT_THAT(take_log(), ElementsAre(error_line("open_device", VYRA_BAD_SCANNER_IDX)));
}

TEST_F(Open_device_test, a_name_the_driver_did_not_list_can_be_opened)
{
    initialize();
    brenvozulta_sim_attach(scanner_2);
    EXPECT_EQ(try_to_open(scanner_2), VYRA_OK);
}

TEST_F(Open_device_test, the_same_name_again_is_9110_also_in_another_case)
{
    open_scanners(2);
    for (const std::string name : {"RQ7-3050 #1", "rq7-3050 #1", "Rq7-3050 #2"}) {
        EXPECT_EQ(try_to_open(name), VYRA_SCN_UNAVAILABLE);
        EXPECT_EQ(handle, VYRA_NO_HANDLE);
        EXPECT_THAT(take_log(), ElementsAre(open_already(name)));
    }
    EXPECT_THAT(take_driver_calls(), IsEmpty());
    EXPECT_EQ(access::open_devices().size(), 2U);
}

TEST_F(Open_device_test, beginnings_and_continuations_of_an_open_name_are_other_names)
{
    initialize();
    EXPECT_EQ(open(), 0U);
    brenvozulta_sim_attach("RQ7-3050 #");
    brenvozulta_sim_attach("RQ7-3050 #11");
    EXPECT_EQ(open("RQ7-3050 #"), 1U);
    EXPECT_EQ(open("RQ7-3050 #11"), 2U);
}

TEST_F(Open_device_test, entries_without_a_device_are_passed_over_in_the_search_for_the_name)
{
    initialize();
    access::store_device(0, nullptr);
    EXPECT_EQ(open(), 1U);
    EXPECT_EQ(try_to_open(scanner_1), VYRA_SCN_UNAVAILABLE);
    EXPECT_THAT(take_log(), ElementsAre(open_already(scanner_1)));
}

TEST_F(Open_device_test, after_closing_handle_0_of_two_handle_1_is_given_again_and_displaced)
{
    brenvozulta_sim_attach(scanner_3);
    open_scanners(2);
    const boost::weak_ptr<kvs::brenvozulta::brenvozulta_device> displaced = access::open_devices().look_up(1);
    ASSERT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    brenvozulta_sim_clear_calls();
    EXPECT_EQ(try_to_open(scanner_3), VYRA_OK);
    EXPECT_EQ(handle, 1U);
    EXPECT_EQ(take_driver_calls(), opening) << "nothing is closed";
    EXPECT_TRUE(displaced.expired());
    EXPECT_EQ(brenvozulta_sim_is_open(scanner_2), 1) << "in the driver";
    EXPECT_EQ(access::open_devices().size(), 1U);
    EXPECT_EQ(access::device(1).name(), scanner_3);
    EXPECT_EQ(try_to_open(scanner_2), VYRA_OK) << "the displaced name is free again";
    EXPECT_EQ(handle, 1U);
}

TEST_F(Open_device_test, after_closing_the_last_handle_it_is_given_again)
{
    brenvozulta_sim_attach(scanner_3);
    open_scanners(2);
    ASSERT_EQ(VyraCloseDevice_N(1), VYRA_OK);
    EXPECT_EQ(open(scanner_3), 1U);
    EXPECT_EQ(access::open_devices().size(), 2U);
}

TEST_F(Open_device_test, failed_open_leaves_no_handle_and_no_entry)
{
    initialize();
    brenvozulta_sim_clear_calls();
    brenvozulta_sim_fail("QXDR_OpenDevice", driver_timeout, 1);
    EXPECT_EQ(try_to_open(scanner_1), VYRA_DEVICE_TIMEOUT);
    EXPECT_EQ(handle, VYRA_NO_HANDLE);
    EXPECT_EQ(access::open_devices().size(), 0U);
    EXPECT_THAT(take_log(), ElementsAre("--Error : QXDR_OpenDevice ret = 9 \n", "open_device:    Error=9016\r\n"));
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_OpenDevice"}));
    EXPECT_EQ(try_to_open(scanner_1), VYRA_OK);
    EXPECT_EQ(handle, 0U);
}

TEST_F(Open_device_test, refused_callback_fails_and_leaves_the_scanner_open_in_the_driver)
{
    initialize();
    brenvozulta_sim_clear_calls();
    brenvozulta_sim_fail("QXDR_SetCallbackAcquisition", driver_refused, 1);
    EXPECT_EQ(try_to_open(scanner_1), VYRA_DRIVER_REFUSED);
    EXPECT_EQ(handle, VYRA_NO_HANDLE);
    EXPECT_EQ(access::open_devices().size(), 0U);
    EXPECT_THAT(take_log(),
                ElementsAre("--Error : QXDR_SetCallbackAcquisition ret = 2 \n", "open_device:    Error=9025\r\n"));
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_OpenDevice", "QXDR_SetCallbackAcquisition"}));
    EXPECT_EQ(brenvozulta_sim_is_open(scanner_1), 1);
}

TEST_F(Open_device_test, unknown_name_is_9005_whatever_its_length)
{
    initialize();
    for (const std::size_t length : {0U, 1U, 559U, 10'000U}) {
        EXPECT_EQ(try_to_open(std::string(length, 'x')), VYRA_DEVICE_UNAVAIL);
        EXPECT_EQ(handle, VYRA_NO_HANDLE);
        EXPECT_THAT(take_log(), ElementsAre("--Error : QXDR_OpenDevice ret = 5 \n", "open_device:    Error=9005\r\n"));
    }
}

TEST_F(Open_device_test, clears_the_disconnected_mark)
{
    initialize();
    EXPECT_EQ(open(), 0U);
    EXPECT_FALSE(access::device(0).disconnected());
}

TEST_F(Open_device_test, null_name_or_handle_is_9109_even_before_initialization)
{
    initialize();
    brenvozulta_sim_clear_calls();
    const auto line = error_line("open_device", VYRA_BAD_PARAMETER);
    for (const bool initialized : {true, false}) {
        if (!initialized) {
            VyraTerminate();
            brenvozulta_sim_clear_calls();
        }
        handle = 7;
        EXPECT_EQ(VyraOpenDevice(nullptr, &handle), VYRA_BAD_PARAMETER);
        EXPECT_EQ(handle, VYRA_NO_HANDLE);
        EXPECT_EQ(VyraOpenDevice(scanner_1, nullptr), VYRA_BAD_PARAMETER);
        EXPECT_EQ(VyraOpenDevice(nullptr, nullptr), VYRA_BAD_PARAMETER);
        EXPECT_THAT(take_log(), ElementsAre(line, line, line));
        EXPECT_THAT(take_driver_calls(), IsEmpty());
    }
}

TEST_F(Open_device_test, suspended_is_9110)
{
    initialize();
    brenvozulta_sim_clear_calls();
    access::set_suspended(true);
    EXPECT_EQ(try_to_open(scanner_1), VYRA_SCN_UNAVAILABLE);
    EXPECT_EQ(handle, VYRA_NO_HANDLE);
    EXPECT_THAT(take_log(), ElementsAre(error_line("open_device", VYRA_SCN_UNAVAILABLE)));
    EXPECT_THAT(take_driver_calls(), IsEmpty());
}
