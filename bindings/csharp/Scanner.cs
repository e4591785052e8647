using System;
using System.Collections.Generic;
using System.Runtime.InteropServices;
using System.Threading;
using System.Threading.Tasks;

namespace Vyra
{
    // The handle of an open scanner, which is closed with it.
    internal sealed class ScannerHandle : SafeHandle
    {
        private const int Tries = 12; // each waits up to 5 s for a library that is busy

        // Buffers of a capture that may not have stopped: the library's until the scanner is closed.
        private readonly List<IntPtr> unreturned = new List<IntPtr>();

        internal ScannerHandle(uint handle) : base(new IntPtr(-1), true)
        {
            SetHandle(new IntPtr(handle));
        }

        public override bool IsInvalid => handle == new IntPtr(-1);

        internal uint Number => (uint)handle.ToInt64();

        internal void FreeWhenClosed(IEnumerable<IntPtr> buffers)
        {
            unreturned.AddRange(buffers);
        }

        protected override bool ReleaseHandle()
        {
            for (var tries = Tries; tries > 0; --tries)
            {
                var status = Native.VyraCloseDevice_N(Number);
                if (status != Constants.Internal && status != Constants.OutOfResource)
                {
                    unreturned.ForEach(Marshal.FreeHGlobal);
                    unreturned.Clear();
                    return status == Constants.Ok;
                }
            }
            return false; // the library may still write: the buffers stay
        }
    }

    /// <summary>An open scanner. Made by <see cref="Library.Open"/>.</summary>
    public sealed class Scanner : IDisposable
    {
        private readonly Library library;
        private ScannerHandle handle;
        private Video video;
        private volatile bool gone;
        private int restarting;
        private int restarts;

        /// <summary>Its name.</summary>
        public string Name { get; }

        /// <summary>Whether it was unplugged since it was opened.</summary>
        public bool IsGone => gone;

        internal Scanner(Library library, string name)
        {
            this.library = library;
            Name = name;
        }

        internal uint Handle
        {
            get
            {
                if (handle == null || handle.IsClosed)
                {
                    throw new ObjectDisposedException(Name);
                }
                return handle.Number;
            }
        }

        internal bool HasVideo => video != null && video.IsRunning;

        internal bool DeliversImages => library.IsLastOpened(this);

        // How often the host restarted it: video does not go on then.
        internal int Restarts => Volatile.Read(ref restarts);

        internal bool HasHandle(uint number)
        {
            return handle != null && !handle.IsClosed && handle.Number == number;
        }

        internal void FreeWhenClosed(IEnumerable<IntPtr> buffers)
        {
            handle.FreeWhenClosed(buffers);
        }

        // The driver tells of a restart as of any other going and coming: the first of the two events belongs to it.
        internal void Notice(bool plugged)
        {
            if (Interlocked.Exchange(ref restarting, 0) == 0 && !plugged)
            {
                gone = true;
            }
        }

        private void Restart(string function, Func<int> call)
        {
            Interlocked.Exchange(ref restarting, 1);
            var status = call();
            if (status == Constants.Ok)
            {
                Interlocked.Increment(ref restarts);
            }
            else
            {
                Interlocked.Exchange(ref restarting, 0);
                gone = gone || status == Constants.DeviceUnavail;
            }
            VyraException.Check(function, status);
        }

        // The array does not move while the library has its address.
        private static T WithAddress<T>(byte[] bytes, Func<IntPtr, T> call)
        {
            var pinned = GCHandle.Alloc(bytes, GCHandleType.Pinned);
            try
            {
                return call(pinned.AddrOfPinnedObject());
            }
            finally
            {
                pinned.Free();
            }
        }

        internal void Open()
        {
            uint opened = Constants.NoHandle;
            VyraException.Check("VyraOpenDevice", Native.VyraOpenDevice(Names.Encoded(Name), ref opened));
            handle = new ScannerHandle(opened);
        }

        /// <summary>Its identity.</summary>
        public Identity Identify()
        {
            Native.DeviceInfo record;
            VyraException.Check("VyraBrenvoGetDeviceInfo", Native.VyraBrenvoGetDeviceInfo(Handle, out record));
            return new Identity(record);
        }

        /// <summary>What capture index 0 (rolled), 1 or 2 (flat) offers; null where the index says nothing.</summary>
        public Capabilities Capabilities(int index)
        {
            var record = new Native.VyraDeviceCapabilities { reserved = new uint[7] };
            VyraException.Check("VyraBrenvoGetCapabilities",
                                Native.VyraBrenvoGetCapabilities(Handle, (uint)index, ref record));
            return record.constant0 == 0 ? null : new Capabilities(record);
        }

        /// <summary>Whether it captures rolled fingers.</summary>
        public bool IsRollSupported
        {
            get
            {
                byte supported;
                VyraException.Check("VyraBrenvoZultaIsRollSupported",
                                    Native.VyraBrenvoZultaIsRollSupported(Handle, out supported));
                return supported != 0;
            }
        }

