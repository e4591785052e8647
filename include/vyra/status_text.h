/*
 * The meaning of every status code, as data: for a host's messages, its log, and its decision whether to try again.
 *
 *     const VyraStatusText* text = VyraStatusTextOf(status);
 *     printf("%s: %s\n", text->name, text->meaning);
 *     if (text->retry == VYRA_RETRY_SOON) { ... the same call again may succeed ... }
 *
 * English, in lower case and without a full stop, so that a text can stand within a sentence. C89 and later, C++;
 * nothing need be linked.
 */
#ifndef VYRA_STATUS_TEXT_H
#define VYRA_STATUS_TEXT_H

#include <stddef.h>

#include "status.h"

/* Whether the same call, made again, can succeed. */
enum VyraRetry {
    VYRA_RETRY_NEVER = 0, /* no: the call itself has to change */
    VYRA_RETRY_SOON = 1,  /* yes, as it is: wait a moment */
    VYRA_RETRY_AFTER = 2  /* once something else was done: the two advices say what */
};

typedef struct VyraStatusText {
    int status;
    const char* name;    /* of the constant in status.h */
    const char* meaning; /* what happened */
    int retry;           /* a VyraRetry */
    const char* host;    /* what the host does next */
    const char* person;  /* what the person at the scanner does next */
} VyraStatusText;

/* The texts one after the other, 0 first; null behind the last one. */
static __inline const VyraStatusText* VyraStatusTextAt(size_t index)
{
    static const VyraStatusText texts[] = {
        {VYRA_OK, "VYRA_OK", "success", VYRA_RETRY_NEVER, "go on", "nothing"},
        {VYRA_INTERNAL, "VYRA_INTERNAL",
         "the library was busy for over 5 seconds, the scanner's driver failed, or no scanner was found",
         VYRA_RETRY_AFTER,
         "after a device list: no scanner is attached, list again when one is plugged in; otherwise read the library's "
         "log, which has the driver's own number",
         "check that a scanner is attached and that no other program uses it"},
        {VYRA_OUT_OF_RESOURCE, "VYRA_OUT_OF_RESOURCE", "the memory for the call could not be had", VYRA_RETRY_AFTER,
         "give memory back, then try again", "close other programs and try again"},
        {VYRA_DEVICE_UNAVAIL, "VYRA_DEVICE_UNAVAIL", "the scanner is not there, or not there any more",
         VYRA_RETRY_AFTER, "close the handle, wait until the scanner is listed again, and open it anew",
         "plug the scanner in again"},
        {VYRA_DEVICE_TIMEOUT, "VYRA_DEVICE_TIMEOUT", "the scanner did not answer in time", VYRA_RETRY_SOON,
         "try again; if it stays, reset the scanner", "try again; if it stays, plug the scanner out and in"},
        {VYRA_NOT_IMPLEMENTED, "VYRA_NOT_IMPLEMENTED", "the function is there for compatibility and does nothing",
         VYRA_RETRY_NEVER, "do without the function", "use a newer version of the program"},
        {VYRA_DRIVER_REFUSED, "VYRA_DRIVER_REFUSED", "the scanner's driver refused the request", VYRA_RETRY_AFTER,
         "read the driver's own number in the library's log; after a refused open, another program may have the "
         "scanner",
         "try again; if it stays, plug the scanner out and in"},
        {VYRA_NOT_INITIALIZED, "VYRA_NOT_INITIALIZED", "the library or the scanner's driver is not initialized",
         VYRA_RETRY_AFTER, "call VyraInitialize_N first", "start the program again; if it stays, reinstall the driver"},
        {VYRA_BUF_TOO_SMALL, "VYRA_BUF_TOO_SMALL", "a device list was asked for without a buffer or a count",
         VYRA_RETRY_NEVER, "pass both", "report it as a fault of the program"},
        {VYRA_TOO_MANY_FRAMES, "VYRA_TOO_MANY_FRAMES", "eight video requests are outstanding already", VYRA_RETRY_AFTER,
         "fetch a result first", "report it as a fault of the program"},
        {VYRA_VIDEO_STOPPED, "VYRA_VIDEO_STOPPED", "video does not run", VYRA_RETRY_AFTER, "start video first",
         "start the capture again"},
        {VYRA_VIDEO_TIMEOUT, "VYRA_VIDEO_TIMEOUT", "no image is ready yet", VYRA_RETRY_SOON,
         "ask again; when none comes for long, look whether the scanner is still listed",
         "if no image comes, plug the scanner out and in"},
        {VYRA_BAD_SCANNER_IDX, "VYRA_BAD_SCANNER_IDX", "no open scanner has the handle, or eight scanners are open",
         VYRA_RETRY_NEVER, "use the handle of the last open, or close a scanner first",
         "try again; if it stays, plug the scanner out and in"},
        {VYRA_BAD_PARAMETER, "VYRA_BAD_PARAMETER", "a null pointer, a count of zero, or a value out of range",
         VYRA_RETRY_NEVER, "correct the arguments", "check the values that were given"},
        {VYRA_SCN_UNAVAILABLE, "VYRA_SCN_UNAVAILABLE",
         "the scanner is open already or not open, or the computer sleeps or has just woken up", VYRA_RETRY_AFTER,
         "close the scanner before it is opened again; after a sleep wait for the resume event (notify.h)",
         "wake the computer, use it, and try again"},
        {VYRA_DRIVER_STATE, "VYRA_DRIVER_STATE", "the scanner's driver is in the wrong state for this", VYRA_RETRY_SOON,
         "stop video and start it again", "wait a moment and try again; if it stays, plug the scanner out and in"},
        {VYRA_CAPTURE_CONFIG, "VYRA_CAPTURE_CONFIG", "the scanner does not have this capture configuration",
         VYRA_RETRY_NEVER, "use a mode that the scanner has: VyraBrenvoZultaIsRollSupported tells of rolled fingers",
         "use a way of capturing that the scanner has"}};

    return index < sizeof texts / sizeof texts[0] ? &texts[index] : NULL;
}

/* The text of a status. Never null: numbers that are no status of the library have a text that says so, with the number
 * 1 for the driver's own results (1 to 8999), which VyraBrenvoSetDevUI hands through, and -1 for all others. */
static __inline const VyraStatusText* VyraStatusTextOf(int status)
{
    static const VyraStatusText driver = {1,
                                          "driver result",
                                          "the scanner's driver refused the request with a number of its own",
                                          VYRA_RETRY_AFTER,
                                          "send another record before this one again: it counts as shown",
                                          "plug the scanner out and in and try again"};
    static const VyraStatusText unknown = {-1,
                                           "unknown status",
                                           "a code that this version of the header does not know",
                                           VYRA_RETRY_NEVER,
                                           "use the header of the library's own version",
                                           "use a newer version of the program"};
    const VyraStatusText* text;
    size_t index;

    for (index = 0; (text = VyraStatusTextAt(index)) != NULL; ++index) {
        if (text->status == status) {
            return text;
        }
    }
    return status > 0 && status < 9000 ? &driver : &unknown;
}

#endif
