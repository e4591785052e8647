// What a scenario can say. The names of files and the messages of bad ones have a test of their own.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "driver_stage.h"
#include "system.h"

namespace simulator_test {
namespace {

constexpr const char* variable = "BRENVOZULTA_SCENARIO";

class Scenario_test : public Driver_test {
protected:
    void TearDown() override
    {
        set_environment(variable, "");
        Driver_test::TearDown();
    }

    static DriverDeviceInfo info(const char* name)
    {
        DriverDeviceInfo found{};
        EXPECT_EQ(QXDR_GetDeviceInfoSN(name, &found), 0U);
        return found;
    }

    static std::string description(void* handle, std::uint8_t config)
    {
        char text[128]{};
        std::uint8_t size = sizeof text;
        EXPECT_EQ(QXDR_GetCaptureConfig(handle, config, text, &size), 0U);
        return text;
    }
};

TEST_F(Scenario_test, an_empty_object_is_the_unconfigured_simulator)
{
    load("{}");
    initialize();
    open();
}

TEST_F(Scenario_test, scanners_with_all_they_can_have)
{
    load(R"({"scanners": [
        {"name": "A", "serial_number": "123456789012", "version": "-128.127.z", "port_type": 4294967295,
         "container": {"size": 100, "seed": 3}},
        {"name": "B", "serial_number": "", "version": "1.0."},
        {"name": "C", "attached": false}]})");
    initialize();
    std::int32_t count = 0;
    DriverDeviceEntry entries[driver_list_capacity]{};
    ASSERT_EQ(QXDR_GetDevicesList(&count, entries), 0U);
    ASSERT_EQ(count, 2);
    EXPECT_STREQ(entries[0].name, "A");
    EXPECT_STREQ(entries[1].name, "B");
    EXPECT_EQ(std::string(info("A").serial_number, 12), "123456789012");
    EXPECT_EQ(info("A").version_major, -128);
    EXPECT_EQ(info("A").version_minor, 127);
    EXPECT_EQ(info("A").version_revision, 'z');
    EXPECT_EQ(info("A").port_type, 4294967295U);
    EXPECT_EQ(info("B").serial_number[0], '\0');
    EXPECT_EQ(info("B").version_revision, '\0');
    std::uint32_t size = 0;
    EXPECT_EQ(QXDR_GetContainerSize(open("A"), &size), 0U);
    EXPECT_EQ(size, 100U);
    EXPECT_FALSE(brenvozulta_sim_is_attached("C"));
    EXPECT_TRUE(brenvozulta_sim_attach("C"));
}

TEST_F(Scenario_test, an_empty_list_of_scanners_is_an_empty_bus)
{
    load(R"({"scanners": []})");
    initialize();
    std::int32_t count = 0;
    DriverDeviceEntry entries[driver_list_capacity]{};
    EXPECT_EQ(QXDR_GetDevicesList(&count, entries), 5U);
}

TEST_F(Scenario_test, configurations_are_changed_added_and_taken_away)
{
    load(R"({"capture_configs": [
        {"number": 1, "description": "changed"},
        {"number": 7, "description": "added", "width": 20, "height": 10},
        {"number": 13, "available": false}], "frame_rate": 0})");
    initialize();
    void* handle = start_capture(scanner, 7);
    EXPECT_EQ(description(handle, 1), "changed");
    EXPECT_EQ(description(handle, 7), "added");
    EXPECT_EQ(QXDR_SelectCaptureConfig(handle, 13), 6U);
    ASSERT_TRUE(brenvozulta_sim_wait_delivery_done(brenvozulta_sim_deliver_next(nullptr), patience_ms, nullptr));
    EXPECT_EQ(Host::images().at(0).width, 20);
    EXPECT_EQ(Host::images().at(0).height, 10);
}

TEST_F(Scenario_test, the_frame_rate_delivers_images_by_itself)
{
    load(R"({"capture_configs": [{"number": 7, "description": "", "width": 2, "height": 2}], "frame_rate": 999.5})");
    initialize();
    start_capture(scanner, 7);
    EXPECT_TRUE(brenvozulta_sim_wait_callbacks_returned(2, patience_ms));
}

TEST_F(Scenario_test, faults_delays_and_the_list_count)
{
    load(R"({"faults": [{"function": "QXDR_GetDevicesList", "result": 18, "times": 1},
                        {"function": "QXDR_OpenDevice", "result": 9, "skip": 1},
                        {"function": "QXDR_Release", "delay_ms": 20},
                        {"function": "QXDR_CloseDevice", "result": 7, "times": "always", "carry_out": true}],
             "list_count": {"count": -1, "times": 1},
             "idle_stop_result": 19, "stop_patience_ms": 5})");
    initialize();
    std::int32_t count = 0;
    DriverDeviceEntry entries[driver_list_capacity]{};
    EXPECT_EQ(QXDR_GetDevicesList(&count, entries), 18U);
    EXPECT_EQ(QXDR_GetDevicesList(&count, entries), 0U);
    EXPECT_EQ(count, -1);
    void* handle = open();
    EXPECT_EQ(QXDR_OpenDevice(scanner, &handle), 9U);
    EXPECT_EQ(QXDR_OpenDevice(scanner, &handle), 9U);
    EXPECT_EQ(QXDR_StopCapture(handle), 19U);
    EXPECT_EQ(QXDR_CloseDevice(&handle), 7U);
    EXPECT_EQ(handle, nullptr);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(QXDR_Release(), 0U);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
}

