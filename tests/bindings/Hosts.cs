// Hosts of the assembly, each of which tries one thing and prints what it saw: Hosts.exe HOST...
using System;
using System.Collections;
using System.Collections.Generic;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Text;
using System.Threading;
using System.Threading.Tasks;
using Vyra;

internal static class Hosts
{
    private const string Name = "Dáktylos 7";

    private static int Main(string[] names)
    {
        foreach (var name in names)
        {
            Console.WriteLine("-- " + name);
            typeof(Hosts).GetMethod(name, BindingFlags.NonPublic | BindingFlags.Static).Invoke(null, null);
            Bench.brenvozulta_sim_set_idle_stop_result(4);
        }
        return 0;
    }

    private static void Events()
    {
        var main = Thread.CurrentThread.ManagedThreadId;
        var told = new List<string>();
        Action<string> tell = text => told.Add(text + (Thread.CurrentThread.ManagedThreadId == main ? " on the main thread" : ""));
        using (var library = new Library())
        {
            library.HandlerFailed += (sender, e) => tell("failed: " + e.GetException().Message);
            library.PowerChanged += (sender, e) => throw new FormatException("of a handler");
            library.PowerChanged += (sender, e) => tell(e.Asleep ? "sleep" : "resume");
            IDisposable usb = null;
            usb = library.OnUsb(0x1234, 0xAB, plugged => {
                tell(plugged ? "arrived" : "gone");
                if (!plugged)
                {
                    usb.Dispose(); // inside its own call
                    throw new FormatException("of a callback");
                }
            });
            Bench.Sleep();
            Bench.Resume();
            Bench.Usb(true, 0x1234, 0xAB);
            Bench.Usb(true, 0x1234, 0xAC);
            Bench.Usb(false, 0x1234, 0xAB);
            Bench.Usb(false, 0x1234, 0xAB);
        }
        told.ForEach(Console.WriteLine);
    }

    private static void Subscriptions()
    {
        var library = new Library();
        var old = library.OnUsb(1, 2, plugged => Console.WriteLine("old"));
        library.Dispose();
        using (library = new Library())
        {
            Failure(() => new Library());
            library.OnUsb(1, 2, plugged => Console.WriteLine("new"));
            old.Dispose();
            Bench.Usb(true, 1, 2);
        }
    }

    private static void Data()
    {
        using (var library = new Library())
        using (var scanner = library.Open(Name))
        {
            var image = scanner.ReadCalibration();
            Console.WriteLine("{0} x {1}, {2}", image.Width, image.Height, image.Pixels[1002 * 3216 + 1608] > image.Pixels[0]);
            Console.WriteLine("{0} {1}", scanner.ReadParameters().Length, Encoding.ASCII.GetString(scanner.TakeSnapshot(3, 1, 2, 3)));
            Console.WriteLine("{0} {1} {2}", scanner.PortType, scanner.Capabilities(0).ImageWidth, scanner.Capabilities(3) == null);
            scanner.Show(new Leds { GroupB = new uint[] { 0, Constants.LedLit2, 0, 0 }, GroupBOn = true });
            Console.WriteLine("{0} {1} {2}", scanner.Shown().GroupB[1], scanner.Shown().GroupBOn, scanner.Shown().GroupAOn);
            scanner.Beep(Constants.ToneLow);
            Failure(() => scanner.Beep(4));
        }
    }

    private static void Restarts()
    {
        Bench.brenvozulta_sim_set_idle_stop_result(0);
        using (var library = new Library())
        using (var scanner = library.Open(Name))
        {
            using (var video = scanner.StartVideo())
            {
                scanner.Reset();
                Bench.WaitForRestart(Name);
                Failure(() => video.Poll());
            }
            scanner.LoadFirmware(new byte[1000]);
            Bench.WaitForRestart(Name);
            Console.WriteLine("gone: {0}", scanner.IsGone);
            using (var video = scanner.StartVideo())
            {
                Bench.brenvozulta_sim_deliver_next(IntPtr.Zero);
                Console.WriteLine(video.WaitAsync(TimeSpan.FromSeconds(20)).Result.Width);
                Bench.Unplug(Name);
                Failure(() => video.Poll());
            }
            Console.WriteLine(scanner.WaitForChangeAsync().Result); // a change that nobody waited for is kept
            Bench.Plug(Name);
        }
    }

    private static void Waits()
    {
        using (var library = new Library())
        {
            var scanner = library.Open(Name);
            var video = scanner.StartVideo();
            var other = library.Open("two");
            Failure(() => video.Poll());
            Failure(() => other.StartVideo());
            scanner.Dispose();
            Failure(() => video.Poll());
            Failure(() => library.Open(Name));
            other.Dispose();
            scanner = library.Open(Name);
            while (scanner.WaitForChangeAsync().Wait(50)) // what the closes have left
            {
            }
            var waiting = scanner.WaitForChangeAsync();
            library.Dispose();
            Console.WriteLine(waiting.Wait(20000));
            Failure(() => scanner.WaitForChangeAsync());
        }
    }

