// Reading the record that a WM_DEVICECHANGE message points at.
#pragma once

#include <windows.h>

#include <string_view>

namespace kvs::brenvozulta {

// The device name of a device-interface broadcast; empty for a null pointer, another device type, and a record too
// short to hold a name. Nothing behind the record's stated size is read, whatever the size claims about its content.
// The text lives as long as the record.
std::string_view broadcast_device_name(LPARAM record);

}  // namespace kvs::brenvozulta
