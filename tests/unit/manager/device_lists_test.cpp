// The two lists of attached scanners.
#include "manager_test.h"

#include <cstring>

using namespace manager_tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr std::size_t slot = VYRA_NAME_SLOT;
constexpr std::uint8_t untouched = 0xA5;

std::string driver_failed(std::uint32_t result)
{
    return "get_device_list_internal:    QXDR_GetDevicesList ret = " + std::to_string(result) +
           " ; Error=9000: Internal VYRA  \r\n";
}

std::string helper_failed(const std::string& operation)
{
    return operation + ":    Error=9000: get device list internal error\r\n";
}

std::string long_name(std::size_t length, char first = 'A')
{
    std::string name(length, 'x');
    name.front() = first;
    name.back() = 'z';
    return name;
}

// Both lists, side by side.
class Device_lists_test : public Manager_test {
protected:
    std::int32_t list() { return VyraGetDeviceList(&count, slots.data()); }
    std::int32_t list_records() { return VyraGetDeviceList_N(&count, records.data()); }

    std::string slot_name(std::size_t i) const { return slots.data() + i * slot; }
    std::string record_name(std::size_t i) const
    {
        return {records[i].name, strnlen(records[i].name, sizeof records[i].name)};
    }
    bool slot_is_untouched(std::size_t i) const
    {
        return slots[i * slot] == static_cast<char>(untouched) &&
               slots[i * slot + slot - 1] == static_cast<char>(untouched);
    }
    bool record_is_untouched(std::size_t i) const
    {
        const std::string bytes(sizeof(DeviceListRecord), static_cast<char>(untouched));
        return std::memcmp(&records[i], bytes.data(), bytes.size()) == 0;
    }
    static void attach(const std::vector<std::string>& names)
    {
        brenvozulta_sim_remove_all();
        for (const auto& name : names) {
            ASSERT_EQ(brenvozulta_sim_attach(name.c_str()), 1);
        }
    }

    std::uint32_t count = 0;
    std::vector<char> slots = std::vector<char>(12 * slot, static_cast<char>(untouched));
    std::vector<DeviceListRecord> records = std::vector<DeviceListRecord>(9, [] {
        DeviceListRecord record;
        std::memset(&record, untouched, sizeof record);
        return record;
    }());
};

}  // namespace

TEST_F(Device_lists_test, not_initialized_comes_before_null_pointers)
{
    initialize();
    VyraTerminate();
    EXPECT_EQ(VyraGetDeviceList(nullptr, nullptr), VYRA_NOT_INITIALIZED);
    EXPECT_EQ(VyraGetDeviceList_N(nullptr, nullptr), VYRA_NOT_INITIALIZED);
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_device_list", VYRA_NOT_INITIALIZED),
                                        error_line("get_device_list_N", VYRA_NOT_INITIALIZED)));
}

TEST_F(Device_lists_test, null_buffer_of_the_older_list_is_9103_before_the_count_is_looked_at)
{
    initialize();
    brenvozulta_sim_clear_calls();
    count = 0;
    EXPECT_EQ(VyraGetDeviceList(&count, nullptr), VYRA_BUF_TOO_SMALL);
    count = 5;
    EXPECT_EQ(VyraGetDeviceList(&count, nullptr), VYRA_BUF_TOO_SMALL);
    EXPECT_EQ(count, 5U);
    EXPECT_EQ(VyraGetDeviceList(nullptr, slots.data()), VYRA_BUF_TOO_SMALL);
    const auto line = error_line("get_device_list", VYRA_BUF_TOO_SMALL);
    EXPECT_THAT(take_log(), ElementsAre(line, line, line));
    EXPECT_THAT(take_driver_calls(), IsEmpty());
}

TEST_F(Device_lists_test, null_count_of_the_newer_list_is_9103)
{
    initialize();
    brenvozulta_sim_clear_calls();
    EXPECT_EQ(VyraGetDeviceList_N(nullptr, records.data()), VYRA_BUF_TOO_SMALL);
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_device_list_N", VYRA_BUF_TOO_SMALL)));
    EXPECT_THAT(take_driver_calls(), IsEmpty());
}

