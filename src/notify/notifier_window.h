// The hidden window to which the operating system delivers its broadcasts.
#pragma once

#include <windows.h>

namespace kvs::brenvozulta {

LRESULT CALLBACK notifier_window_proc(HWND window, UINT message, WPARAM w_param, LPARAM l_param);

// Whether the newest notifier window of the calling thread was given up because the operating system refused to
// register it for device notifications.
bool device_notification_refused();

// Takes back the calling thread's registration for device notifications, if it still stands. Closing the window does
// it; a thread whose loop ended otherwise does it at its end.
void end_device_notifications();

}  // namespace kvs::brenvozulta
