// The notification service of vyrabrenvozulta.dll: USB arrival and removal, system sleep and resume.
//
// C++ only: the six functions are exported under the decorated names of the Windows compilers' C++ ABI. Link
// vyrabrenvozulta.lib (MSVC ABI) or libvyrabrenvozulta.dll.a (MinGW); either maps this header's names to them.
//
// The service is independent of the scanners: any host may subscribe to any USB vendor and product identifier. It runs
// one thread with a hidden top-level window, to which the operating system delivers its broadcasts.
//
// Conventions
// - Every function may be called from any thread, but none from DllMain. None blocks for longer than a subscriber that
//   is running, except TerminateUsbNotifier, which waits for the notifier thread to end. The first start pins the
//   library in the process: FreeLibrary leaves it loaded from then on.
// - Starts and stops are carried out one at a time.
// - A thread that waits in here answers messages that are sent to its windows, so their procedures may run inside the
//   call; posted messages stay in its queue.
// - Subscribers run on the notifier thread and delay every later event until they return. A subscriber must not wait
//   for another thread that is inside the library, and must not throw: nothing of the kind reaches anybody, it is
//   logged at best. One that ends its thread ends the service, until it is stopped and started again.
// - Telling other threads: post (PostMessage). A subscriber may also send (SendMessage), also to a thread that is just
//   waiting in here, as long as the window procedure that handles the message calls nothing that waits for a
//   subscriber: not TerminateUsbNotifier, VyraTerminate or VyraInitialize_N, and for a message of a power subscriber
//   not SubscribeToPowerEvent or UnsubscribeToPowerEvent either. Sender and handler would wait for each other for ever.
// - VyraInitialize_N starts the notifier and VyraTerminate stops it, under the class name "VYRABRENVOZULTA". A start
//   clears the USB subscriptions, so subscribe after VyraInitialize_N. Power subscriptions survive.
#ifndef VYRA_NOTIFY_H
#define VYRA_NOTIFY_H

#ifndef __cplusplus
#error "vyra/notify.h is for C++: its functions have C++ names. In C, load them with vyra/loader.h."
#endif

enum UsbPlugEventType : int {
    UsbDevicePlugged = 0,    // the device has arrived
    UsbDeviceUnplugged = 1,  // its removal is complete
};

enum SysPowerEventType : int {
    SysPowerSleep = 0,   // the system is about to suspend
    SysPowerResume = 1,  // the system has resumed. After a wake that nobody attends to (a timer, the network), the
                         // system sends this only once a person uses the machine.
};

using UsbEventCallback = void (*)(int vendorId, int productId, UsbPlugEventType event);
using PowerEventCallback = void (*)(SysPowerEventType event);

// Starts the notifier: clears all USB subscriptions and creates the thread, without waiting for its window. Events are
// delivered from the moment the window exists. windowClassName names the window's class; the text is not copied and
// must stay valid until the notifier has stopped. Returns true when the notifier was started or runs already. When the
// system then refuses the window, or its device notifications, that is logged and the notifier stands as if stopped.
// When the system refuses the thread, or its event, the call ends in the thread library's resource exception, and the
// notifier counts as running until TerminateUsbNotifier is called.
bool InitUsbNotifier(char* windowClassName);

// Stops the notifier and waits for its thread, subscribers included; for a thread that has ended already, because a
// subscriber ended it or the process ends, it does not wait. Subscriptions stay in their tables. Always returns true,
// also when the notifier does not run. Not to be called from a subscriber: a thread cannot wait for itself. The
// notifier is stopped all the same, but the call ends in the thread library's resource-deadlock exception. Without
// memory, or an event to wait for, it ends in an exception too, and the notifier goes on running.
bool TerminateUsbNotifier(char* windowClassName);

// Subscribes callback to the arrival and removal of USB devices with this vendor and product identifier (0 to 0xFFFF
// each). A null callback occupies a place and is never called. Returns false when the pair is subscribed already (its
// first callback stays), when 9 subscriptions exist, or for the pair 0, 0 as long as a place is free. May be called
// from a USB subscriber.
bool SubscribeToUsbEvent(int vendorId, int productId, UsbEventCallback callback);

// Ends the subscription of this pair. A call that is already under way may still arrive. Returns false when there is
// none. The pair 0, 0 matches a free place: true is returned, and the count of subscriptions falls by one all the same.
// May be called from a USB subscriber.
bool UnSubscribeToUsbEvent(int vendorId, int productId);

// Subscribes callback to sleep and resume; subscribers are called in the order of their places in a table of 10.
// Returns true when the function is in the table afterwards (a second subscription changes nothing) and for a null
// callback while a place is free; false when all places are taken. Waits for a power dispatch that is under way, unless
// it is called from inside it by a subscriber.
bool SubscribeToPowerEvent(PowerEventCallback callback);

// Ends the subscription. Once it has returned, the function is not called any more. Returns false when the function is
// not in the table; a null callback matches a free place. Waits for a power dispatch that is under way, unless it is
// called from inside it by a subscriber.
bool UnsubscribeToPowerEvent(PowerEventCallback callback);

#endif
