// What runs on the notifier thread.
#pragma once

#include <windows.h>

#include <functional>

namespace kvs::brenvozulta {

// Creates the hidden window under this class name, hands it to `window_created` and delivers its messages until the
// window is closed. Throws std::runtime_error when there is no window or it gets no device notifications.
void notifier_thread_main(const char* class_name, const std::function<void(HWND)>& window_created);

// Ends the loop of the notifier thread `thread_id`, from any thread: closes the window and takes back the class.
// Returns when the notifier thread has handled the closing, which it does once the subscriber that it may be in has
// returned.
void close_notifier_window(HWND window, DWORD thread_id, const char* class_name);

}  // namespace kvs::brenvozulta
