// Captures one flat image from the first scanner: Capture.exe finger.pgm
using System;
using System.IO;
using System.Text;
using System.Threading.Tasks;
using Vyra;

internal static class Capture
{
    private static int Main(string[] arguments)
    {
        try
        {
            Run(arguments.Length > 0 ? arguments[0] : "finger.pgm").GetAwaiter().GetResult();
            return 0;
        }
        catch (Exception failure) when (failure is VyraException || failure is TimeoutException)
        {
            Console.Error.WriteLine(failure.Message);
            return 1;
        }
    }

    private static async Task Run(string path)
    {
        using (var library = new Library())
        using (var scanner = library.Open(library.Scanners()[0]))
        using (var video = scanner.StartVideo())
        {
            var image = await video.WaitAsync(TimeSpan.FromSeconds(10));
            using (var file = File.Create(path))
            {
                var head = Encoding.ASCII.GetBytes("P5\n" + image.Width + " " + image.Height + "\n255\n");
                file.Write(head, 0, head.Length);
                file.Write(image.Pixels, 0, image.Pixels.Length);
            }
            Console.WriteLine("{0}: {1} x {2}", path, image.Width, image.Height);
        }
    }
}
