/* The kernel32 functions of the double, and the C-runtime names whose own header on Linux is the system's. */
#pragma once
#include <minwindef.h>
#include <winerror.h>

#define CTRL_C_EVENT 0
#define CTRL_BREAK_EVENT 1
#define CTRL_CLOSE_EVENT 2

#define IS_INTRESOURCE(value) ((((ULONG_PTR)(value)) >> 16) == 0)
#define MAKEINTRESOURCEA(id) ((LPSTR)((ULONG_PTR)((WORD)(id))))

#define _TRUNCATE ((size_t)-1)
#define STRUNCATE 80
typedef int errno_t;

#ifdef __cplusplus
extern "C" {
#endif

typedef BOOL(WINAPI* PHANDLER_ROUTINE)(DWORD event);

DWORD WINAPI GetLastError(void);
void WINAPI SetLastError(DWORD error);
DWORD WINAPI GetCurrentThreadId(void);
DWORD WINAPI GetCurrentProcessId(void);
void WINAPI Sleep(DWORD milliseconds);

#define INFINITE 0xFFFFFFFF
#define WAIT_OBJECT_0 0x00000000
#define WAIT_ABANDONED 0x00000080
#define WAIT_ABANDONED_0 WAIT_ABANDONED
#define WAIT_TIMEOUT 258
#define WAIT_FAILED 0xFFFFFFFF

/* Objects without names: events that no call resets and that are not set at first, mutexes that nobody owns at first,
   threads of the usual stack that run at once. */
typedef struct _SECURITY_ATTRIBUTES* LPSECURITY_ATTRIBUTES;
typedef DWORD(WINAPI* LPTHREAD_START_ROUTINE)(LPVOID argument);
#define SYNCHRONIZE 0x00100000
HANDLE WINAPI CreateThread(LPSECURITY_ATTRIBUTES security, SIZE_T stack, LPTHREAD_START_ROUTINE run, LPVOID argument,
                           DWORD flags, LPDWORD number);
HANDLE WINAPI OpenThread(DWORD access, BOOL inherit, DWORD number); /* the calling thread */
void WINAPI ExitThread(DWORD code);
HANDLE WINAPI CreateMutexA(LPSECURITY_ATTRIBUTES security, BOOL initially_owned, LPCSTR name);
BOOL WINAPI ReleaseMutex(HANDLE mutex);
HANDLE WINAPI CreateEventA(LPSECURITY_ATTRIBUTES security, BOOL manual_reset, BOOL initially_set, LPCSTR name);
BOOL WINAPI SetEvent(HANDLE event);
BOOL WINAPI CloseHandle(HANDLE handle);
DWORD WINAPI WaitForSingleObject(HANDLE handle, DWORD milliseconds);
DWORD WINAPI WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL all, DWORD milliseconds); /* not all */
BOOL WINAPI Beep(DWORD frequency, DWORD duration);

BOOL WINAPI DeleteFileA(LPCSTR path);
BOOL WINAPI MoveFileA(LPCSTR from, LPCSTR to);

#define GET_MODULE_HANDLE_EX_FLAG_PIN 0x00000001
#define GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS 0x00000004

HMODULE WINAPI GetModuleHandleA(LPCSTR name);
/* Of the module that holds an address, which then stays until the process ends. */
BOOL WINAPI GetModuleHandleExA(DWORD flags, LPCSTR address, HMODULE* module);
DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR path, DWORD size);
HMODULE WINAPI LoadLibraryA(LPCSTR name);
BOOL WINAPI FreeLibrary(HMODULE module);
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name);

HRSRC WINAPI FindResourceA(HMODULE module, LPCSTR name, LPCSTR type);
HGLOBAL WINAPI LoadResource(HMODULE module, HRSRC resource);
LPVOID WINAPI LockResource(HGLOBAL data);
DWORD WINAPI SizeofResource(HMODULE module, HRSRC resource);

/* The handlers run on a thread of their own, the one set last first, until one returns TRUE; natively the event is
   SIGINT. A null handler with TRUE makes the process ignore Ctrl+C. */
BOOL WINAPI SetConsoleCtrlHandler(PHANDLER_ROUTINE handler, BOOL add);

errno_t wcstombs_s(size_t* converted, char* destination, size_t size, const wchar_t* source, size_t count);

#ifdef __cplusplus
}
#endif
