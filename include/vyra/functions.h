/*
 * Every function of vyrabrenvozulta.dll as data: VYRA_FUNCTIONS lists the 59 exports with their results, parameters and
 * arguments, and VyraFunctions holds a pointer to each. What the functions do is said in vyra.h and notify.h.
 *
 * X(result, name, parameters, arguments) is expanded for each function, in the order of the exports. A host that wants
 * the functions under their own names, although it loads the library, defines them from the list:
 *
 *     static VyraFunctions loaded;
 *     #define FORWARD(result, name, parameters, arguments) result name parameters { return loaded.name arguments; }
 *     VYRA_FUNCTIONS(FORWARD)                                            (C++, where a void function may return one)
 *
 * The notification functions, which notify.h declares for C++ alone, are plain C here: a truth value is one byte, an
 * event a number. C++ sees notify.h's own types, which are the same to the machine.
 */
#ifndef VYRA_FUNCTIONS_H
#define VYRA_FUNCTIONS_H

#include "vyra.h"

#ifdef __cplusplus
#include "notify.h"

typedef bool VyraBool;
typedef UsbEventCallback VyraUsbEventCallback;
typedef PowerEventCallback VyraPowerEventCallback;
#else
typedef unsigned char VyraBool; /* 0 or 1 */
typedef void (*VyraUsbEventCallback)(int vendorId, int productId, int event);
typedef void (*VyraPowerEventCallback)(int event);
#endif

/* The events of the two callbacks. */
#define VYRA_USB_PLUGGED 0
#define VYRA_USB_UNPLUGGED 1
#define VYRA_POWER_SLEEP 0
#define VYRA_POWER_RESUME 1

