// The end of threads.
#pragma once

namespace win32_double {

// From now on the end of the calling thread is seen: by those that wait for it, and by the mutexes that it still owns.
void watch_thread_end();

}  // namespace win32_double
