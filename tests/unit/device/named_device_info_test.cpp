// The information of a scanner that need not be open, by its name.
#include <cstring>

#include "manager/get_manager.h"
#include "manager/manager.h"
#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class Named_device_info_test : public Device_test {
protected:
    std::int32_t query(const char* name)
    {
        std::memset(&record_, 0xA5, sizeof(record_));
        return VyraBrenvoMGGetDeviceInfo(name, this, &record_);
    }

    std::string bytes() const { return std::string(reinterpret_cast<const char*>(&record_), sizeof(record_)); }

    static std::string expected(const std::string& serial_number, const std::string& version)
    {
        std::string all(52, '\0');
        all.replace(0, 6, "ORVANE").replace(8, 8, "RQ7-3050");
        return all.replace(24, serial_number.size(), serial_number).replace(40, version.size(), version);
    }

    // Attaches a scanner before the library lists them.
    void list(const char* name, const char* serial_number)
    {
        brenvozulta_sim_attach(name);
        brenvozulta_sim_set_serial_number(name, serial_number);
        brenvozulta_sim_set_version(name, 1, -2, 'c');
        ASSERT_EQ(VyraTerminate(), 0);
        initialize();
        brenvozulta_sim_clear_calls();
    }

    DeviceInfo record_ = {};
};

TEST_F(Named_device_info_test, a_listed_scanner_is_described_without_a_driver_call)
{
    list(second_scanner, "123456789012");
    EXPECT_EQ(query(second_scanner), 0);
    EXPECT_EQ(bytes(), expected("123456789012", "1.-2.c"));
    EXPECT_THAT(take_calls(), IsEmpty());
}

TEST_F(Named_device_info_test, a_name_in_another_case_goes_to_the_driver)
{
    list("Scanner", "1");
    EXPECT_EQ(query("SCANNER"), 0);
    EXPECT_EQ(bytes(), expected("1", "1.-2.c"));
    EXPECT_THAT(take_calls(), ElementsAre(StartsWith("QXDR_GetDeviceInfoSN(name=\"SCANNER\", info=0x")));
}

TEST_F(Named_device_info_test, a_beginning_of_a_listed_name_goes_to_the_driver)
{
    EXPECT_EQ(query("RQ7-3050 #"), 9000);
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_GetDeviceInfoSN", 5)));
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_GetDeviceInfoSN"));
}

TEST_F(Named_device_info_test, a_scanner_that_is_not_listed_is_described_by_the_driver)
{
    brenvozulta_sim_attach("later");
    brenvozulta_sim_set_serial_number("later", "ABC");
    brenvozulta_sim_set_version("later", 3, 4, '\0');
    EXPECT_EQ(query("later"), 0);
    EXPECT_EQ(bytes(), expected("ABC", "3.4."));
}

TEST_F(Named_device_info_test, when_the_driver_fails_the_model_is_filled_all_the_same)
{
    for (const auto& translation : translations()) {
        brenvozulta_sim_fail("QXDR_GetDeviceInfoSN", translation.result, 1);
        EXPECT_EQ(query("unknown"), 9000);
        EXPECT_EQ(bytes(), expected("", ""));
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_GetDeviceInfoSN", translation.result)));
    }
}

TEST_F(Named_device_info_test, uninitialized_it_is_9101_and_the_record_untouched)
{
    ASSERT_EQ(VyraTerminate(), 0);
    EXPECT_EQ(query(first_scanner), 9101);
    EXPECT_EQ(bytes(), std::string(52, '\xA5'));
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_device_info", 9101, "Not Initialized")));
}

TEST_F(Named_device_info_test, while_the_system_sleeps_it_is_9110_with_its_longer_name)
{
    kvs::brenvozulta::get_manager()->ManagePowerEvent(true);
    EXPECT_EQ(query(first_scanner), 9110);
    kvs::brenvozulta::get_manager()->ManagePowerEvent(false);
    EXPECT_EQ(bytes(), std::string(52, '\xA5'));
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_device_info_dev_name", 9110, "Error 9110")));
}

TEST_F(Named_device_info_test, a_null_name_is_9109)
{
    EXPECT_EQ(query(nullptr), 9109);
    EXPECT_EQ(bytes(), std::string(52, '\xA5'));
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_device_info_dev_name", 9109, "Error 9109")));
}

}  // namespace
