#include "notify/device_broadcast.h"

#include <cstdint>

#include "support.h"

using kvs::brenvozulta::broadcast_device_name;
using notify_test::Device_record;
using notify_test::name_offset;

namespace {

TEST(Device_broadcast_test, the_name_ends_at_its_terminator)
{
    EXPECT_EQ(broadcast_device_name(Device_record("USB#VID_1A2B").address()), "USB#VID_1A2B");
    EXPECT_EQ(broadcast_device_name(Device_record({"name\0more", 9}, name_offset + 9, name_offset + 9).address()),
              "name");
}

TEST(Device_broadcast_test, a_null_pointer_has_no_name)
{
    EXPECT_EQ(broadcast_device_name(0), "");
}

TEST(Device_broadcast_test, an_empty_name_is_empty)
{
    EXPECT_EQ(broadcast_device_name(Device_record("").address()), "");
}

TEST(Device_broadcast_test, other_device_types_have_no_name)
{
    for (const DWORD type : {0U, 1U, 2U, 3U, 4U, 6U, 7U, 0x80000005U, 0xFFFFFFFFU}) {
        const Device_record record("VID_1A2B&PID_00FF", name_offset + 17, name_offset + 17, type);
        EXPECT_EQ(broadcast_device_name(record.address()), "") << type;
    }
}

// Test tools state the fixed record, or nothing.
TEST(Device_broadcast_test, a_size_up_to_the_fixed_records_says_nothing_of_the_name)
{
    const std::string_view name("USB#VID_1A2B&PID_00FF", 22);
    for (DWORD size = 0; size <= sizeof(DEV_BROADCAST_DEVICEINTERFACE_A); ++size) {
        const Device_record record(name, name_offset + name.size(), size);
        EXPECT_EQ(broadcast_device_name(record.address()), "USB#VID_1A2B&PID_00FF") << size;
    }
}

TEST(Device_broadcast_test, of_another_type_nothing_behind_the_header_is_read)
{
    for (const DWORD size : {0U, 12U, 28U, 32U}) {
        const Device_record record("", sizeof(DEV_BROADCAST_HDR), size, DBT_DEVTYP_DEVICEINTERFACE + 1);
        EXPECT_EQ(broadcast_device_name(record.address()), "") << size;
    }
}

TEST(Device_broadcast_test, a_name_without_terminator_ends_with_the_stated_size)
{
    const std::string_view name = "VID_1A2B&PID_00FF";
    constexpr std::size_t in_fixed_record = sizeof(DEV_BROADCAST_DEVICEINTERFACE_A) - name_offset;
    for (std::size_t length = in_fixed_record + 1; length <= name.size(); ++length) {
        const Device_record record(name, name_offset + length, static_cast<DWORD>(name_offset + length));
        EXPECT_EQ(broadcast_device_name(record.address()), name.substr(0, length));
    }
}

TEST(Device_broadcast_test, a_size_that_claims_too_little_cuts_the_name)
{
    const Device_record record("VID_1A2B&PID_00FF", name_offset + 17, name_offset + 8);
    EXPECT_EQ(broadcast_device_name(record.address()), "VID_1A2B");
}

TEST(Device_broadcast_test, a_size_that_claims_too_much_does_not_lead_behind_the_terminator)
{
    for (const DWORD size : {100U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        const Device_record record({"VID_1A2B\0", 9}, name_offset + 9, size);
        EXPECT_EQ(broadcast_device_name(record.address()), "VID_1A2B") << size;
    }
}

TEST(Device_broadcast_test, a_name_of_64_kib_is_read_whole)
{
    const std::string name(65536, 'A');
    EXPECT_EQ(broadcast_device_name(Device_record(name).address()), name);
}

}  // namespace
