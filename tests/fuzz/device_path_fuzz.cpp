// Whatever the system calls a device, the search finds in the name what the expression finds.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "unit/notify/device_path_expression.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string path(reinterpret_cast<const char*>(bytes), size);
    if (!(kvs::brenvozulta::find_usb_identifiers(path) == test_support::identifiers_by_expression(path))) {
        std::fputs("the search and the expression differ\n", stderr);
        std::abort();
    }
    return 0;
}
