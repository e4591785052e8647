/*
 * Which file keeps a library from being loaded. The system says of a library whose driver library is missing no more
 * than that "the module could not be found": the files themselves tell which. Part of loader.h.
 */
#ifndef VYRA_DETAIL_LOAD_DIAGNOSIS_H
#define VYRA_DETAIL_LOAD_DIAGNOSIS_H

#include <stdlib.h>
#include <windows.h>

#include "load_report.h"
#include "pe_file.h"

#define VYRA_LONGEST_PATH 4096 /* characters */
#define VYRA_MOST_FILES 64     /* that are looked into: a damaged file may name itself, or thousands */
#define VYRA_LARGEST_FILE (1ul << 28)

#ifdef _WIN64
#define VYRA_OWN_MACHINE VYRA_PE_X64
#else
#define VYRA_OWN_MACHINE 0x014Cu
#endif

static __inline void vyra_append_wide(char* text, size_t room, const WCHAR* more)
{
    char converted[VYRA_LOAD_TEXT] = "";

    WideCharToMultiByte(CP_UTF8, 0, more, -1, converted, (int)sizeof converted, NULL, NULL);
    converted[sizeof converted - 1] = '\0';
    vyra_append(text, room, converted);
}

/* The whole file, to be freed; null when it cannot be read. */
static __inline unsigned char* vyra_file_bytes(const WCHAR* path, size_t* size)
{
    const HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, NULL,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, NULL);
    unsigned char* bytes = NULL;
    DWORD length;
    DWORD got = 0;

    if (file == INVALID_HANDLE_VALUE) {
        return NULL;
    }
    length = GetFileSize(file, NULL);
    if (length != INVALID_FILE_SIZE && length < VYRA_LARGEST_FILE) {
        bytes = (unsigned char*)malloc(length + 1);
    }
    if (bytes != NULL && !ReadFile(file, bytes, length, &got, NULL)) {
        got = 0;
    }
    CloseHandle(file);
    *size = got;
    return bytes;
}

