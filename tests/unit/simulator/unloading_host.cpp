// A host that loads the simulator, captures, stops and unloads it, over and over. A thread that still ran in it, or
// comes back to it, would crash the process.
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <thread>

#include "brenvozulta_simulator/control.h"
#include "driver/driver.h"
#include "system.h"

namespace {

std::atomic<bool> parks{false};
std::atomic<int> inside{0};
std::atomic<int> left{0};

std::int32_t acquire(const std::uint8_t*, std::uint16_t, std::uint16_t, void*)
{
    ++inside;
    while (parks) {
        std::this_thread::yield();
    }
    ++left;
    return 0;
}

void await(const std::atomic<int>& number, int value)
{
    while (number < value) {
        std::this_thread::yield();
    }
}

template <class Function>
Function* function(void* library, const char* name, Function*)
{
    return reinterpret_cast<Function*>(simulator_test::symbol_of(library, name));
}

#define FUNCTION(name) const auto sim_##name = function(library, #name, static_cast<decltype(name)*>(nullptr))

enum class Round { drawing, delivering, parked };

bool run(const char* path, Round round)
{
    void* const library = simulator_test::load_library(path);
    if (library == nullptr) {
        return false;
    }
    FUNCTION(brenvozulta_sim_reset);
    FUNCTION(brenvozulta_sim_set_frame_rate);
    FUNCTION(brenvozulta_sim_set_stop_patience);
    FUNCTION(brenvozulta_sim_set_capture_config);
    FUNCTION(QXDR_Initialize);
    FUNCTION(QXDR_OpenDevice);
    FUNCTION(QXDR_SetCallbackAcquisition);
    FUNCTION(QXDR_StartCapture);
    FUNCTION(QXDR_StopCapture);
    FUNCTION(QXDR_Release);
    sim_brenvozulta_sim_reset();
    sim_brenvozulta_sim_set_frame_rate(1000);
    sim_brenvozulta_sim_set_stop_patience(1);
    if (round != Round::drawing) {
        sim_brenvozulta_sim_set_capture_config(1, "small", 8, 8);
    }
    inside = 0;
    left = 0;
    parks = round == Round::parked;
    void* handle = nullptr;
    std::uint32_t result = sim_QXDR_Initialize() | sim_QXDR_OpenDevice(BRENVOZULTA_SIM_DEFAULT_SCANNER, &handle) |
                           sim_QXDR_SetCallbackAcquisition(acquire, nullptr) | sim_QXDR_StartCapture(handle);
    if (round != Round::drawing) {
        await(inside, 1);
    }
    result |= sim_QXDR_StopCapture(handle) | sim_QXDR_Release();
    simulator_test::unload_library(library);
    if (round == Round::parked) {
        parks = false;
        await(left, 1);
    }
    return result == 0;
}

}  // namespace

int main(int count, char** arguments)
{
    for (int i = 0; i < 30 && count == 2; ++i) {
        if (!run(arguments[1], static_cast<Round>(i % 3))) {
            std::fprintf(stderr, "round %d failed\n", i);
            return 1;
        }
    }
    return count == 2 ? 0 : 2;
}
