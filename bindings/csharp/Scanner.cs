using System;
using System.Runtime.InteropServices;
using System.Threading.Tasks;

namespace Vyra
{
    /// <summary>What a capture index offers. The sizes are not those of the images.</summary>
    public sealed class Capabilities
    {
        /// <summary>Pixels per inch.</summary>
        public int Resolution { get; }

        /// <summary>Thousandths of an inch.</summary>
        public int AreaWidth { get; }

        /// <summary>Thousandths of an inch.</summary>
        public int AreaHeight { get; }

        internal Capabilities(Native.VyraDeviceCapabilities record)
        {
            Resolution = (int)record.resolution;
            AreaWidth = (int)record.areaWidth;
            AreaHeight = (int)record.areaHeight;
        }
    }

    /// <summary>The LEDs in three groups, of which the first that is on is shown. A position is Constants.LedOff or one of
    /// LedLit1 to LedLit3.</summary>
    public sealed class Leds
    {
        /// <summary>Four positions.</summary>
        public uint[] GroupA { get; set; } = new uint[4];

        /// <summary>Four positions.</summary>
        public uint[] GroupB { get; set; } = new uint[4];

        /// <summary>Two positions.</summary>
        public uint[] GroupC { get; set; } = new uint[2];

        /// <summary>Whether group A is on.</summary>
        public bool GroupAOn { get; set; }

        /// <summary>Whether group B is on.</summary>
        public bool GroupBOn { get; set; }

        /// <summary>Whether group C is on.</summary>
        public bool GroupCOn { get; set; }
    }

    // The handle of an open scanner, which is closed with it.
    internal sealed class ScannerHandle : SafeHandle
    {
        internal ScannerHandle(uint handle) : base(new IntPtr(-1), true)
        {
            SetHandle(new IntPtr(handle));
        }

        public override bool IsInvalid => handle == new IntPtr(-1);

        internal uint Number => (uint)handle.ToInt64();

        protected override bool ReleaseHandle()
        {
            return Native.VyraCloseDevice_N(Number) == Constants.Ok;
        }
    }

    /// <summary>An open scanner. Made by <see cref="Library.Open"/>.</summary>
    public sealed class Scanner : IDisposable
    {
        private readonly Library library;
        private ScannerHandle handle;
        private Video video;

        /// <summary>Its name.</summary>
        public string Name { get; }

        /// <summary>Whether it was unplugged since it was opened.</summary>
        public bool IsGone { get; internal set; }

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

        /// <summary>Shows LEDs.</summary>
        public void Show(Leds leds)
        {
            var record = new Native.DevUI {
                groupA = leds.GroupA,
                groupB = leds.GroupB,
                groupC = leds.GroupC,
                groupAOn = leds.GroupAOn ? 1u : 0u,
                groupBOn = leds.GroupBOn ? 1u : 0u,
                groupCOn = leds.GroupCOn ? 1u : 0u,
            };
            VyraException.Check("VyraBrenvoSetDevUI", Native.VyraBrenvoSetDevUI(Handle, ref record));
        }

        /// <summary>Plays Constants.ToneDouble, ToneLong, ToneShort or ToneLow on the computer; returns when it is over, after
        /// 300 to 600 ms.</summary>
        public void Beep(int tone)
        {
            VyraException.Check("VyraBrenvoSetBuzzer",
                                Native.VyraBrenvoSetBuzzer(Handle, (uint)tone, IntPtr.Zero, IntPtr.Zero));
        }

        /// <summary>Starts a capture, which takes 200 ms.</summary>
        /// <param name="mode">Constants.ModeFlat or ModeRoll.</param>
        /// <param name="requests">1 to 8: images that can arrive before one is fetched.</param>
        public Video StartVideo(int mode = Constants.ModeFlat, int requests = 4)
        {
            if (requests < 1 || requests > Constants.MaxVideoRequests)
            {
                throw new ArgumentOutOfRangeException(nameof(requests), requests, "1 to 8");
            }
            if (video != null && video.IsRunning)
            {
                throw new InvalidOperationException("This scanner's video runs already: dispose it first.");
            }
            return video = new Video(this, mode, requests);
        }

        /// <summary>Waits, without a limit and on a thread of the pool, until a scanner comes, goes or is closed: false when
        /// this one is unplugged. Disposing the library ends it.</summary>
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

        /// <summary>Restarts the scanner and waits up to 2 s for its return.</summary>
        public void Reset()
        {
            VyraException.Check("VyraBusReset_N", Native.VyraBusReset_N(Handle));
        }

        /// <summary>Stops its video and closes the scanner.</summary>
        public void Dispose()
        {
            library.Forget(this);
            video?.Dispose();
            handle?.Dispose();
        }
    }
}
