/* Control of the simulated driver library, for programs in the same process.
 *
 * Conventions
 * - Names are text of 8-bit characters with a terminating zero. Driver functions are named by their own names, such as
 *   "QXDR_OpenDevice". Scanners are named as the device list shows them; an exact match wins over one in another case.
 * - Functions that return int return 1 on success and 0 on failure: an unknown function or scanner, a null pointer, a
 *   wait that ran out. They change nothing when they fail.
 * - Functions that copy out a text take a buffer and its capacity, store as much as fits with a terminating zero, and
 *   return the whole text's length without the zero. The buffer may be null when the capacity is 0.
 * - Waits return as soon as what they wait for is true, and at the latest after timeout_ms milliseconds.
 * - Every function may be called from any thread, also inside the acquisition callback and the hot-plug listener; only
 *   the waits must not then wait for that same call to end.
 * - No function here appears in the record of calls, and none needs QXDR_Initialize.
 */
#ifndef BRENVOZULTA_SIMULATOR_CONTROL_H
#define BRENVOZULTA_SIMULATOR_CONTROL_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Whole state ---- */

/* Back to the state without configuration: not initialized, the default scanner attached and nothing else, no faults,
 * no callback, no listener, empty records, automatic images at the default rate. Blocked driver calls are released,
 * waiting events dropped. Captures end; a thread that stays inside the host's callback or listener is left alone: it
 * ends when that returns and touches nothing of the new state, and is waited for no longer than the stop patience. */
void brenvozulta_sim_reset(void);

/* Reads a scenario; the previous scanners and settings are replaced as a whole, or, on failure, stay. A message of one
 * line, "FILE:LINE: FIELD: what is wrong", is stored on failure, an empty one on success; message may be null.
 * source of the text form stands for FILE in messages and gives the folder that relative paths start from.
 * Once a scenario is loaded by these functions, QXDR_Initialize no longer looks at BRENVOZULTA_SCENARIO until a reset.
 */
int brenvozulta_sim_load_scenario_file(const char* path, char* message, size_t capacity);
int brenvozulta_sim_load_scenario_text(const char* text, const char* source, char* message, size_t capacity);

/* The message of the last failed load, QXDR_Initialize's included; empty when there was none since the last reset. */
size_t brenvozulta_sim_last_error(char* message, size_t capacity);

/* ---- Scanners ---- */

#define BRENVOZULTA_SIM_DEFAULT_SCANNER "RQ7-3050 #1"
#define BRENVOZULTA_SIM_NAME_MAX 559

/* Attaches and removes silently: the driver announces nothing. A name that was attached before comes back with the
 * properties it had; a new one has default properties. Each attachment gets a driver handle of its own. Names have 1 to
 * 559 characters. Attaching an attached scanner, or removing one that is not attached, fails. */
int brenvozulta_sim_attach(const char* scanner);
int brenvozulta_sim_remove(const char* scanner);
void brenvozulta_sim_remove_all(void);

/* The same with the hot-plug event, which is queued before this returns and delivered on a driver thread of its own;
 * while the driver is not initialized, it tells nothing. */
int brenvozulta_sim_plug(const char* scanner);
int brenvozulta_sim_unplug(const char* scanner);

/* The handle of the latest attachment, also when the scanner has been removed since; null for an unknown name. */
void* brenvozulta_sim_handle(const char* scanner);
int brenvozulta_sim_is_attached(const char* scanner); /* and answers: it is not just restarting */
int brenvozulta_sim_wait_attached(const char* scanner, uint32_t timeout_ms);
int brenvozulta_sim_is_open(const char* scanner);
int brenvozulta_sim_is_capturing(const char* scanner);
int brenvozulta_sim_selected_config(const char* scanner); /* -1 for an unknown name */

/* Identity, as QXDR_GetDeviceInfo, QXDR_GetDeviceInfoSN, the list and QXDR_GetUsbInfo report it. info holds the 40
 * bytes of the driver's device information, stored as they are. A serial number has at most 12 characters. */
int brenvozulta_sim_set_device_info(const char* scanner, const void* info);
int brenvozulta_sim_set_serial_number(const char* scanner, const char* serial_number);
int brenvozulta_sim_set_version(const char* scanner, int8_t major, int8_t minor, char revision);
int brenvozulta_sim_set_port_type(const char* scanner, uint32_t port_type);

/* When the driver handle of a scanner that is gone is given to the next one that comes: never; when the host has closed
 * it, or released the driver, if it was open; or at once. NEVER by default. */
#define BRENVOZULTA_SIM_REUSE_NEVER 0
#define BRENVOZULTA_SIM_REUSE_AFTER_CLOSE 1
#define BRENVOZULTA_SIM_REUSE_AT_ONCE 2
int brenvozulta_sim_set_handle_reuse(int32_t reuse);