    // Other threads poll and wait while the video, the scanner and the library are disposed.
    private static void Races()
    {
        for (var round = 0; round < 5; ++round)
        {
            var library = new Library();
            var scanner = library.Open(Name);
            var video = scanner.StartVideo(requests: 2);
            var threads = Enumerable.Range(0, 3).Select(_ => Task.Run(async () => {
                for (;;)
                {
                    await video.WaitAsync(TimeSpan.FromSeconds(20));
                }
            })).ToArray();
            Bench.brenvozulta_sim_deliver_next(IntPtr.Zero);
            new IDisposable[] { video, scanner, library }[round % 3].Dispose();
            try
            {
                Task.WaitAll(threads);
            }
            catch (AggregateException failures) when (failures.InnerExceptions.All(each => each is ObjectDisposedException))
            {
            }
            library.Dispose();
        }
        Console.WriteLine("done");
    }

    // A stop that is refused leaves the buffers to the library, until the close.
    private static void Buffers()
    {
        using (var library = new Library())
        using (var scanner = library.Open(Name))
        {
            var video = scanner.StartVideo(requests: 3);
            Bench.Sleep();
            video.Dispose();
            var handle = Field(scanner, "handle");
            var unreturned = (ICollection)Field(handle, "unreturned");
            Console.WriteLine(unreturned.Count);
            Bench.Resume();
            scanner.Dispose();
            Console.WriteLine(unreturned.Count);
        }
    }

    private static object Field(object of, string name)
    {
        return of.GetType().GetField(name, BindingFlags.NonPublic | BindingFlags.Instance).GetValue(of);
    }

    // Nobody holds what was made here, nor disposes it.
    private static void Forgotten()
    {
        Forget();
        GC.Collect();
        GC.WaitForPendingFinalizers();
        GC.Collect();
        Bench.Sleep();
        Bench.Resume();
        Console.WriteLine("open: {0}", Bench.brenvozulta_sim_is_open(Bench.Text(Name)));
        AppDomain.CurrentDomain.ProcessExit += (sender, e) =>
            Console.WriteLine("open at the end: {0}", Bench.brenvozulta_sim_is_open(Bench.Text(Name)));
    }

    private static void Forget()
    {
        var library = new Library();
        library.PowerChanged += (sender, e) => Console.WriteLine(e.Asleep ? "sleep" : "resume");
        library.Open(Name).StartVideo();
    }

    private static void Failure(Action call)
    {
        try
        {
            call();
            Console.WriteLine("no failure");
        }
        catch (Exception failure)
        {
            Console.WriteLine("{0}: {1}", failure.GetType().Name, failure.Message.Split('\n')[0]);
        }
    }
}

// What the system and the driver tell the host, as the test plays it: the functions of Windows, as the natively built
// library has them, and the simulator's own.
internal static class Bench
{
    private const string Windows = "win32_double";
    private const string Simulator = "BrenvoZulta_USB";

    [DllImport(Windows)]
    private static extern IntPtr FindWindowExA(IntPtr parent, IntPtr after, string name, IntPtr title);

    [DllImport(Windows)]
    private static extern IntPtr SendMessageA(IntPtr window, uint message, UIntPtr w, byte[] l);

    [DllImport(Simulator)]
    internal static extern int brenvozulta_sim_is_open(byte[] name);

    [DllImport(Simulator)]
    internal static extern ulong brenvozulta_sim_deliver_next(IntPtr name);

    [DllImport(Simulator)]
    internal static extern void brenvozulta_sim_set_idle_stop_result(uint result);

    [DllImport(Simulator)]
    private static extern int brenvozulta_sim_unplug(byte[] name);

    [DllImport(Simulator)]
    private static extern int brenvozulta_sim_plug(byte[] name);

    [DllImport(Simulator)]
    private static extern int brenvozulta_sim_wait_attached(byte[] name, uint milliseconds);

    [DllImport(Simulator)]
    private static extern int brenvozulta_sim_wait_events_done(uint milliseconds);

    internal static byte[] Text(string name) => Encoding.UTF8.GetBytes(name + "\0");

    internal static void Sleep() => Send(0x218, 4, null);

    internal static void Resume() => Send(0x218, 7, null);

    internal static void Usb(bool arrives, int vendor, int product)
    {
        var name = string.Format(@"\\?\USB#VID_{0:X4}&PID_{1:X4}#7#{{a5dcbf10-6530-11d2-901f-00c04fb951ed}}", vendor, product);
        var head = BitConverter.GetBytes(29 + name.Length).Concat(BitConverter.GetBytes(5));
        Send(0x219, arrives ? 0x8000u : 0x8004u, head.Concat(new byte[20]).Concat(Text(name)).ToArray());
    }

    internal static void Unplug(string name)
    {
        brenvozulta_sim_unplug(Text(name));
        brenvozulta_sim_wait_events_done(20000);
    }

    internal static void Plug(string name)
    {
        brenvozulta_sim_plug(Text(name));
        brenvozulta_sim_wait_events_done(20000);
    }

    internal static void WaitForRestart(string name)
    {
        brenvozulta_sim_wait_attached(Text(name), 20000);
        brenvozulta_sim_wait_events_done(20000);
    }

    private static void Send(uint message, uint @event, byte[] record)
    {
        IntPtr window;
        while ((window = FindWindowExA(IntPtr.Zero, IntPtr.Zero, "VYRABRENVOZULTA", IntPtr.Zero)) == IntPtr.Zero)
        {
            Thread.Sleep(1); // the start of the service does not wait for its window
        }
        SendMessageA(window, message, new UIntPtr(@event), record);
    }
}
