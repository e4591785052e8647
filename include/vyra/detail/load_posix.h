/* The native build of the library, by dlopen. Part of loader.h. */
#ifndef VYRA_DETAIL_LOAD_POSIX_H
#define VYRA_DETAIL_LOAD_POSIX_H

#include <dlfcn.h>
#include <string.h>
#include <unistd.h>

#include "load_report.h"

#define VYRA_LIBRARY_NAME "libvyrabrenvozulta.so"

/* What the C++ functions are called in it. */
#define VYRA_SYMBOL_InitUsbNotifier "_Z15InitUsbNotifierPc"
#define VYRA_SYMBOL_TerminateUsbNotifier "_Z20TerminateUsbNotifierPc"
#define VYRA_SYMBOL_SubscribeToUsbEvent "_Z19SubscribeToUsbEventiiPFvii16UsbPlugEventTypeE"
#define VYRA_SYMBOL_UnSubscribeToUsbEvent "_Z21UnSubscribeToUsbEventii"
#define VYRA_SYMBOL_SubscribeToPowerEvent "_Z21SubscribeToPowerEventPFv17SysPowerEventTypeE"
#define VYRA_SYMBOL_UnsubscribeToPowerEvent "_Z23UnsubscribeToPowerEventPFv17SysPowerEventTypeE"

/* The beginning of the system's words is the file in question, when it is not the one that was asked for. */
static __inline void vyra_name_file(const char* path, const char* words, VyraLoadReport* report)
{
    const char* const end = strstr(words, ": ");
    char file[VYRA_LOAD_TEXT] = "";

    if (end != NULL && (size_t)(end - words) < sizeof file) {
        memcpy(file, words, (size_t)(end - words));
    }
    if (file[0] == '\0' || strcmp(file, path) == 0) {
        vyra_append(report->file, sizeof report->file, path);
    } else {
        vyra_append(report->file, sizeof report->file, file);
        vyra_append(report->needed_by, sizeof report->needed_by, path);
    }
}

static __inline int vyra_result_of(const char* words)
{
    if (strstr(words, "cannot open shared object file") != NULL) {
        return VYRA_LOAD_NO_FILE;
    }
    if (strstr(words, "undefined symbol: ") != NULL) {
        return VYRA_LOAD_NO_FUNCTION;
    }
    if (strstr(words, "wrong ELF class") != NULL) {
        return VYRA_LOAD_OTHER_PROCESSOR;
    }
    if (strstr(words, "invalid ELF header") != NULL || strstr(words, "file too short") != NULL) {
        return VYRA_LOAD_DAMAGED;
    }
    return VYRA_LOAD_REFUSED;
}

static __inline void* vyra_open(const char* path, VyraLoadReport* report)
{
    void* const module = dlopen(path, RTLD_NOW | RTLD_LOCAL);

    if (module == NULL) {
        const char* const words = dlerror();
        vyra_append(report->message, sizeof report->message, words);
        report->result = vyra_result_of(words);
        vyra_name_file(path, words, report);
        if (report->result == VYRA_LOAD_NO_FUNCTION) {
            vyra_append(report->function, sizeof report->function,
                        strstr(words, "undefined symbol: ") + strlen("undefined symbol: "));
        }
    } else {
        vyra_append(report->file, sizeof report->file, path);
    }
    return module;
}

static __inline void* vyra_find(void* module, const char* name)
{
    return dlsym(module, name);
}

static __inline void vyra_close(void* module)
{
    dlclose(module);
}

#endif
