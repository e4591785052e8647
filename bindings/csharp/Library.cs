using System;
using System.Collections.Generic;
using System.Runtime.InteropServices;
using System.Text;
using System.Threading;

namespace Vyra
{
    /// <summary>A function of the library that did not return 0.</summary>
    public class VyraException : Exception
    {
        /// <summary>The status: one of <see cref="Constants"/>, or a result of the driver library's own.</summary>
        public int Status { get; }

        /// <summary>The function that returned it.</summary>
        public string Function { get; }

        internal VyraException(string function, int status, string meaning = null)
            : base(function + ": " + status + ". " + (meaning ?? Meanings.Of(status) ?? "A result of the driver library's own"))
        {
            Status = status;
            Function = function;
        }

        internal static void Check(string function, int status)
        {
            if (status == Constants.DeviceUnavail)
            {
                throw new ScannerGoneException(function);
            }
            if (status != Constants.Ok)
            {
                throw new VyraException(function, status);
            }
        }
    }

    /// <summary>The scanner was unplugged or did not come back: dispose it, wait until it is listed again, open it
    /// anew.</summary>
    public sealed class ScannerGoneException : VyraException
    {
        internal ScannerGoneException(string function, string meaning = null)
            : base(function, Constants.DeviceUnavail, meaning)
        {
        }
    }

    /// <summary>A scanner that comes or goes.</summary>
    public sealed class PlugEventArgs : EventArgs
    {
        /// <summary>The scanner's name.</summary>
        public string Name { get; }

        /// <summary>True when it has come.</summary>
        public bool Plugged { get; }

        internal PlugEventArgs(string name, bool plugged)
        {
            Name = name;
            Plugged = plugged;
        }
    }

    /// <summary>The system is about to sleep, or has resumed.</summary>
    public sealed class PowerEventArgs : EventArgs
    {
        /// <summary>True before it sleeps.</summary>
        public bool Asleep { get; }

        internal PowerEventArgs(bool asleep)
        {
            Asleep = asleep;
        }
    }

    /// <summary>Who made a scanner and which one it is.</summary>
    public sealed class Identity
    {
        /// <summary>The maker.</summary>
        public string Manufacturer { get; }

        /// <summary>The model.</summary>
        public string Model { get; }

        /// <summary>The serial number.</summary>
        public string SerialNumber { get; }

        /// <summary>The firmware's version, for instance 2.5.b.</summary>
        public string Version { get; }

        internal Identity(Native.DeviceInfo record)
        {
            Manufacturer = Names.Decoded(record.manufacturer);
            Model = Names.Decoded(record.model);
            SerialNumber = Names.Decoded(record.serialNumber);
            Version = Names.Decoded(record.version);
        }
    }

    internal static class Names
    {
        internal static byte[] Encoded(string name)
        {
            return Encoding.UTF8.GetBytes(name + "\0");
        }

        internal static string Decoded(byte[] name)
        {
            var end = Array.IndexOf(name, (byte)0);
            return Encoding.UTF8.GetString(name, 0, end < 0 ? name.Length : end);
        }

        internal static string Decoded(IntPtr name)
        {
            var bytes = new List<byte>();
            for (byte next; (next = Marshal.ReadByte(name, bytes.Count)) != 0;)
            {
                bytes.Add(next);
            }
            return Encoding.UTF8.GetString(bytes.ToArray());
        }
    }

    /// <summary>vyrabrenvozulta.dll, initialized until it is disposed. One works in a process at a time, and one of its
    /// scanners delivers images: the one that was opened last. Every member may be used from any thread.</summary>
    /// <remarks>Events come on threads of the library's and delay what comes after them: a handler must return soon and not
    /// wait for another thread that uses the library; to reach a window, use BeginInvoke, not Invoke.</remarks>
    public sealed class Library : IDisposable
    {
        // The driver keeps the addresses of callbacks beyond the end of what it was told for: these are never collected.
        private static readonly List<Delegate> Kept = new List<Delegate>();
        private static int working;

        private readonly List<Scanner> scanners = new List<Scanner>();
        private readonly Native.VyraPowerEventCallback powerCallback;
        private bool open;

        /// <summary>A scanner has come or gone.</summary>
        public event EventHandler<PlugEventArgs> ScannerPlugged;

        /// <summary>The system is about to sleep, which ends every capture, or has resumed.</summary>
        public event EventHandler<PowerEventArgs> PowerChanged;

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
                open = true;
                Notification.SubscribeToPower(powerCallback);
            }
            catch
            {
                Interlocked.Exchange(ref working, 0);
                throw;
            }
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

        /// <summary>Opens the scanner of that name, in any case of letters. It is the one that delivers images from now
        /// on.</summary>
        public Scanner Open(string name)
        {
            var scanner = new Scanner(this, name);
            lock (scanners)
            {
                scanners.Add(scanner); // from now on its unplugging is heard of
            }
            try
            {
                scanner.Open();
                return scanner;
            }
            catch
            {
                Forget(scanner);
                throw;
            }
        }

        /// <summary>Calls back for every arrival (true) and removal of a USB device with these identifiers. One for a pair,
        /// nine in all. Dispose what is returned to end it.</summary>
        public IDisposable OnUsb(int vendor, int product, Action<bool> callback)
        {
            Native.VyraUsbEventCallback kept = (v, p, e) => callback(e == Constants.UsbPlugged);
            lock (Kept)
            {
                Kept.Add(kept);
            }
            return Notification.SubscribeToUsb(vendor, product, kept);
        }

        /// <summary>Closes the scanners, the one opened last first, and terminates the library.</summary>
        public void Dispose()
        {
            if (!open)
            {
                return;
            }
            open = false;
            try
            {
                Notification.UnsubscribeFromPower(powerCallback);
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
                    if (plugged == 0 && string.Equals(scanner.Name, text, StringComparison.OrdinalIgnoreCase))
                    {
                        scanner.IsGone = true;
                    }
                }
            }
            ScannerPlugged?.Invoke(this, new PlugEventArgs(text, plugged != 0));
            return 0;
        }

        private void Power(int @event)
        {
            PowerChanged?.Invoke(this, new PowerEventArgs(@event == Constants.PowerSleep));
        }
    }
}
