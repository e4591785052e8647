// A host's plug-in that uses the library, and cleans up when its time comes.
#pragma once

#include <string>

#ifdef _WIN32
#define PLUG_IN_EXPORT __declspec(dllexport)
#else
#define PLUG_IN_EXPORT __attribute__((visibility("default")))
#endif

// Brings the library into a state (states.h) and leaves it there; false for a state or a clean-up that does not exist.
// From then on clean_up() does what `clean_up` says: "terminate" calls VyraTerminate, "close" VyraCloseDevice_N before
// it, "stop" VyraStopVideo before that, "stop_notifier" TerminateUsbNotifier alone.
PLUG_IN_EXPORT bool begin(const std::string& state, const std::string& clean_up);

// Calls the library for the last time, and writes each call's name and result on standard error. Done once: here, or
// else by the destructor of a static object of the plug-in.
PLUG_IN_EXPORT void clean_up();
