using System;
using System.Collections.Generic;
using System.Runtime.InteropServices;
using System.Threading;
using System.Threading.Tasks;

namespace Vyra
{
    /// <summary>One image: 8-bit grey, rows from top to bottom without padding.</summary>
    public sealed class Image
    {
        /// <summary>Pixels in a row.</summary>
        public int Width { get; }

        /// <summary>Rows.</summary>
        public int Height { get; }

        /// <summary>Width x height bytes, the caller's own.</summary>
        public byte[] Pixels { get; }

        internal Image(int width, int height, byte[] pixels)
        {
            Width = width;
            Height = height;
            Pixels = pixels;
        }
    }

    /// <summary>A running capture of one scanner. Made by <see cref="Scanner.StartVideo"/>.</summary>
    public sealed class Video : IDisposable
    {
        private const int PollMilliseconds = 2;

        private readonly Scanner scanner;
        private readonly object calls = new object();
        // Unmanaged, since the library writes into them whatever the collector does.
        private readonly List<IntPtr> buffers = new List<IntPtr>();
        private readonly int width;
        private readonly int height;

        internal bool IsRunning { get; private set; }

        internal Video(Scanner scanner, int mode, int requests)
        {
            var roll = mode == Constants.ModeRoll || (mode >= 9 && mode <= 18);
            this.scanner = scanner;
            width = roll ? Constants.RollWidth : Constants.FlatWidth;
            height = roll ? Constants.RollHeight : Constants.FlatHeight;
            VyraException.Check("VyraBrenvoStartVideo", Native.VyraBrenvoStartVideo(scanner.Handle, (uint)mode, 0));
            IsRunning = true;
            try
            {
                for (var i = 0; i < requests; ++i)
                {
                    buffers.Add(Marshal.AllocHGlobal(width * height));
                    Submit(buffers[i]);
                }
            }
            catch
            {
                Dispose();
                throw;
            }
        }

        /// <summary>Frees the buffers of a capture that nobody stopped.</summary>
        ~Video()
        {
            Stop();
        }

        /// <summary>The oldest image that is ready, or null; at once.</summary>
        /// <exception cref="ScannerGoneException">The scanner was unplugged: no image will come.</exception>
        public Image Poll()
        {
            lock (calls)
            {
                IntPtr buffer;
                ulong context;
                if (!IsRunning)
                {
                    throw new ObjectDisposedException(nameof(Video));
                }
                var status = Native.VyraGetVideoResult(scanner.Handle, out buffer, out context);
                if (status == Constants.VideoTimeout)
                {
                    if (scanner.IsGone)
                    {
                        throw new ScannerGoneException("VyraGetVideoResult", "The scanner was unplugged");
                    }
                    return null;
                }
                VyraException.Check("VyraGetVideoResult", status);
                var pixels = new byte[width * height];
                Marshal.Copy(buffer, pixels, 0, pixels.Length);
                Submit(buffer);
                return new Image(width, height, pixels);
            }
        }

        /// <summary>Waits for the next image without holding up a thread.</summary>
        /// <exception cref="TimeoutException">None came within the time.</exception>
        /// <exception cref="ScannerGoneException">The scanner was unplugged.</exception>
        /// <exception cref="OperationCanceledException">cancel was requested.</exception>
        public async Task<Image> WaitAsync(TimeSpan timeout, CancellationToken cancel = default(CancellationToken))
        {
            var waited = System.Diagnostics.Stopwatch.StartNew();
            for (;;)
            {
                cancel.ThrowIfCancellationRequested();
                var image = Poll();
                if (image != null)
                {
                    return image;
                }
                if (waited.Elapsed >= timeout)
                {
                    throw new TimeoutException("No image within " + timeout.TotalSeconds + " s.");
                }
                await Task.Delay(PollMilliseconds, cancel).ConfigureAwait(false);
            }
        }

        /// <summary>Stops the capture. Waits for an image that is being copied.</summary>
        public void Dispose()
        {
            Stop();
            GC.SuppressFinalize(this);
        }

        // After a stop that is refused, too, no request is served any more; nor when the scanner was closed before.
        private void Stop()
        {
            lock (calls)
            {
                if (!IsRunning)
                {
                    return;
                }
                IsRunning = false;
                try
                {
                    Native.VyraStopVideo(scanner.Handle);
                }
                catch (ObjectDisposedException)
                {
                }
                buffers.ForEach(Marshal.FreeHGlobal);
                buffers.Clear();
            }
        }

        private void Submit(IntPtr buffer)
        {
            VyraException.Check("VyraSubmitVideoRequest", Native.VyraSubmitVideoRequest(scanner.Handle, buffer, 0));
        }
    }
}
