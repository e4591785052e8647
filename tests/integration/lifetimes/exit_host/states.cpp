#include "states.h"

#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

#include "brenvozulta_simulator/control.h"
#include "halting_buffer.h"
#include "vyra/notify.h"
#include "vyra/vyra.h"

namespace exit_host {

char notifier_class[] = "EXIT_HOST";

namespace {

constexpr std::uint32_t patience_ms = 20'000;

bool initialize()
{
    return VyraInitialize_N(nullptr, 0, 0) == VYRA_OK;
}

bool open()
{
    std::uint32_t handle = VYRA_NO_HANDLE;
    return initialize() && VyraOpenDevice(BRENVOZULTA_SIM_DEFAULT_SCANNER, &handle) == VYRA_OK && handle == 0;
}

bool start_video()
{
    return open() && VyraBrenvoStartVideo(0, 1, 0) == VYRA_OK;
}

// Never destroyed: the library writes to it until the clean-up, which comes after the destructor of a static object
// here.
std::uint8_t* new_buffer(std::size_t size)
{
    static auto* const buffers = new std::vector<std::vector<std::uint8_t>>;
    return buffers->emplace_back(size).data();
}

// Images come as fast as they can be drawn, and are being drawn, delivered and copied.
bool run_video()
{
    constexpr std::uint32_t width = 1600;
    constexpr std::uint32_t height = 1500;
    brenvozulta_sim_set_capture_config(1, "flat", width, height);
    brenvozulta_sim_set_frame_rate(1000);
    bool running = start_video();
    for (std::uint32_t i = 0; running && i < VYRA_MAX_VIDEO_REQUESTS; ++i) {
        running = VyraSubmitVideoRequest(0, new_buffer(width * height), 0) == VYRA_OK;
    }
    return running && brenvozulta_sim_wait_callbacks_returned(1, patience_ms) != 0;
}

// The acquisition thread is inside the copy of an image.
bool copy_an_image()
{
    constexpr std::uint16_t side = 100;
    const std::vector<std::uint8_t> pixels(std::size_t{side} * side, 1);
    brenvozulta_sim_set_frame_rate(0);
    if (!start_video() || VyraSubmitVideoRequest(0, halting_buffer(pixels.size()), 0) != VYRA_OK) {
        return false;
    }
    brenvozulta_sim_image image = {};
    image.pixels = pixels.data();
    image.length = pixels.size();
    image.width = side;
    image.height = side;
    return brenvozulta_sim_deliver_async(&image) != 0 && wait_until_halted();
}

// Two threads wait for a change, and the acquisition thread for a request.
bool wait_everywhere()
{
    static std::atomic<int> waiting{0};
    if (!start_video() || brenvozulta_sim_wait_callbacks_inside(1, patience_ms) == 0) {
        return false;
    }
    for (int i = 0; i < 2; ++i) {
        std::thread([] {
            ++waiting;
            VyraGetStatus(0);
        }).detach();
    }
    while (waiting < 2) {
        std::this_thread::yield();
    }
    return true;
}

bool start_notifier()
{
    return InitUsbNotifier(notifier_class);
}

}  // namespace

const std::map<std::string, bool (*)()> states = {
    {"initialized", initialize},  {"open", open},
    {"video", run_video},         {"copying", copy_an_image},
    {"waiting", wait_everywhere}, {"notifier", start_notifier},
};

}  // namespace exit_host
