/* The task allocator's release. */
#pragma once
#include <minwindef.h>

#ifdef __cplusplus
extern "C" {
#endif

void WINAPI CoTaskMemFree(LPVOID block);

#ifdef __cplusplus
}
#endif
