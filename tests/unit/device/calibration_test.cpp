// The calibration image that the library carries.
#include "support/log_lines.h"
#include "unit/device/device_test.h"
#include "unit/device/installed_library.h"

namespace {

using namespace test_support;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string operation = "read_uniformity_buffers";
constexpr std::int32_t image_size = 6'444'864;

class Calibration_test : public Device_test {
protected:
    void SetUp() override
    {
        Device_test::SetUp();
        ASSERT_TRUE(load_installed_library());
        open_device();
    }
    void TearDown() override
    {
        unload_installed_library();
        Device_test::TearDown();
    }

    // A size that is not the image's: nothing is copied.
    void expect_refused(std::int32_t size)
    {
        std::vector<std::uint8_t> buffer(image_size + 1, 0xA5);
        EXPECT_EQ(device().read_uniformity_buffers(buffer.data(), size), 9109) << size;
        EXPECT_THAT(take_log(), ElementsAre("read_uniformity_buffers:   Invalid Image Uniformity resource size "
                                            "Error=9109: Error 9109\r\n"));
        EXPECT_EQ(std::count(buffer.begin(), buffer.end(), 0xA5), image_size + 1);
    }
};

TEST_F(Calibration_test, the_image_equals_the_file_it_was_built_from)
{
    const std::string file = file_bytes(CALIBRATION_FILE);
    ASSERT_EQ(file.size(), static_cast<std::size_t>(image_size));
    std::string buffer(image_size + 16, '\xA5');
    EXPECT_EQ(device().read_uniformity_buffers(&buffer[0], image_size), 0);
    EXPECT_TRUE(buffer == file + std::string(16, '\xA5'));
    EXPECT_THAT(take_calls(), IsEmpty()) << "the scanner is not asked";
}

TEST_F(Calibration_test, every_call_copies_it_again)
{
    std::vector<std::uint8_t> first(image_size, 1);
    std::vector<std::uint8_t> second(image_size, 2);
    EXPECT_EQ(device().read_uniformity_buffers(first.data(), image_size), 0);
    EXPECT_EQ(device().read_uniformity_buffers(second.data(), image_size), 0);
    EXPECT_TRUE(first == second);
}

TEST_F(Calibration_test, one_byte_less_or_more_leaves_the_buffer_untouched)
{
    expect_refused(image_size - 1);
    expect_refused(image_size + 1);
}

TEST_F(Calibration_test, sizes_of_nothing_and_less_leave_the_buffer_untouched)
{
    expect_refused(0);
    expect_refused(-1);
    expect_refused(-image_size);
    expect_refused(INT32_MIN);
    expect_refused(INT32_MAX);
}

TEST_F(Calibration_test, without_the_library_s_file_it_is_9000)
{
    unload_installed_library();
    std::vector<std::uint8_t> buffer(8, 0xA5);
    EXPECT_EQ(device().read_uniformity_buffers(buffer.data(), image_size), 9000);
    EXPECT_THAT(take_log(), ElementsAre(error_line(operation, 9000)));
    EXPECT_THAT(buffer, Each(0xA5));
}

TEST_F(Calibration_test, a_null_buffer_is_9109_before_the_image_is_looked_for)
{
    EXPECT_EQ(device().read_uniformity_buffers(nullptr, image_size), 9109);
    unload_installed_library();
    EXPECT_EQ(device().read_uniformity_buffers(nullptr, 0), 9109);
    const std::string line = error_line(operation, 9109);
    EXPECT_THAT(take_log(), ElementsAre(line, line));
}

TEST_F(Calibration_test, an_open_device_is_required)
{
    ASSERT_EQ(device().close(), 0);
    std::vector<std::uint8_t> buffer(image_size, 0xA5);
    EXPECT_EQ(device().read_uniformity_buffers(buffer.data(), image_size), 9110);
    EXPECT_THAT(take_log(), ElementsAre(error_line(operation, 9110)));
    EXPECT_EQ(std::count(buffer.begin(), buffer.end(), 0xA5), image_size);
}

}  // namespace
