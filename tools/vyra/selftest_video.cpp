// Video: requests, images, and the end of them.
#include <algorithm>
#include <chrono>
#include <thread>

#include "image_size.h"
#include "interrupt.h"
#include "selftest.h"

namespace vyra_tool {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr int rate_images = 6;
constexpr double least_rate = 5.0;

void refuses_while_idle(Test_bench& bench)
{
    std::uint8_t pixel = 0;
    void* buffer = &pixel;
    expect_status("VyraSubmitVideoRequest without video", VyraSubmitVideoRequest(bench.handle, &pixel, 0),
                  VYRA_VIDEO_STOPPED);
    expect_status("VyraGetVideoResult without video", VyraGetVideoResult(bench.handle, &buffer, nullptr),
                  VYRA_VIDEO_STOPPED);
    expect(buffer == nullptr, "VyraGetVideoResult failed and left a buffer");
}

void stops_while_idle(Test_bench& bench)
{
    expect_status("VyraStopVideo without video", VyraStopVideo(bench.handle), VYRA_OK);
}

void refuses_modes(Test_bench& bench)
{
    for (const std::uint32_t mode : {3U, 19U}) {
        expect_status("VyraBrenvoStartVideo in mode " + std::to_string(mode),
                      VyraBrenvoStartVideo(bench.handle, mode, 0), VYRA_BAD_PARAMETER);
    }
}

void starts(Test_bench& bench)
{
    expect_status("VyraBrenvoStartVideo in mode 1", VyraBrenvoStartVideo(bench.handle, VYRA_MODE_FLAT, 0), VYRA_OK);
}

// Prepared buffers for this many requests, and the requests.
void submit(Test_bench& bench, std::size_t count, Image_size size)
{
    bench.buffers.clear();
    for (std::size_t i = 0; i < count; ++i) {
        bench.buffers.emplace_back(size);
        bench.buffers.back().prepare();
        expect_status("VyraSubmitVideoRequest",
                      VyraSubmitVideoRequest(bench.handle, bench.buffers.back().data(), 100 + i), VYRA_OK);
    }
}

void requests_are_limited(Test_bench& bench)
{
    submit(bench, VYRA_MAX_VIDEO_REQUESTS, flat_size);
    std::uint8_t pixel = 0;
    expect_status("the ninth VyraSubmitVideoRequest", VyraSubmitVideoRequest(bench.handle, &pixel, 0),
                  VYRA_TOO_MANY_FRAMES);
    expect_status("VyraSubmitVideoRequest without a buffer", VyraSubmitVideoRequest(bench.handle, nullptr, 0),
                  VYRA_BAD_PARAMETER);
}

struct Fetched {
    void* buffer = nullptr;
    std::uint64_t context = 0;
};

Fetched fetch(const Test_bench& bench)
{
    Fetched image;
    const auto begin = Clock::now();
    int status = VYRA_VIDEO_TIMEOUT;
    while ((status = VyraGetVideoResult(bench.handle, &image.buffer, &image.context)) == VYRA_VIDEO_TIMEOUT) {
        expect(image.buffer == nullptr, "VyraGetVideoResult returned 9106 with a buffer");
        expect(Clock::now() - begin < bench.image_patience, "no image came within " +
                                                                std::to_string(bench.image_patience.count()) +
                                                                " ms (VyraGetVideoResult returned 9106)");
        expect(!interrupted(), "interrupted");
        std::this_thread::sleep_for(1ms);
    }
    expect_status("VyraGetVideoResult", status, VYRA_OK);
    return image;
}

void delivers(Test_bench& bench)
{
    fetch(bench);
}

void order_of_results(Test_bench& bench)
{
    // The first one was fetched when it came.
    for (std::size_t i = 1; i < 3; ++i) {
        const Fetched image = fetch(bench);
        expect(image.buffer == bench.buffers[i].data() && image.context == 100 + i,
               "request " + std::to_string(i + 1) + " came back with another buffer or value");
    }
}

void size_of_images(Test_bench& bench)
{
    for (std::size_t i = 0; i < 3; ++i) {
        const Frame_buffer::Fit fit = bench.buffers[i].fit();
        expect(fit == Frame_buffer::Fit::exact, std::string("an image is ") +
                                                    (fit == Frame_buffer::Fit::smaller ? "smaller" : "larger") +
                                                    " than " + text_of(flat_size));
    }
}

void images_show_something(Test_bench& bench)
{
    const std::uint8_t* const pixels = bench.buffers[0].data();
    const auto [darkest, brightest] = std::minmax_element(pixels, pixels + VYRA_FLAT_SIZE);
    expect(*brightest - *darkest > 8, "an image is of one grey, " + std::to_string(*darkest));
}

void images_live(Test_bench& bench)
{
    const std::uint8_t* const first = bench.buffers[0].data();
    const auto same = [&](std::size_t i) { return std::equal(first, first + VYRA_FLAT_SIZE, bench.buffers[i].data()); };
    expect(!same(1) || !same(2), "three images in a row are the same to the last bit");
}

void rate_of_images(Test_bench& bench)
{
    // Images that are ready already tell nothing of the rate.
    Fetched image;
    for (std::size_t i = 3; i < VYRA_MAX_VIDEO_REQUESTS; ++i) {
        image = fetch(bench);
    }
    const auto begin = Clock::now();
    for (int i = 0; i < rate_images; ++i) {
        expect_status("VyraSubmitVideoRequest", VyraSubmitVideoRequest(bench.handle, image.buffer, 0), VYRA_OK);
        image = fetch(bench);
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    const double rate = rate_images / seconds;
    expect(rate >= least_rate, "only " + std::to_string(rate).substr(0, 4) + " images a second come");
}

void start_drops_requests(Test_bench& bench)
{
    expect_status("VyraBrenvoStartVideo of a running video", VyraBrenvoStartVideo(bench.handle, VYRA_MODE_FLAT, 0),
                  VYRA_OK);
    void* buffer = nullptr;
    expect_status("VyraGetVideoResult after another start", VyraGetVideoResult(bench.handle, &buffer, nullptr),
                  VYRA_VIDEO_TIMEOUT);
}

void stops(Test_bench& bench)
{
    submit(bench, 2, flat_size);
    expect_status("VyraStopVideo", VyraStopVideo(bench.handle), VYRA_OK);
}

void stopped_is_stopped(Test_bench& bench)
{
    for (Frame_buffer& buffer : bench.buffers) {
        buffer.prepare();  // anew, to see whether something is written yet
    }
    std::vector<std::vector<std::uint8_t>> before;
    for (Frame_buffer& buffer : bench.buffers) {
        before.emplace_back(buffer.data(), buffer.data() + VYRA_FLAT_SIZE);
    }
    refuses_while_idle(bench);
    std::this_thread::sleep_for(bench.image_patience / 10);
    for (std::size_t i = 0; i < before.size(); ++i) {
        expect(std::equal(before[i].begin(), before[i].end(), bench.buffers[i].data()),
               "a buffer was written after VyraStopVideo had returned");
    }
}

void starts_again(Test_bench& bench)
{
    expect_status("VyraBrenvoZultaStartCamera", VyraBrenvoZultaStartCamera(bench.handle), VYRA_OK);
    submit(bench, 1, flat_size);
    fetch(bench);
    expect_status("VyraStopVideo", VyraStopVideo(bench.handle), VYRA_OK);
}

void rolls(Test_bench& bench)
{
    const int status = VyraBrenvoStartVideo(bench.handle, VYRA_MODE_ROLL, 0);
    if (!bench.roll) {
        VyraStopVideo(bench.handle);
        expect_status("VyraBrenvoStartVideo in mode 0 of a scanner without rolled fingers", status,
                      VYRA_CAPTURE_CONFIG);
        return;
    }
    expect_status("VyraBrenvoStartVideo in mode 0", status, VYRA_OK);
    submit(bench, 1, roll_size);
    fetch(bench);
    expect_status("VyraStopVideo", VyraStopVideo(bench.handle), VYRA_OK);
}

void size_of_rolled_images(Test_bench& bench)
{
    if (!bench.roll) {
        throw Not_applicable("the scanner does not capture rolled fingers");
    }
    expect(bench.buffers[0].fit() == Frame_buffer::Fit::exact, "a rolled image is not of " + text_of(roll_size));
}

}  // namespace

std::vector<Check> video_checks()
{
    return {
        {"video-idle",
         "Requests and results without video return 9105",
         "a host waits for images that cannot come",
         {"open"},
         refuses_while_idle},
        {"stop-idle",
         "VyraStopVideo without video returns 0",
         "hosts that stop once too often show an error to their user",
         {"open"},
         stops_while_idle},
        {"video-modes",
         "Modes 3 and 19 are refused (9109)",
         "a host starts a capture that it did not mean",
         {"open"},
         refuses_modes},
        {"video-start",
         "VyraBrenvoStartVideo starts a flat capture",
         "no images: the scanner or its driver refuses to capture",
         {"open"},
         starts},
        {"video-requests",
         "Eight requests are taken, the ninth (9104) and a null buffer (9109) refused",
         "a host loses buffers, or its memory is overwritten",
         {"video-start"},
         requests_are_limited},
        {"video-delivers",
         "An image comes while a request waits",
         "a host waits for ever: the scanner captures nothing; look at its cable and its port",
         {"video-requests"},
         delivers},
        {"video-order",
         "Buffers come back in the order of the requests, with their values",
         "a host shows images in the wrong order or under the wrong name",
         {"video-delivers"},
         order_of_results},
        {"image-size",
         "Flat images have 1600 x 1500 pixels",
         "images are askew, or the memory of hosts is overwritten: firmware and driver do not fit",
         {"video-order"},
         size_of_images},
        {"image-content",
         "An image is not of one grey",
         "the sensor or the light is dark, or covered",
         {"image-size"},
         images_show_something},
        {"image-live",
         "Of three images not all are the same",
         "the picture is frozen: the scanner sends an old image again and again",
         {"image-content"},
         images_live},
        {"image-rate",
         "At least 5 images come in a second",
         "previews jerk and captures take long: a slow port, a busy computer or a failing scanner",
         {"image-size"},
         rate_of_images},
        {"video-restart",
         "A start of running video drops the requests before it",
         "buffers of an earlier capture are written during the next",
         {"video-order"},
         start_drops_requests},
    };
}

std::vector<Check> stop_checks()
{
    return {
        {"video-stop",
         "VyraStopVideo stops it",
         "the scanner goes on capturing: its light stays on and the next start may be refused",
         {"video-restart"},
         stops},
        {"video-stopped",
         "After VyraStopVideo nothing is written into the host's buffers",
         "freed memory of a host is overwritten",
         {"video-stop"},
         stopped_is_stopped},
        {"video-start-again",
         "VyraBrenvoZultaStartCamera starts it again",
         "one capture a session",
         {"video-stop"},
         starts_again},
        {"video-roll",
         "Rolled fingers are captured, or refused (9114) where they are not supported",
         "a host that offers rolled fingers gets none, or others",
         {"video-start-again", "roll-support"},
         rolls},
        {"image-size-roll",
         "Rolled images have 1608 x 1000 pixels",
         "images are askew, or the memory of hosts is overwritten",
         {"video-roll"},
         size_of_rolled_images},
    };
}

}  // namespace vyra_tool
