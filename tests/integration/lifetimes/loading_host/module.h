// Loading and unloading of the library. module_windows.cpp or module_posix.cpp implements it.
#pragma once

namespace loading_host {

// Loads the library, or counts one more user of it; false when it cannot be loaded.
bool load();
// One user less: without any, the library is unloaded.
void unload();
// Whether it is there, which makes nobody a user.
bool is_loaded();

// The address of an export; ends the process when there is none. InitUsbNotifier and TerminateUsbNotifier go by these
// names here, however the compiler decorates them.
void* address_of(const char* name);

// Leaves the process one processor, where a thread that has something left to do meets its unloading; and lets it end
// where it crashes, without a debugger.
void prepare_process();

}  // namespace loading_host
