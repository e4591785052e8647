"""Functions, records and constants of vyrabrenvozulta.dll as ctypes has them.

Made by bindings/generate from include/vyra: change the headers, not this file.
"""
from ctypes import (CFUNCTYPE, POINTER, Structure, c_bool, c_char, c_char_p, c_int32, c_size_t, c_uint8, c_uint32,
                    c_uint64, c_void_p)

OK = 0
INTERNAL = 9000
OUT_OF_RESOURCE = 9001
DEVICE_UNAVAIL = 9005
DEVICE_TIMEOUT = 9016
NOT_IMPLEMENTED = 9019
DRIVER_REFUSED = 9025
NOT_INITIALIZED = 9101
BUF_TOO_SMALL = 9103
TOO_MANY_FRAMES = 9104
VIDEO_STOPPED = 9105
VIDEO_TIMEOUT = 9106
BAD_SCANNER_IDX = 9108
BAD_PARAMETER = 9109
SCN_UNAVAILABLE = 9110
DRIVER_STATE = 9111
CAPTURE_CONFIG = 9114
VERSION_MAJOR = 1
VERSION_MINOR = 0
VERSION_PATCH = 0
NO_HANDLE = 4294967295
MAX_SCANNERS = 8
MAX_VIDEO_REQUESTS = 8
NAME_SLOT = 255
LOG_OFF = 0
LOG_TRACE = 1
LOG_ALL = 3
MODE_ROLL = 0
MODE_FLAT = 1
FLAT_WIDTH = 1600
FLAT_HEIGHT = 1500
FLAT_SIZE = 2400000
ROLL_WIDTH = 1608
ROLL_HEIGHT = 1000
ROLL_SIZE = 1608000
PIXELS_PER_INCH = 500
TONE_DOUBLE = 0
TONE_LONG = 1
TONE_SHORT = 2
TONE_LOW = 3
LED_OFF = 0
LED_LIT_1 = 1
LED_LIT_2 = 2
LED_LIT_3 = 3
CAPABILITIES_ROLL = 0
CAPABILITIES_FLAT = 1
EVENT_DEVICE = 5
CALIBRATION_WIDTH = 3216
CALIBRATION_HEIGHT = 2004
CALIBRATION_SIZE = 6444864
USB_PLUGGED = 0
USB_UNPLUGGED = 1
POWER_SLEEP = 0
POWER_RESUME = 1
FUNCTION_COUNT = 59
MAX_IMAGE_SIZE = 2400000

MEANINGS = {
    9000: 'The manager was busy for more than 5 seconds, or the driver library could not be brought up or down, found no scanner, or failed in a way that no closer code describes',
    9001: 'Memory for the call could not be had',
    9005: 'The scanner behind the handle is gone: unplugged, or not back after a reset',
    9016: 'The scanner did not answer the driver library in time',
    9019: 'The function is present for compatibility and has no implementation',
    9025: 'The driver library refused the request',
    9101: 'VyraInitialize_N has not succeeded yet, or VyraTerminate has been called since',
    9103: 'A device-list call without a buffer or without a count',
    9104: 'Eight video requests are outstanding already: fetch a result first',
    9105: 'Video does not run: start it first',
    9106: 'No image is ready yet: ask again',
    9108: 'The handle names no open scanner, or eight scanners are open already',
    9109: 'A null pointer, a zero capacity or a value out of range',
    9110: 'The scanner is open already or not open at all, or the system is asleep',
    9111: 'The driver library is in the wrong state for the request',
    9114: 'The scanner does not have the capture configuration',
}


class DeviceListRecord(Structure):
    _fields_ = [
        ("reserved_0", c_uint8 * 4),
        ("name", c_char * 255),
        ("reserved_259", c_uint8),
    ]


class DeviceInfo(Structure):
    _fields_ = [
        ("manufacturer", c_char * 8),
        ("model", c_char * 16),
        ("serial_number", c_char * 16),
        ("version", c_char * 12),
    ]


