using System;
using System.Collections.Generic;
using System.Runtime.InteropServices;
using System.Threading;
using System.Threading.Tasks;

namespace Vyra
{
    /// <summary>A running capture of one scanner. Made by <see cref="Scanner.StartVideo"/>.</summary>
    public sealed class Video : IDisposable
    {
        private const int PollMilliseconds = 2;

        private readonly Scanner scanner;
        private readonly object calls = new object();
        // Unmanaged, since the library writes into them whatever the collector does.
        private readonly List<IntPtr> buffers = new List<IntPtr>();
        private readonly Queue<IntPtr> idle = new Queue<IntPtr>(); // those that are not handed in
        private readonly int restarts;
        private readonly int width;
        private readonly int height;

        internal bool IsRunning { get; private set; }

        internal Video(Scanner scanner, int mode, int requests)
        {
            var roll = mode == Constants.ModeRoll || (mode >= 9 && mode <= 18);
            this.scanner = scanner;
            restarts = scanner.Restarts;
            width = roll ? Constants.RollWidth : Constants.FlatWidth;
            height = roll ? Constants.RollHeight : Constants.FlatHeight;
            VyraException.Check("VyraBrenvoStartVideo", Native.VyraBrenvoStartVideo(scanner.Handle, (uint)mode, 0));
            IsRunning = true;
            try
            {
                for (var i = 0; i < requests; ++i)
                {
                    buffers.Add(Marshal.AllocHGlobal(width * height));
                    idle.Enqueue(buffers[i]);
                }
                SubmitIdle();
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
        /// <exception cref="InvalidOperationException">None will come because the host restarted the scanner, opened another one
        /// since, or (ObjectDisposedException) disposed the video.</exception>
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
                SubmitIdle();
                var status = Native.VyraGetVideoResult(scanner.Handle, out buffer, out context);
                if (status == Constants.VideoTimeout)
                {
                    RefuseEndlessWait();
                    return null;
                }
                VyraException.Check("VyraGetVideoResult", status);
                var pixels = new byte[width * height];
                Marshal.Copy(buffer, pixels, 0, pixels.Length);
                idle.Enqueue(buffer);
                try
                {
                    SubmitIdle();
                }
                catch (VyraException)
                {
                    // The next poll tells; this image is not to be lost for it.
                }
                return new Image(width, height, pixels);
            }
        }

        private void RefuseEndlessWait()
        {
            if (scanner.IsGone)
            {
                throw new ScannerGoneException("VyraGetVideoResult", "The scanner was unplugged");
            }
            if (scanner.Restarts != restarts)
            {
                throw new InvalidOperationException("This video ended with the scanner's restart: dispose it and start it anew.");
            }
            if (!scanner.DeliversImages)
            {
                throw new InvalidOperationException("\"" + scanner.Name +
                                                    "\" delivers no images, since another scanner was opened: open it anew.");
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

        private void Stop()
        {
            lock (calls)
            {
                if (!IsRunning)
                {
                    return;
                }
                IsRunning = false;
                int status;
                try
                {
                    status = Native.VyraStopVideo(scanner.Handle);
                }
                catch (ObjectDisposedException)
                {
                    status = Constants.Ok; // the close has ended the capture
                }
                if (status == Constants.Ok)
                {
                    buffers.ForEach(Marshal.FreeHGlobal);
                }
                else
                {
                    scanner.FreeWhenClosed(buffers); // it may not have stopped
                }
                buffers.Clear();
                idle.Clear();
            }
        }

        private void SubmitIdle()
        {
            while (idle.Count > 0)
            {
                VyraException.Check("VyraSubmitVideoRequest",
                                    Native.VyraSubmitVideoRequest(scanner.Handle, idle.Peek(), 0));
                idle.Dequeue();
            }
        }
    }
}
