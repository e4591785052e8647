using System;
using System.Runtime.InteropServices;

namespace Vyra
{
    // The notification functions, under the exported names of the system that this runs on.
    internal static class Notification
    {
        private static readonly bool OnWindows = Environment.OSVersion.Platform == PlatformID.Win32NT;

        internal static void SubscribeToPower(Native.VyraPowerEventCallback callback)
        {
            var subscribed = OnWindows ? Native.SubscribeToPowerEvent(callback) : Native.SubscribeToPowerEventNative(callback);
            if (!subscribed)
            {
                throw new InvalidOperationException("Ten power subscriptions exist already.");
            }
        }

        internal static void UnsubscribeFromPower(Native.VyraPowerEventCallback callback)
        {
            if (OnWindows)
            {
                Native.UnsubscribeToPowerEvent(callback);
            }
            else
            {
                Native.UnsubscribeToPowerEventNative(callback);
            }
        }

        internal static IDisposable SubscribeToUsb(int vendor, int product, Native.VyraUsbEventCallback callback)
        {
            var subscribed = OnWindows ? Native.SubscribeToUsbEvent(vendor, product, callback)
                                       : Native.SubscribeToUsbEventNative(vendor, product, callback);
            if (!subscribed)
            {
                throw new InvalidOperationException(
                    vendor.ToString("x4") + ":" + product.ToString("x4") + " is subscribed already, or nine pairs are.");
            }
            return new UsbSubscription(vendor, product);
        }

        private sealed class UsbSubscription : IDisposable
        {
            private readonly int vendor;
            private readonly int product;
            private bool ended;

            internal UsbSubscription(int vendor, int product)
            {
                this.vendor = vendor;
                this.product = product;
            }

            public void Dispose()
            {
                if (ended)
                {
                    return;
                }
                ended = true;
                if (OnWindows)
                {
                    Native.UnSubscribeToUsbEvent(vendor, product);
                }
                else
                {
                    Native.UnSubscribeToUsbEventNative(vendor, product);
                }
            }
        }
    }
}
