/*
 * Loads vyrabrenvozulta.dll at run time, for hosts in C (C89 and later) and C++ that do not link its import library. A
 * linked host does not start when a file is missing, and nobody says which; this one starts, and says it:
 *
 *     VyraFunctions vyra;
 *     VyraLoadReport report;
 *     if (VyraLoad(NULL, &vyra, &report) != VYRA_LOADED) {
 *         fprintf(stderr, "%s\n", report.message);
 *         return 1;
 *     }
 *     vyra.VyraInitialize_N(NULL, 3, 0);
 *
 * There is no unloading: the library pins itself in the process with its first VyraInitialize_N (see vyra.h).
 *
 * The header is all there is of it: nothing need be linked, on Windows it takes functions of kernel32.dll. It includes
 * <windows.h>. The same header loads the native build of the library on Linux (link -ldl where the C library needs it).
 */
#ifndef VYRA_LOADER_H
#define VYRA_LOADER_H

#include "functions.h"

enum VyraLoadResult {
    VYRA_LOADED = 0,
    /* A file is not there: the library, or one that it needs. */
    VYRA_LOAD_NO_FILE = 1,
    /* A file is there and lacks a function: it is of another version. */
    VYRA_LOAD_NO_FUNCTION = 2,
    /* A file is made for another processor than this program, for instance for 32 bits. */
    VYRA_LOAD_OTHER_PROCESSOR = 3,
    /* A file is not a library at all, or a damaged one. */
    VYRA_LOAD_DAMAGED = 4,
    /* The system refuses to load the file for another reason, which system_error tells. */
    VYRA_LOAD_REFUSED = 5
};

#define VYRA_LOAD_TEXT 1024

/* How the loading of a library ended. Texts are UTF-8, cut where they are too long, and empty where they say nothing.
 */
typedef struct VyraLoadReport {
    int result;                     /* a VyraLoadResult */
    unsigned long system_error;     /* the system's own number for the failure; 0 for none */
    char file[VYRA_LOAD_TEXT];      /* the file that was loaded, or the one in question; where it is known, its path */
    char needed_by[VYRA_LOAD_TEXT]; /* the file that needs the one in question, when that is not the library itself */
    char function[VYRA_LOAD_TEXT];  /* the functions that the file lacks, with commas between them */
    char searched[VYRA_LOAD_TEXT];  /* where a missing file was looked for */
    /* all of it as one sentence, without a full stop; empty after a success */
    char message[5 * VYRA_LOAD_TEXT];
} VyraLoadReport;

/* Loads a library and stores the address of each of its functions.
 *
 * path, in UTF-8, is the library's file; the driver library that it needs is then looked for beside it first. A path
 * without a folder is looked for where the system looks for libraries: beside the program, in the system's folders, in
 * the current folder, in those of PATH. Null stands for vyrabrenvozulta.dll. The file must keep its name.
 *
 * Returns VYRA_LOADED, or the VyraLoadResult that says what is wrong; report, which may be null, says more. After a
 * failure functions is all null and nothing stays loaded. Blocks for as long as the system takes to read the files. May
 * be called from any thread, but not from DllMain; a second call for the same library gives the same addresses. */
static __inline int VyraLoad(const char* path, VyraFunctions* functions, VyraLoadReport* report);

#ifdef _WIN32
#include "detail/load_windows.h"
#else
#include "detail/load_posix.h"
#endif

/* clang-format off */
#define VYRA_TAKE_AS(symbol, name) \
    address = vyra_find(module, symbol); \
    memcpy(&functions->name, &address, sizeof address); \
    if (address == NULL) { \
        vyra_append(report->function, sizeof report->function, report->function[0] == '\0' ? symbol : ", " symbol); \
    }
#define VYRA_TAKE(result, name, parameters, arguments) VYRA_TAKE_AS(#name, name)
#define VYRA_TAKE_DECORATED(result, name, parameters, arguments) VYRA_TAKE_AS(VYRA_SYMBOL_##name, name)
/* clang-format on */

static __inline int VyraLoad(const char* path, VyraFunctions* functions, VyraLoadReport* report)
{
    VyraLoadReport unwanted;
    void* module;
    void* address;

    if (report == NULL) {
        report = &unwanted;
    }
    memset(report, 0, sizeof *report);
    memset(functions, 0, sizeof *functions);
    module = vyra_open(path == NULL ? VYRA_LIBRARY_NAME : path, report);
    if (module == NULL) {
        vyra_say(report);
        return report->result;
    }
    VYRA_SCANNER_FUNCTIONS(VYRA_TAKE)
    VYRA_NOTIFICATION_FUNCTIONS(VYRA_TAKE_DECORATED)
    if (report->function[0] != '\0') {
        report->result = VYRA_LOAD_NO_FUNCTION;
        vyra_say(report);
        memset(functions, 0, sizeof *functions);
        vyra_close(module);
    }
    return report->result;
}

#endif
