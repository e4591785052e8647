// Lists the attached scanners.
using System;
using Vyra;

internal static class List
{
    private static void Main()
    {
        using (var library = new Library())
        {
            foreach (var name in library.Scanners())
            {
                var identity = library.Identify(name);
                Console.WriteLine("{0}: {1} {2}, serial number {3}, firmware {4}", name, identity.Manufacturer, identity.Model,
                                  identity.SerialNumber, identity.Version);
            }
        }
    }
}
