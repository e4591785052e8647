// The calibration image in the native build, where a library file has no resources: the same bytes in read-only data,
// made known to the double of the Win32 resource functions under the names that the resource script gives them.
#include <cstddef>

#include "win32_double/control.h"

asm(".pushsection .rodata\n"
    ".balign 16\n"
    "vyra_calibration_begin:\n"
    ".incbin \"" CALIBRATION_FILE
    "\"\n"
    "vyra_calibration_end:\n"
    ".popsection\n");

extern "C" {
extern const unsigned char vyra_calibration_begin[];
extern const unsigned char vyra_calibration_end[];
}

namespace {

struct Registration {
    Registration()
    {
        const auto size = static_cast<std::size_t>(vyra_calibration_end - vyra_calibration_begin);
        win32_double_register_resource("vyrabrenvozulta.dll", "image_raw", 101, vyra_calibration_begin, size);
    }
};

const Registration registration;

}  // namespace
