// A host that ends while three scanners capture, one of them inside the host: a library that stops them when the
// process ends, when the system may have ended the acquisition threads already, is not to wait for ever.
#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

#include "brenvozulta_simulator/control.h"
#include "driver/driver.h"
#include "late_caller.h"

namespace {

std::atomic<int> entered{0};

std::int32_t acquire(const std::uint8_t*, std::uint16_t width, std::uint16_t, void*)
{
    ++entered;
    while (width == 9) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
    return 0;
}

void* start(const char* scanner, std::uint8_t config)
{
    void* handle = nullptr;
    brenvozulta_sim_attach(scanner);
    const std::uint32_t result = QXDR_OpenDevice(scanner, &handle) | QXDR_SetCallbackAcquisition(acquire, nullptr) |
                                 QXDR_SelectCaptureConfig(handle, config) | QXDR_StartCapture(handle);
    return result == 0 ? handle : nullptr;
}

}  // namespace

int main()
{
    brenvozulta_sim_set_frame_rate(1000);
    brenvozulta_sim_set_capture_config(5, "fast", 8, 8);
    brenvozulta_sim_set_capture_config(6, "parked", 9, 8);
    brenvozulta_sim_set_capture_config(7, "drawn for long", 4000, 3000);
    if (QXDR_Initialize() != 0 || start("fast", 5) == nullptr || start("parked", 6) == nullptr) {
        return 1;
    }
    while (entered < 10) {
        std::this_thread::yield();
    }
    void* const drawn = start("drawn", 7);
    if (drawn == nullptr) {
        return 1;
    }
    call_at_the_end(drawn);
    return 0;
}
