// The scanner's parameter container, snapshot and filters.
#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class Device_data_test : public Device_test {
protected:
    void SetUp() override
    {
        Device_test::SetUp();
        open_device();
    }

    // Every driver result comes back translated, with its line and nothing else.
    template <class Operation>
    void expect_translated(const std::string& function, Operation run)
    {
        for (const auto& [result, status] : driver_failures) {
            brenvozulta_sim_fail(function.c_str(), result, 1);
            EXPECT_EQ(run(), status) << result;
            EXPECT_THAT(take_log(), ElementsAre(driver_error_line(function, result)));
            EXPECT_THAT(take_driver_calls(), ElementsAre(function));
        }
    }
};

TEST_F(Device_data_test, the_container_s_size_is_stored_by_the_driver)
{
    const std::vector<std::uint8_t> container(4321, 7);
    brenvozulta_sim_set_container(first_scanner, container.data(), container.size());
    std::uint32_t size = 0;
    EXPECT_EQ(device().get_global_param_size(&size), 0);
    EXPECT_EQ(size, 4321U);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_GetContainerSize", "size=" + address_text(&size))));
}

TEST_F(Device_data_test, a_null_place_for_the_size_is_the_driver_s_business)
{
    EXPECT_EQ(device().get_global_param_size(nullptr), 9109);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_GetContainerSize", "size=0x0", 1)));
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_GetContainerSize", 1)));
}

TEST_F(Device_data_test, the_container_is_read_into_the_host_s_buffer)
{
    const std::vector<std::uint8_t> container = {1, 2, 3, 4, 5, 6, 7, 8};
    brenvozulta_sim_set_container(first_scanner, container.data(), container.size());
    std::vector<std::uint8_t> buffer(12, 0xA5);
    EXPECT_EQ(device().read_global_param(buffer.data(), 8), 0);
    EXPECT_THAT(buffer, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 0xA5, 0xA5, 0xA5, 0xA5));
    EXPECT_THAT(take_calls(),
                ElementsAre(scanner_call("QXDR_ReadContainer", "buffer=" + address_text(buffer.data()) + ", size=8")));
}

TEST_F(Device_data_test, buffer_and_size_reach_the_driver_unchecked)
{
    brenvozulta_sim_fail("QXDR_ReadContainer", driver_ok, 2);
    EXPECT_EQ(device().read_global_param(nullptr, 0xFFFFFFFF), 0);
    EXPECT_EQ(device().read_global_param(this, 0), 0);
    EXPECT_THAT(take_calls(),
                ElementsAre(scanner_call("QXDR_ReadContainer", "buffer=0x0, size=4294967295"),
                            scanner_call("QXDR_ReadContainer", "buffer=" + address_text(this) + ", size=0")));
}

TEST_F(Device_data_test, the_snapshot_gets_its_three_values_in_order)
{
    const std::vector<std::uint8_t> snapshot = {9, 8, 7};
    brenvozulta_sim_set_snapshot(first_scanner, snapshot.data(), snapshot.size());
    std::vector<std::uint8_t> buffer(4, 0xA5);
    EXPECT_EQ(device().get_snapshot_acquisition(buffer.data(), 1, 0x80000002, 0xFFFFFFFF), 0);
    EXPECT_THAT(buffer, ElementsAre(9, 8, 7, 0xA5));
    EXPECT_THAT(take_calls(),
                ElementsAre(scanner_call("QXDR_GetSnapshotAcquisition", "buffer=" + address_text(buffer.data()) +
                                                                            ", a=1, b=2147483650, c=4294967295")));
}

TEST_F(Device_data_test, a_snapshot_into_a_null_buffer_is_the_driver_s_business)
{
    EXPECT_EQ(device().get_snapshot_acquisition(nullptr, 0, 0, 0), 9109);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_GetSnapshotAcquisition", "buffer=0x0, a=0, b=0, c=0", 1)));
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_GetSnapshotAcquisition", 1)));
}

TEST_F(Device_data_test, a_snapshot_leaves_a_running_video_alone)
{
    ASSERT_EQ(device().start_camera(), 0);
    auto buffer = image_of(0);
    auto snapshot = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    take_calls();
    brenvozulta_sim_set_snapshot(first_scanner, image_of(3).data(), snapshot.size());
    EXPECT_EQ(device().get_snapshot_acquisition(snapshot.data(), 0, 0, 0), 0);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_GetSnapshotAcquisition"));
    EXPECT_EQ(device().video_state(), video_running);
    EXPECT_EQ(buffer, image_of(0));
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 0);
    EXPECT_EQ(buffer, image_of(9));
}

TEST_F(Device_data_test, failures_of_the_driver_are_translated)
{
    std::vector<std::uint8_t> buffer(8, 0xA5);
    std::uint32_t size = 77;
    expect_translated("QXDR_GetContainerSize", [&] { return device().get_global_param_size(&size); });
    expect_translated("QXDR_ReadContainer", [&] { return device().read_global_param(buffer.data(), 8); });
    expect_translated("QXDR_GetSnapshotAcquisition",
                      [&] { return device().get_snapshot_acquisition(buffer.data(), 1, 2, 3); });
    EXPECT_EQ(size, 77U);
    EXPECT_THAT(buffer, Each(0xA5));
}

TEST_F(Device_data_test, filters_are_accepted_and_nothing_is_touched)
{
    const std::vector<std::uint8_t> buffer(8, 0xA5);
    EXPECT_EQ(device().read_filters(buffer.data(), buffer.data(), buffer.data()), 0);
    EXPECT_EQ(device().read_filters(nullptr, nullptr, nullptr), 0);
    EXPECT_THAT(buffer, Each(0xA5));
    EXPECT_THAT(take_calls(), IsEmpty());
}

}  // namespace