static __inline int vyra_is_file(const WCHAR* path)
{
    const DWORD attributes = GetFileAttributesW(path);

    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

/* Where the system finds a file that the one at needing imports; 0 when it does not. */
static __inline int vyra_find_import(const WCHAR* needing, const WCHAR* name, WCHAR* found)
{
    const WCHAR* const end = wcsrchr(needing, L'\\');
    const size_t folder = end == NULL ? 0 : (size_t)(end - needing) + 1;
    DWORD length;

    if (folder + wcslen(name) < VYRA_LONGEST_PATH) {
        memcpy(found, needing, folder * sizeof *found);
        memcpy(found + folder, name, (wcslen(name) + 1) * sizeof *found);
        if (vyra_is_file(found)) {
            return 1;
        }
    }
    length = SearchPathW(NULL, name, NULL, VYRA_LONGEST_PATH, found, NULL);
    return length > 0 && length < VYRA_LONGEST_PATH;
}

/* Names that stand for a part of the system, and are no files. */
static __inline int vyra_is_api_set(const char* name)
{
    return (strncmp(name, "api-", 4) == 0 || strncmp(name, "ext-", 4) == 0 || strncmp(name, "API-", 4) == 0);
}

static __inline int vyra_is_of_system(const WCHAR* path)
{
    WCHAR system[MAX_PATH] = L"";
    const UINT length = GetSystemDirectoryW(system, MAX_PATH);

    return length > 0 && length < MAX_PATH && _wcsnicmp(path, system, length) == 0;
}

static __inline void vyra_say_searched(const WCHAR* needing, VyraLoadReport* report)
{
    WCHAR folder[VYRA_LONGEST_PATH] = L"";
    const DWORD length = GetModuleFileNameW(NULL, folder, VYRA_LONGEST_PATH - 1);
    const WCHAR* const end = needing == NULL ? NULL : wcsrchr(needing, L'\\');

    if (end != NULL) {
        WCHAR beside[VYRA_LONGEST_PATH];
        memcpy(beside, needing, (size_t)(end - needing) * sizeof *beside);
        beside[end - needing] = L'\0';
        vyra_append_wide(report->searched, sizeof report->searched, beside);
        vyra_append(report->searched, sizeof report->searched, ", ");
    }
    if (length > 0 && length < VYRA_LONGEST_PATH - 1 && wcsrchr(folder, L'\\') != NULL) {
        char program[VYRA_LOAD_TEXT] = "";
        *wcsrchr(folder, L'\\') = L'\0';
        vyra_append_wide(program, sizeof program, folder);
        if (strstr(report->searched, program) == NULL) {
            vyra_append(report->searched, sizeof report->searched, program);
            vyra_append(report->searched, sizeof report->searched, ", ");
        }
    }
    vyra_append(report->searched, sizeof report->searched,
                "the system's folders, the current folder and the folders of PATH");
}

static __inline void vyra_blame(int result, const WCHAR* file, const WCHAR* needing, VyraLoadReport* report)
{
    report->result = result;
    report->file[0] = report->needed_by[0] = '\0';
    vyra_append_wide(report->file, sizeof report->file, file);
    if (needing != NULL) {
        vyra_append_wide(report->needed_by, sizeof report->needed_by, needing);
    }
}

static __inline int vyra_diagnose_file(const WCHAR* path, const WCHAR* needing, int functions, int* files_left,
                                       VyraLoadReport* report);

/* Looks for what is wrong with one of the files that an opened file imports. */
static __inline int vyra_diagnose_import(const VyraPe* pe, unsigned long index, const WCHAR* path, int functions,
                                         int* files_left, VyraLoadReport* report)
{
    const char* const name = vyra_pe_import(pe, index);
    WCHAR wide[MAX_PATH];
    WCHAR* found;
    int blamed = 0;

    if (vyra_is_api_set(name) || MultiByteToWideChar(CP_ACP, 0, name, -1, wide, MAX_PATH) == 0) {
        return 0;
    }
    found = (WCHAR*)malloc(VYRA_LONGEST_PATH * sizeof *found);
    if (found == NULL) {
        return 0;
    }
    if (!vyra_find_import(path, wide, found)) {
        vyra_blame(VYRA_LOAD_NO_FILE, wide, path, report);
        vyra_say_searched(path, report);
        blamed = 1;
    } else if (!vyra_is_of_system(found)) {
        blamed = vyra_diagnose_file(found, path, functions, files_left, report);
    }
    if (!blamed && functions) {
        size_t size = 0;
        unsigned char* const bytes = vyra_file_bytes(found, &size);
        VyraPe imported;
        const char* function;
        unsigned long i;
        if (bytes != NULL && vyra_pe_read(&imported, bytes, size)) {
            for (i = 0; !blamed && (function = vyra_pe_import_function(pe, index, i)) != NULL; ++i) {
                if (function[0] != '\0' && !vyra_pe_exports(&imported, function)) {
                    vyra_blame(VYRA_LOAD_NO_FUNCTION, found, path, report);
                    vyra_append(report->function, sizeof report->function, function);
                    blamed = 1;
                }
            }
        }
        free(bytes);
    }
    free(found);
    return blamed;
}

/* Looks for what keeps the file at path from being loaded, in it and in the files that it needs: a file that is
 * missing, damaged or made for another processor, and when functions is set, a function that is missing. Returns 1 when
 * it was found; the report then says it. */
static __inline int vyra_diagnose_file(const WCHAR* path, const WCHAR* needing, int functions, int* files_left,
                                       VyraLoadReport* report)
{
    size_t size = 0;
    unsigned char* const bytes = vyra_file_bytes(path, &size);
    VyraPe pe;
    int blamed = 1;

    if (bytes == NULL) {
        return 0;
    }
    if (!vyra_pe_read(&pe, bytes, size)) {
        vyra_blame(VYRA_LOAD_DAMAGED, path, needing, report);
    } else if (pe.machine != VYRA_OWN_MACHINE) {
        vyra_blame(VYRA_LOAD_OTHER_PROCESSOR, path, needing, report);
    } else {
        unsigned long i;
        blamed = 0;
        --*files_left;
        for (i = 0; !blamed && *files_left > 0 && vyra_pe_import(&pe, i) != NULL; ++i) {
            blamed = vyra_diagnose_import(&pe, i, path, functions, files_left, report);
        }
    }
    free(bytes);
    return blamed;
}

#endif
