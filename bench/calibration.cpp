// The calibration image copied out of the library, beside the copy alone.
#include <benchmark/benchmark.h>
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "comparison.h"
#include "scanners.h"
#include "vyra/vyra.h"

namespace {

std::vector<std::uint8_t>& host_buffer()
{
    static std::vector<std::uint8_t> pixels(VYRA_CALIBRATION_SIZE);
    return pixels;
}

const void* embedded_image()
{
    const HMODULE module = GetModuleHandleA("vyrabrenvozulta.dll");
    const HRSRC resource = FindResourceA(module, MAKEINTRESOURCEA(101), "image_raw");
    if (resource == nullptr || SizeofResource(module, resource) != VYRA_CALIBRATION_SIZE) {
        throw std::runtime_error("the calibration image is not embedded");
    }
    return LockResource(LoadResource(module, resource));
}

}  // namespace

void read_uniformity_buffers(benchmark::State& state)
{
    std::vector<std::uint8_t>& buffer = host_buffer();
    for (auto _ : state) {
        if (VyraBrenvoZultaReadUniformityBuffers(some_scanner, buffer.data(), VYRA_CALIBRATION_SIZE) != VYRA_OK) {
            state.SkipWithError("the calibration image was refused");
            break;
        }
        benchmark::ClobberMemory();
    }
}

void calibration_copy(benchmark::State& state)
{
    const void* const image = embedded_image();
    std::vector<std::uint8_t>& buffer = host_buffer();
    for (auto _ : state) {
        std::memcpy(buffer.data(), image, VYRA_CALIBRATION_SIZE);
        benchmark::ClobberMemory();
    }
}
