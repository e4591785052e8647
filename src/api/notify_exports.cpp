// The exported functions of the notification service. Each forwards to the one notifier or the one table of the
// process.
#include "notify/power_subscriptions.h"
#include "notify/usb_notifier.h"
#include "notify/usb_subscriptions.h"
#include "vyra/notify.h"

using kvs::brenvozulta::the_power_subscriptions;
using kvs::brenvozulta::the_usb_notifier;
using kvs::brenvozulta::the_usb_subscriptions;

bool InitUsbNotifier(char* windowClassName)
{
    return the_usb_notifier().start(windowClassName);
}

bool TerminateUsbNotifier(char* windowClassName)
{
    return the_usb_notifier().stop(windowClassName);
}

bool SubscribeToUsbEvent(int vendorId, int productId, UsbEventCallback callback)
{
    return the_usb_subscriptions().subscribe(vendorId, productId, callback);
}

bool UnSubscribeToUsbEvent(int vendorId, int productId)
{
    return the_usb_subscriptions().unsubscribe(vendorId, productId);
}

bool SubscribeToPowerEvent(PowerEventCallback callback)
{
    return the_power_subscriptions().subscribe(callback);
}

bool UnsubscribeToPowerEvent(PowerEventCallback callback)
{
    return the_power_subscriptions().unsubscribe(callback);
}
