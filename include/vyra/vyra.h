/*
 * The scanner interface of vyrabrenvozulta.dll, for hosts in C (C89 and later) and C++.
 *
 * Order of calls
 *   VyraInitialize_N          once, before anything else
 *   VyraGetDeviceList[_N]     names the attached scanners
 *   VyraOpenDevice            opens one by name and gives its handle
 *   VyraBrenvoStartVideo      starts capture
 *   VyraSubmitVideoRequest,   hand empty buffers in and fetch filled ones,
 *   VyraGetVideoResult        for as long as video runs
 *   VyraStopVideo             stops capture
 *   VyraCloseDevice_N         closes the scanner
 *   VyraTerminate             closes what is still open and releases the driver; the cycle may then start again
 *
 * What surprises hosts
 *
 * One scanner in a process delivers images: the one that was opened last. Opening another silences it for good, and
 * closing that other one does not bring it back: close it and open it anew. Stop its video before: what it still
 * captures comes to the buffers of the other one. Scanners that capture at the same time need a process each.
 *
 * The sizes in the capability record are not the sizes of the images. Index 0 says 800 x 750; a rolled image has 1608 x
 * 1000 pixels. A buffer has VYRA_FLAT_SIZE or VYRA_ROLL_SIZE bytes, or VYRA_MAX_IMAGE_SIZE for either; the library is
 * told no size and writes the whole image.
 *
 * A pulled cable looks like "no image yet" (9106) for ever. Only the device-event callback (plugged is 0) and
 * VyraGetStatus (9005) tell. Then: stop and close the scanner, whatever they answer, wait for it to be plugged in, list
 * and open it anew.
 *
 * Every poll that finds no image (9106) is a line in the log at level 3, and a write to the disk. Ask every few
 * milliseconds, never in an empty loop; or use a lower level while images come.
 *
 * Every start of video takes 200 ms, and keeps one processor busy until video stops; a start of video that runs, one more
 * until the scanner is closed.
 *
 * At sleep and resume the library writes a line each to the host's standard output, "RQ7-3050 sleep" and "RQ7-3050
 * resume".
 *
 * Images are what the sensor saw. In the rolled modes that is a stream of single images while the finger rolls; finding
 * the finger, putting them together, cutting fingers apart and judging the quality is the host's work.
 *
 * Conventions
 *
 * Status     Every function but VyraBreakEnable returns a status of status.h: 0 is success. Every function that is not
 *            said to have a fixed result may return 9000 (the library was busy for 5 seconds, or failed internally)
 *            and 9001 (no memory), and, but for VyraInitialize_N, 9101 (not initialized). Those statuses are not
 *            repeated below.
 * Refusals   A function that "asks the scanner" may also return what the driver library's refusal amounts to: 9000,
 *            9005 (the scanner is gone), 9016 (no answer in time), 9025 (refused), 9101, 9108, 9109, 9111 (wrong state)
 *            or 9114 (no such capture configuration). The log has the driver's own number.
 * Handles    A handle is an unsigned 32-bit number; 0xFFFFFFFF (VYRA_NO_HANDLE) names none. A new handle is the number
 *            of scanners open at that moment. After closing handle 0 of two, the next open therefore gives handle 1
 *            again and displaces the scanner that had it: close in reverse order of opening. Every function that takes
 *            a handle may return 9108 (no open scanner has it), 9110 (the system sleeps, or the scanner is not open)
 *            and 9005 (the scanner's object is missing), unless said otherwise.
 * Names      Zero-terminated 8-bit text, as the device lists give it. Opening compares names without regard to case.
 * Lists      A list with fewer places than scanners is cut without a word: offer VYRA_MAX_SCANNERS places.
 * Memory     The host owns every buffer and record it passes. A function that fails leaves results as they were unless
 *            said otherwise. A video buffer belongs to the library from submit until its result comes back, or until
 *            video is started again or stopped, or the scanner's handle is given up: by VyraCloseDevice_N, by
 *            VyraTerminate, or by an open that displaces it. The call waits for an image that is being copied, and no
 *            buffer is written after it. Result pointers must be valid where no null test is mentioned.
 * Threads    Every function may be called from any thread. All calls but VyraGetStatus are carried out one at a time: a
 *            call waits for the one before it, at most 5 seconds, and then returns 9000. "At once" below means: as soon
 *            as that wait is over.
 * Callbacks  Host callbacks run while the library works for that call or event. They may call any function of this
 *            header on their own thread, except where said otherwise, but must not wait for another thread that calls
 *            the library, and must not throw.
 * Loading    The library pins itself: once VyraInitialize_N has brought the driver up, or the notification service was
 *            started, FreeLibrary leaves it loaded until the process ends, because the driver keeps the addresses of
 *            its functions and its threads end in their own time. A library that was only loaded unloads as usual.
 *            Nothing of it may be called from DllMain. VyraStopVideo, VyraCloseDevice_N and VyraTerminate may be called
 *            from a static destructor while the process ends: they end, although the library's threads have gone.
 * Stability  The names of the functions, the layouts of the records and the values of the statuses are fixed: hosts
 *            in the field are compiled against them.
 * Units      Sizes are in bytes, images are 8-bit grey, one byte a pixel, rows from top to bottom without padding.
 * System     Windows 7 and later, 64-bit.
 */
