// A process that lives until it has an image: of the library, or of the driver alone by the calls that the library
// makes of it. Prints the moment, on the clock that the system's processes share.
//
//     first_image library|driver
#include <brenvozulta_simulator/control.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "driver/driver.h"
#include "image.h"
#include "vyra/vyra.h"

namespace {

constexpr char scanner[] = BRENVOZULTA_SIM_DEFAULT_SCANNER;

void deliver()
{
    brenvozulta_sim_callback()(driver_image(), image_width, image_height, brenvozulta_sim_callback_context());
}

std::int32_t take_image(const std::uint8_t* image, std::uint16_t, std::uint16_t, void*)
{
    std::memcpy(host_buffer(0), image, image_size);
    return 0;
}

void ignore(std::int32_t, void*) {}

bool image_of_driver()
{
    DriverDeviceEntry entries[driver_list_capacity] = {};
    std::int32_t count = driver_list_capacity;
    void* handle = nullptr;
    const bool started = QXDR_Initialize() == driver_ok && QXDR_GetDevicesList(&count, entries) == driver_ok &&
                         QXDR_SetListenerCallbackHotPlug(ignore) == driver_ok &&
                         QXDR_OpenDevice(scanner, &handle) == driver_ok &&
                         QXDR_SetCallbackAcquisition(take_image, nullptr) == driver_ok &&
                         QXDR_SetLeds(handle, 0, 0, 0, 0) == driver_ok && QXDR_StopCapture(handle) != driver_ok &&
                         QXDR_SelectCaptureConfig(handle, 13) == driver_ok && QXDR_StartCapture(handle) == driver_ok;
    if (started) {
        deliver();
    }
    return started;
}

bool image_of_library()
{
    std::uint32_t handle = 0;
    void* filled = nullptr;
    const bool started = VyraInitialize_N(nullptr, 0, 0) == VYRA_OK && VyraOpenDevice(scanner, &handle) == VYRA_OK &&
                         VyraBrenvoStartVideo(handle, 0, 0) == VYRA_OK &&
                         VyraSubmitVideoRequest(handle, host_buffer(0), 0) == VYRA_OK;
    if (started) {
        deliver();
    }
    return started && VyraGetVideoResult(handle, &filled, nullptr) == VYRA_OK;
}

}  // namespace

int main(int argc, char** argv)
{
    brenvozulta_sim_set_idle_stop_result(19);  // a start without a pause
    brenvozulta_sim_set_frame_rate(0);         // the image is delivered here
    const bool by_library = argc == 2 && std::string(argv[1]) == "library";
    if (!(by_library ? image_of_library() : image_of_driver())) {
        return EXIT_FAILURE;
    }
    std::printf("%lld\n", static_cast<long long>(std::chrono::steady_clock::now().time_since_epoch().count()));
    std::fflush(stdout);
    std::_Exit(EXIT_SUCCESS);  // how it ends is not what is measured
}
