// What a scanner tells of itself, and what it holds.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "image_size.h"
#include "selftest.h"

namespace vyra_tool {
namespace {

constexpr std::uint8_t untouched = 0xC5;
constexpr std::size_t guard = 64;  // bytes behind a buffer that must stay as they are

void reads_identity(Test_bench& bench)
{
    expect_status("VyraBrenvoGetDeviceInfo", VyraBrenvoGetDeviceInfo(bench.handle, &bench.identity), VYRA_OK);
    expect(
        std::strcmp(bench.identity.manufacturer, "ORVANE") == 0 && std::strcmp(bench.identity.model, "RQ7-3050") == 0,
        "it is called \"" + std::string(bench.identity.manufacturer) + " " + bench.identity.model + "\"");
}

void serial_number_is_printable(Test_bench& bench)
{
    const std::string serial = bench.identity.serial_number;
    expect(!serial.empty(), "the serial number is empty");
    expect(std::all_of(serial.begin(), serial.end(), [](char c) { return c > ' ' && c < 0x7F; }),
           "the serial number holds blanks or characters that are not printable");
}

void version_is_readable(Test_bench& bench)
{
    int major = 0;
    int minor = 0;
    char revision = 0;
    char more = 0;
    expect(std::sscanf(bench.identity.version, "%d.%d.%c%c", &major, &minor, &revision, &more) == 3 && major >= 0 &&
               minor >= 0 && revision > ' ' && revision < 0x7F,
           "the version is \"" + std::string(bench.identity.version) + "\", not like 2.5.b");
}

void identity_by_name(Test_bench& bench)
{
    DeviceInfo info{};
    expect_status("VyraBrenvoMGGetDeviceInfo", VyraBrenvoMGGetDeviceInfo(bench.scanner.c_str(), nullptr, &info),
                  VYRA_OK);
    expect(std::strcmp(info.serial_number, bench.identity.serial_number) == 0,
           "by name the serial number is \"" + std::string(info.serial_number) + "\", by handle \"" +
               bench.identity.serial_number + "\"");
}

void identity_of_nobody(Test_bench&)
{
    DeviceInfo info{};
    expect_status("VyraBrenvoMGGetDeviceInfo of an unknown name",
                  VyraBrenvoMGGetDeviceInfo("no scanner has this name", nullptr, &info), VYRA_INTERNAL);
}

void tells_port_type(Test_bench& bench)
{
    std::uint32_t type = 0;
    expect_status("VyraBrenvoZultaGetPortType without a result", VyraBrenvoZultaGetPortType(bench.handle, nullptr),
                  VYRA_BAD_PARAMETER);
    expect_status("VyraBrenvoZultaGetPortType", VyraBrenvoZultaGetPortType(bench.handle, &type), VYRA_OK);
}

void tells_roll_support(Test_bench& bench)
{
    std::uint8_t supported = untouched;
    expect_status("VyraBrenvoZultaIsRollSupported", VyraBrenvoZultaIsRollSupported(bench.handle, &supported), VYRA_OK);
    expect(supported <= 1, "VyraBrenvoZultaIsRollSupported stores " + std::to_string(supported));
    bench.roll = supported == 1;
}

DeviceCapabilities capabilities_of(const Test_bench& bench, std::uint32_t index)
{
    DeviceCapabilities record{};
    expect_status("VyraBrenvoGetCapabilities of index " + std::to_string(index),
                  VyraBrenvoGetCapabilities(bench.handle, index, &record), VYRA_OK);
    return record;
}

void flat_capabilities(Test_bench& bench)
{
    for (const std::uint32_t index : {1U, 2U}) {
        const DeviceCapabilities record = capabilities_of(bench, index);
        expect(record.constant_0 == 1 && record.resolution == VYRA_PIXELS_PER_INCH &&
                   record.image_width == VYRA_FLAT_WIDTH && record.image_height == VYRA_FLAT_HEIGHT,
               "index " + std::to_string(index) + " is not " + text_of(flat_size) + " at 500 per inch");
    }
    for (const std::uint32_t index : {3U, 4U, 5U}) {
        expect(capabilities_of(bench, index).constant_0 == 0, "index " + std::to_string(index) + " has a record");
    }
    DeviceCapabilities record{};
    expect_status("VyraBrenvoGetCapabilities of index 6", VyraBrenvoGetCapabilities(bench.handle, 6, &record),
                  VYRA_BAD_PARAMETER);
}

void roll_capabilities(Test_bench& bench)
{
    const bool described = capabilities_of(bench, 0).constant_0 == 1;
    expect(described == bench.roll, std::string("index 0 has ") + (described ? "a" : "no") +
                                        " record, but VyraBrenvoZultaIsRollSupported says " + (bench.roll ? "1" : "0"));
}

void leds_are_off(Test_bench& bench)
{
    DevUI shown{};
    shown.group_a_on = 1;
    expect_status("VyraBrenvoGetDevUI", VyraBrenvoGetDevUI(bench.handle, &shown), VYRA_OK);
    const DevUI off{};
    expect(std::memcmp(&shown, &off, sizeof off) == 0, "the record of the LEDs is not all zero after opening");
}

void tone_arguments(Test_bench& bench)
{
    expect_status("VyraBrenvoSetBuzzer of pattern 4", VyraBrenvoSetBuzzer(bench.handle, 4, nullptr, nullptr),
                  VYRA_BAD_PARAMETER);
}

void accepted_without_effect(Test_bench& bench)
{
    expect_status("VyraBrenvoZultaSetParameters", VyraBrenvoZultaSetParameters(bench.handle, 1, 1), VYRA_OK);
    expect_status("VyraBrenvoZultaReadFilters", VyraBrenvoZultaReadFilters(bench.handle, nullptr, nullptr, nullptr),
                  VYRA_OK);
}

void tells_container_size(Test_bench& bench)
{
    std::uint32_t size = 0;
    expect_status("VyraBrenvoZultaGetGlobalParamSize", VyraBrenvoZultaGetGlobalParamSize(bench.handle, &size), VYRA_OK);
    expect(size > 0, "the parameter container has no bytes");
    expect(size <= 64U << 20, "the parameter container has " + std::to_string(size) + " bytes");
    bench.container.assign(size + guard, untouched);
}

bool guard_holds(const std::vector<std::uint8_t>& bytes)
{
    return std::all_of(bytes.end() - guard, bytes.end(), [](std::uint8_t byte) { return byte == untouched; });
}

std::vector<std::uint8_t> container(const Test_bench& bench)
{
    std::vector<std::uint8_t> bytes(bench.container.size(), untouched);
    const auto size = static_cast<std::uint32_t>(bytes.size() - guard);
    expect_status("VyraBrenvoZultaReadGlobalParam", VyraBrenvoZultaReadGlobalParam(bench.handle, bytes.data(), size),
                  VYRA_OK);
    expect(guard_holds(bytes), "VyraBrenvoZultaReadGlobalParam wrote behind the size that it was given");
    return bytes;
}

void reads_container(Test_bench& bench)
{
    bench.container = container(bench);
    expect(std::any_of(bench.container.begin(), bench.container.end() - guard,
                       [](std::uint8_t byte) { return byte != untouched; }),
           "VyraBrenvoZultaReadGlobalParam returned 0 and stored nothing");
}

void container_is_stable(Test_bench& bench)
{
    expect(container(bench) == bench.container, "two readings of the parameter container differ");
}

void takes_snapshot(Test_bench& bench)
{
    std::vector<std::uint8_t> pixels(flat_size.bytes() + guard, untouched);
    expect_status(
        "VyraBrenvoZultaGetSnapshotAcquisition",
        VyraBrenvoZultaGetSnapshotAcquisition(bench.handle, pixels.data(), flat_size.width, flat_size.height, 0),
        VYRA_OK);
    expect(guard_holds(pixels), "the snapshot is larger than " + text_of(flat_size));
    const auto last_row = pixels.end() - guard - VYRA_FLAT_WIDTH;
    expect(std::any_of(last_row, last_row + VYRA_FLAT_WIDTH, [](std::uint8_t byte) { return byte != untouched; }),
           "the snapshot is smaller than " + text_of(flat_size));
}

void calibration_image(Test_bench& bench)
{
    std::vector<std::uint8_t> image(VYRA_CALIBRATION_SIZE + guard, untouched);
    expect_status("VyraBrenvoZultaReadUniformityBuffers of another size",
                  VyraBrenvoZultaReadUniformityBuffers(bench.handle, image.data(), VYRA_CALIBRATION_SIZE - 1),
                  VYRA_BAD_PARAMETER);
    expect_status("VyraBrenvoZultaReadUniformityBuffers",
                  VyraBrenvoZultaReadUniformityBuffers(bench.handle, image.data(), VYRA_CALIBRATION_SIZE), VYRA_OK);
    expect(guard_holds(image), "the calibration image runs over its buffer");
    expect(std::any_of(image.begin(), image.end() - guard, [&](std::uint8_t pixel) { return pixel != image[0]; }),
           "the calibration image is of one grey");
}

}  // namespace

std::vector<Check> identity_checks()
{
    return {
        {"identity",
         "VyraBrenvoGetDeviceInfo tells maker and model",
         "a host does not know with which scanner an image was taken",
         {"open"},
         reads_identity},
        {"serial-number",
         "The scanner has a printable serial number",
         "images cannot be traced to their scanner, and licences by serial number fail",
         {"identity"},
         serial_number_is_printable},
        {"version",
         "The firmware version reads like 2.5.b",
         "a host cannot tell whether an update is due",
         {"identity"},
         version_is_readable},
        {"identity-by-name",
         "VyraBrenvoMGGetDeviceInfo tells the same serial number before the scanner is opened",
         "a host that chooses by serial number opens the wrong scanner",
         {"identity"},
         identity_by_name},
        {"identity-of-nobody",
         "VyraBrenvoMGGetDeviceInfo of an unknown name returns 9000",
         "a host believes in a scanner that is not there",
         {"initialize-again"},
         identity_of_nobody},
        {"port-type",
         "VyraBrenvoZultaGetPortType answers",
         "a host cannot warn of a slow port",
         {"open"},
         tells_port_type},
        {"roll-support",
         "VyraBrenvoZultaIsRollSupported stores 0 or 1",
         "a host offers rolled fingers, or hides them, by chance",
         {"open"},
         tells_roll_support},
        {"capabilities-flat",
         "Indexes 1 and 2 are flat capture, 3 to 5 nothing, 6 is refused",
         "a host prepares buffers of the wrong size",
         {"open"},
         flat_capabilities},
        {"capabilities-roll",
         "Index 0 is described when rolled fingers are supported, and only then",
         "a host offers rolled fingers, or hides them, by chance",
         {"roll-support"},
         roll_capabilities},
    };
}

std::vector<Check> data_checks()
{
    return {
        {"leds-off",
         "After opening, all LEDs count as off",
         "the first LED command of a host may not be shown",
         {"open"},
         leds_are_off},
        {"tone-arguments",
         "An unknown tone pattern is refused (9109)",
         "a host's mistake goes unnoticed",
         {"open"},
         tone_arguments},
        {"accepted-without-effect",
         "Parameters and filters are accepted without effect",
         "hosts that set them stop with an error",
         {"open"},
         accepted_without_effect},
        {"container-size",
         "The parameter container has a size",
         "a host cannot read the scanner's parameters",
         {"open"},
         tells_container_size},
        {"container",
         "The parameter container can be read, and not a byte more",
         "a host works with wrong parameters, or its memory is overwritten",
         {"container-size"},
         reads_container},
        {"container-stable",
         "Two readings of the parameter container agree",
         "the connection or the scanner's memory is unreliable",
         {"container"},
         container_is_stable},
        {"snapshot",
         "A snapshot has the size that was asked for",
         "a host shows half an image, or its memory is overwritten",
         {"open"},
         takes_snapshot},
        {"calibration-image",
         "The calibration image is whole, and other sizes are refused",
         "a host cannot correct its images; was vyrabrenvozulta.dll renamed?",
         {"open"},
         calibration_image},
    };
}

}  // namespace vyra_tool
