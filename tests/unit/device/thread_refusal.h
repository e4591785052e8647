// Lets the operating system refuse a thread.
#pragma once

namespace test_support {

// Of the threads that the calling thread creates from now on, the one after `granted` others is refused.
void refuse_thread_after(int granted);

// Whether it has been refused.
bool thread_was_refused();

}  // namespace test_support
