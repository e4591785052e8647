// The library as the Windows loader has laid it out in memory.
#pragma once

#include <windows.h>

namespace binary {

inline HMODULE library_module()
{
    return GetModuleHandleA("vyrabrenvozulta.dll");
}

inline const unsigned char* library_image()
{
    return reinterpret_cast<const unsigned char*>(library_module());
}

template <class Record>
const Record* at(const unsigned char* image, DWORD offset)
{
    return reinterpret_cast<const Record*>(image + offset);
}

template <class Record>
const Record* directory(const unsigned char* image, int index)
{
    const auto* const start = at<IMAGE_DOS_HEADER>(image, 0);
    const auto* const headers = at<IMAGE_NT_HEADERS64>(image, static_cast<DWORD>(start->e_lfanew));
    return at<Record>(image, headers->OptionalHeader.DataDirectory[index].VirtualAddress);
}

}  // namespace binary
