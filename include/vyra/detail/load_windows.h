/* The library by the Windows loader. Part of loader.h. */
#ifndef VYRA_DETAIL_LOAD_WINDOWS_H
#define VYRA_DETAIL_LOAD_WINDOWS_H

#include <windows.h>

#include "load_report.h"

#define VYRA_LIBRARY_NAME "vyrabrenvozulta.dll"

/* What the C++ functions are called in it. */
#define VYRA_SYMBOL_InitUsbNotifier "?InitUsbNotifier@@YA_NPEAD@Z"
#define VYRA_SYMBOL_TerminateUsbNotifier "?TerminateUsbNotifier@@YA_NPEAD@Z"
#define VYRA_SYMBOL_SubscribeToUsbEvent "?SubscribeToUsbEvent@@YA_NHHP6AXHHW4UsbPlugEventType@@@Z@Z"
#define VYRA_SYMBOL_UnSubscribeToUsbEvent "?UnSubscribeToUsbEvent@@YA_NHH@Z"
#define VYRA_SYMBOL_SubscribeToPowerEvent "?SubscribeToPowerEvent@@YA_NP6AXW4SysPowerEventType@@@Z@Z"
#define VYRA_SYMBOL_UnsubscribeToPowerEvent "?UnsubscribeToPowerEvent@@YA_NP6AXW4SysPowerEventType@@@Z@Z"

#define VYRA_LONGEST_PATH 4096 /* characters of a path that is loaded */

static __inline void vyra_append_wide(char* text, size_t room, const WCHAR* more)
{
    char converted[VYRA_LOAD_TEXT] = "";

    WideCharToMultiByte(CP_UTF8, 0, more, -1, converted, (int)sizeof converted, NULL, NULL);
    converted[sizeof converted - 1] = '\0';
    vyra_append(text, room, converted);
}

static __inline int vyra_has_folder(const char* path)
{
    return strchr(path, '\\') != NULL || strchr(path, '/') != NULL || strchr(path, ':') != NULL;
}

/* The system's number and words. */
static __inline void vyra_note_error(DWORD error, VyraLoadReport* report)
{
    WCHAR words[VYRA_LOAD_TEXT / 4];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, NULL, error, 0, words,
                                  VYRA_LOAD_TEXT / 4, NULL);

    report->system_error = error;
    vyra_append(report->message, sizeof report->message, "error ");
    vyra_append_number(report->message, sizeof report->message, error);
    while (length > 0 && (words[length - 1] <= L' ' || words[length - 1] == L'.')) {
        words[--length] = L'\0';
    }
    if (length > 0) {
        vyra_append(report->message, sizeof report->message, ": ");
        vyra_append_wide(report->message, sizeof report->message, words);
    }
}

static __inline int vyra_result_of(DWORD error)
{
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_MOD_NOT_FOUND:
            return VYRA_LOAD_NO_FILE;
        case ERROR_PROC_NOT_FOUND:
            return VYRA_LOAD_NO_FUNCTION;
        case ERROR_BAD_EXE_FORMAT:
            return VYRA_LOAD_DAMAGED;
        default:
            return VYRA_LOAD_REFUSED;
    }
}

static __inline void* vyra_open(const char* path, VyraLoadReport* report)
{
    WCHAR given[VYRA_LONGEST_PATH];
    WCHAR whole[VYRA_LONGEST_PATH];
    const WCHAR* file = given;
    DWORD flags = 0;
    DWORD mode = 0;
    DWORD error = ERROR_FILENAME_EXCED_RANGE;
    HMODULE module = NULL;

    if (MultiByteToWideChar(CP_UTF8, 0, path, -1, given, VYRA_LONGEST_PATH) > 0) {
        if (vyra_has_folder(path)) {
            /* With this flag, which needs a whole path, the files that it needs are looked for beside it first. */
            if (GetFullPathNameW(given, VYRA_LONGEST_PATH, whole, NULL) < VYRA_LONGEST_PATH) {
                file = whole;
                flags = LOAD_WITH_ALTERED_SEARCH_PATH;
            }
        }
        /* The system would show a box of its own and wait for a click. */
        SetThreadErrorMode(SEM_FAILCRITICALERRORS, &mode);
        module = LoadLibraryExW(file, NULL, flags);
        error = GetLastError();
        SetThreadErrorMode(mode, NULL);
    }
    if (module == NULL) {
        report->result = vyra_result_of(error);
        vyra_note_error(error, report);
        vyra_append(report->file, sizeof report->file, path);
    } else if (GetModuleFileNameW(module, whole, VYRA_LONGEST_PATH) > 0) {
        vyra_append_wide(report->file, sizeof report->file, whole);
    }
    return (void*)module;
}

static __inline void* vyra_find(void* module, const char* name)
{
    const FARPROC address = GetProcAddress((HMODULE)module, name);
    void* found = NULL;

    memcpy(&found, &address, sizeof found);
    return found;
}

static __inline void vyra_close(void* module)
{
    FreeLibrary((HMODULE)module);
}

#endif
