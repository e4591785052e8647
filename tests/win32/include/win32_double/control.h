// Control of the Win32 double: makes its functions fail, tells what was called and what is still alive, and plays the
// system's part (broadcasts, device changes, the application-data folder, modules and resources). Any thread may call
// any of it at any time.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <windows.h>

namespace win32_double {

// --- Failing calls ---

constexpr int always = -1;

// Lets the next `times` calls of `function` fail, after `after` calls that still work. A failing call does nothing and
// gives the function's failure value; `error` is what GetLastError then answers, errno for a function of the C runtime,
// the HRESULT for the known-folder lookup. Replaces an earlier order for the same function.
// Throws std::invalid_argument when the double has no such function. Those that cannot fail on Windows (_ftime64,
// PostQuitMessage, Sleep, TranslateMessage) work all the same.
void fail(const char* function, int times = 1, uint32_t error = ERROR_GEN_FAILURE, int after = 0);

// Ends all orders to fail, zeroes the call counts, forgets the beeps.
void clear();

// Calls of `function` since the start or the last clear, failed ones included. Throws like fail.
uint64_t calls(const char* function);

// --- What is alive, for tests of leaks ---

struct Live_objects {
    size_t windows;
    size_t window_classes;
    size_t device_notifications;
    size_t message_queues;  // threads that have used windows or messages and still run
    size_t events;
    size_t mutexes;
    size_t thread_handles;
    size_t descriptors;  // of _sopen
};
Live_objects live_objects();

// --- Handles ---

// Whether a closed handle's number is given to the next object that is made, as Windows does, or never again, as it is
// without a call and without WIN32_DOUBLE_REUSE_HANDLES in the environment. Descriptors are always given out again.
void reuse_handles(bool reuse);

// How often a function was given an object, a registration or a descriptor that is not open, or was to destroy a window
// that is not there. Who does that has closed something twice or too early, and on Windows, where the number may be
// another object's by then, hits that one.
uint64_t stale_handles();

// --- The system's part ---

struct Tone {
    DWORD frequency;
    DWORD duration;
};
// The tones of Beep in order.
std::vector<Tone> beeps();

// Whether Beep returns at the end of the tone, as it does on Windows, or at once, as it does without a call.
void let_beeps_take_time(bool take);

// Sends a message to every top-level window, as the system does, and returns when all have handled it.
void broadcast(UINT message, WPARAM wparam, LPARAM lparam);

// Sends WM_DEVICECHANGE with a device-interface record to every window registered for the class; returns how many.
size_t device_event(WPARAM event, const GUID& device_class, const std::string& device_name);

// The application-data folder. Without a call it is the environment's WIN32_DOUBLE_PROGRAMDATA, or else a fresh
// directory that is removed with everything beside it when the process ends. The library's paths continue the folder's
// name with a backslash, an ordinary character here: its directory then lies beside the folder, not in it.
void set_program_data(const std::string& path);
std::string program_data();

// Makes a module known to GetModuleHandleA although no shared object of that name is loaded, and takes it back with its
// resources.
void add_module(const std::string& name);
void remove_module(const std::string& name);

}  // namespace win32_double

// Gives a module (null: the executable) a resource; the bytes are not copied. For the code that stands in for the
// resource compiler: it needs no other part of this header.
extern "C" void win32_double_register_resource(const char* module, const char* type, int id, const void* bytes,
                                               size_t size);
