// Reading the record that a WM_DEVICECHANGE message points at.
#pragma once

#include <windows.h>

#include <string_view>

namespace kvs::brenvozulta {

// The device name of a device-interface broadcast; empty for a null pointer and another device type. A stated size
// above that of the fixed record bounds the name, whatever stands behind it. Up to there, as test tools state it, the
// size says nothing of the name, which is then read to its terminator. The text lives as long as the record.
std::string_view broadcast_device_name(LPARAM record);

}  // namespace kvs::brenvozulta
