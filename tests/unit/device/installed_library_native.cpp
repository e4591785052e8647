// The program carries the image itself; the double is told that the module is there.
#include "unit/device/installed_library.h"

#include <windows.h>

#include "win32_double/control.h"

namespace test_support {

namespace {

constexpr char name[] = "vyrabrenvozulta.dll";

struct Image {
    const void* bytes;
    std::size_t size;
};

// As the program registered it before main.
Image registered_image()
{
    win32_double::add_module(name);
    const HMODULE module = GetModuleHandleA(name);
    const HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(101), "image_raw");
    return {LockResource(LoadResource(module, found)), SizeofResource(module, found)};
}

}  // namespace

bool load_installed_library()
{
    static const Image image = registered_image();
    win32_double::add_module(name);
    win32_double_register_resource(name, "image_raw", 101, image.bytes, image.size);
    return true;
}

void unload_installed_library()
{
    win32_double::remove_module(name);
}

}  // namespace test_support
