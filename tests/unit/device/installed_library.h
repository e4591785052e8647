// The library's own file, in which the calibration image lies.
#pragma once

namespace test_support {

// Makes the library's file known to the process under its installed name, and takes it back.
bool load_installed_library();
void unload_installed_library();

}  // namespace test_support
