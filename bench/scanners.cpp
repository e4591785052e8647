#include "scanners.h"

#include <brenvozulta_simulator/control.h>

#include <stdexcept>
#include <string>

#include "vyra/vyra.h"

void check(const char* call, std::int32_t status)
{
    if (status != VYRA_OK) {
        throw std::runtime_error(std::string(call) + " returned " + std::to_string(status));
    }
}

Open_scanners::Open_scanners()
{
    brenvozulta_sim_reset();
    brenvozulta_sim_set_idle_stop_result(19);  // a start without a pause
    brenvozulta_sim_set_frame_rate(0);         // the benchmark delivers the images itself
    brenvozulta_sim_remove_all();
    for (std::uint32_t number = 0; number < VYRA_MAX_SCANNERS; ++number) {
        brenvozulta_sim_attach(("bench " + std::to_string(number)).c_str());
    }
    check("VyraInitialize_N", VyraInitialize_N(nullptr, 0, 0));
    for (std::uint32_t number = 0; number < VYRA_MAX_SCANNERS; ++number) {
        std::uint32_t handle = VYRA_NO_HANDLE;
        check("VyraOpenDevice", VyraOpenDevice(("bench " + std::to_string(number)).c_str(), &handle));
        if (handle != number) {
            throw std::runtime_error("scanner " + std::to_string(number) + " has handle " + std::to_string(handle));
        }
    }
}

Open_scanners::~Open_scanners()
{
    for (std::uint32_t handle = VYRA_MAX_SCANNERS; handle-- > 0;) {
        VyraCloseDevice_N(handle);
    }
    VyraTerminate();
}

Running_video::Running_video()
{
    constexpr std::uint32_t roll_mode = 0;
    check("VyraBrenvoStartVideo", VyraBrenvoStartVideo(streaming_scanner, roll_mode, 0));
}

Running_video::~Running_video()
{
    VyraStopVideo(streaming_scanner);
}
