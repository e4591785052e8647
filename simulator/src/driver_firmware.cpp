// The driver's firmware transfer.
//
// The simulated scanner takes any image. One that begins with "RQ7FW" carries its version in the three bytes that
// follow (major, minor, revision); any other counts as the next minor version. The new version shows after the next
// restart.
#include <algorithm>
#include <chrono>
#include <cstring>

#include "driver/driver.h"
#include "driver_call.h"

using namespace brenvozulta_simulator;

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr char magic[] = {'R', 'Q', '7', 'F', 'W'};
constexpr std::size_t version_size = 3;
constexpr double progress_step_seconds = 0.02;

std::array<char, version_size> version_of(const std::uint8_t* image, std::size_t length,
                                          const DriverDeviceInfo& current)
{
    std::array<char, version_size> version{};
    if (length >= sizeof magic + version_size && std::memcmp(image, magic, sizeof magic) == 0) {
        std::memcpy(version.data(), image + sizeof magic, version_size);
    } else {
        const int next_minor = current.version_minor == INT8_MAX ? 0 : current.version_minor + 1;
        version = {static_cast<char>(current.version_major), static_cast<char>(next_minor), current.version_revision};
    }
    return version;
}

// Lets the time of the transfer pass up to the byte where it ends, for good or ill; false when the scanner went away.
bool transfer(Driver_call& call, Scanner& scanner, std::uint64_t bytes, std::uint64_t length)
{
    const brenvozulta_sim_firmware& firmware = call.state()->settings.firmware;
    const double whole =
        firmware.duration_ms / 1000.0 +
        (firmware.bytes_per_second == 0 ? 0.0
                                        : static_cast<double>(length) / static_cast<double>(firmware.bytes_per_second));
    const double share = static_cast<double>(bytes) / static_cast<double>(length);
    const Clock::time_point start = Clock::now();
    const double end = whole * share;
    const void* const handle = scanner.handle;
    const auto gone = [&] { return call.state()->retired || !scanner.present() || scanner.handle != handle; };
    for (double passed = 0; passed < end; passed = Seconds(Clock::now() - start).count()) {
        scanner.firmware_bytes = static_cast<std::uint64_t>(static_cast<double>(bytes) * passed / end);
        const double step = std::min(end - passed, progress_step_seconds);
        if (call.simulator().changed.wait_for(call.held(), Seconds(step), gone)) {
            return false;
        }
    }
    scanner.firmware_bytes = bytes;
    return true;
}

}  // namespace

std::uint32_t QXDR_UpdateFirmware(void* driver_handle, const void* image, std::size_t length)
{
    return run_scanner_call(
        "QXDR_UpdateFirmware",
        {address("driver_handle", driver_handle), address("image", image), number("length", length)}, driver_handle,
        [=](Driver_call& call, const std::shared_ptr<Scanner>& scanner) -> std::uint32_t {
            if (image == nullptr) {
                return driver_bad_parameter;
            }
            if (length == 0) {
                return driver_bad_size;
            }
            const brenvozulta_sim_firmware firmware = call.state()->settings.firmware;
            const std::uint64_t bytes = std::min<std::uint64_t>(length, firmware.fail_at_byte);
            if (!transfer(call, *scanner, bytes, length)) {
                return driver_scanner_gone;
            }
            if (bytes < length) {
                return firmware.fail_result;
            }
            scanner->firmware_version =
                version_of(static_cast<const std::uint8_t*>(image), length, scanner->identity.info);
            scanner->firmware_pending = true;
            scanner->firmware_unreset = true;
            if (firmware.restarts != 0) {
                restart(call.simulator(), call.state(), scanner);
            }
            return driver_ok;
        });
}
