// The names by which the operating system calls USB devices in its broadcasts.
#pragma once

#include <optional>
#include <string_view>

namespace kvs::brenvozulta {

struct Usb_identifiers {
    int vendor;
    int product;
};

// Finds "VID_xxxx&PID_xxxx" anywhere in a device path, as in \\?\USB#VID_1A2B&PID_00FF#5&2C#{...}. Upper case only.
std::optional<Usb_identifiers> find_usb_identifiers(std::string_view device_path);

}  // namespace kvs::brenvozulta
