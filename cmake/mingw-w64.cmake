# Cross compilation to Windows x86-64 with MinGW-w64, POSIX threads.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
# What scripts/setup built for Windows comes first. In its shortest form, which is what CMake remembers: with another one
# every second run would compile everything again.
cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH project_root)
set(CMAKE_FIND_ROOT_PATH ${project_root}/build/deps/windows /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
