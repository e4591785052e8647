#include "driver_stage.h"

#include <filesystem>
#include <fstream>

namespace simulator_test {
namespace {

// Guards everything below; nothing is taken inside.
std::mutex lock;
std::condition_variable changed;
bool parked = false;
std::vector<Received_image> received_images;
std::function<bool(const Received_event&)> held_event;
std::vector<Received_event> received_events;

}  // namespace

void Driver_test::SetUp()
{
    brenvozulta_sim_reset();
    brenvozulta_sim_set_frame_rate(0);
    Host::reset();
    Listener::reset();
}

void Driver_test::TearDown()
{
    Host::release();
    Listener::release();
    brenvozulta_sim_reset();
    EXPECT_TRUE(brenvozulta_sim_wait_acquisition_threads(0, patience_ms));
}

void* Driver_test::open(const char* name)
{
    void* handle = nullptr;
    EXPECT_EQ(QXDR_OpenDevice(name, &handle), 0U);
    return handle;
}

void* Driver_test::start_capture(const char* name, std::uint8_t config)
{
    void* handle = open(name);
    EXPECT_EQ(QXDR_SetCallbackAcquisition(Host::callback, nullptr), 0U);
    EXPECT_EQ(QXDR_SelectCaptureConfig(handle, config), 0U);
    EXPECT_EQ(QXDR_StartCapture(handle), 0U);
    return handle;
}

void Host::reset()
{
    const std::lock_guard<std::mutex> held(lock);
    parked = false;
    received_images.clear();
}

std::int32_t Host::callback(const std::uint8_t* image, std::uint16_t width, std::uint16_t height, void* context)
{
    std::unique_lock<std::mutex> held(lock);
    Received_image received{{}, width, height, context, brenvozulta_sim_thread_id()};
    if (image != nullptr) {
        received.pixels.assign(image, image + std::size_t{width} * height);
    }
    received_images.push_back(received);
    changed.notify_all();
    changed.wait(held, [] { return !parked; });
    return static_cast<std::int32_t>(received_images.size());
}

void Host::park()
{
    const std::lock_guard<std::mutex> held(lock);
    parked = true;
}

void Host::release()
{
    const std::lock_guard<std::mutex> held(lock);
    parked = false;
    changed.notify_all();
}

std::vector<Received_image> Host::images()
{
    const std::lock_guard<std::mutex> held(lock);
    return received_images;
}

void Listener::reset()
{
    const std::lock_guard<std::mutex> held(lock);
    held_event = nullptr;
    received_events.clear();
}

void Listener::listen(std::int32_t code, void* driver_handle)
{
    std::unique_lock<std::mutex> held(lock);
    const Received_event event{code, driver_handle, brenvozulta_sim_thread_id()};
    received_events.push_back(event);
    changed.wait(held, [&event] { return !held_event || !held_event(event); });
}

void Listener::hold(std::function<bool(const Received_event&)> which)
{
    const std::lock_guard<std::mutex> held(lock);
    held_event = std::move(which);
}

void Listener::release()
{
    const std::lock_guard<std::mutex> held(lock);
    held_event = nullptr;
    changed.notify_all();
}

std::vector<Received_event> Listener::events()
{
    const std::lock_guard<std::mutex> held(lock);
    return received_events;
}

std::vector<std::int32_t> Listener::codes()
{
    std::vector<std::int32_t> codes;
    for (const Received_event& event : events()) {
        codes.push_back(event.code);
    }
    return codes;
}

brenvozulta_sim_image small_image(const std::vector<std::uint8_t>& pixels, std::uint16_t width)
{
    brenvozulta_sim_image image{};
    image.pixels = pixels.data();
    image.length = pixels.size();
    image.width = width;
    image.height = static_cast<std::uint16_t>(pixels.size() / width);
    return image;
}

std::string load_error(const std::string& scenario, const char* source)
{
    char message[512];
    const int loaded = brenvozulta_sim_load_scenario_text(scenario.c_str(), source, message, sizeof message);
    EXPECT_EQ(loaded == 1, message[0] == '\0');
    return message;
}

void load(const std::string& scenario)
{
    ASSERT_EQ(load_error(scenario), "");
}

std::string make_folder()
{
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    const auto folder = std::filesystem::temp_directory_path() /
                        ("simulator_" + std::string(test->test_suite_name()) + "_" + test->name());
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder.u8string();
}

void write_file(const std::string& path, const std::string& content)
{
    std::ofstream(std::filesystem::u8path(path), std::ios::binary) << content;
}

std::string pgm(std::uint16_t width, std::uint16_t height, const std::vector<std::uint8_t>& pixels)
{
    return "P5\n# a comment\n" + std::to_string(width) + " " + std::to_string(height) + "\n255\n" +
           std::string(pixels.begin(), pixels.end());
}

}  // namespace simulator_test