/* clang-format off */
#define VYRA_SCANNER_FUNCTIONS(X) \
    X(void, VyraBreakEnable, (void), ()) \
    X(int32_t, VyraBusReset, (void), ()) \
    X(int32_t, VyraBusReset_N, (uint32_t handle), (handle)) \
    X(int32_t, VyraCloseDevice_N, (uint32_t handle), (handle)) \
    X(int32_t, VyraGetBufSize, (void), ()) \
    X(int32_t, VyraGetDeviceList, (uint32_t* count, void* buffer), (count, buffer)) \
    X(int32_t, VyraGetDeviceList_N, (uint32_t* count, DeviceListRecord* buffer), (count, buffer)) \
    X(int32_t, VyraGetImage, (void), ()) \
    X(int32_t, VyraGetMemory, (void), ()) \
    X(int32_t, VyraGetStatus, (uint32_t handle), (handle)) \
    X(int32_t, VyraGetVerInfo, (void* unused), (unused)) \
    X(int32_t, VyraGetVersion, (void* unused_1, uint32_t unused_2), (unused_1, unused_2)) \
    X(int32_t, VyraGetVideoBandPosition, (void), ()) \
    X(int32_t, VyraGetVideoResult, (uint32_t handle, void** buffer, uint64_t* context), (handle, buffer, context)) \
    X(int32_t, VyraInitialization, (void), ()) \
    X(int32_t, VyraInitialize, (void), ()) \
    X(int32_t, VyraInitialize_N, (VyraDeviceEventCallback callback, uint32_t log_level, int32_t log_limit), \
      (callback, log_level, log_limit)) \
    X(int32_t, VyraBrenvoCalibrateScanner, (void), ()) \
    X(int32_t, VyraBrenvoDeviceConnected, (void), ()) \
    X(int32_t, VyraBrenvoGetCapabilities, (uint32_t handle, uint32_t index, VyraDeviceCapabilities* record), \
      (handle, index, record)) \
    X(int32_t, VyraBrenvoGetDetectedFingersBox, (void), ()) \
    X(int32_t, VyraBrenvoGetDevUI, (uint32_t handle, DevUI* record), (handle, record)) \
    X(int32_t, VyraBrenvoGetDeviceInfo, (uint32_t handle, DeviceInfo* record), (handle, record)) \
    X(int32_t, VyraBrenvoGetFFDParameters, (void), ()) \
    X(int32_t, VyraBrenvoGetFinalImage, (void), ()) \
    X(int32_t, VyraBrenvoMGGetDeviceInfo, (const char* name, const void* unused, DeviceInfo* record), \
      (name, unused, record)) \
    X(int32_t, VyraBrenvoSetBuzzer, (uint32_t handle, uint32_t pattern, const void* unused_1, const void* unused_2), \
      (handle, pattern, unused_1, unused_2)) \
    X(int32_t, VyraBrenvoSetDevUI, (uint32_t handle, const DevUI* record), (handle, record)) \
    X(int32_t, VyraBrenvoSetFFDParameters, (void), ()) \
    X(int32_t, VyraBrenvoSetUICallBack, (uint32_t handle, VyraUICallback callback, void* context), \
      (handle, callback, context)) \
    X(int32_t, VyraBrenvoStartVideo, (uint32_t handle, uint32_t mode, uint32_t unused), (handle, mode, unused)) \
    X(int32_t, VyraBrenvoZultaGetGlobalParamSize, (uint32_t handle, uint32_t* size), (handle, size)) \
    X(int32_t, VyraBrenvoZultaGetPortType, (uint32_t handle, uint32_t* port_type), (handle, port_type)) \
    X(int32_t, VyraBrenvoZultaGetSnapshotAcquisition, (uint32_t handle, void* buffer, uint32_t a, uint32_t b, uint32_t c), \
      (handle, buffer, a, b, c)) \
    X(int32_t, VyraBrenvoZultaIsRollSupported, (uint32_t handle, uint8_t* supported), (handle, supported)) \
    X(int32_t, VyraBrenvoZultaOpenDevice, (const char* name, uint32_t* handle, uint8_t option), \
      (name, handle, option)) \
    X(int32_t, VyraBrenvoZultaReadFilters, (uint32_t handle, void* a, void* b, void* c), (handle, a, b, c)) \
    X(int32_t, VyraBrenvoZultaReadGlobalParam, (uint32_t handle, void* buffer, uint32_t size), (handle, buffer, size)) \
    X(int32_t, VyraBrenvoZultaReadUniformityBuffers, (uint32_t handle, void* buffer, int32_t size), \
      (handle, buffer, size)) \
    X(int32_t, VyraBrenvoZultaSetParameters, (uint32_t handle, uint8_t parameter, uint32_t value), \
      (handle, parameter, value)) \
    X(int32_t, VyraBrenvoZultaStartCamera, (uint32_t handle), (handle)) \
    X(int32_t, VyraOpenDevice, (const char* name, uint32_t* handle), (name, handle)) \
    X(int32_t, VyraOpenDevice_N, (const char* name, const void* unused, uint32_t* handle), (name, unused, handle)) \
    X(int32_t, VyraPutBitmap, (void), ()) \
    X(int32_t, VyraPutCommand, (void), ()) \
    X(int32_t, VyraPutImage, (void), ()) \
    X(int32_t, VyraPutMemory, (uint32_t handle, const void* image, size_t length), (handle, image, length)) \
    X(int32_t, VyraSetTimeouts, (void), ()) \
    X(int32_t, VyraSetVideoBandParams, (void), ()) \
    X(int32_t, VyraStartVideo, (void), ()) \
    X(int32_t, VyraStopVideo, (uint32_t handle), (handle)) \
    X(int32_t, VyraSubmitVideoRequest, (uint32_t handle, void* buffer, uint64_t context), (handle, buffer, context)) \
    X(int32_t, VyraTerminate, (void), ())

#define VYRA_NOTIFICATION_FUNCTIONS(X) \
    X(VyraBool, InitUsbNotifier, (char* windowClassName), (windowClassName)) \
    X(VyraBool, TerminateUsbNotifier, (char* windowClassName), (windowClassName)) \
    X(VyraBool, SubscribeToUsbEvent, (int vendorId, int productId, VyraUsbEventCallback callback), \
      (vendorId, productId, callback)) \
    X(VyraBool, UnSubscribeToUsbEvent, (int vendorId, int productId), (vendorId, productId)) \
    X(VyraBool, SubscribeToPowerEvent, (VyraPowerEventCallback callback), (callback)) \
    X(VyraBool, UnsubscribeToPowerEvent, (VyraPowerEventCallback callback), (callback))

#define VYRA_FUNCTIONS(X) VYRA_SCANNER_FUNCTIONS(X) VYRA_NOTIFICATION_FUNCTIONS(X)

#define VYRA_FUNCTION_COUNT 59

#define VYRA_MEMBER(result, name, parameters, arguments) result(*name) parameters;
/* clang-format on */

/* A pointer to each function, called as a member: functions.VyraTerminate(). */
typedef struct VyraFunctions {
    VYRA_FUNCTIONS(VYRA_MEMBER)
} VyraFunctions;

#endif