/* The next QXDR_GetDevicesList calls store count whatever is attached (times as in the faults below). The entries are
 * filled for the attached scanners as always, at most 8; times 0 ends it. */
void brenvozulta_sim_set_list_count(int32_t count, int32_t times);

/* ---- Hot-plug events ---- */

/* Queues any event code with any handle for the registered listener, initialized or not. Without a listener, events are
 * dropped. QXDR_Release drops what is queued. */
void brenvozulta_sim_send_event(int32_t event, void* driver_handle);

/* Events are delivered in order, each on a thread of its own: the next one when the listener has returned from the one
 * before or has been inside for 200 ms, so that a listener that waits for a lock does not hold up the bus. */
int brenvozulta_sim_wait_events_done(uint32_t timeout_ms);                     /* none queued, listener not inside */
int brenvozulta_sim_wait_listener_inside(uint32_t count, uint32_t timeout_ms); /* at least count calls inside now */
uint64_t brenvozulta_sim_events_delivered(void);                               /* listener calls that have returned */
int brenvozulta_sim_wait_events_delivered(uint64_t count, uint32_t timeout_ms);

/* ---- Driver calls: results, delays, blocking ---- */

#define BRENVOZULTA_SIM_ALWAYS (-1)

typedef struct brenvozulta_sim_fault {
    uint32_t result;   /* what the call returns */
    uint32_t skip;     /* calls that pass untouched first */
    int32_t times;     /* calls that are affected then, or BRENVOZULTA_SIM_ALWAYS */
    int32_t carry_out; /* non-zero: the work is done all the same, only the result is replaced */
} brenvozulta_sim_fault;

/* Makes a function return result without doing its work: the next times calls, or BRENVOZULTA_SIM_ALWAYS. A fault
 * replaces the function's earlier one; times 0 ends it. Result 0 pretends success. */
int brenvozulta_sim_fail(const char* function, uint32_t result, int32_t times);
int brenvozulta_sim_set_fault(const char* function, const brenvozulta_sim_fault* fault);

/* Makes every call of a function take ms milliseconds longer, before its work or after it; 0 ends it. */
int brenvozulta_sim_set_delay(const char* function, uint32_t ms);
int brenvozulta_sim_set_return_delay(const char* function, uint32_t ms);

/* Holds every call of a function until it is unblocked: after it was recorded and before its work, or after its work
 * and before it returns. */
int brenvozulta_sim_block(const char* function);
int brenvozulta_sim_block_return(const char* function);
int brenvozulta_sim_unblock(const char* function);
int brenvozulta_sim_wait_blocked(const char* function, uint32_t count, uint32_t timeout_ms); /* count calls held now */

/* What a call returns that finds done what it is to do: QXDR_Initialize of an initialized driver, QXDR_OpenDevice of an
 * open scanner, QXDR_StopCapture of an open scanner that captures nothing. 0 by default: the call is made all the same.
 */
void brenvozulta_sim_set_reinitialize_result(uint32_t result);
void brenvozulta_sim_set_reopen_result(uint32_t result);
void brenvozulta_sim_set_idle_stop_result(uint32_t result);

/* How long QXDR_StopCapture, QXDR_CloseDevice, QXDR_Release and the reset wait for a thread that stays inside the
 * callback, the last two also for one inside the listener, before they leave it to itself; 100 ms by default. With
 * BRENVOZULTA_SIM_UNLIMITED they wait until it has returned. The caller's own thread is never waited for. */
#define BRENVOZULTA_SIM_UNLIMITED UINT32_MAX
void brenvozulta_sim_set_stop_patience(uint32_t ms);

/* ---- Record of calls ---- */

#define BRENVOZULTA_SIM_MAX_ARGUMENTS 5

typedef struct brenvozulta_sim_call {
    uint64_t order;    /* 1 for the first call since the record was cleared; rises with the time of the call */
    uint64_t thread;   /* the caller's brenvozulta_sim_thread_id */
    uint32_t result;   /* valid once finished */
    int32_t finished;  /* 1 when the call has returned */
    char function[40]; /* "QXDR_SetLeds" */
    uint32_t argument_count;
    uint64_t arguments[BRENVOZULTA_SIM_MAX_ARGUMENTS]; /* integers and addresses, in the order of the prototype */
} brenvozulta_sim_call;

/* The record holds the latest 65,536 calls; index 0 is the oldest one held. QXDR_CloseDevice has a second argument,
 * "*driver_handle": the handle found at the address that is its first. */
void brenvozulta_sim_clear_calls(void);
size_t brenvozulta_sim_call_count(void);
int brenvozulta_sim_get_call(size_t index, brenvozulta_sim_call* call);
/* "QXDR_SelectCaptureConfig(driver_handle=0x51000010, config=13) = 0"; texts stand in quotes; a call that has not
 * returned ends after the parenthesis. */
