// Device information by name, for scanners that need not be open.
#include "manager_test.h"

#include <cstring>

#include "support/driver_results.h"

using namespace manager_tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class Device_info_by_name_test : public Manager_test {
protected:
    Device_info_by_name_test() { std::memset(&record, 0x5A, sizeof record); }

    void initialize_with_serial_number(const char* serial_number)
    {
        brenvozulta_sim_set_serial_number(scanner_1, serial_number);
        brenvozulta_sim_set_version(scanner_1, 1, 0, 'A');
        initialize();
        brenvozulta_sim_clear_calls();
    }
    std::int32_t ask(const char* name) { return VyraBrenvoMGGetDeviceInfo(name, nullptr, &record); }
    bool untouched() const
    {
        const std::string bytes(sizeof record, 0x5A);
        return std::memcmp(&record, bytes.data(), bytes.size()) == 0;
    }
    static DeviceInfo expected(const char* serial_number, const char* version)
    {
        DeviceInfo info = {};
        std::strcpy(info.manufacturer, "ORVANE");
        std::strcpy(info.model, "RQ7-3050");
        std::strcpy(info.serial_number, serial_number);
        std::strcpy(info.version, version);
        return info;
    }
    void expect_record(const DeviceInfo& info) { EXPECT_EQ(std::memcmp(&record, &info, sizeof info), 0); }

    DeviceInfo record;
};

}  // namespace

TEST_F(Device_info_by_name_test, of_a_detected_scanner_needs_no_driver_call)
{
    initialize_with_serial_number("123456789012");
    EXPECT_EQ(ask(scanner_1), VYRA_OK);
    expect_record(expected("123456789012", "1.0.A"));
    EXPECT_THAT(take_driver_calls(), IsEmpty());
}

TEST_F(Device_info_by_name_test, is_what_was_detected_and_not_what_the_scanner_is_now)
{
    initialize_with_serial_number("OLD");
    brenvozulta_sim_set_serial_number(scanner_1, "NEW");
    EXPECT_EQ(ask(scanner_1), VYRA_OK);
    expect_record(expected("OLD", "1.0.A"));
}

TEST_F(Device_info_by_name_test, first_of_equal_names_wins)
{
    initialize_with_serial_number("FIRST");
    brenvozulta_sim_set_serial_number(scanner_1, "SECOND");
    access::manager().ManagePlugEvent(brenvozulta_sim_handle(scanner_1));
    ASSERT_EQ(access::detected_names(), Lines({scanner_1, scanner_1}));
    EXPECT_EQ(ask(scanner_1), VYRA_OK);
    expect_record(expected("FIRST", "1.0.A"));
    EXPECT_THAT(take_log(), ElementsAre("ManagePlugEvent event\r\n"));
}

TEST_F(Device_info_by_name_test, of_any_other_name_comes_from_the_driver)
{
    initialize_with_serial_number("A");
    brenvozulta_sim_attach(scanner_2);
    brenvozulta_sim_set_serial_number(scanner_2, "B");
    brenvozulta_sim_set_version(scanner_2, -12, 100, 'c');
    EXPECT_EQ(ask(scanner_2), VYRA_OK);
    expect_record(expected("B", "-12.100"));
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_GetDeviceInfoSN"}));
    brenvozulta_sim_set_version(scanner_2, 3, 4, '\0');
    EXPECT_EQ(ask(scanner_2), VYRA_OK);
    expect_record(expected("B", "3.4."));
}

TEST_F(Device_info_by_name_test, name_in_another_case_goes_to_the_driver)
{
    initialize_with_serial_number("A");
    EXPECT_EQ(ask("rq7-3050 #1"), VYRA_OK);
    expect_record(expected("A", "1.0.A"));
    char name[32];
    brenvozulta_sim_call_argument(0, "name", name, sizeof name);
    EXPECT_STREQ(name, "rq7-3050 #1");
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_GetDeviceInfoSN"}));
}

TEST_F(Device_info_by_name_test, part_of_a_name_goes_to_the_driver)
{
    initialize_with_serial_number("A");
    EXPECT_EQ(ask("RQ7-3050 #"), VYRA_INTERNAL);
    EXPECT_EQ(ask("RQ7-3050 #11"), VYRA_INTERNAL);
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_GetDeviceInfoSN", "QXDR_GetDeviceInfoSN"}));
    const std::string line = "--Error : QXDR_GetDeviceInfoSN ret = 5 \n";
    EXPECT_THAT(take_log(), ElementsAre(line, line));
}

TEST_F(Device_info_by_name_test, driver_failure_is_9000_with_manufacturer_and_model_filled)
{
    initialize_with_serial_number("A");
    for (const auto& [result, status] : test_support::driver_failures) {
        brenvozulta_sim_fail("QXDR_GetDeviceInfoSN", result, 1);
        std::memset(&record, 0x5A, sizeof record);
        EXPECT_EQ(ask("nobody"), VYRA_INTERNAL);
        expect_record(expected("", ""));
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_GetDeviceInfoSN", result)));
    }
}

TEST_F(Device_info_by_name_test, suspended_is_9110_under_its_own_name)
{
    initialize();
    access::set_suspended(true);
    EXPECT_EQ(ask(scanner_1), VYRA_SCN_UNAVAILABLE);
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_device_info_dev_name", VYRA_SCN_UNAVAILABLE)));
    EXPECT_TRUE(untouched());
}

TEST_F(Device_info_by_name_test, null_name_is_9109)
{
    initialize();
    EXPECT_EQ(ask(nullptr), VYRA_BAD_PARAMETER);
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_device_info_dev_name", VYRA_BAD_PARAMETER)));
    EXPECT_TRUE(untouched());
}

TEST_F(Device_info_by_name_test, name_of_10000_characters_is_unknown)
{
    initialize();
    EXPECT_EQ(ask(std::string(10'000, 'x').c_str()), VYRA_INTERNAL);
    EXPECT_THAT(take_log(), ElementsAre("--Error : QXDR_GetDeviceInfoSN ret = 5 \n"));
}
