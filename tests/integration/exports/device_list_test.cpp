// The two device lists, and the identity by name.
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "support/scanner_test.h"

namespace {

using test_support::error_line;
using ::testing::ElementsAre;

constexpr std::size_t slot = VYRA_NAME_SLOT;

class Device_list_test : public test_support::Scanner_test {
protected:
    void SetUp() override
    {
        Scanner_test::SetUp();
        names_.fill('#');
        std::memset(records_.data(), 0xA5, sizeof(records_));
    }

    static void attach(const std::vector<std::string>& scanners)
    {
        brenvozulta_sim_remove_all();
        for (const auto& scanner : scanners) {
            ASSERT_EQ(brenvozulta_sim_attach(scanner.c_str()), 1);
        }
    }

    std::string name(std::size_t index) const { return names_.data() + index * slot; }

    std::array<char, 9 * slot + 560> names_;
    std::array<DeviceListRecord, 9> records_;
    std::uint32_t count_ = 8;
};

TEST_F(Device_list_test, names_every_scanner_in_its_slot)
{
    attach({"one", "two", "three"});
    initialize();
    EXPECT_EQ(VyraGetDeviceList(&count_, names_.data()), VYRA_OK);
    EXPECT_EQ(count_, 3u);
    EXPECT_EQ(name(0), "one");
    EXPECT_EQ(name(1), "two");
    EXPECT_EQ(name(2), "three");
    EXPECT_EQ(names_[3 * slot], '#') << "what lies behind the last name stays";
}

TEST_F(Device_list_test, stops_at_the_capacity)
{
    attach({"one", "two", "three"});
    initialize();
    count_ = 2;
    EXPECT_EQ(VyraGetDeviceList(&count_, names_.data()), VYRA_OK);
    EXPECT_EQ(count_, 2u);
    EXPECT_EQ(names_[2 * slot], '#');
    count_ = 2;
    EXPECT_EQ(VyraGetDeviceList_N(&count_, records_.data()), VYRA_OK);
    EXPECT_EQ(count_, 2u);
    EXPECT_EQ(records_[2].name[0], '\xA5');
}

TEST_F(Device_list_test, holds_eight_scanners)
{
    std::vector<std::string> scanners;
    for (int number = 1; number <= 8; ++number) {
        scanners.push_back("scanner " + std::to_string(number));
    }
    attach(scanners);
    initialize();
    count_ = 9;
    EXPECT_EQ(VyraGetDeviceList_N(&count_, records_.data()), VYRA_OK);
    EXPECT_EQ(count_, 8u);
    EXPECT_STREQ(records_[7].name, "scanner 8");
}

TEST_F(Device_list_test, records_are_padded_with_zeros_and_their_other_bytes_stay)
{
    attach({"one"});
    initialize();
    EXPECT_EQ(VyraGetDeviceList_N(&count_, records_.data()), VYRA_OK);
    EXPECT_EQ(count_, 1u);
    EXPECT_EQ(std::string(records_[0].name, 255), "one" + std::string(252, '\0'));
    for (const std::uint8_t byte : records_[0].reserved_0) {
        EXPECT_EQ(byte, 0xA5);
    }
    EXPECT_EQ(records_[0].reserved_259, 0xA5);
}

TEST_F(Device_list_test, long_name_runs_over_its_slot_and_is_cut_in_its_record)
{
    const std::string longest(BRENVOZULTA_SIM_NAME_MAX, 'n');
    attach({longest});
    initialize();
    EXPECT_EQ(VyraGetDeviceList(&count_, names_.data()), VYRA_OK);
    EXPECT_EQ(name(0), longest);
    EXPECT_EQ(VyraGetDeviceList_N(&count_, records_.data()), VYRA_OK);
    EXPECT_EQ(std::string(records_[0].name, 255), longest.substr(0, 255));
    EXPECT_EQ(records_[0].reserved_259, 0xA5);
}

TEST_F(Device_list_test, refuses_missing_pointers_and_no_capacity)
{
    initialize();
    EXPECT_EQ(VyraGetDeviceList(nullptr, names_.data()), VYRA_BUF_TOO_SMALL);
    EXPECT_EQ(VyraGetDeviceList(&count_, nullptr), VYRA_BUF_TOO_SMALL);
    EXPECT_EQ(VyraGetDeviceList_N(nullptr, records_.data()), VYRA_BUF_TOO_SMALL);
    count_ = 0;
    EXPECT_EQ(VyraGetDeviceList(&count_, nullptr), VYRA_BUF_TOO_SMALL) << "the buffer is looked at before the count";
    EXPECT_EQ(VyraGetDeviceList(&count_, names_.data()), VYRA_BAD_PARAMETER);
    EXPECT_EQ(VyraGetDeviceList_N(&count_, records_.data()), VYRA_BAD_PARAMETER);
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_device_list", 9103, "Buf Too Small  "),
                                        error_line("get_device_list", 9103, "Buf Too Small  "),
                                        error_line("get_device_list_N", 9103, "Buf Too Small  "),
                                        error_line("get_device_list", 9103, "Buf Too Small  "),
                                        error_line("get_device_list", 9109, "Error 9109"),
                                        error_line("get_device_list_N", 9109, "Error 9109")));
}

TEST_F(Device_list_test, without_any_scanner_is_an_error_of_both_lists)
{
    initialize();
    brenvozulta_sim_remove_all();
    EXPECT_EQ(VyraGetDeviceList(&count_, names_.data()), VYRA_INTERNAL);
    EXPECT_EQ(count_, 0u);
    count_ = 5;
    EXPECT_EQ(VyraGetDeviceList_N(&count_, records_.data()), VYRA_INTERNAL);
    EXPECT_EQ(count_, 5u);
    const std::string inner =
        "get_device_list_internal:    QXDR_GetDevicesList ret = 5 ; Error=9000: Internal VYRA  \r\n";
    EXPECT_THAT(take_log(), ElementsAre(inner, "get_device_list:    Error=9000: get device list internal error\r\n",
                                        inner, "get_device_list_N:    Error=9000: get device list internal error\r\n"));
}

TEST_F(Device_list_test, identity_by_name_needs_no_open_scanner)
{
    initialize();
    DeviceInfo info = {};
    char unused[] = "unused";
    EXPECT_EQ(VyraBrenvoMGGetDeviceInfo(BRENVOZULTA_SIM_DEFAULT_SCANNER, unused, &info), VYRA_OK);
    EXPECT_STREQ(info.manufacturer, "ORVANE");
    EXPECT_STREQ(info.model, "RQ7-3050");
    EXPECT_STRNE(info.serial_number, "");
}

TEST_F(Device_list_test, identity_by_an_unknown_or_missing_name_is_refused)
{
    initialize();
    DeviceInfo info = {};
    const std::string long_name(10'000, 'n');
    EXPECT_EQ(VyraBrenvoMGGetDeviceInfo(long_name.c_str(), nullptr, &info), VYRA_INTERNAL);
    EXPECT_STREQ(info.manufacturer, "ORVANE");
    EXPECT_EQ(VyraBrenvoMGGetDeviceInfo(nullptr, nullptr, &info), VYRA_BAD_PARAMETER);
    EXPECT_THAT(take_log(), ElementsAre("--Error : QXDR_GetDeviceInfoSN ret = 5 \n",
                                        error_line("get_device_info_dev_name", 9109, "Error 9109")));
}

}  // namespace
