/*
 * Status codes of the scanner interface.
 *
 * Every function of vyra.h but VyraBreakEnable returns one signed 32-bit status: 0 is success, every failure lies from
 * 9000 upward. One function may return a small non-zero number that is none of these codes: VyraBrenvoSetDevUI hands
 * the driver library's own result through when the scanner refuses the LED command.
 */
#ifndef VYRA_STATUS_H
#define VYRA_STATUS_H

enum VyraStatus {
    VYRA_OK = 0,

    /* The manager was busy for more than 5 seconds, or the driver library could not be brought up or down, found no
       scanner, or failed in a way that no closer code describes. */
    VYRA_INTERNAL = 9000,
    /* Memory for the call could not be had. */
    VYRA_OUT_OF_RESOURCE = 9001,
    /* The scanner behind the handle is gone: unplugged, or not back after a reset. */
    VYRA_DEVICE_UNAVAIL = 9005,
    /* The scanner did not answer the driver library in time. */
    VYRA_DEVICE_TIMEOUT = 9016,
    /* The function is present for compatibility and has no implementation. */
    VYRA_NOT_IMPLEMENTED = 9019,
    /* The driver library refused the request. */
    VYRA_DRIVER_REFUSED = 9025,

    /* VyraInitialize_N has not succeeded yet, or VyraTerminate has been called since. */
    VYRA_NOT_INITIALIZED = 9101,
    /* A device-list call without a buffer or without a count. */
    VYRA_BUF_TOO_SMALL = 9103,
    /* Eight video requests are outstanding already: fetch a result first. */
    VYRA_TOO_MANY_FRAMES = 9104,
    /* Video does not run: start it first. */
    VYRA_VIDEO_STOPPED = 9105,
    /* No image is ready yet: ask again. */
    VYRA_VIDEO_TIMEOUT = 9106,
    /* The handle names no open scanner, or eight scanners are open already. */
    VYRA_BAD_SCANNER_IDX = 9108,
    /* A null pointer, a zero capacity or a value out of range. */
    VYRA_BAD_PARAMETER = 9109,
    /* The scanner is open already or not open at all, or the system is asleep. */
    VYRA_SCN_UNAVAILABLE = 9110,
    /* The driver library is in the wrong state for the request. */
    VYRA_DRIVER_STATE = 9111,
    /* The scanner does not have the capture configuration. */
    VYRA_CAPTURE_CONFIG = 9114
};

#endif
