using System;
using System.Collections.Generic;
using System.IO;
using System.Threading;

namespace Vyra
{
    /// <summary>vyrabrenvozulta.dll, initialized until it is disposed. One works in a process at a time, and one of its
    /// scanners delivers images: the one that was opened last. Every member may be used from any thread.</summary>
    /// <remarks>Events come on threads of the library's and delay what comes after them: a handler must return soon and not
    /// wait for another thread that uses the library; to reach a window, use BeginInvoke, not Invoke. What a handler throws
    /// ends there: <see cref="HandlerFailed"/> tells of it. A library that nobody disposes is disposed when the process
    /// ends.</remarks>
    public sealed class Library : IDisposable
    {
        // The driver keeps the addresses of callbacks beyond the end of what it was told for: these are never collected.
        private static readonly List<Delegate> Kept = new List<Delegate>();
        private static int working;

        private readonly List<Scanner> scanners = new List<Scanner>();
        private readonly List<IDisposable> subscriptions = new List<IDisposable>();
        private readonly Native.VyraPowerEventCallback powerCallback;
        private int open;
        private volatile Scanner lastOpened;

        /// <summary>A scanner has come or gone.</summary>
        public event EventHandler<PlugEventArgs> ScannerPlugged;

        /// <summary>The system is about to sleep, which ends every capture, or has resumed.</summary>
        public event EventHandler<PowerEventArgs> PowerChanged;

        /// <summary>A handler has thrown what is told here. Without a handler of this event, it is written to the standard
        /// error.</summary>
        public event EventHandler<ErrorEventArgs> HandlerFailed;

        /// <summary>Initializes the library.</summary>
        /// <param name="logLevel">Constants.LogOff, LogTrace or LogAll. The last writes a line each time that no image is
        /// ready: for a search of faults, not for every day.</param>
        /// <param name="logLimit">The size in bytes at which the log starts a new file; 0: 52,428,800.</param>
        /// <exception cref="VyraException">The library could not be initialized.</exception>
        /// <exception cref="DllNotFoundException">vyrabrenvozulta.dll, or BrenvoZulta_USB.dll behind it, is not
        /// there.</exception>
        public Library(int logLevel = Constants.LogOff, int logLimit = 0)
        {
            if (Interlocked.Exchange(ref working, 1) != 0)
            {
                throw new InvalidOperationException("The library works already in this process: dispose it first.");
            }
            try
            {
                Native.VyraDeviceEventCallback plugged = Plugged;
                powerCallback = Power;
                lock (Kept)
                {
                    Kept.Add(plugged);
                    Kept.Add(powerCallback);
                }
                var status = Native.VyraInitialize_N(plugged, (uint)logLevel, logLimit);
                if (status != Constants.Ok)
                {
                    Native.VyraTerminate(); // it may be initialized all the same
                    VyraException.Check("VyraInitialize_N", status);
                }
                open = 1;
                Notification.SubscribeToPower(powerCallback);
            }
            catch
            {
                if (open != 0)
                {
                    Native.VyraTerminate();
                }
                Interlocked.Exchange(ref working, 0);
                throw;
            }
            // The library's threads would go on to call into a runtime that has ended.
            AppDomain.CurrentDomain.ProcessExit += AtExit;
            AppDomain.CurrentDomain.DomainUnload += AtExit;
        }

        /// <summary>The names of the attached scanners.</summary>
        public IReadOnlyList<string> Scanners()
        {
            var count = (uint)Constants.MaxScanners;
            var records = new Native.DeviceListRecord[count];
            var status = Native.VyraGetDeviceList_N(ref count, records);
            var names = new List<string>();
            if (status == Constants.Internal)
            {
                return names; // how the driver says that there is none
            }
            VyraException.Check("VyraGetDeviceList_N", status);
            for (var i = 0; i < count; ++i)
            {
                names.Add(Names.Decoded(records[i].name));
            }
            return names;
        }

        /// <summary>The identity of a scanner that need not be open.</summary>
        public Identity Identify(string name)
        {
            Native.DeviceInfo record;
            VyraException.Check("VyraBrenvoMGGetDeviceInfo",
                                Native.VyraBrenvoMGGetDeviceInfo(Names.Encoded(name), IntPtr.Zero, out record));
            return new Identity(record);
        }

        // Its images would come into another scanner's buffers, which may be too small for them.
        internal void RefuseBesideVideo()
        {
            lock (scanners)
            {
                foreach (var other in scanners)
                {
                    if (other.HasVideo)
                    {
                        throw new InvalidOperationException("The video of \"" + other.Name +
                                                            "\" runs already: dispose it first.");
                    }
                }
            }
        }