TEST_F(Device_lists_test, count_0_is_9109)
{
    initialize();
    brenvozulta_sim_clear_calls();
    count = 0;
    EXPECT_EQ(list(), VYRA_BAD_PARAMETER);
    EXPECT_EQ(list_records(), VYRA_BAD_PARAMETER);
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_device_list", VYRA_BAD_PARAMETER),
                                        error_line("get_device_list_N", VYRA_BAD_PARAMETER)));
    EXPECT_THAT(take_driver_calls(), IsEmpty());
    EXPECT_TRUE(slot_is_untouched(0));
    EXPECT_TRUE(record_is_untouched(0));
}

TEST_F(Device_lists_test, null_buffer_of_the_newer_list_is_not_refused)
{
    initialize();
    brenvozulta_sim_remove_all();
    count = 2;
    EXPECT_EQ(VyraGetDeviceList_N(&count, nullptr), VYRA_INTERNAL);
    EXPECT_THAT(take_log(), ElementsAre(driver_failed(5), helper_failed("get_device_list_N")));
    EXPECT_EQ(count, 2U);
}

TEST_F(Device_lists_test, no_scanner_attached_is_9000_and_sets_the_count_in_the_older_list_alone)
{
    brenvozulta_sim_remove_all();
    initialize();
    count = 4;
    EXPECT_EQ(list(), VYRA_INTERNAL);
    EXPECT_EQ(count, 0U);
    EXPECT_THAT(take_log(), ElementsAre(driver_failed(5), helper_failed("get_device_list")));
    count = 4;
    EXPECT_EQ(list_records(), VYRA_INTERNAL);
    EXPECT_EQ(count, 4U);
    EXPECT_THAT(take_log(), ElementsAre(driver_failed(5), helper_failed("get_device_list_N")));
    EXPECT_TRUE(slot_is_untouched(0));
    EXPECT_TRUE(record_is_untouched(0));
}

TEST_F(Device_lists_test, every_driver_failure_is_9000)
{
    initialize();
    for (const std::uint32_t result : {1U, 2U, 3U, 18U, 19U}) {
        brenvozulta_sim_fail("QXDR_GetDevicesList", result, 2);
        count = 3;
        EXPECT_EQ(list(), VYRA_INTERNAL);
        EXPECT_EQ(count, 0U);
        count = 3;
        EXPECT_EQ(list_records(), VYRA_INTERNAL);
        EXPECT_EQ(count, 3U);
        EXPECT_THAT(take_log(), ElementsAre(driver_failed(result), helper_failed("get_device_list"),
                                            driver_failed(result), helper_failed("get_device_list_N")));
    }
}

TEST_F(Device_lists_test, driver_count_of_0_or_less_is_9000)
{
    initialize();
    for (const std::int32_t lie : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        brenvozulta_sim_set_list_count(lie, 2);
        count = 3;
        EXPECT_EQ(list(), VYRA_INTERNAL);
        EXPECT_EQ(count, 0U);
        count = 3;
        EXPECT_EQ(list_records(), VYRA_INTERNAL);
        EXPECT_EQ(count, 3U);
        EXPECT_THAT(take_log(), ElementsAre(driver_failed(0), helper_failed("get_device_list"), driver_failed(0),
                                            helper_failed("get_device_list_N")));
        EXPECT_TRUE(slot_is_untouched(0));
        EXPECT_TRUE(record_is_untouched(0));
    }
}

TEST_F(Device_lists_test, count_untouched_by_a_driver_that_succeeds_is_9000)
{
    initialize();
    brenvozulta_sim_fail("QXDR_GetDevicesList", driver_ok, 1);
    count = 3;
    EXPECT_EQ(list(), VYRA_INTERNAL);
    EXPECT_THAT(take_log(), ElementsAre(driver_failed(0), helper_failed("get_device_list")));
}

