// What is searched, and for what.
#pragma once

#include <string>

inline const std::string matching_path =
    "\\\\?\\USB#VID_1A2B&PID_00FF#6&2C24CE2E&0&2#{a5dcbf10-6530-11d2-901f-00c04fb951ed}";
inline const std::string other_path =
    "\\\\?\\STORAGE#Volume#{5dcbf106-6530-11d2-901f-00c04fb951ed}#0000000000100000#{53f5630d-b6bf-11d0-94f2}";
constexpr char device_path_expression[] = "VID_([A-F0-9]{4})&PID_([A-F0-9]{4})(&REV_([A-F0-9]{4}))?";
