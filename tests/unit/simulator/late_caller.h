/* A library that calls the driver when the process ends, after its own host. */
#pragma once

#ifdef LATE_CALLER_EXPORTS
#define LATE_CALLER_API __attribute__((visibility("default")))
#else
#define LATE_CALLER_API
#endif

extern "C" LATE_CALLER_API void call_at_the_end(void* driver_handle);
