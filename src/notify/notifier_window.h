// The hidden window to which the operating system delivers its broadcasts.
#pragma once

#include <windows.h>

namespace kvs::brenvozulta {

LRESULT CALLBACK notifier_window_proc(HWND window, UINT message, WPARAM w_param, LPARAM l_param);

// Whether the creation of the newest notifier window ended because the operating system refused to register it for
// device notifications. For the thread that created it: only one creates a window at a time.
bool device_notification_refused();

}  // namespace kvs::brenvozulta
