// Captures without end and says what happens to scanners and system. A scanner that was unplugged is opened anew when it
// is back. Ends at Enter.
using System;
using System.Linq;
using System.Threading;
using System.Threading.Tasks;
using Vyra;

internal static class Watch
{
    private static void Main()
    {
        using (var library = new Library())
        using (var end = new CancellationTokenSource())
        {
            library.ScannerPlugged += (sender, e) => Console.WriteLine("{0} {1}", e.Name, e.Plugged ? "plugged" : "unplugged");
            library.PowerChanged += (sender, e) => Console.WriteLine(e.Asleep ? "sleep" : "resume");
            var capture = CaptureForEver(library, end.Token);
            Console.ReadLine();
            end.Cancel();
            try
            {
                capture.Wait();
            }
            catch (AggregateException failure) when (failure.InnerException is OperationCanceledException)
            {
            }
        }
    }

    private static async Task CaptureForEver(Library library, CancellationToken cancel)
    {
        for (;;)
        {
            try
            {
                await CaptureUntilGone(library, cancel);
            }
            catch (VyraException failure)
            {
                Console.WriteLine(failure.Message);
            }
            await Task.Delay(100, cancel);
        }
    }

    private static async Task CaptureUntilGone(Library library, CancellationToken cancel)
    {
        var name = library.Scanners().FirstOrDefault();
        if (name == null)
        {
            return;
        }
        using (var scanner = library.Open(name))
        using (var video = scanner.StartVideo())
        {
            Console.WriteLine("{0} captures", name);
            for (;;)
            {
                await video.WaitAsync(TimeSpan.FromMinutes(1), cancel);
            }
        }
    }
}