TEST_F(Device_lists_test, driver_count_above_8_lists_8)
{
    attach({"A", "B"});
    initialize();
    for (const std::int32_t lie : {9, 0x7FFFFFFF}) {
        brenvozulta_sim_set_list_count(lie, 2);
        count = 9;
        EXPECT_EQ(list(), VYRA_OK);
        EXPECT_EQ(count, 8U);
        EXPECT_EQ(slot_name(1), "B");
        EXPECT_EQ(slot_name(7), "");
        EXPECT_TRUE(slot_is_untouched(8));
        count = 9;
        EXPECT_EQ(list_records(), VYRA_OK);
        EXPECT_EQ(count, 8U);
        EXPECT_EQ(record_name(1), "B");
        EXPECT_EQ(record_name(7), "");
        EXPECT_TRUE(record_is_untouched(8));
    }
}

TEST_F(Device_lists_test, eight_scanners_are_listed)
{
    std::vector<std::string> names;
    for (std::size_t number = 1; number <= 8; ++number) {
        names.push_back(scanner_name(number));
    }
    attach(names);
    initialize();
    count = 9;
    EXPECT_EQ(list(), VYRA_OK);
    EXPECT_EQ(count, 8U);
    EXPECT_EQ(slot_name(7), names[7]);
    count = 9;
    EXPECT_EQ(list_records(), VYRA_OK);
    EXPECT_EQ(count, 8U);
    EXPECT_EQ(record_name(7), names[7]);
}

TEST_F(Device_lists_test, capacity_2_of_3_scanners_fills_2)
{
    attach({"A", "B", "C"});
    initialize();
    count = 2;
    EXPECT_EQ(list(), VYRA_OK);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(slot_name(0), "A");
    EXPECT_EQ(slot_name(1), "B");
    EXPECT_TRUE(slot_is_untouched(2));
    count = 2;
    EXPECT_EQ(list_records(), VYRA_OK);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(record_name(0), "A");
    EXPECT_EQ(record_name(1), "B");
    EXPECT_TRUE(record_is_untouched(2));
}

