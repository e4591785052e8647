// One image from the driver's callback to the host, beside the copy alone.
#include <benchmark/benchmark.h>
#include <brenvozulta_simulator/control.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "comparison.h"
#include "scanners.h"
#include "vyra/vyra.h"

namespace {

constexpr std::uint16_t width = 1608;
constexpr std::uint16_t height = 1000;
constexpr std::uint32_t roll_mode = 0;

// The same pair for both sides: where memory lies decides how fast it is copied.
std::vector<std::uint8_t>& driver_image()
{
    static std::vector<std::uint8_t> pixels(std::size_t{width} * height, 0x5A);
    return pixels;
}

std::vector<std::uint8_t>& host_buffer()
{
    static std::vector<std::uint8_t> pixels(std::size_t{width} * height);
    return pixels;
}

// Video also runs while the reference is measured: it keeps a processor busy.
class Running_video {
public:
    Running_video() { check("VyraBrenvoStartVideo", VyraBrenvoStartVideo(streaming_scanner, roll_mode, 0)); }
    ~Running_video() { VyraStopVideo(streaming_scanner); }
    Running_video(const Running_video&) = delete;
    Running_video& operator=(const Running_video&) = delete;
};

}  // namespace

void frame_through_the_queue(benchmark::State& state)
{
    const Running_video video;
    const brenvozulta_sim_acquisition callback = brenvozulta_sim_callback();
    void* const device = brenvozulta_sim_callback_context();
    const std::vector<std::uint8_t>& image = driver_image();
    std::vector<std::uint8_t>& buffer = host_buffer();
    std::uint64_t number = 0;
    for (auto _ : state) {
        ++number;
        void* filled = nullptr;
        std::uint64_t context = 0;
        const std::int32_t submitted = VyraSubmitVideoRequest(streaming_scanner, buffer.data(), number);
        const std::int32_t delivered = callback(image.data(), width, height, device);
        const std::int32_t fetched = VyraGetVideoResult(streaming_scanner, &filled, &context);
        if (submitted != VYRA_OK || delivered != 0 || fetched != VYRA_OK || filled != buffer.data() ||
            context != number) {
            state.SkipWithError("an image did not come through");
            break;
        }
        benchmark::ClobberMemory();
    }
}

void frame_copy(benchmark::State& state)
{
    const Running_video video;
    const std::vector<std::uint8_t>& image = driver_image();
    std::vector<std::uint8_t>& buffer = host_buffer();
    for (auto _ : state) {
        std::memcpy(buffer.data(), image.data(), image.size());
        benchmark::ClobberMemory();
    }
}
