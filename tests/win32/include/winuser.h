/* The user32 functions of the double: window classes, windows, messages, device notification, text formatting. */
#pragma once
#include <minwindef.h>

#define CS_VREDRAW 0x0001
#define CS_HREDRAW 0x0002

#define WS_OVERLAPPED 0x00000000L
#define WS_CAPTION 0x00C00000L
#define WS_SYSMENU 0x00080000L
#define WS_THICKFRAME 0x00040000L
#define WS_MINIMIZEBOX 0x00020000L
#define WS_MAXIMIZEBOX 0x00010000L
#define WS_OVERLAPPEDWINDOW (WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX)
#define WS_EX_CLIENTEDGE 0x00000200L
#define WS_EX_APPWINDOW 0x00040000L
#define CW_USEDEFAULT ((int)0x80000000)

#define COLOR_WINDOW 5

#define HWND_BROADCAST ((HWND)(ULONG_PTR)0xffff)
#define HWND_MESSAGE ((HWND)(LONG_PTR)-3)

#define WM_NULL 0x0000
#define WM_CREATE 0x0001
#define WM_DESTROY 0x0002
#define WM_CLOSE 0x0010
#define WM_QUIT 0x0012
#define WM_GETMINMAXINFO 0x0024
#define WM_NCCREATE 0x0081
#define WM_NCDESTROY 0x0082
#define WM_NCCALCSIZE 0x0083
#define WM_POWERBROADCAST 0x0218
#define WM_DEVICECHANGE 0x0219
#define WM_USER 0x0400
#define WM_APP 0x8000

#define PBT_APMQUERYSUSPEND 0x0000
#define PBT_APMSUSPEND 0x0004
#define PBT_APMRESUMECRITICAL 0x0006
#define PBT_APMRESUMESUSPEND 0x0007
#define PBT_APMPOWERSTATUSCHANGE 0x000A
#define PBT_APMRESUMEAUTOMATIC 0x0012

#define GWLP_WNDPROC (-4)
#define GWLP_HINSTANCE (-6)
#define GWLP_HWNDPARENT (-8)
#define GWLP_ID (-12)
#define GWL_STYLE (-16)
#define GWL_EXSTYLE (-20)
#define GWLP_USERDATA (-21)

#define QS_SENDMESSAGE 0x0040
#define PM_NOREMOVE 0x0000
#define PM_REMOVE 0x0001
#define PM_QS_SENDMESSAGE (QS_SENDMESSAGE << 16)
#define MWMO_INPUTAVAILABLE 0x0004

#define DEVICE_NOTIFY_WINDOW_HANDLE 0x00000000
#define DEVICE_NOTIFY_SERVICE_HANDLE 0x00000001
#define DEVICE_NOTIFY_ALL_INTERFACE_CLASSES 0x00000004

typedef PVOID HDEVNOTIFY;
typedef LRESULT(CALLBACK* WNDPROC)(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

typedef struct tagWNDCLASSEXA {
    UINT cbSize;
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
    HICON hIconSm;
} WNDCLASSEXA;

typedef struct tagCREATESTRUCTA {
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCSTR lpszName;
    LPCSTR lpszClass;
    DWORD dwExStyle;
} CREATESTRUCTA;

typedef struct tagPOINT {
    LONG x;
    LONG y;
} POINT;

typedef struct tagMSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
} MSG;

#ifdef __cplusplus
extern "C" {
#endif

ATOM WINAPI RegisterClassExA(const WNDCLASSEXA* window_class);
BOOL WINAPI UnregisterClassA(LPCSTR name, HINSTANCE instance);
BOOL WINAPI GetClassInfoExA(HINSTANCE instance, LPCSTR name, WNDCLASSEXA* window_class);

HWND WINAPI CreateWindowExA(DWORD extended_style, LPCSTR class_name, LPCSTR title, DWORD style, int x, int y, int width,
                            int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID data);
BOOL WINAPI DestroyWindow(HWND window);
BOOL WINAPI IsWindow(HWND window);
HWND WINAPI FindWindowExA(HWND parent, HWND after, LPCSTR class_name, LPCSTR title);
DWORD WINAPI GetWindowThreadProcessId(HWND window, LPDWORD process);
LONG_PTR WINAPI GetWindowLongPtrA(HWND window, int index);
LONG_PTR WINAPI SetWindowLongPtrA(HWND window, int index, LONG_PTR value);
LRESULT WINAPI DefWindowProcA(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

LRESULT WINAPI SendMessageA(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
BOOL WINAPI PostMessageA(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
BOOL WINAPI PostThreadMessageA(DWORD thread, UINT message, WPARAM wparam, LPARAM lparam);
void WINAPI PostQuitMessage(int exit_code);
BOOL WINAPI GetMessageA(MSG* message, HWND window, UINT first, UINT last);
BOOL WINAPI PeekMessageA(MSG* message, HWND window, UINT first, UINT last, UINT options);
/* Of objects and of sent messages, those included that were there before. */
DWORD WINAPI MsgWaitForMultipleObjectsEx(DWORD count, const HANDLE* handles, DWORD milliseconds, DWORD wake_mask,
                                         DWORD flags);
BOOL WINAPI TranslateMessage(const MSG* message);
LRESULT WINAPI DispatchMessageA(const MSG* message);

HDEVNOTIFY WINAPI RegisterDeviceNotificationA(HANDLE recipient, LPVOID filter, DWORD flags);
BOOL WINAPI UnregisterDeviceNotification(HDEVNOTIFY registration);

/* At most 1023 characters and the terminator. */
int WINAPI wvsprintfA(LPSTR text, LPCSTR format, va_list arguments);

#ifdef __cplusplus
}
#endif
