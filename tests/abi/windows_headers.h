/* The library's header beside the system's, which has a macro of the name DeviceCapabilities. */
#ifndef ABI_WINDOWS_HEADERS_H
#define ABI_WINDOWS_HEADERS_H

#ifdef __cplusplus
extern "C" {
#endif

int capabilities_size_with_windows_before(void);
int capabilities_size_with_windows_after(void);

#ifdef __cplusplus
}
#endif

#endif
