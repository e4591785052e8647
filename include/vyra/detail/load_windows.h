/* The library by the Windows loader. Part of loader.h. */
#ifndef VYRA_DETAIL_LOAD_WINDOWS_H
#define VYRA_DETAIL_LOAD_WINDOWS_H

#include <windows.h>

#include "load_diagnosis.h"
#include "load_report.h"

#define VYRA_LIBRARY_NAME "vyrabrenvozulta.dll"

/* What the C++ functions are called in it. */
#define VYRA_SYMBOL_InitUsbNotifier "?InitUsbNotifier@@YA_NPEAD@Z"
#define VYRA_SYMBOL_TerminateUsbNotifier "?TerminateUsbNotifier@@YA_NPEAD@Z"
#define VYRA_SYMBOL_SubscribeToUsbEvent "?SubscribeToUsbEvent@@YA_NHHP6AXHHW4UsbPlugEventType@@@Z@Z"
#define VYRA_SYMBOL_UnSubscribeToUsbEvent "?UnSubscribeToUsbEvent@@YA_NHH@Z"
#define VYRA_SYMBOL_SubscribeToPowerEvent "?SubscribeToPowerEvent@@YA_NP6AXW4SysPowerEventType@@@Z@Z"
#define VYRA_SYMBOL_UnsubscribeToPowerEvent "?UnsubscribeToPowerEvent@@YA_NP6AXW4SysPowerEventType@@@Z@Z"

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

/* The system's number says little when one of the files behind the library is the cause. */
static __inline void vyra_explain(const WCHAR* file, int has_folder, DWORD error, VyraLoadReport* report)
{
    WCHAR found[VYRA_LONGEST_PATH];
    int files_left = VYRA_MOST_FILES;
    const DWORD length = SearchPathW(NULL, file, NULL, VYRA_LONGEST_PATH, found, NULL);

    vyra_blame(vyra_result_of(error), file, NULL, report);
    if (length == 0 || length >= VYRA_LONGEST_PATH) {
        report->result = VYRA_LOAD_NO_FILE;
        if (!has_folder) {
            vyra_say_searched(NULL, report);
        }
    } else if (!vyra_diagnose_file(found, NULL, error == ERROR_PROC_NOT_FOUND, &files_left, report)) {
        vyra_blame(VYRA_LOAD_REFUSED, found, NULL, report);
    }
    vyra_note_error(error, report);
}

static __inline void* vyra_open(const char* path, VyraLoadReport* report)
{
    WCHAR given[VYRA_LONGEST_PATH];
    WCHAR whole[VYRA_LONGEST_PATH];
    const int has_folder = vyra_has_folder(path);
    const WCHAR* file = given;
    DWORD mode = 0;
    DWORD error;
    HMODULE module;

    if (MultiByteToWideChar(CP_UTF8, 0, path, -1, given, VYRA_LONGEST_PATH) == 0) {
        report->result = VYRA_LOAD_REFUSED;
        vyra_append(report->file, sizeof report->file, path);
        vyra_note_error(ERROR_FILENAME_EXCED_RANGE, report);
        return NULL;
    }
    if (has_folder && GetFullPathNameW(given, VYRA_LONGEST_PATH, whole, NULL) - 1 < VYRA_LONGEST_PATH - 1) {
        file = whole;
    }
    /* Without this mode the system would show a box of its own and wait for a click. With a whole path and the flag,
       the files that the library needs are looked for beside it first. */
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, &mode);
    module = LoadLibraryExW(file, NULL, file == whole ? LOAD_WITH_ALTERED_SEARCH_PATH : 0);
    error = GetLastError();
    SetThreadErrorMode(mode, NULL);
    if (module == NULL) {
        vyra_explain(file, has_folder, error, report);
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
