// The C++ objects against the simulated scanner.
#include <array>
#include <chrono>
#include <future>
#include <optional>
#include <vector>

#include "sdk/wrapper_stage.h"
#include "vyra/loader.h"

namespace {

using namespace std::chrono_literals;
using test_support::default_scanner;
using test_support::other_scanner;
using test_support::patience;
using test_support::patience_ms;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::size_t flat_bytes = vyra::size_of(vyra::mode::flat).bytes();

class Wrapper_test : public test_support::Wrapper_stage {};

TEST_F(Wrapper_test, image_is_a_view_of_the_hosts_buffer)
{
    Memory memory(2 * flat_bytes);
    vyra::library library;
    vyra::scanner scanner(library, default_scanner);
    vyra::video video(scanner, vyra::mode::flat);
    video.submit_all(memory.data(), memory.size());
    for (std::uint8_t grey = 1; grey <= 5; ++grey) {
        deliver(grey);
        const auto image = video.wait(patience);
        ASSERT_TRUE(image);
        const std::size_t buffer = (grey - 1) % 2;
        EXPECT_EQ(image->context, buffer);
        EXPECT_EQ(image->pixels, memory.data() + buffer * flat_bytes);
        EXPECT_EQ(image->size.width, 1600U);
        EXPECT_EQ(image->size.height, 1500U);
        EXPECT_EQ(image->pixels[flat_bytes - 1], grey);
        video.submit(*image);
    }
}

TEST_F(Wrapper_test, nothing_is_left_when_the_objects_have_ended)
{
    Memory memory(flat_bytes);
    {
        vyra::library library;
        vyra::scanner scanner(library, default_scanner);
        vyra::video video(scanner, vyra::mode::flat);
        video.submit_all(memory.data(), memory.size());
        EXPECT_EQ(brenvozulta_sim_is_capturing(default_scanner), 1);
    }
    EXPECT_EQ(brenvozulta_sim_is_capturing(default_scanner), 0);
    EXPECT_EQ(brenvozulta_sim_is_open(default_scanner), 0);
    std::uint32_t handle = 0;
    EXPECT_EQ(VyraOpenDevice(default_scanner, &handle), VYRA_NOT_INITIALIZED);
    vyra::library again;  // the cycle may begin anew
    EXPECT_THAT(again.scanners(), ElementsAre(default_scanner));
}

TEST_F(Wrapper_test, empty_bus_is_an_empty_list)
{
    brenvozulta_sim_remove_all();
    vyra::library library;
    EXPECT_THAT(library.scanners(), IsEmpty());
}

TEST_F(Wrapper_test, failures_have_the_status_and_name_what_failed)
{
    vyra::library library;
    try {
        vyra::scanner scanner(library, "nobody");
        FAIL() << "opened";
    } catch (const vyra::error& error) {
        EXPECT_EQ(error.code(), VYRA_DEVICE_UNAVAIL);
        EXPECT_THAT(error.what(),
                    ::testing::StartsWith("cannot open \"nobody\": 9005 VYRA_DEVICE_UNAVAIL (the scanner is not"));
    }
    brenvozulta_sim_fail("QXDR_SelectCaptureConfig", 6, BRENVOZULTA_SIM_ALWAYS);
    vyra::scanner scanner(library, default_scanner);
    EXPECT_EQ(code_of([&] { vyra::video video(scanner, vyra::mode::roll); }), VYRA_CAPTURE_CONFIG);
}

TEST_F(Wrapper_test, failed_initialization_leaves_the_library_free_for_the_next)
{
    brenvozulta_sim_fail("QXDR_GetDevicesList", 18, 1);
    EXPECT_EQ(code_of([] { vyra::library library; }), VYRA_SCN_UNAVAILABLE);
    vyra::library library;
    EXPECT_THROW(vyra::library second, std::logic_error);
    EXPECT_THAT(library.scanners(), ElementsAre(default_scanner));
}

TEST_F(Wrapper_test, wait_ends_with_its_time_and_with_a_stop)
{
    Memory memory(flat_bytes);
    vyra::library library;
    vyra::scanner scanner(library, default_scanner);
    vyra::video video(scanner, vyra::mode::flat);
    video.submit_all(memory.data(), memory.size());
    EXPECT_FALSE(video.wait(0ms));
    EXPECT_FALSE(video.wait(20ms));
    vyra::stop_signal stop;
    auto waiting = std::async(std::launch::async, [&] { return video.wait(std::chrono::milliseconds::max(), stop); });
    stop.request();
    ASSERT_EQ(waiting.wait_for(patience), std::future_status::ready);
    EXPECT_FALSE(waiting.get());
}

TEST_F(Wrapper_test, unplugged_scanner_ends_the_wait_with_an_error_of_its_own)
{
    Memory memory(2 * flat_bytes);
    vyra::library library;
    {
        vyra::scanner scanner(library, "rq7-3050 #1");
        vyra::video video(scanner, vyra::mode::flat);
        video.submit_all(memory.data(), memory.size());
        deliver(1);
        unplug();
        EXPECT_TRUE(scanner.is_unplugged());
        EXPECT_TRUE(video.wait(0ms)) << "the image that came before";
        EXPECT_THROW(video.wait(patience), vyra::unplugged);
    }
    ASSERT_EQ(brenvozulta_sim_plug(default_scanner), 1);
    vyra::scanner scanner(library, default_scanner);
    EXPECT_FALSE(scanner.is_unplugged());
    vyra::video video(scanner, vyra::mode::flat);
}

TEST_F(Wrapper_test, refused_stop_closes_the_scanner)
{
    Memory memory(flat_bytes);
    vyra::library library;
    vyra::scanner scanner(library, default_scanner);
    {
        vyra::video video(scanner, vyra::mode::flat);
        video.submit_all(memory.data(), memory.size());
        brenvozulta_sim_fail("QXDR_StopCapture", 19, 1);
    }
    EXPECT_EQ(scanner.handle(), VYRA_NO_HANDLE);
    EXPECT_EQ(brenvozulta_sim_is_open(default_scanner), 0);
}

TEST_F(Wrapper_test, waits_that_could_not_end_are_refused)
{
    ASSERT_EQ(brenvozulta_sim_attach(other_scanner), 1);
    Memory memory(flat_bytes);
    vyra::library library;
    vyra::scanner scanner(library, default_scanner);
    vyra::video video(scanner, vyra::mode::flat);
    EXPECT_THROW(video.wait(patience), std::logic_error) << "no buffer";
    EXPECT_THROW(video.submit(memory.data(), flat_bytes - 1), std::invalid_argument);
    EXPECT_THROW(video.submit(nullptr, flat_bytes), std::invalid_argument);
    EXPECT_THROW(video.submit_all(memory.data(), flat_bytes - 1), std::invalid_argument);
    video.submit_all(memory.data(), memory.size());
    {
        vyra::scanner last(library, other_scanner);
        EXPECT_THROW(video.wait(patience), std::logic_error) << "silenced";
    }
    EXPECT_THROW(video.wait(patience), std::logic_error) << "the close of the other does not help";
}

TEST_F(Wrapper_test, second_video_and_video_of_a_silenced_scanner_are_refused)
{
    ASSERT_EQ(brenvozulta_sim_attach(other_scanner), 1);
    vyra::library library;
    vyra::scanner scanner(library, default_scanner);
    {
        vyra::video video(scanner, vyra::mode::flat);
        EXPECT_THROW(vyra::video(scanner, vyra::mode::roll), std::logic_error);
        vyra::scanner next(library, other_scanner);
        EXPECT_THROW(vyra::video(next, vyra::mode::roll), std::logic_error) << "flat images would come to its buffers";
    }
    vyra::scanner last(library, other_scanner);
    EXPECT_THROW(vyra::video(scanner, vyra::mode::flat), std::logic_error);
    vyra::video video(last, vyra::mode::flat);
}

TEST_F(Wrapper_test, scanner_is_not_displaced_by_an_open)
{
    ASSERT_EQ(brenvozulta_sim_attach(other_scanner), 1);
    vyra::library library;
    std::optional<vyra::scanner> first(std::in_place, library, default_scanner);
    vyra::scanner second(library, other_scanner);
    first.reset();
    EXPECT_THROW(first.emplace(library, default_scanner), std::logic_error);
    EXPECT_STREQ(second.info().model, "RQ7-3050") << "it still has its handle";
    second.close();
    first.emplace(library, default_scanner);
    EXPECT_EQ(first->handle(), 0U);
}

TEST_F(Wrapper_test, identity_and_feedback_reach_the_scanner)
{
    vyra::library library;
    vyra::scanner scanner(library, default_scanner);
    EXPECT_STREQ(scanner.info().manufacturer, "ORVANE");
    EXPECT_TRUE(scanner.can_roll());
    DevUI leds = {};
    leds.group_c_on = 1;
    leds.group_c[0] = VYRA_LED_LIT_2;
    scanner.show(leds);
    brenvozulta_sim_leds shown = {};
    ASSERT_EQ(brenvozulta_sim_led_state(default_scanner, 1, &shown), 1);
    EXPECT_EQ(shown.pattern, 0x12U);
    EXPECT_EQ(code_of([&] { scanner.play(static_cast<vyra::tone>(4)); }), VYRA_BAD_PARAMETER);
    brenvozulta_sim_fail("QXDR_SetLeds", 7, 1);
    leds.group_c[0] = VYRA_LED_OFF;
    EXPECT_EQ(code_of([&] { scanner.show(leds); }), 7) << "the driver's own number";
}

TEST_F(Wrapper_test, serves_a_host_that_loads_the_library)
{
    VyraFunctions functions;
    VyraLoadReport report;
    ASSERT_EQ(VyraLoad(LIBRARY_FILE, &functions, &report), VYRA_LOADED) << report.message;
    Memory memory(flat_bytes);
    vyra::library library(functions);
    vyra::scanner scanner(library, library.scanners().at(0));
    vyra::video video(scanner, vyra::mode::flat);
    video.submit_all(memory.data(), memory.size());
    deliver(9);
    EXPECT_TRUE(video.wait(patience));
    EXPECT_EQ(memory.front(), 9);
}

}  // namespace