        /// <summary>Opens the scanner of that name, in any case of letters. It is the one that delivers images from now
        /// on.</summary>
        /// <exception cref="ScannerGoneException">No scanner of that name is attached.</exception>
        /// <exception cref="InvalidOperationException">The handle that it would get belongs to another scanner: dispose
        /// scanners in reverse order of opening.</exception>
        public Scanner Open(string name)
        {
            var scanner = new Scanner(this, name);
            lock (scanners)
            {
                foreach (var other in scanners)
                {
                    if (other.HasHandle((uint)scanners.Count))
                    {
                        throw new InvalidOperationException("Opening \"" + name + "\" would displace \"" + other.Name +
                                                            "\": dispose scanners in reverse order of opening.");
                    }
                }
                scanners.Add(scanner); // from now on its unplugging is heard of
            }
            try
            {
                scanner.Open();
                lastOpened = scanner;
                return scanner;
            }
            catch
            {
                Forget(scanner);
                throw;
            }
        }

        /// <summary>Calls back for every arrival (true) and removal of a USB device with these identifiers, until what is
        /// returned or the library is disposed. One for a pair, nine in all.</summary>
        public IDisposable OnUsb(int vendor, int product, Action<bool> callback)
        {
            Native.VyraUsbEventCallback kept = (v, p, e) => Guarded(() => callback(e == Constants.UsbPlugged));
            lock (Kept)
            {
                Kept.Add(kept);
            }
            var subscription = Notification.SubscribeToUsb(vendor, product, kept);
            lock (subscriptions)
            {
                subscriptions.Add(subscription);
            }
            return subscription;
        }

        /// <summary>Closes the scanners, the one opened last first, and terminates the library, which waits for a handler that
        /// is running: not to be called from one.</summary>
        public void Dispose()
        {
            if (Interlocked.Exchange(ref open, 0) == 0)
            {
                return;
            }
            AppDomain.CurrentDomain.ProcessExit -= AtExit;
            AppDomain.CurrentDomain.DomainUnload -= AtExit;
            try
            {
                Notification.UnsubscribeFromPower(powerCallback);
                lock (subscriptions)
                {
                    subscriptions.ForEach(each => each.Dispose());
                }
                Scanner[] left;
                lock (scanners)
                {
                    left = scanners.ToArray();
                }
                Array.Reverse(left);
                foreach (var scanner in left)
                {
                    scanner.Dispose();
                }
                VyraException.Check("VyraTerminate", Native.VyraTerminate());
            }
            finally
            {
                Interlocked.Exchange(ref working, 0);
            }
        }

        private void AtExit(object sender, EventArgs e)
        {
            Guarded(Dispose);
        }

        internal bool IsLastOpened(Scanner scanner)
        {
            return lastOpened == scanner;
        }

        internal void Forget(Scanner scanner)
        {
            lock (scanners)
            {
                scanners.Remove(scanner);
            }
        }

        private int Plugged(int @event, IntPtr name, int plugged)
        {
            var text = Names.Decoded(name);
            lock (scanners)
            {
                foreach (var scanner in scanners)
                {
                    if (string.Equals(scanner.Name, text, StringComparison.OrdinalIgnoreCase))
                    {
                        scanner.Notice(plugged != 0);
                    }
                }
            }
            Raise(ScannerPlugged, new PlugEventArgs(text, plugged != 0));
            return 0;
        }

        private void Power(int @event)
        {
            Raise(PowerChanged, new PowerEventArgs(@event == Constants.PowerSleep));
        }

        private void Raise<T>(EventHandler<T> handlers, T arguments) where T : EventArgs
        {
            foreach (var handler in handlers?.GetInvocationList() ?? new Delegate[0])
            {
                Guarded(() => ((EventHandler<T>)handler)(this, arguments));
            }
        }

        // Above a handler is the library, which nothing may be thrown into.
        private void Guarded(Action call)
        {
            try
            {
                call();
            }
            catch (Exception failure)
            {
                Tell(failure);
            }
        }

        private void Tell(Exception failure)
        {
            try
            {
                var handler = HandlerFailed;
                if (handler == null)
                {
                    Console.Error.WriteLine(failure);
                }
                handler?.Invoke(this, new ErrorEventArgs(failure));
            }
            catch (Exception again)
            {
                Console.Error.WriteLine(again);
            }
        }
    }
}