class VyraDeviceCapabilities(Structure):
    _fields_ = [
        ("constant_0", c_uint32),
        ("constant_1", c_uint32),
        ("resolution", c_uint32),
        ("area_width", c_uint32),
        ("area_height", c_uint32),
        ("image_width", c_uint32),
        ("image_height", c_uint32),
        ("reserved", c_uint32 * 7),
    ]


class DevUI(Structure):
    _fields_ = [
        ("group_a", c_uint32 * 4),
        ("group_b", c_uint32 * 4),
        ("group_c", c_uint32 * 2),
        ("group_a_on", c_uint32),
        ("group_b_on", c_uint32),
        ("group_c_on", c_uint32),
    ]


VyraDeviceEventCallback = CFUNCTYPE(c_int32, c_int32, c_char_p, c_int32)
VyraUICallback = CFUNCTYPE(None, c_void_p)
VyraUsbEventCallback = CFUNCTYPE(None, c_int32, c_int32, c_int32)
VyraPowerEventCallback = CFUNCTYPE(None, c_int32)

# name: (result, parameters, exported name on Windows, exported name elsewhere)
FUNCTIONS = {
    "VyraBreakEnable": (None, (),
        "VyraBreakEnable", "VyraBreakEnable"),
    "VyraBusReset": (c_int32, (),
        "VyraBusReset", "VyraBusReset"),
    "VyraBusReset_N": (c_int32, (c_uint32,),
        "VyraBusReset_N", "VyraBusReset_N"),
    "VyraCloseDevice_N": (c_int32, (c_uint32,),
        "VyraCloseDevice_N", "VyraCloseDevice_N"),
    "VyraGetBufSize": (c_int32, (),
        "VyraGetBufSize", "VyraGetBufSize"),
    "VyraGetDeviceList": (c_int32, (POINTER(c_uint32), c_void_p),
        "VyraGetDeviceList", "VyraGetDeviceList"),
    "VyraGetDeviceList_N": (c_int32, (POINTER(c_uint32), POINTER(DeviceListRecord)),
        "VyraGetDeviceList_N", "VyraGetDeviceList_N"),
    "VyraGetImage": (c_int32, (),
        "VyraGetImage", "VyraGetImage"),
    "VyraGetMemory": (c_int32, (),
        "VyraGetMemory", "VyraGetMemory"),
    "VyraGetStatus": (c_int32, (c_uint32,),
        "VyraGetStatus", "VyraGetStatus"),
    "VyraGetVerInfo": (c_int32, (c_void_p,),
        "VyraGetVerInfo", "VyraGetVerInfo"),
    "VyraGetVersion": (c_int32, (c_void_p, c_uint32),
        "VyraGetVersion", "VyraGetVersion"),
    "VyraGetVideoBandPosition": (c_int32, (),
        "VyraGetVideoBandPosition", "VyraGetVideoBandPosition"),
    "VyraGetVideoResult": (c_int32, (c_uint32, POINTER(c_void_p), POINTER(c_uint64)),
        "VyraGetVideoResult", "VyraGetVideoResult"),
    "VyraInitialization": (c_int32, (),
        "VyraInitialization", "VyraInitialization"),
    "VyraInitialize": (c_int32, (),
        "VyraInitialize", "VyraInitialize"),
    "VyraInitialize_N": (c_int32, (VyraDeviceEventCallback, c_uint32, c_int32),
        "VyraInitialize_N", "VyraInitialize_N"),
    "VyraBrenvoCalibrateScanner": (c_int32, (),
        "VyraBrenvoCalibrateScanner", "VyraBrenvoCalibrateScanner"),
    "VyraBrenvoDeviceConnected": (c_int32, (),
        "VyraBrenvoDeviceConnected", "VyraBrenvoDeviceConnected"),
    "VyraBrenvoGetCapabilities": (c_int32, (c_uint32, c_uint32, POINTER(VyraDeviceCapabilities)),
        "VyraBrenvoGetCapabilities", "VyraBrenvoGetCapabilities"),
    "VyraBrenvoGetDetectedFingersBox": (c_int32, (),
        "VyraBrenvoGetDetectedFingersBox", "VyraBrenvoGetDetectedFingersBox"),
    "VyraBrenvoGetDevUI": (c_int32, (c_uint32, POINTER(DevUI)),
        "VyraBrenvoGetDevUI", "VyraBrenvoGetDevUI"),
    "VyraBrenvoGetDeviceInfo": (c_int32, (c_uint32, POINTER(DeviceInfo)),
        "VyraBrenvoGetDeviceInfo", "VyraBrenvoGetDeviceInfo"),
    "VyraBrenvoGetFFDParameters": (c_int32, (),
        "VyraBrenvoGetFFDParameters", "VyraBrenvoGetFFDParameters"),
    "VyraBrenvoGetFinalImage": (c_int32, (),
        "VyraBrenvoGetFinalImage", "VyraBrenvoGetFinalImage"),
    "VyraBrenvoMGGetDeviceInfo": (c_int32, (c_char_p, c_void_p, POINTER(DeviceInfo)),
        "VyraBrenvoMGGetDeviceInfo", "VyraBrenvoMGGetDeviceInfo"),
    "VyraBrenvoSetBuzzer": (c_int32, (c_uint32, c_uint32, c_void_p, c_void_p),
        "VyraBrenvoSetBuzzer", "VyraBrenvoSetBuzzer"),
    "VyraBrenvoSetDevUI": (c_int32, (c_uint32, POINTER(DevUI)),
        "VyraBrenvoSetDevUI", "VyraBrenvoSetDevUI"),
    "VyraBrenvoSetFFDParameters": (c_int32, (),
        "VyraBrenvoSetFFDParameters", "VyraBrenvoSetFFDParameters"),
    "VyraBrenvoSetUICallBack": (c_int32, (c_uint32, VyraUICallback, c_void_p),
        "VyraBrenvoSetUICallBack", "VyraBrenvoSetUICallBack"),
    "VyraBrenvoStartVideo": (c_int32, (c_uint32, c_uint32, c_uint32),
        "VyraBrenvoStartVideo", "VyraBrenvoStartVideo"),
    "VyraBrenvoZultaGetGlobalParamSize": (c_int32, (c_uint32, POINTER(c_uint32)),
        "VyraBrenvoZultaGetGlobalParamSize", "VyraBrenvoZultaGetGlobalParamSize"),
    "VyraBrenvoZultaGetPortType": (c_int32, (c_uint32, POINTER(c_uint32)),
        "VyraBrenvoZultaGetPortType", "VyraBrenvoZultaGetPortType"),
    "VyraBrenvoZultaGetSnapshotAcquisition": (c_int32, (c_uint32, c_void_p, c_uint32, c_uint32, c_uint32),
        "VyraBrenvoZultaGetSnapshotAcquisition", "VyraBrenvoZultaGetSnapshotAcquisition"),
    "VyraBrenvoZultaIsRollSupported": (c_int32, (c_uint32, POINTER(c_uint8)),
        "VyraBrenvoZultaIsRollSupported", "VyraBrenvoZultaIsRollSupported"),
    "VyraBrenvoZultaOpenDevice": (c_int32, (c_char_p, POINTER(c_uint32), c_uint8),
        "VyraBrenvoZultaOpenDevice", "VyraBrenvoZultaOpenDevice"),
    "VyraBrenvoZultaReadFilters": (c_int32, (c_uint32, c_void_p, c_void_p, c_void_p),
        "VyraBrenvoZultaReadFilters", "VyraBrenvoZultaReadFilters"),
    "VyraBrenvoZultaReadGlobalParam": (c_int32, (c_uint32, c_void_p, c_uint32),
        "VyraBrenvoZultaReadGlobalParam", "VyraBrenvoZultaReadGlobalParam"),
    "VyraBrenvoZultaReadUniformityBuffers": (c_int32, (c_uint32, c_void_p, c_int32),
        "VyraBrenvoZultaReadUniformityBuffers", "VyraBrenvoZultaReadUniformityBuffers"),
    "VyraBrenvoZultaSetParameters": (c_int32, (c_uint32, c_uint8, c_uint32),
        "VyraBrenvoZultaSetParameters", "VyraBrenvoZultaSetParameters"),
    "VyraBrenvoZultaStartCamera": (c_int32, (c_uint32,),
        "VyraBrenvoZultaStartCamera", "VyraBrenvoZultaStartCamera"),
    "VyraOpenDevice": (c_int32, (c_char_p, POINTER(c_uint32)),
        "VyraOpenDevice", "VyraOpenDevice"),
    "VyraOpenDevice_N": (c_int32, (c_char_p, c_void_p, POINTER(c_uint32)),
        "VyraOpenDevice_N", "VyraOpenDevice_N"),
    "VyraPutBitmap": (c_int32, (),
        "VyraPutBitmap", "VyraPutBitmap"),
    "VyraPutCommand": (c_int32, (),
        "VyraPutCommand", "VyraPutCommand"),
    "VyraPutImage": (c_int32, (),
        "VyraPutImage", "VyraPutImage"),
    "VyraPutMemory": (c_int32, (c_uint32, c_void_p, c_size_t),
        "VyraPutMemory", "VyraPutMemory"),
    "VyraSetTimeouts": (c_int32, (),
        "VyraSetTimeouts", "VyraSetTimeouts"),
    "VyraSetVideoBandParams": (c_int32, (),
        "VyraSetVideoBandParams", "VyraSetVideoBandParams"),
    "VyraStartVideo": (c_int32, (),
        "VyraStartVideo", "VyraStartVideo"),
    "VyraStopVideo": (c_int32, (c_uint32,),
        "VyraStopVideo", "VyraStopVideo"),
    "VyraSubmitVideoRequest": (c_int32, (c_uint32, c_void_p, c_uint64),
        "VyraSubmitVideoRequest", "VyraSubmitVideoRequest"),
    "VyraTerminate": (c_int32, (),
        "VyraTerminate", "VyraTerminate"),
    "InitUsbNotifier": (c_bool, (c_char_p,),
        "?InitUsbNotifier@@YA_NPEAD@Z", "_Z15InitUsbNotifierPc"),
    "TerminateUsbNotifier": (c_bool, (c_char_p,),
        "?TerminateUsbNotifier@@YA_NPEAD@Z", "_Z20TerminateUsbNotifierPc"),
    "SubscribeToUsbEvent": (c_bool, (c_int32, c_int32, VyraUsbEventCallback),
        "?SubscribeToUsbEvent@@YA_NHHP6AXHHW4UsbPlugEventType@@@Z@Z", "_Z19SubscribeToUsbEventiiPFvii16UsbPlugEventTypeE"),
    "UnSubscribeToUsbEvent": (c_bool, (c_int32, c_int32),
        "?UnSubscribeToUsbEvent@@YA_NHH@Z", "_Z21UnSubscribeToUsbEventii"),
    "SubscribeToPowerEvent": (c_bool, (VyraPowerEventCallback,),
        "?SubscribeToPowerEvent@@YA_NP6AXW4SysPowerEventType@@@Z@Z", "_Z21SubscribeToPowerEventPFv17SysPowerEventTypeE"),
    "UnsubscribeToPowerEvent": (c_bool, (VyraPowerEventCallback,),
        "?UnsubscribeToPowerEvent@@YA_NP6AXW4SysPowerEventType@@@Z@Z", "_Z23UnsubscribeToPowerEventPFv17SysPowerEventTypeE"),
}