TEST_F(Device_lists_test, larger_capacity_comes_back_as_the_number_listed)
{
    attach({"A", "B", "C"});
    initialize();
    for (const std::uint32_t capacity : {3U, 4U, 9U, 100'000U}) {
        count = capacity;
        EXPECT_EQ(list(), VYRA_OK);
        EXPECT_EQ(count, 3U);
        count = capacity;
        EXPECT_EQ(list_records(), VYRA_OK);
        EXPECT_EQ(count, 3U);
    }
    EXPECT_EQ(slot_name(2), "C");
    EXPECT_TRUE(slot_is_untouched(3));
    EXPECT_TRUE(record_is_untouched(3));
}

TEST_F(Device_lists_test, are_read_from_the_driver_each_time)
{
    initialize();
    attach({"NEW"});
    count = 8;
    brenvozulta_sim_clear_calls();
    EXPECT_EQ(list(), VYRA_OK);
    EXPECT_EQ(slot_name(0), "NEW");
    EXPECT_EQ(list_records(), VYRA_OK);
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_GetDevicesList", "QXDR_GetDevicesList"}));
    EXPECT_EQ(access::detected_names(), Lines({scanner_1})) << "the list of the initialization is another";
}

TEST_F(Device_lists_test, work_while_the_system_sleeps)
{
    initialize();
    access::set_suspended(true);
    count = 8;
    EXPECT_EQ(list(), VYRA_OK);
    EXPECT_EQ(list_records(), VYRA_OK);
}

// A request of more memory than there is must be refused; where it is granted, the list is the usual one.
TEST_F(Device_lists_test, largest_count_of_the_newer_list_is_9001_or_works)
{
    initialize();
    count = 0xFFFFFFFF;
    const std::int32_t status = list_records();
    if (status == VYRA_OK) {
        EXPECT_EQ(count, 1U);
        EXPECT_EQ(record_name(0), scanner_1);
    } else {
        EXPECT_EQ(status, VYRA_OUT_OF_RESOURCE);
        EXPECT_EQ(count, 0xFFFFFFFFU);
        EXPECT_THAT(take_log(), ElementsAre(error_line("get_device_list_N", VYRA_OUT_OF_RESOURCE)));
    }
}

TEST_F(Device_lists_test, largest_count_of_the_older_list_works)
{
    initialize();
    count = 0xFFFFFFFF;
    EXPECT_EQ(list(), VYRA_OK);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(slot_name(0), scanner_1);
}

TEST_F(Device_lists_test, slots_end_at_the_terminator)
{
    initialize();
    count = 1;
    EXPECT_EQ(list(), VYRA_OK);
    const std::size_t length = std::strlen(scanner_1);
    EXPECT_EQ(slots[length], '\0');
    EXPECT_EQ(slots[length + 1], static_cast<char>(untouched)) << "nothing is padded";
}

TEST_F(Device_lists_test, records_are_padded_with_zeros_and_keep_their_reserved_bytes)
{
    attach({"A", "B"});
    initialize();
    count = 2;
    EXPECT_EQ(list_records(), VYRA_OK);
    for (const std::size_t i : {0U, 1U}) {
        std::string padded(sizeof records[i].name, '\0');
        padded[0] = static_cast<char>('A' + i);
        EXPECT_EQ(std::string(records[i].name, sizeof records[i].name), padded);
        EXPECT_THAT(records[i].reserved_0, ElementsAre(untouched, untouched, untouched, untouched));
        EXPECT_EQ(records[i].reserved_259, untouched);
    }
}

TEST_F(Device_lists_test, long_names_are_cut_at_255_in_records_without_terminator)
{
    const std::vector<std::string> names = {long_name(254, 'A'), long_name(255, 'B'), long_name(256, 'C'),
                                            long_name(300, 'D'), long_name(559, 'E')};
    attach(names);
    initialize();
    count = 5;
    EXPECT_EQ(list_records(), VYRA_OK);
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(record_name(i), names[i].substr(0, 255)) << names[i].size();
        EXPECT_THAT(records[i].reserved_0, ElementsAre(untouched, untouched, untouched, untouched));
        EXPECT_EQ(records[i].reserved_259, untouched);
    }
    EXPECT_TRUE(record_is_untouched(5));
}

TEST_F(Device_lists_test, long_names_run_over_their_slots)
{
    for (const std::size_t length : {254U, 255U, 300U, 559U}) {
        attach({long_name(length)});
        if (!access::initialized()) {
            initialize();
        }
        slots.assign(slots.size(), static_cast<char>(untouched));
        count = 1;
        EXPECT_EQ(list(), VYRA_OK);
        EXPECT_EQ(slot_name(0), long_name(length));
        EXPECT_EQ(slots[length + 1], static_cast<char>(untouched));
    }
}

TEST_F(Device_lists_test, the_name_after_a_long_one_overwrites_its_end)
{
    attach({long_name(300), "B"});
    initialize();
    count = 2;
    EXPECT_EQ(list(), VYRA_OK);
    EXPECT_EQ(slot_name(0), long_name(300).substr(0, 255) + "B");
    EXPECT_EQ(slot_name(1), "B");
}

TEST_F(Device_lists_test, the_helper_refuses_null_pointers)
{
    initialize();
    count = 3;
    EXPECT_EQ(access::get_device_list_internal(&count, nullptr), VYRA_BUF_TOO_SMALL);
    EXPECT_EQ(access::get_device_list_internal(nullptr, slots.data()), VYRA_BUF_TOO_SMALL);
    EXPECT_EQ(count, 3U);
    const auto line = error_line("get_device_list_internal", VYRA_BUF_TOO_SMALL);
    EXPECT_THAT(take_log(), ElementsAre(line, line));
}
