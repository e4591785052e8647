// Where the program begins when no runtime library stands below it.
#include <stddef.h>

#include "host.h"
#include "win32.h"

extern "C" {

void mainCRTStartup()
{
    ExitProcess(static_cast<uint32_t>(run_host()));
}

// The compiler calls these for records and arrays.
void* memcpy(void* to, const void* from, size_t size)
{
    for (size_t i = 0; i < size; ++i) {
        static_cast<volatile char*>(to)[i] = static_cast<const char*>(from)[i];
    }
    return to;
}

void* memset(void* to, int value, size_t size)
{
    for (size_t i = 0; i < size; ++i) {
        static_cast<volatile char*>(to)[i] = static_cast<char>(value);
    }
    return to;
}

}  // extern "C"
