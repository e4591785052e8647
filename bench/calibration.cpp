// The calibration image copied out of the library, beside the copy alone.
#include <windows.h>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "figure.h"
#include "resident_memory.h"
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

void copy_by_library()
{
    check("VyraBrenvoZultaReadUniformityBuffers",
          VyraBrenvoZultaReadUniformityBuffers(some_scanner, host_pixels().data(), VYRA_CALIBRATION_SIZE));
}

void copy_bare(const void* image)
{
    std::memcpy(host_pixels().data(), image, VYRA_CALIBRATION_SIZE);
    keep(host_pixels());
}

double library_copy()
{
    return microseconds_each(copy_by_library);
}

double bare_copy_of_it()
{
    const void* const image = embedded_image();
    return microseconds_each([image] { copy_bare(image); });
}

// Of a process that has not read the image yet.
template <class Copy>
double first_copy(Copy copy)
{
    const void* const image = embedded_image();
    const std::size_t times = pieces_of_turn(10);
    std::chrono::nanoseconds took(0);
    for (std::size_t i = 0; i < times; ++i) {
        forget_pages(image, VYRA_CALIBRATION_SIZE);
        const auto begin = thread_time();
        copy(image);
        took += thread_time() - begin;
    }
    return std::chrono::duration<double, std::micro>(took).count() / static_cast<double>(times);
}

double library_first_copy()
{
    return first_copy([](const void*) { copy_by_library(); });
}

// What the first copy takes of memory beside the image and the host's buffer.
double memory_of_first_copy()
{
    copy_by_library();
    forget_pages(embedded_image(), VYRA_CALIBRATION_SIZE);
    const std::size_t before = resident_bytes() + VYRA_CALIBRATION_SIZE;
    copy_by_library();
    const std::size_t after = resident_bytes();
    return after < before ? 0 : static_cast<double>(after - before) / 1024;
}

}  // namespace

std::vector<Figure> calibration_figures()
{
    LoadLibraryA("vyrabrenvozulta.dll");  // on Windows the image lies in the library's own file
    const Side bare = {"memcpy", bare_copy_of_it};
    std::vector<Figure> figures = {{"calibration image", "us", 1.02, {"", library_copy}, bare.name, {bare}}};
    if (forget_pages(embedded_image(), VYRA_CALIBRATION_SIZE)) {
        const Side first = {"the first memcpy", [] { return first_copy(copy_bare); }};
        figures.push_back(
            {"calibration image, first call", "us", 1.5, {"", library_first_copy}, first.name, {first, bare}});
        figures.push_back({"calibration image, memory beside it", "KiB", 1024, {"", memory_of_first_copy}, "", {}});
    }
    return figures;
}
