// The way of an image through the library in one thread.
#include <brenvozulta_simulator/control.h>
#include <windows.h>

#include <cstdint>
#include <stdexcept>

#include "image.h"
#include "mutex_pair.h"
#include "resident_memory.h"
#include "scanners.h"
#include "turn.h"
#include "vyra/vyra.h"

namespace {

void move_image(std::uint8_t* buffer, std::uint16_t width, std::uint16_t height)
{
    static std::uint64_t number = 0;
    ++number;
    void* filled = nullptr;
    std::uint64_t context = 0;
    const std::int32_t submitted = VyraSubmitVideoRequest(streaming_scanner, buffer, number);
    static const brenvozulta_sim_acquisition callback = brenvozulta_sim_callback();
    static void* const device = brenvozulta_sim_callback_context();
    const std::int32_t delivered = callback(driver_image(), width, height, device);
    const std::int32_t fetched = VyraGetVideoResult(streaming_scanner, &filled, &context);
    if (submitted != VYRA_OK || delivered != 0 || fetched != VYRA_OK || filled != buffer || context != number) {
        throw std::runtime_error("an image did not come through");
    }
}

double library_image()
{
    const Running_video video;
    return microseconds_each([] { move_image(host_buffer(0), image_width, image_height); });
}

// Video runs here too: it keeps a processor busy.
double bare_image()
{
    const Running_video video;
    return microseconds_each([] { copy_image(host_buffer(0)); });
}

double bookkeeping()
{
    const Running_video video;
    return nanoseconds_each([] { move_image(host_buffer(0), 8, 8); });
}

// Of a host that streams a million images.
double memory_growth()
{
    const std::size_t images = pieces_of_turn(1'000'000);
    const Running_video video;
    const auto move = [](std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            move_image(host_buffer(0), 8, 8);
        }
    };
    move(images / 2);  // what the first ones need is kept
    const std::size_t before = resident_bytes();
    move(images);
    const std::size_t after = resident_bytes();
    return after < before ? 0 : static_cast<double>(after - before) / 1024;
}

}  // namespace

std::vector<Figure> frame_figures()
{
    return {
        {"submit, callback, result of 1,608,000 bytes",
         "us",
         1.02,
         {"", library_image},
         "memcpy",
         {{"memcpy", bare_image}}},
        {"submit, fill of 64 bytes, result", "ns", 16, {"", bookkeeping}, mutex_pair.name, {mutex_pair}},
        {"memory that a million images leave", "KiB", 1024, {"", memory_growth}, "", {}},
    };
}
