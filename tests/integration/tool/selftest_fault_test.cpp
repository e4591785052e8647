// Faults of the simulator, each of which fails exactly the check that is meant for it.
#include "selftest_stage.h"

namespace tool_tests {
namespace {

using ::testing::ElementsAre;

constexpr const char* scanner = BRENVOZULTA_SIM_DEFAULT_SCANNER;

struct Fault {
    const char* fails;  // the check
    const char* from;   // the check with whose beginning the fault begins; empty: from the start
    std::function<void()> begin;
};

std::function<void()> result(const char* function, std::uint32_t value, std::int32_t times, std::uint32_t skip)
{
    return [=] {
        const brenvozulta_sim_fault fault{value, skip, times, 0};
        ASSERT_EQ(brenvozulta_sim_set_fault(function, &fault), 1);
    };
}

// From the start, or once at a check.
Fault always(const char* fails, const char* function, std::uint32_t value, std::uint32_t skip = 0)
{
    return {fails, "", result(function, value, BRENVOZULTA_SIM_ALWAYS, skip)};
}

Fault once(const char* fails, const char* function, std::uint32_t value, std::uint32_t skip = 0)
{
    return {fails, fails, result(function, value, 1, skip)};
}

class Selftest_fault_test : public Selftest_stage, public ::testing::WithParamInterface<Fault> {
protected:
    // Left out where they do not matter: each takes the library 200 ms.
    static bool takes_long(const vyra_tool::Check& check)
    {
        return check.name == "video-start" || check.name == "reset";
    }

    static void expect_exactly(const Fault& fault, std::function<bool(const vyra_tool::Check&)> leaves_out)
    {
        vyra_tool::Selftest_options options;
        options.write = true;
        options.image_patience = std::chrono::milliseconds(400);
        options.leaves_out = std::move(leaves_out);
        options.begins = [&](const vyra_tool::Check& check) {
            if (check.name == fault.from) {
                fault.begin();
            }
        };
        if (*fault.from == '\0') {
            fault.begin();
        }
        const auto outcomes = vyra_tool::run_selftest(options).outcomes;
        EXPECT_THAT(failed(outcomes), ElementsAre(fault.fails)) << explained(outcomes);
    }
};

void name_with_a_bell()
{
    ASSERT_EQ(brenvozulta_sim_attach("bell\a"), 1);
}

void serial_number(const char* number)
{
    ASSERT_EQ(brenvozulta_sim_set_serial_number(scanner, number), 1);
}

const std::vector<Fault>& quick_faults()
{
    static const std::vector<Fault> all = {
        always("initialize", "QXDR_Initialize", 1),
        once("initialize-again", "QXDR_Initialize", 1),
        always("list", "QXDR_GetDevicesList", 9, 2),
        {"list-names", "", name_with_a_bell},
        once("list-slots", "QXDR_GetDevicesList", 9, 1),
        once("open-unknown", "QXDR_OpenDevice", 0),
        always("open", "QXDR_OpenDevice", 9, 1),
        once("identity", "QXDR_GetDeviceInfo", 9),
        once("port-type", "QXDR_GetDeviceInfo", 9),
        {"serial-number", "", [] { serial_number("SN\x01"); }},
        {"serial-number", "", [] { serial_number(""); }},
        {"version", "", [] { ASSERT_EQ(brenvozulta_sim_set_version(scanner, -1, 5, 'b'), 1); }},
        {"identity-by-name", "open", [] { serial_number("CHANGED"); }},
        always("identity-of-nobody", "QXDR_GetDeviceInfoSN", 0),
        always("container-size", "QXDR_GetContainerSize", 8),
        always("container", "QXDR_ReadContainer", 9),
        once("container-stable", "QXDR_ReadContainer", 0),
        always("snapshot", "QXDR_GetSnapshotAcquisition", 12),
        {"stop-idle", "", [] { brenvozulta_sim_set_idle_stop_result(19); }},
        {"leds", "leds", result("QXDR_SetLeds", 2, BRENVOZULTA_SIM_ALWAYS, 0)},
        once("open-again", "QXDR_OpenDevice", 9),
        once("terminate", "QXDR_Release", 9),
        once("start-anew", "QXDR_Initialize", 9),
    };
    return all;
}

TEST_F(Selftest_fault_test, of_everything_but_video)
{
    for (const Fault& fault : quick_faults()) {
        SCOPED_TRACE(fault.fails);
        SetUp();
        expect_exactly(fault, takes_long);
    }
}

TEST_P(Selftest_fault_test, of_a_scanner_that_captures)
{
    expect_exactly(GetParam(), [](const vyra_tool::Check& check) { return check.name == "reset"; });
}

void rolls_with(const char* description)
{
    ASSERT_EQ(brenvozulta_sim_set_capture_config(13, description, 1608, 1000), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Video, Selftest_fault_test,
    ::testing::Values(always("video-start", "QXDR_StartCapture", 9),
                      always("video-start", "QXDR_SelectCaptureConfig", 6),
                      Fault{"video-delivers", "video-start", [] { brenvozulta_sim_set_frame_rate(0); }},
                      Fault{"image-size", "video-start",
                            [] {
                                Selftest_stage::use_images(1600, 1400, {1, 2});
                            }},
                      Fault{"image-size", "video-start",
                            [] {
                                Selftest_stage::use_images(1600, 1501, {1, 2});
                            }},
                      Fault{"image-content", "video-start", [] { Selftest_stage::use_images(1600, 1500, {0}); }},
                      Fault{"image-live", "video-start", [] { Selftest_stage::use_images(1600, 1500, {1}); }},
                      Fault{"image-rate", "image-rate", [] { brenvozulta_sim_set_frame_rate(4.8); }},
                      once("video-stop", "QXDR_StopCapture", 9), once("video-start-again", "QXDR_StartCapture", 9),
                      once("video-roll", "QXDR_SelectCaptureConfig", 0),
                      Fault{"video-roll", "", [] { rolls_with("RQ7 roll, not described as hosts know it"); }},
                      Fault{"image-size-roll", "", [] { rolls_with("RQ7 roll 1608x1000"); }}));

TEST_F(Selftest_fault_test, of_a_restart)
{
    for (const Fault& fault : {always("reset", "QXDR_ResetDevice", 2), once("reset-handle", "QXDR_GetDeviceInfo", 9)}) {
        SetUp();
        expect_exactly(fault, [](const vyra_tool::Check& check) { return check.name == "video-start"; });
    }
}

}  // namespace
}  // namespace tool_tests
