/* The Win32 base types with their Windows widths (a Windows long has 32 bits), for the native builds. */
#pragma once
#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>
#include <wchar.h>

#define WINAPI
#define CALLBACK
#define APIENTRY
#define WINUSERAPI
#define WINBASEAPI

#define TRUE 1
#define FALSE 0
#define MAX_PATH 260

typedef int BOOL;
typedef uint8_t BYTE;
typedef uint8_t UCHAR;
typedef uint16_t WORD;
typedef uint16_t USHORT;
typedef uint32_t DWORD;
typedef uint32_t ULONG;
typedef uint64_t DWORD64;
typedef uint64_t ULONGLONG;
typedef int16_t SHORT;
typedef int32_t LONG;
typedef int64_t LONGLONG;
typedef int INT;
typedef unsigned int UINT;
typedef float FLOAT;
typedef char CHAR;
typedef wchar_t WCHAR;
typedef WORD ATOM;

typedef int64_t INT_PTR;
typedef uint64_t UINT_PTR;
typedef int64_t LONG_PTR;
typedef uint64_t ULONG_PTR;
typedef uint64_t DWORD_PTR;
typedef size_t SIZE_T;
typedef UINT_PTR WPARAM;
typedef LONG_PTR LPARAM;
typedef LONG_PTR LRESULT;
typedef LONG HRESULT;

typedef void* PVOID;
typedef void* LPVOID;
typedef const void* LPCVOID;
typedef BYTE* LPBYTE;
typedef DWORD* LPDWORD;
typedef CHAR* LPSTR;
typedef CHAR* PSTR;
typedef const CHAR* LPCSTR;
typedef const CHAR* PCSTR;
typedef WCHAR* LPWSTR;
typedef WCHAR* PWSTR;
typedef const WCHAR* LPCWSTR;
typedef const WCHAR* PCWSTR;

typedef void* HANDLE;
typedef HANDLE HGLOBAL;
#define DECLARE_HANDLE(name) \
    struct name##__;         \
    typedef struct name##__* name
DECLARE_HANDLE(HWND);
DECLARE_HANDLE(HINSTANCE);
DECLARE_HANDLE(HRSRC);
DECLARE_HANDLE(HICON);
DECLARE_HANDLE(HBRUSH);
DECLARE_HANDLE(HMENU);
typedef HINSTANCE HMODULE;
typedef HICON HCURSOR;
typedef INT_PTR(WINAPI* FARPROC)(void);

#define INVALID_HANDLE_VALUE ((HANDLE)(LONG_PTR)-1)
#define LOWORD(value) ((WORD)(((DWORD_PTR)(value)) & 0xffff))
#define HIWORD(value) ((WORD)((((DWORD_PTR)(value)) >> 16) & 0xffff))
#define MAKELONG(low, high) ((LONG)(((DWORD)(WORD)(low)) | (((DWORD)(WORD)(high)) << 16)))