TEST_F(Scenario_test, restart_and_firmware)
{
    load(R"({"restart": {"delay_ms": 1, "returns": false, "announce_unplug": false},
             "firmware": {"bytes_per_second": 1000000, "duration_ms": 1, "restarts": true,
                          "fail_at_byte": 4, "fail_result": 15, "reset_result": 11}})");
    initialize();
    void* handle = open();
    EXPECT_EQ(QXDR_UpdateFirmware(handle, "12345", 5), 15U);
    EXPECT_EQ(QXDR_UpdateFirmware(handle, "1234", 4), 0U);
    EXPECT_FALSE(brenvozulta_sim_is_attached(scanner));
}

TEST_F(Scenario_test, files_are_found_from_the_scenarios_folder)
{
    const std::string folder = make_folder();
    write_file(folder + "/container.bin", "content");
    write_file(folder + "/snapshot.bin", "snap");
    write_file(folder + "/s.json",
               R"({"scanners": [{"name": "A", "container": {"file": "container.bin"}, "snapshot": "snapshot.bin"}]})");
    set_environment(variable, folder + "/s.json");
    initialize();
    void* handle = open("A");
    char buffer[8]{};
    EXPECT_EQ(QXDR_ReadContainer(handle, buffer, 7), 0U);
    EXPECT_STREQ(buffer, "content");
    EXPECT_EQ(QXDR_GetSnapshotAcquisition(handle, buffer, 1, 2, 3), 0U);
    EXPECT_EQ(std::string(buffer, 4), "snap");
}

TEST_F(Scenario_test, the_environments_scenario_is_read_once_and_not_over_a_loaded_one)
{
    const std::string folder = make_folder();
    write_file(folder + "/s.json", R"({"scanners": [{"name": "A"}]})");
    set_environment(variable, folder + "/s.json");
    initialize();
    ASSERT_TRUE(brenvozulta_sim_attach("B"));
    ASSERT_EQ(QXDR_Release(), 0U);
    initialize();
    open("B");
    brenvozulta_sim_reset();
    load(R"({"scanners": [{"name": "C"}]})");
    initialize();
    open("C");
}

TEST_F(Scenario_test, the_environment_may_hold_the_scenario_itself)
{
    const std::string message = "BRENVOZULTA_SCENARIO:1: scanners[0].name: has 0 characters, not 1 to 559";
    set_environment(variable, R"({"scanners": [{"name": ""}]})");
    testing::internal::CaptureStderr();
    EXPECT_EQ(QXDR_Initialize(), 14U);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "BrenvoZulta_USB: " + message + "\n");
    const std::string container = std::filesystem::path(make_folder() + "/container.bin").generic_string();
    write_file(container, "content");
    set_environment(variable, R"({"scanners": [{"name": "A", "container": {"file": ")" + container + R"("}}]})");
    initialize();
    std::uint32_t size = 0;
    EXPECT_EQ(QXDR_GetContainerSize(open("A"), &size), 0U);
    EXPECT_EQ(size, 7U);
}

TEST_F(Scenario_test, the_environments_scenario_may_begin_with_blanks)
{
    set_environment(variable, " \r\n\t{\"scanners\": [{\"name\": \"A\"}]}");
    initialize();
    open("A");
}

TEST_F(Scenario_test, a_fault_of_initialize_meets_the_call_that_reads_it)
{
    set_environment(variable, R"({"faults": [{"function": "QXDR_Initialize", "result": 9, "times": 1}]})");
    EXPECT_EQ(QXDR_Initialize(), 9U);
    EXPECT_EQ(QXDR_Release(), 3U) << "it did nothing";
    initialize();
}

TEST_F(Scenario_test, a_description_is_for_the_reader)
{
    load(R"({"description": "one scanner", "scanners": [{"name": "A"}]})");
    initialize();
    open("A");
}

TEST_F(Scenario_test, a_bad_scenario_makes_initialize_fail_until_it_is_right)
{
    const std::string path = make_folder() + "/s.json";
    set_environment(variable, path);
    testing::internal::CaptureStderr();
    EXPECT_EQ(QXDR_Initialize(), 14U);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr(path + ":1: cannot read"));
    write_file(path, "{\n \"frame_rate\": -1}");
    testing::internal::CaptureStderr();
    EXPECT_EQ(QXDR_Initialize(), 14U);
    const std::string message = path + ":2: frame_rate: is not from 0 to 1000";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "BrenvoZulta_USB: " + message + "\n");
    char stored[512];
    brenvozulta_sim_last_error(stored, sizeof stored);
    EXPECT_EQ(stored, message);
    EXPECT_EQ(QXDR_Release(), 3U);
    write_file(path, "{}");
    EXPECT_EQ(QXDR_Initialize(), 0U);
    EXPECT_EQ(brenvozulta_sim_last_error(stored, sizeof stored), 0U);
}

TEST_F(Scenario_test, loading_replaces_scanners_and_ends_their_captures)
{
    initialize();
    void* handle = start_capture();
    load(R"({"scanners": [{"name": "A"}], "frame_rate": 0})");
    EXPECT_TRUE(brenvozulta_sim_wait_acquisition_threads(0, patience_ms));
    EXPECT_EQ(QXDR_StopCapture(handle), 4U);
    open("A");
}

std::string text_of(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

TEST_F(Scenario_test, the_examples_load_and_are_explained)
{
    int examples = 0;
    for (const auto& entry : std::filesystem::directory_iterator(EXAMPLES)) {
        if (entry.path().extension() == ".json") {
            char message[512];
            EXPECT_TRUE(brenvozulta_sim_load_scenario_file(entry.path().string().c_str(), message, sizeof message))
                << message;
            EXPECT_THAT(text_of(entry.path()), testing::HasSubstr("\"description\"")) << entry.path();
            EXPECT_THAT(text_of(README), testing::HasSubstr("`" + entry.path().filename().string() + "`"));
            ++examples;
        }
    }
    EXPECT_GE(examples, 4);
}

}  // namespace
}  // namespace simulator_test