#ifndef VYRA_H
#define VYRA_H

#include <stddef.h>
#include <stdint.h>

#include "status.h" /* beside this file, whichever folder the host searches */

#ifdef __cplusplus
extern "C" {
#endif

/* The version of this header, which is that of the library it came with: major.minor.patch, and as one number that
   rises. The library's own is in its file's version resource. */
#define VYRA_VERSION_MAJOR 1
#define VYRA_VERSION_MINOR 0
#define VYRA_VERSION_PATCH 0
#define VYRA_VERSION (VYRA_VERSION_MAJOR * 10000 + VYRA_VERSION_MINOR * 100 + VYRA_VERSION_PATCH)
#define VYRA_VERSION_TEXT \
    VYRA_TEXT_OF(VYRA_VERSION_MAJOR) "." VYRA_TEXT_OF(VYRA_VERSION_MINOR) "." VYRA_TEXT_OF(VYRA_VERSION_PATCH)
#define VYRA_TEXT_OF(number) VYRA_TEXT_AS_WRITTEN(number)
#define VYRA_TEXT_AS_WRITTEN(number) #number

#define VYRA_NO_HANDLE 0xFFFFFFFFu
#define VYRA_MAX_SCANNERS 8u       /* scanners that can be open, and that a device list can hold */
#define VYRA_MAX_VIDEO_REQUESTS 8u /* video requests that can be outstanding on one scanner */
#define VYRA_NAME_SLOT 255u        /* bytes of one name in VyraGetDeviceList's buffer */

/* Levels of the log, for VyraInitialize_N. */
#define VYRA_LOG_OFF 0u
#define VYRA_LOG_TRACE 1u /* plug events only; no errors */
#define VYRA_LOG_ALL 3u   /* errors too, and a poll without an image is one: not for a loop that asks without pause */

/* Modes of VyraBrenvoStartVideo: these two are recommended. The scanner has two ways to capture; modes 2 and 4 to 8 are
   other numbers for the flat one, 9 to 18 for the rolled one, 3 and all above 18 are none. */
#define VYRA_MODE_ROLL 0u
#define VYRA_MODE_FLAT 1u
#define VYRA_MODE_IS_ROLL(mode) ((mode) == 0 || ((mode) >= 9 && (mode) <= 18))
#define VYRA_MODE_IS_FLAT(mode) ((mode) == 1 || (mode) == 2 || ((mode) >= 4 && (mode) <= 8))

/* The images of a standard scanner, in pixels and bytes, at 500 pixels per inch. The last three are for a mode
   that there is. */
#define VYRA_FLAT_WIDTH 1600u
#define VYRA_FLAT_HEIGHT 1500u
#define VYRA_FLAT_SIZE 2400000u
#define VYRA_ROLL_WIDTH 1608u
#define VYRA_ROLL_HEIGHT 1000u
#define VYRA_ROLL_SIZE 1608000u
#define VYRA_MAX_IMAGE_SIZE VYRA_FLAT_SIZE /* a buffer of this size takes an image of any mode */
#define VYRA_PIXELS_PER_INCH 500u
#define VYRA_MODE_WIDTH(mode) (VYRA_MODE_IS_ROLL(mode) ? VYRA_ROLL_WIDTH : VYRA_FLAT_WIDTH)
#define VYRA_MODE_HEIGHT(mode) (VYRA_MODE_IS_ROLL(mode) ? VYRA_ROLL_HEIGHT : VYRA_FLAT_HEIGHT)
#define VYRA_MODE_SIZE(mode) (VYRA_MODE_IS_ROLL(mode) ? VYRA_ROLL_SIZE : VYRA_FLAT_SIZE)

/* Tones of VyraBrenvoSetBuzzer. */
#define VYRA_TONE_DOUBLE 0u /* 1000 Hz for 200 ms, then 1000 Hz for 300 ms */
#define VYRA_TONE_LONG 1u   /* 1000 Hz for 600 ms */
#define VYRA_TONE_SHORT 2u  /* 1000 Hz for 300 ms */
#define VYRA_TONE_LOW 3u    /* 800 Hz for 600 ms */

/* States of a LED in the record DevUI. How the three lit ones look is the scanner's affair. */
#define VYRA_LED_OFF 0u
#define VYRA_LED_LIT_1 1u
#define VYRA_LED_LIT_2 2u
#define VYRA_LED_LIT_3 3u

/* Capture indexes of VyraBrenvoGetCapabilities that say something. */
#define VYRA_CAPABILITIES_ROLL 0u
#define VYRA_CAPABILITIES_FLAT 1u

/* Called when a scanner is plugged in (plugged is 1) or pulled out (0). event is always 5; name is valid during the
   call only. The result is ignored. Runs where the driver library tells of it: on a thread of its own, as a rule. */
typedef int32_t (*VyraDeviceEventCallback)(int32_t event, const char* name, int32_t plugged);
#define VYRA_EVENT_DEVICE 5

/* Called after every LED command of a scanner with the context that was registered. Runs inside VyraBrenvoSetDevUI. */
typedef void (*VyraUICallback)(void* context);

/* One scanner in the list of VyraGetDeviceList_N, 260 bytes. */
typedef struct DeviceListRecord {
    uint8_t reserved_0[4]; /* not written */
    char name[255];        /* padded with zeros; without terminator when the name has 255 characters or more */
    uint8_t reserved_259;  /* not written */
} DeviceListRecord;

/* Who made the scanner and which one it is, 52 bytes. All texts are zero-terminated. */
typedef struct DeviceInfo {
    char manufacturer[8]; /* "ORVANE" */
    char model[16];       /* "RQ7-3050" */
    char serial_number[16];
    char version[12]; /* firmware version: major, minor, revision letter, for instance "2.5.b" */
} DeviceInfo;

/* What one capture index offers, 56 bytes. <windows.h> has a macro of the record's short name: a host that includes it
   uses the long one. */
typedef struct VyraDeviceCapabilities {
    uint32_t constant_0;  /* always 1 */
    uint32_t constant_1;  /* always 1 */
    uint32_t resolution;  /* pixels per inch */
    uint32_t area_width;  /* thousandths of an inch */
    uint32_t area_height; /* thousandths of an inch */
    uint32_t image_width; /* pixels of the area; a rolled image has others: see the top */
    uint32_t image_height;
    uint32_t reserved[7]; /* written as 0 */
} VyraDeviceCapabilities;
#ifndef DeviceCapabilities
typedef VyraDeviceCapabilities DeviceCapabilities;
#endif

/* The LEDs of a scanner in three groups, 52 bytes. A position is VYRA_LED_OFF or one of its lit states; any other value
   is kept but shown as off. Of the groups that are switched on, only the first is shown. */
typedef struct DevUI {
    uint32_t group_a[4];
    uint32_t group_b[4];
    uint32_t group_c[2];
    uint32_t group_a_on; /* non-zero: show group A */
    uint32_t group_b_on;
    uint32_t group_c_on;
} DevUI;

/* ---- Session ------------------------------------------------------------------------------------------------------ */

/* Brings up the driver library, reads the list of attached scanners and starts the notification service (notify.h).
   When the library is initialized already, it is terminated first. callback may be null. log_level is 0 (off), 1
   (tracing only) or 3 (errors and events, and tracing), as VYRA_LOG_OFF and so on; 2 is as 1, values above 3 mean 0.
   log_limit is the size in bytes at which the log file is exchanged for a new one; values below 1 mean 52,428,800.
   While another process has the file open, the system does not let it be exchanged, and it grows. Returns 9000 when the
   driver does not come up, 9110 when it reports that the scanner is unavailable. After a failure to list scanners, or
   to start the notification service, the library is initialized all the same, but without hot-plug or power events: call
   VyraTerminate before the next try, whatever failed. */
int32_t VyraInitialize_N(VyraDeviceEventCallback callback, uint32_t log_level, int32_t log_limit);

/* Gives up every open scanner, releases the driver, stops the notification service and closes the log. Of the scanners,
   it closes in the driver those that a loop over the handles 0, 1, 2, ... meets while it is below the number of
   scanners still open: of handles 0 to n-1 the lower half, rounded up. The others are dropped, and their capture ends
   with the driver's release. Every waiting VyraGetStatus returns. Video need not be stopped first, but should be: it is
   not stopped here. Returns 9000 when the driver cannot be released, and when the system refuses what the end of the
   notification service takes; the library then stays initialized, without an open scanner. Another try may help, else
   VyraInitialize_N and then VyraTerminate.

   Not while the system sleeps, if it can be helped: the resume is not heard then, and every scanner is unavailable until
   the next sleep is over.

   Waits for a notification subscriber that is running, and meanwhile runs window procedures of the calling thread for
   messages that are sent to them. What these call of this header is refused: VyraInitialize_N with 9000, everything
   else that is not of fixed result with 9101, or with the status of its arguments where these are looked at first.
   VyraGetStatus does not wait there: it returns 0, or 9110 while the system sleeps. Nothing is changed.

   Not to be called from a subscriber: it then returns 9000 half done, and only VyraInitialize_N leads on. Nor from a
   window procedure for a message that a subscriber has sent (SendMessage): each would wait for the other for ever. A
   subscriber that wants the library terminated posts (PostMessage). */
int32_t VyraTerminate(void);

/* Lists the attached scanners by name, as many as there are slots for. count: in, the number of 255-byte slots at
   buffer (0 gives 9109); out, the number of slots filled, also after a failure. A name of 255 characters or more runs
   over its slot. Null count or buffer: 9103. No scanner attached: 9000. Asks the driver each time. */
int32_t VyraGetDeviceList(uint32_t* count, void* buffer);

/* The same with records of 260 bytes. count: in, the number of records at buffer (0 gives 9109); out, the number of
   records filled, unchanged after a failure. Null count: 9103. buffer is not tested for null. */
int32_t VyraGetDeviceList_N(uint32_t* count, DeviceListRecord* buffer);

/* ---- Opening and closing ------------------------------------------------------------------------------------------ */

/* Opens the scanner called name and stores its handle. From now on it is the one of this process that delivers images.
   handle holds VYRA_NO_HANDLE after every failure. Returns 9108 when 8 scanners are open, 9110 when this one is open
   already or the system sleeps, 9109 for a null name or handle, otherwise asks the scanner (9005 for a name that no
   attached scanner has). All LEDs are switched off. */
int32_t VyraOpenDevice(const char* name, uint32_t* handle);

/* The same; unused is not read. */
int32_t VyraOpenDevice_N(const char* name, const void* unused, uint32_t* handle);

/* The same; option is accepted and has no effect. */
int32_t VyraBrenvoZultaOpenDevice(const char* name, uint32_t* handle, uint8_t option);

/* Closes the scanner and gives its handle up, whatever the driver answers. A waiting VyraGetStatus returns. Stop video
   first: closing does not. Works while the system sleeps. */
int32_t VyraCloseDevice_N(uint32_t handle);

/* Restarts the scanner and waits until it is back, for at most 2 seconds; 9005 when it does not come back. The handle
   stays valid. Blocks every other call meanwhile. Asks the scanner. */
int32_t VyraBusReset_N(uint32_t handle);

/* Waits, without a limit, for a change: a scanner is closed, plugged or unplugged, the system goes to sleep, the
   library is terminated. Returns 9005 when this scanner is unplugged, else 0, and 0 at once when no open scanner has
   the handle. One change releases one waiter, and a change that nobody waited for is kept for the next call. Does not
   block other calls; call it on a thread of its own. Never call it from a callback. */
int32_t VyraGetStatus(uint32_t handle);

/* ---- Video -------------------------------------------------------------------------------------------------------- */

/* Starts video in a mode: VYRA_MODE_FLAT (modes 2 and 4 to 8 are the same) captures flat fingers, 1600 x 1500 pixels on
   a standard scanner, VYRA_MODE_ROLL (and 9 to 18) rolled fingers, 1608 x 1000. Mode 3 and modes above 18: 9109. 9114
   when the scanner does not have the configuration. unused is not read. Outstanding requests are dropped. The driver is
   told to stop first, also when no video runs, and has 200 ms to do so: every start takes that long. One processor
   stays busy while video runs, and one more for each start without a stop in between, until the scanner is closed. Asks
   the scanner. */
int32_t VyraBrenvoStartVideo(uint32_t handle, uint32_t mode, uint32_t unused);

/* Starts video of flat fingers. As VyraBrenvoStartVideo in mode 1. */
int32_t VyraBrenvoZultaStartCamera(uint32_t handle);

/* Stops video and drops the outstanding requests: when it returns 0, no buffer is written any more. Waits for an image
   that is being copied. Asks the scanner; after its refusal the capture may go on, but no request is served. Also
   allowed when video does not run. */
int32_t VyraStopVideo(uint32_t handle);

/* Hands in a buffer for one image, large enough for the whole image of the mode, and a value of the host's own that
   comes back with it. Returns at once: 9104 when 8 requests are outstanding, 9105 when video does not run, 9109 for a
   null buffer. */
int32_t VyraSubmitVideoRequest(uint32_t handle, void* buffer, uint64_t context);

/* Fetches the oldest filled buffer and its value (context may be null). Returns at once: 9106 when no image is ready,
   also when none will ever come because the scanner is unplugged or another one was opened since; 9105 when video does
   not run. A result of 9106 is a line in the log at level 3: do not ask without pause. *buffer is null after every
   failure that reaches the scanner (9105, 9106). */
int32_t VyraGetVideoResult(uint32_t handle, void** buffer, uint64_t* context);

/* ---- Identity ----------------------------------------------------------------------------------------------------- */

/* Reads the identity of an open scanner. 9000 when the driver fails, with the record all zero. */
int32_t VyraBrenvoGetDeviceInfo(uint32_t handle, DeviceInfo* record);

/* The same for a scanner that need not be open, by its exact name. unused is not read. 9000 when no scanner is known by
   that name, with manufacturer and model filled all the same; 9109 for a null name; 9110 while the system sleeps. */
int32_t VyraBrenvoMGGetDeviceInfo(const char* name, const void* unused, DeviceInfo* record);

/* Describes a capture index: 0 is roll capture, 1 and 2 are flat capture. Indexes 3 to 5, and 0 on a scanner without
   roll capture, return 0 and leave the record untouched: fill it beforehand to tell. Above 5: 9109. */
int32_t VyraBrenvoGetCapabilities(uint32_t handle, uint32_t index, VyraDeviceCapabilities* record);

/* Reads the driver's number for the port the scanner is attached to. Null: 9109, before anything else is looked at. */
int32_t VyraBrenvoZultaGetPortType(uint32_t handle, uint32_t* port_type);

/* Stores 1 when the scanner can capture rolled fingers, else 0. */
int32_t VyraBrenvoZultaIsRollSupported(uint32_t handle, uint8_t* supported);

/* ---- Operator feedback -------------------------------------------------------------------------------------------- */

/* Shows a record on the scanner's LEDs. Does nothing when it equals the last one. When the scanner refuses, the
   driver's own result is returned, and the record counts as shown: send another one before trying again. */
int32_t VyraBrenvoSetDevUI(uint32_t handle, const DevUI* record);

/* Reads the last record shown, all zero after opening. Null: 9109. */
int32_t VyraBrenvoGetDevUI(uint32_t handle, DevUI* record);

/* Registers callback for LED changes of this scanner until it is opened again; null ends it. */
int32_t VyraBrenvoSetUICallBack(uint32_t handle, VyraUICallback callback, void* context);

/* Plays a tone on the host computer, VYRA_TONE_DOUBLE (0) to VYRA_TONE_LOW (3); any other pattern: 9109. Returns when
   the tone is over. The last two arguments are not read. */
int32_t VyraBrenvoSetBuzzer(uint32_t handle, uint32_t pattern, const void* unused_1, const void* unused_2);

/* Accepts a parameter and its value without effect. */
int32_t VyraBrenvoZultaSetParameters(uint32_t handle, uint8_t parameter, uint32_t value);

/* ---- Device data and firmware ------------------------------------------------------------------------------------- */

/* Stores the size in bytes of the scanner's parameter container. Asks the scanner. */
int32_t VyraBrenvoZultaGetGlobalParamSize(uint32_t handle, uint32_t* size);

/* Reads size bytes of the parameter container. Asks the scanner. After a failure the buffer may be partly written. */
int32_t VyraBrenvoZultaReadGlobalParam(uint32_t handle, void* buffer, uint32_t size);

/* Takes a snapshot into buffer. The three values are the driver's own and pass through unchanged. Asks the scanner. */
int32_t VyraBrenvoZultaGetSnapshotAcquisition(uint32_t handle, void* buffer, uint32_t a, uint32_t b, uint32_t c);

/* Accepts the request without effect. */
int32_t VyraBrenvoZultaReadFilters(uint32_t handle, void* a, void* b, void* c);

/* Copies the scanner model's flat-field calibration image: 3216 x 2004 pixels, exactly VYRA_CALIBRATION_SIZE bytes.
   Null buffer or any other size: 9109, with nothing copied. 9000 when the library's file was renamed. */
int32_t VyraBrenvoZultaReadUniformityBuffers(uint32_t handle, void* buffer, int32_t size);
#define VYRA_CALIBRATION_WIDTH 3216
#define VYRA_CALIBRATION_HEIGHT 2004
#define VYRA_CALIBRATION_SIZE 6444864

/* Loads a firmware image into the scanner and restarts it; does not wait for it to come back. Null image: 9109. Asks
   the scanner, twice: when the restart is refused, the firmware is in it all the same. Blocks every other call for as
   long as the transfer takes; calls that wait longer than 5 seconds fail with 9000. */
int32_t VyraPutMemory(uint32_t handle, const void* image, size_t length);

/* ---- Present for compatibility ------------------------------------------------------------------------------------ */

/* Each of these returns 0, whatever it is given, and does nothing. */
int32_t VyraBusReset(void);
int32_t VyraGetBufSize(void);
int32_t VyraGetImage(void);
int32_t VyraGetMemory(void);
int32_t VyraGetVideoBandPosition(void);
int32_t VyraInitialization(void); /* VyraInitialize_N initializes; this and the next do not */
int32_t VyraInitialize(void);
int32_t VyraBrenvoCalibrateScanner(void);
int32_t VyraBrenvoDeviceConnected(void);
int32_t VyraBrenvoGetFinalImage(void);
int32_t VyraPutBitmap(void);
int32_t VyraPutCommand(void);
int32_t VyraPutImage(void);
int32_t VyraSetTimeouts(void);
int32_t VyraSetVideoBandParams(void);
int32_t VyraStartVideo(void); /* VyraBrenvoStartVideo starts video; this does not */

/* Return 0 without reading their arguments. */
int32_t VyraGetVerInfo(void* unused);
int32_t VyraGetVersion(void* unused_1, uint32_t unused_2);

/* Each of these returns 9019, whatever it is given. */
int32_t VyraBrenvoGetDetectedFingersBox(void);
int32_t VyraBrenvoGetFFDParameters(void);
int32_t VyraBrenvoSetFFDParameters(void);

/* Does nothing. */
void VyraBreakEnable(void);

#ifdef __cplusplus
}
#endif

#endif
