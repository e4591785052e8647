// The calibration image copied out of the library, beside the copy alone.
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "figure.h"
#include "scanners.h"
#include "turn.h"
#include "vyra/vyra.h"

namespace {

std::vector<std::uint8_t>& host_pixels()
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

double library_copy()
{
    return microseconds_each([] {
        check("VyraBrenvoZultaReadUniformityBuffers",
              VyraBrenvoZultaReadUniformityBuffers(some_scanner, host_pixels().data(), VYRA_CALIBRATION_SIZE));
    });
}

double bare_copy_of_it()
{
    const void* const image = embedded_image();
    return microseconds_each([image] {
        std::memcpy(host_pixels().data(), image, VYRA_CALIBRATION_SIZE);
        keep(host_pixels());
    });
}

}  // namespace

std::vector<Figure> calibration_figures()
{
    LoadLibraryA("vyrabrenvozulta.dll");  // on Windows the image lies in the library's own file
    return {{"calibration image", "us", 1.02, {"", library_copy}, "memcpy", {{"memcpy", bare_copy_of_it}}}};
}