size_t brenvozulta_sim_call_text(size_t index, char* text, size_t capacity);
/* One argument by its name in the prototype: the content of a text argument, the number of any other. Empty if unknown.
 */
size_t brenvozulta_sim_call_argument(size_t index, const char* argument, char* text, size_t capacity);

/* Calls of a function begun, or returned, since the record was cleared. */
uint64_t brenvozulta_sim_times_called(const char* function);
int brenvozulta_sim_wait_called(const char* function, uint64_t count, uint32_t timeout_ms);
int brenvozulta_sim_wait_returned(const char* function, uint64_t count, uint32_t timeout_ms);

/* The calling thread, as the record numbers threads. */
uint64_t brenvozulta_sim_thread_id(void);

/* ---- Images ---- */

typedef int32_t (*brenvozulta_sim_acquisition)(const uint8_t* image, uint16_t width, uint16_t height, void* context);

/* What QXDR_SetCallbackAcquisition registered last; null before. Both survive close and release. */
brenvozulta_sim_acquisition brenvozulta_sim_callback(void);
void* brenvozulta_sim_callback_context(void);

/* Images a second of each capturing scanner; 0 switches automatic images off. At most 1000. */
int brenvozulta_sim_set_frame_rate(double frames_per_second);

/* Where automatic images come from. The folder's PGM (P5, 8 bit) and PNG files are read at once and delivered in name
 * order, starting with the first at each start of capture and over again. message as for a scenario. */
void brenvozulta_sim_use_synthetic_images(uint64_t seed);
int brenvozulta_sim_use_image_folder(const char* folder, char* message, size_t capacity);

typedef struct brenvozulta_sim_image {
    const uint8_t* pixels; /* copied before the function returns, kept until delivered; null is passed on as null */
    size_t length;         /* bytes behind pixels, whatever width and height say */
    uint16_t width;
    uint16_t height;
    const char* scanner; /* the capturing scanner whose thread delivers it; null: any that captures */
    int32_t use_context; /* non-zero: context below instead of the registered one */
    void* context;
} brenvozulta_sim_image;

/* Delivers one image through the registered callback on an acquisition thread: that of a capturing scanner, behind the
 * images queued there, or, while none captures, a thread of its own. Fails when no callback is registered.
 * The first form waits for the callback's result at most timeout_ms (the delivery goes on after a time-out); the second
 * returns at once with a ticket for the waits below. */
int brenvozulta_sim_deliver(const brenvozulta_sim_image* image, uint32_t timeout_ms, int32_t* callback_result);
uint64_t brenvozulta_sim_deliver_async(const brenvozulta_sim_image* image); /* 0 on failure */
/* The next image of the source, as the automatic rate would deliver it. scanner (null: any) must be capturing. */
uint64_t brenvozulta_sim_deliver_next(const char* scanner);

/* begun: the callback is being entered, or was. done: it has returned; fails at once when the capture ended before the
 * image's turn came. callback_result may be null. */
int brenvozulta_sim_wait_delivery_begun(uint64_t ticket, uint32_t timeout_ms);
int brenvozulta_sim_wait_delivery_done(uint64_t ticket, uint32_t timeout_ms, int32_t* callback_result);

/* Callback calls, of automatic images and deliveries alike, since the reset. */
uint64_t brenvozulta_sim_callbacks_entered(void);
uint64_t brenvozulta_sim_callbacks_returned(void);
int brenvozulta_sim_wait_callbacks_entered(uint64_t count, uint32_t timeout_ms);
int brenvozulta_sim_wait_callbacks_returned(uint64_t count, uint32_t timeout_ms);
uint32_t brenvozulta_sim_callbacks_inside(void);
int brenvozulta_sim_wait_callbacks_inside(uint32_t count, uint32_t timeout_ms); /* exactly count inside now */

/* Acquisition threads alive, those left to themselves inside the callback and those from before a reset included. */
uint32_t brenvozulta_sim_acquisition_threads(void);
int brenvozulta_sim_wait_acquisition_threads(uint32_t count, uint32_t timeout_ms); /* exactly count alive */

/* ---- Capture configurations (of every scanner) ---- */

/* Adds or replaces configuration number: width and height 1 to 65535. */
int brenvozulta_sim_set_capture_config(uint8_t number, const char* description, uint32_t width, uint32_t height);
/* The description as 0 to 255 raw bytes: QXDR_GetCaptureConfig stores as many as its size allows and a terminator only
 * when there is room for one. */
int brenvozulta_sim_set_config_description(uint8_t number, const void* bytes, size_t length);
/* Afterwards QXDR_SelectCaptureConfig answers 6 and QXDR_GetCaptureConfig 12 for it. */
int brenvozulta_sim_remove_capture_config(uint8_t number);

