// Information, capabilities and port type of an open scanner.
#include <array>
#include <cstring>

#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

// A record of the host's with something around it.
template <class Record>
struct Fenced {
    Fenced() { std::memset(this, 0xA5, sizeof *this); }
    bool fences_stand() const { return intact(before) && intact(after); }
    bool untouched() const { return bytes() == std::string(sizeof(Record), '\xA5'); }
    std::string bytes() const { return std::string(reinterpret_cast<const char*>(&record), sizeof record); }

    unsigned char before[16];
    Record record;
    unsigned char after[16];

private:
    static bool intact(const unsigned char (&fence)[16])
    {
        return std::count(std::begin(fence), std::end(fence), 0xA5) == 16;
    }
};

class Device_info_test : public Device_test {
protected:
    std::vector<std::uint32_t> capabilities(std::uint32_t index)
    {
        Fenced<VyraDeviceCapabilities> out;
        EXPECT_EQ(device().get_device_capabilities(index, &out.record), 0);
        EXPECT_TRUE(out.fences_stand());
        std::vector<std::uint32_t> words(14);
        std::memcpy(words.data(), &out.record, sizeof out.record);
        return words;
    }
};

constexpr std::uint32_t untouched_word = 0xA5A5A5A5;
const std::vector<std::uint32_t> roll_words = {1, 1, 500, 1600, 1500, 800, 750, 0, 0, 0, 0, 0, 0, 0};
const std::vector<std::uint32_t> flat_words = {1, 1, 500, 3200, 3000, 1600, 1500, 0, 0, 0, 0, 0, 0, 0};
const std::vector<std::uint32_t> untouched_words(14, untouched_word);

TEST_F(Device_info_test, the_record_holds_the_model_and_what_the_driver_tells)
{
    open_device();
    DriverDeviceInfo info;
    std::memset(&info, 'x', sizeof info);
    std::memcpy(info.serial_number, "SN-123456789", 12);
    info.version_major = -12;
    info.version_minor = 100;
    info.version_revision = 'c';
    brenvozulta_sim_set_device_info(first_scanner, &info);
    Fenced<DeviceInfo> out;

    EXPECT_EQ(device().get_device_info(&out.record), 0);

    std::string expected(52, '\0');
    expected.replace(0, 6, "ORVANE")
        .replace(8, 8, "RQ7-3050")
        .replace(24, 12, "SN-123456789")
        .replace(40, 7, "-12.100");
    EXPECT_EQ(out.bytes(), expected);
    EXPECT_TRUE(out.fences_stand());
    EXPECT_THAT(take_calls(), ElementsAre(StartsWith("QXDR_GetDeviceInfo(driver_handle=" +
                                                     address_text(device().driver_handle()) + ", info=0x")));
}

TEST_F(Device_info_test, when_the_driver_fails_the_record_is_all_zero_and_the_status_9000)
{
    open_device();
    for (const auto& failure : driver_failures) {
        brenvozulta_sim_fail("QXDR_GetDeviceInfo", failure.result, 1);
        Fenced<DeviceInfo> out;
        EXPECT_EQ(device().get_device_info(&out.record), 9000);
        EXPECT_EQ(out.bytes(), std::string(52, '\0'));
        EXPECT_TRUE(out.fences_stand());
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_GetDeviceInfo", failure.result)));
    }
}

TEST_F(Device_info_test, a_driver_that_stores_no_version_gives_one_of_zeros)
{
    open_device();
    brenvozulta_sim_fail("QXDR_GetDeviceInfo", driver_ok, 1);
    DeviceInfo record;
    EXPECT_EQ(device().get_device_info(&record), 0);
    EXPECT_STREQ(record.version, "0.0.");
}

TEST_F(Device_info_test, the_port_type_passes_through_unchanged)
{
    open_device();
    for (const std::uint32_t type : {0U, 3U, 0x80000000U, 0xFFFFFFFFU}) {
        brenvozulta_sim_set_port_type(first_scanner, type);
        Fenced<std::uint32_t> out;
        EXPECT_EQ(device().get_port_type(&out.record), 0);
        EXPECT_EQ(out.record, type);
        EXPECT_TRUE(out.fences_stand());
    }
    EXPECT_THAT(take_driver_calls(), Each("QXDR_GetDeviceInfo"));
}

TEST_F(Device_info_test, when_the_driver_fails_the_port_type_is_untouched_and_the_status_9000)
{
    open_device();
    for (const auto& failure : driver_failures) {
        brenvozulta_sim_fail("QXDR_GetDeviceInfo", failure.result, 1);
        Fenced<std::uint32_t> out;
        EXPECT_EQ(device().get_port_type(&out.record), 9000);
        EXPECT_TRUE(out.untouched());
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_GetDeviceInfo", failure.result)));
    }
}

TEST_F(Device_info_test, a_null_place_for_the_port_type_is_9109_before_anything_else)
{
    EXPECT_EQ(VyraBrenvoZultaGetPortType(77, nullptr), 9109);
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_port_type", 9109)));
}

TEST_F(Device_info_test, index_0_is_roll_capture_where_the_scanner_has_it)
{
    open_device();
    EXPECT_EQ(capabilities(0), roll_words);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_GetCaptureConfig"));
}

TEST_F(Device_info_test, index_0_leaves_the_record_where_the_scanner_has_no_roll_capture)
{
    open_device();
    brenvozulta_sim_set_capture_config(13, "RQ7 roll 1608x100", 1608, 1000);
    EXPECT_EQ(capabilities(0), untouched_words);
    brenvozulta_sim_remove_capture_config(13);
    EXPECT_EQ(capabilities(0), untouched_words);
    EXPECT_THAT(take_log(), ElementsAre("--info : QXDR_GetCaptureConfig for config 13 ret = 12 \n"));
}

TEST_F(Device_info_test, indexes_1_and_2_are_flat_capture)
{
    open_device();
    EXPECT_EQ(capabilities(1), flat_words);
    EXPECT_EQ(capabilities(2), flat_words);
    EXPECT_THAT(take_calls(), IsEmpty());
}

TEST_F(Device_info_test, indexes_3_to_5_succeed_and_leave_the_record)
{
    open_device();
    for (const std::uint32_t index : {3U, 4U, 5U}) {
        EXPECT_EQ(capabilities(index), untouched_words) << index;
        EXPECT_EQ(device().get_device_capabilities(index, nullptr), 0);
    }
}

TEST_F(Device_info_test, indexes_above_5_are_9109_with_a_line_of_their_own)
{
    open_device();
    for (const std::uint32_t index : {6U, 7U, 256U, 0x80000000U, 0xFFFFFFFFU}) {
        Fenced<VyraDeviceCapabilities> out;
        EXPECT_EQ(device().get_device_capabilities(index, &out.record), 9109);
        EXPECT_TRUE(out.untouched());
        EXPECT_THAT(take_log(), ElementsAre("#DV# get_capabilities:\t Error:9109 Error 9109\r\n"));
    }
}

}  // namespace
