/* The known-folder lookup. */
#pragma once
#include <knownfolders.h>
#include <windows.h>

#include <objbase.h>

#ifdef __cplusplus
extern "C" {
#endif

HRESULT WINAPI SHGetKnownFolderPath(REFKNOWNFOLDERID folder, DWORD flags, HANDLE token, PWSTR* path);

#ifdef __cplusplus
}
#endif