/* ---- LEDs ---- */

typedef struct brenvozulta_sim_leds {
    uint8_t area;
    uint16_t pattern;
    uint8_t on;
    uint16_t fifth;
} brenvozulta_sim_leds;

#define BRENVOZULTA_SIM_LED_AREAS 3

/* The last command that an area (0 to 2) carried out; all zero before, and after a restart of the scanner. */
int brenvozulta_sim_led_state(const char* scanner, uint8_t area, brenvozulta_sim_leds* leds);
/* Every command carried out, the latest 65,536, oldest first. */
size_t brenvozulta_sim_led_history_count(const char* scanner);
int brenvozulta_sim_led_history(const char* scanner, size_t index, brenvozulta_sim_leds* leds);

/* ---- Container, snapshot ---- */

int brenvozulta_sim_set_container(const char* scanner, const void* bytes, size_t length); /* at most 0xFFFFFFFF bytes */
/* What QXDR_GetSnapshotAcquisition stores, whatever its three values are; length 0 goes back to images of the source.
 */
int brenvozulta_sim_set_snapshot(const char* scanner, const void* bytes, size_t length);

/* ---- Reset and firmware ---- */

typedef struct brenvozulta_sim_restart {
    uint32_t delay_ms;       /* from the unplug to the plug; 50 by default */
    int32_t returns;         /* 0: the scanner never comes back; 1 by default */
    int32_t announce_unplug; /* 0: only the return is announced; 1 by default */
} brenvozulta_sim_restart;

/* How scanners restart after QXDR_ResetDevice and after a firmware update that restarts by itself. */
int brenvozulta_sim_set_restart(const brenvozulta_sim_restart* restart);

#define BRENVOZULTA_SIM_NO_BYTE UINT64_MAX

typedef struct brenvozulta_sim_firmware {
    uint64_t bytes_per_second; /* speed of the transfer; 0: no time. 0 by default */
    uint32_t duration_ms;      /* added to every transfer; 0 by default */
    int32_t restarts;          /* non-zero: the scanner restarts by itself after a transfer; 0 by default */
    uint64_t fail_at_byte;     /* the transfer fails when it comes to this byte; BRENVOZULTA_SIM_NO_BYTE by default */
    uint32_t fail_result;      /* what QXDR_UpdateFirmware then returns; 9 by default */
    uint32_t reset_result; /* what the next QXDR_ResetDevice after a transfer returns, undone if not 0; 0 by default */
} brenvozulta_sim_firmware;

int brenvozulta_sim_set_firmware(const brenvozulta_sim_firmware* firmware);
/* Bytes of the scanner's latest transfer that have arrived. */
uint64_t brenvozulta_sim_firmware_bytes(const char* scanner);

/* ---- Timeline ---- */

/* When something happens: at_ms after the function has returned count times since QXDR_Initialize (without a function:
 * at_ms after QXDR_Initialize), on a driver thread; or inside its call number count, on its entry, before its work, or
 * on its return, after it. */
#define BRENVOZULTA_SIM_AFTER_CALL 0
#define BRENVOZULTA_SIM_ON_ENTRY 1
#define BRENVOZULTA_SIM_ON_RETURN 2

/* What happens. A scanner that is there (or away) already changes nothing. An event inside a call is delivered on the
 * caller's thread; an image comes on an acquisition thread, and the call waits for the callback for the stop patience.
 */
#define BRENVOZULTA_SIM_UNPLUG 0
#define BRENVOZULTA_SIM_PLUG 1
#define BRENVOZULTA_SIM_IMAGE 2

typedef struct brenvozulta_sim_happening {
    int32_t moment;
    const char* function; /* null: QXDR_Initialize, for AFTER_CALL */
    uint64_t count;       /* 1 or more; not read without a function */
    uint32_t at_ms;       /* for AFTER_CALL; 0 otherwise */
    int32_t what;
    const char* scanner; /* for PLUG and UNPLUG */
    uint32_t late_ms; /* for PLUG and UNPLUG: how much later than the change the event comes, then on a driver thread */
    const brenvozulta_sim_image* image; /* for IMAGE, copied; its scanner is not read: any that captures */
} brenvozulta_sim_happening;

/* Adds to the timeline. QXDR_Initialize starts the whole timeline over, QXDR_Release stops it. What is added while it
 * runs leaves the rest as it is; an AFTER_CALL whose time has passed already happens now. */
int brenvozulta_sim_add_happening(const brenvozulta_sim_happening* happening);
/* The same in short: plug (1) or unplug (0) a scanner AFTER_CALL. */
int brenvozulta_sim_add_timeline(uint32_t at_ms, const char* function, uint64_t count, int32_t plug,
                                 const char* scanner);
void brenvozulta_sim_clear_timeline(void);

#ifdef __cplusplus
}
#endif

#endif
