// The driver's life, the list of scanners, opening and closing.
#include <cstring>

#include "driver_stage.h"

namespace simulator_test {
namespace {

class Bus_test : public Driver_test {
protected:
    static std::vector<std::string> listed_names()
    {
        std::int32_t count = -1;
        DriverDeviceEntry entries[driver_list_capacity]{};
        EXPECT_EQ(QXDR_GetDevicesList(&count, entries), 0U);
        std::vector<std::string> names;
        for (std::int32_t i = 0; i < count; ++i) {
            names.emplace_back(entries[i].name);
        }
        return names;
    }
};

TEST_F(Bus_test, every_function_but_initialize_needs_initialize)
{
    std::int32_t count = 7;
    DriverDeviceEntry entries[driver_list_capacity]{};
    DriverDeviceInfo info{};
    void* handle = brenvozulta_sim_handle(scanner);
    std::uint8_t size = 1;
    std::uint32_t length = 0;
    char byte = 0;
    EXPECT_EQ(QXDR_Release(), 3U);
    EXPECT_EQ(QXDR_GetDevicesList(&count, entries), 3U);
    EXPECT_EQ(QXDR_SetListenerCallbackHotPlug(Listener::listen), 3U);
    EXPECT_EQ(QXDR_GetUsbInfo(handle, entries), 3U);
    EXPECT_EQ(QXDR_OpenDevice(scanner, &handle), 3U);
    EXPECT_EQ(QXDR_CloseDevice(&handle), 3U);
    EXPECT_EQ(QXDR_ResetDevice(handle), 3U);
    EXPECT_EQ(QXDR_SetCallbackAcquisition(Host::callback, nullptr), 3U);
    EXPECT_EQ(QXDR_SelectCaptureConfig(handle, 1), 3U);
    EXPECT_EQ(QXDR_GetCaptureConfig(handle, 1, &byte, &size), 3U);
    EXPECT_EQ(QXDR_StartCapture(handle), 3U);
    EXPECT_EQ(QXDR_StopCapture(handle), 3U);
    EXPECT_EQ(QXDR_GetDeviceInfo(handle, &info), 3U);
    EXPECT_EQ(QXDR_GetDeviceInfoSN(scanner, &info), 3U);
    EXPECT_EQ(QXDR_SetLeds(handle, 0, 0, 0, 0), 3U);
    EXPECT_EQ(QXDR_GetContainerSize(handle, &length), 3U);
    EXPECT_EQ(QXDR_ReadContainer(handle, &byte, 1), 3U);
    EXPECT_EQ(QXDR_GetSnapshotAcquisition(handle, &byte, 1, 1, 1), 3U);
    EXPECT_EQ(QXDR_UpdateFirmware(handle, &byte, 1), 3U);
    EXPECT_EQ(count, 7);
    EXPECT_EQ(handle, brenvozulta_sim_handle(scanner));
}

TEST_F(Bus_test, one_scanner_is_attached_without_configuration)
{
    initialize();
    EXPECT_THAT(listed_names(), testing::ElementsAre(scanner));
}

TEST_F(Bus_test, an_empty_bus_gives_5_and_leaves_the_count_as_it_was)
{
    initialize();
    brenvozulta_sim_remove_all();
    std::int32_t count = 1234;
    DriverDeviceEntry entries[driver_list_capacity]{};
    EXPECT_EQ(QXDR_GetDevicesList(&count, entries), 5U);
    EXPECT_EQ(count, 1234);
}

TEST_F(Bus_test, scanners_are_listed_by_the_time_of_attachment_and_at_most_eight)
{
    initialize();
    for (const char* name : {"b", "a", "c", "d", "e", "f", "g", "h"}) {
        ASSERT_TRUE(brenvozulta_sim_attach(name));
    }
    EXPECT_THAT(listed_names(), testing::ElementsAre(scanner, "b", "a", "c", "d", "e", "f", "g"));
    ASSERT_TRUE(brenvozulta_sim_remove("b"));
    EXPECT_THAT(listed_names(), testing::ElementsAre(scanner, "a", "c", "d", "e", "f", "g", "h"));
}

TEST_F(Bus_test, the_count_can_lie)
{
    initialize();
    brenvozulta_sim_set_list_count(-3, 1);
    std::int32_t count = 0;
    DriverDeviceEntry entries[driver_list_capacity]{};
    EXPECT_EQ(QXDR_GetDevicesList(&count, entries), 0U);
    EXPECT_EQ(count, -3);
    EXPECT_STREQ(entries[0].name, scanner);
    EXPECT_EQ(QXDR_GetDevicesList(&count, entries), 0U);
    EXPECT_EQ(count, 1);
}

TEST_F(Bus_test, names_have_up_to_559_characters)
{
    initialize();
    const std::string longest(559, 'n');
    EXPECT_TRUE(brenvozulta_sim_attach(longest.c_str()));
    EXPECT_FALSE(brenvozulta_sim_attach((longest + "n").c_str()));
    EXPECT_FALSE(brenvozulta_sim_attach(""));
    EXPECT_FALSE(brenvozulta_sim_attach(nullptr));
    EXPECT_THAT(listed_names(), testing::ElementsAre(scanner, longest));
}

TEST_F(Bus_test, usb_info_equals_the_list_entry_and_needs_no_open_scanner)
{
    initialize();
    std::int32_t count = 0;
    DriverDeviceEntry entries[driver_list_capacity]{};
    ASSERT_EQ(QXDR_GetDevicesList(&count, entries), 0U);
    DriverDeviceEntry record{};
    ASSERT_EQ(QXDR_GetUsbInfo(entries[0].driver_handle, &record), 0U);
    EXPECT_EQ(std::memcmp(&record, &entries[0], sizeof record), 0);
    EXPECT_EQ(open(), entries[0].driver_handle);
}

TEST_F(Bus_test, handles_are_never_used_twice)
{
    initialize();
    void* const first = brenvozulta_sim_handle(scanner);
    ASSERT_TRUE(brenvozulta_sim_remove(scanner));
    ASSERT_TRUE(brenvozulta_sim_attach(scanner));
    EXPECT_NE(brenvozulta_sim_handle(scanner), nullptr);
    EXPECT_NE(brenvozulta_sim_handle(scanner), first);
    DriverDeviceEntry record{};
    EXPECT_EQ(QXDR_GetUsbInfo(first, &record), 4U);
}

TEST_F(Bus_test, unknown_names_give_5_unknown_handles_10_and_null_1)
{
    initialize();
    void* handle = nullptr;
    int elsewhere = 0;
    DriverDeviceInfo info{};
    EXPECT_EQ(QXDR_OpenDevice("nobody", &handle), 5U);
    EXPECT_EQ(QXDR_GetDeviceInfoSN("nobody", &info), 5U);
    EXPECT_EQ(QXDR_OpenDevice(nullptr, &handle), 1U);
    EXPECT_EQ(QXDR_OpenDevice(scanner, nullptr), 1U);
    EXPECT_EQ(QXDR_GetDeviceInfo(&elsewhere, &info), 10U);
    EXPECT_EQ(QXDR_GetDeviceInfo(nullptr, &info), 10U);
    EXPECT_EQ(QXDR_CloseDevice(nullptr), 10U);
    EXPECT_EQ(handle, nullptr);
}

TEST_F(Bus_test, a_name_of_ten_thousand_characters_is_unknown_and_recorded_whole)
{
    initialize();
    const std::string name(10'000, 'x');
    void* handle = nullptr;
    EXPECT_EQ(QXDR_OpenDevice(name.c_str(), &handle), 5U);
    std::string recorded(10'001, '\0');
    EXPECT_EQ(brenvozulta_sim_call_argument(1, "name", recorded.data(), recorded.size()), name.size());
    EXPECT_EQ(recorded.c_str(), name);
}

TEST_F(Bus_test, an_exact_name_wins_over_one_in_another_case)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_attach("Left"));
    ASSERT_TRUE(brenvozulta_sim_attach("left"));
    EXPECT_EQ(open("left"), brenvozulta_sim_handle("left"));
    EXPECT_EQ(open("LEFT"), brenvozulta_sim_handle("Left"));
}

TEST_F(Bus_test, close_clears_the_handle_and_only_then_calls_are_refused)
{
    initialize();
    void* handle = open();
    void* const opened = handle;
    DriverDeviceInfo info{};
    ASSERT_TRUE(brenvozulta_sim_fail("QXDR_CloseDevice", 9, 1));
    EXPECT_EQ(QXDR_CloseDevice(&handle), 9U);
    EXPECT_EQ(handle, opened);
    EXPECT_EQ(QXDR_GetDeviceInfo(handle, &info), 0U);
    EXPECT_EQ(QXDR_CloseDevice(&handle), 0U);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(QXDR_GetDeviceInfo(opened, &info), 19U);
    handle = opened;
    EXPECT_EQ(QXDR_CloseDevice(&handle), 19U);
}

TEST_F(Bus_test, an_open_scanner_is_handed_out_again)
{
    initialize();
    EXPECT_EQ(open(), open());
}

TEST_F(Bus_test, release_closes_everything_and_keeps_the_registrations)
{
    initialize();
    void* handle = start_capture();
    EXPECT_EQ(QXDR_Release(), 0U);
    EXPECT_FALSE(brenvozulta_sim_is_open(scanner));
    EXPECT_FALSE(brenvozulta_sim_is_capturing(scanner));
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 0U);
    EXPECT_EQ(brenvozulta_sim_callback(), &Host::callback);
    initialize();
    EXPECT_EQ(QXDR_StartCapture(handle), 19U);
}

}  // namespace
}  // namespace simulator_test