        /// <summary>The driver's number for the port it is attached to.</summary>
        public uint PortType
        {
            get
            {
                uint type = 0;
                VyraException.Check("VyraBrenvoZultaGetPortType", Native.VyraBrenvoZultaGetPortType(Handle, ref type));
                return type;
            }
        }

        /// <summary>Shows LEDs. When the scanner refuses, the status is the driver's own number, and the same LEDs are not tried
        /// again before others are shown.</summary>
        public void Show(Leds leds)
        {
            var record = leds.Record();
            VyraException.Check("VyraBrenvoSetDevUI", Native.VyraBrenvoSetDevUI(Handle, ref record));
        }

        /// <summary>What was shown last; all off after opening.</summary>
        public Leds Shown()
        {
            Native.DevUI record;
            VyraException.Check("VyraBrenvoGetDevUI", Native.VyraBrenvoGetDevUI(Handle, out record));
            return new Leds(record);
        }

        /// <summary>Plays Constants.ToneDouble, ToneLong, ToneShort or ToneLow on the computer; returns when it is over, after
        /// 300 to 600 ms.</summary>
        public void Beep(int tone)
        {
            VyraException.Check("VyraBrenvoSetBuzzer",
                                Native.VyraBrenvoSetBuzzer(Handle, (uint)tone, IntPtr.Zero, IntPtr.Zero));
        }

        /// <summary>The parameter container that the scanner stores; its layout is the driver's.</summary>
        public byte[] ReadParameters()
        {
            uint size = 0;
            VyraException.Check("VyraBrenvoZultaGetGlobalParamSize", Native.VyraBrenvoZultaGetGlobalParamSize(Handle, ref size));
            var bytes = new byte[size];
            VyraException.Check("VyraBrenvoZultaReadGlobalParam",
                                WithAddress(bytes, to => Native.VyraBrenvoZultaReadGlobalParam(Handle, to, size)));
            return bytes;
        }

        /// <summary>The flat-field image of the scanner's model.</summary>
        public Image ReadCalibration()
        {
            const int size = Constants.CalibrationSize;
            var pixels = new byte[size];
            VyraException.Check("VyraBrenvoZultaReadUniformityBuffers",
                                WithAddress(pixels, to => Native.VyraBrenvoZultaReadUniformityBuffers(Handle, to, size)));
            return new Image(Constants.CalibrationWidth, Constants.CalibrationHeight, pixels);
        }

        /// <summary>One image beside video. The three values are the driver's own, and with them how many bytes it writes: size
        /// must be as many at least, since the library is not told it.</summary>
        public byte[] TakeSnapshot(int size, uint a, uint b, uint c)
        {
            var bytes = new byte[size];
            VyraException.Check("VyraBrenvoZultaGetSnapshotAcquisition",
                                WithAddress(bytes, to => Native.VyraBrenvoZultaGetSnapshotAcquisition(Handle, to, a, b, c)));
            return bytes;
        }

        /// <summary>Starts a capture, which takes 200 ms.</summary>
        /// <param name="mode">Constants.ModeFlat or ModeRoll.</param>
        /// <param name="requests">1 to 8: images that can arrive before one is fetched.</param>
        /// <exception cref="InvalidOperationException">Video of this or of another scanner runs already, whose images would
        /// come here.</exception>
        public Video StartVideo(int mode = Constants.ModeFlat, int requests = 4)
        {
            if (requests < 1 || requests > Constants.MaxVideoRequests)
            {
                throw new ArgumentOutOfRangeException(nameof(requests), requests, "1 to 8");
            }
            library.RefuseBesideVideo();
            return video = new Video(this, mode, requests);
        }

        /// <summary>Waits, without a limit and on a thread of the pool, until a scanner comes, goes or is closed, or the system
        /// sleeps: false when this one is unplugged. One change ends one wait, and one that nobody waited for ends the next.
        /// Disposing the library ends it.</summary>
        public Task<bool> WaitForChangeAsync()
        {
            var number = Handle;
            return Task.Run(() => {
                var status = Native.VyraGetStatus(number);
                if (status != Constants.DeviceUnavail)
                {
                    VyraException.Check("VyraGetStatus", status);
                }
                return status == Constants.Ok;
            });
        }

        /// <summary>Restarts the scanner and waits up to 2 s for its return, while which every other call waits. It stays open,
        /// with its LEDs off; its video ends.</summary>
        /// <exception cref="ScannerGoneException">It did not come back.</exception>
        public void Reset()
        {
            Restart("VyraBusReset_N", () => Native.VyraBusReset_N(Handle));
        }

        /// <summary>Loads a firmware image and restarts the scanner, without waiting for its return; its video ends. Takes as
        /// long as the transfer; other calls that wait longer than 5 s fail meanwhile.</summary>
        public void LoadFirmware(byte[] image)
        {
            Restart("VyraPutMemory",
                    () => WithAddress(image, at => Native.VyraPutMemory(Handle, at, new UIntPtr((uint)image.Length))));
        }

        /// <summary>Stops its video and closes the scanner. While another call holds the library, this waits, up to a
        /// minute.</summary>
        public void Dispose()
        {
            library.Forget(this);
            video?.Dispose();
            handle?.Dispose();
        }
    }
}
