// The texts of a scanner's identity, without a scanner.
#include "device/identity.h"

#include <gmock/gmock.h>

#include <cstring>

namespace {

using kvs::brenvozulta::format_version;
using kvs::brenvozulta::write_driver_info;
using kvs::brenvozulta::write_model;
using testing::Each;

std::string bytes_of(const DeviceInfo& record)
{
    return std::string(reinterpret_cast<const char*>(&record), sizeof record);
}

// The version as it reaches the record.
std::string recorded_version(std::int8_t major, std::int8_t minor, char revision)
{
    DriverDeviceInfo info = {};
    info.version_major = major;
    info.version_minor = minor;
    info.version_revision = revision;
    DeviceInfo record = {};
    write_driver_info(record, info);
    EXPECT_EQ(std::string(record.version + 7, 5), std::string(5, '\0'));
    return record.version;
}

TEST(Format_version_test, two_numbers_and_a_character)
{
    EXPECT_EQ(format_version(2, 5, 'b'), "2.5.b");
    EXPECT_EQ(format_version(1, 0, 'A'), "1.0.A");
    EXPECT_EQ(format_version(0, 0, '1'), "0.0.1");
    EXPECT_EQ(format_version(65, 66, '\x01'), "65.66.\x01");
}

TEST(Format_version_test, the_numbers_are_signed)
{
    EXPECT_EQ(format_version(-12, 100, 'c'), "-12.100.c");
    EXPECT_EQ(format_version(-128, 127, 'z'), "-128.127.z");
    EXPECT_EQ(format_version(127, -128, '\xFF'), "127.-128.\xFF");
    EXPECT_EQ(format_version(-1, -1, '-'), "-1.-1.-");
}

TEST(Format_version_test, a_zero_revision_is_a_zero_character)
{
    EXPECT_EQ(format_version(1, 0, '\0'), std::string("1.0.\0", 5));
}

TEST(Recorded_version_test, is_cut_at_7_characters)
{
    EXPECT_EQ(recorded_version(2, 5, 'b'), "2.5.b");
    EXPECT_EQ(recorded_version(10, 10, 'b'), "10.10.b");
    EXPECT_EQ(recorded_version(10, 100, 'b'), "10.100.");
    EXPECT_EQ(recorded_version(-12, 100, 'c'), "-12.100");
    EXPECT_EQ(recorded_version(-128, 127, 'c'), "-128.12");
}

TEST(Recorded_version_test, with_a_zero_revision_ends_in_the_point)
{
    EXPECT_EQ(recorded_version(1, 0, '\0'), "1.0.");
}

TEST(Recorded_serial_number_test, of_12_characters_without_terminator_arrives_whole_and_terminated)
{
    DriverDeviceInfo info;
    std::memset(&info, 'x', sizeof info);
    std::memcpy(info.serial_number, "ABCDEFGHIJKL", 12);
    DeviceInfo record = {};
    write_driver_info(record, info);
    EXPECT_EQ(std::string(record.serial_number, 16), std::string("ABCDEFGHIJKL\0\0\0\0", 16));
}

TEST(Recorded_serial_number_test, that_is_shorter_is_padded_with_zeros)
{
    DriverDeviceInfo info;
    std::memset(&info, 'x', sizeof info);
    std::memcpy(info.serial_number, "AB\0CDEFGHIJK", 12);
    DeviceInfo record = {};
    write_driver_info(record, info);
    EXPECT_EQ(std::string(record.serial_number, 16), std::string("AB") + std::string(14, '\0'));
}

TEST(Recorded_model_test, clears_the_record_and_writes_the_constants)
{
    DeviceInfo record;
    std::memset(&record, 0xA5, sizeof record);
    write_model(record);
    std::string expected(52, '\0');
    expected.replace(0, 6, "ORVANE").replace(8, 8, "RQ7-3050");
    EXPECT_EQ(bytes_of(record), expected);
}

}  // namespace
