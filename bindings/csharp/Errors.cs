using System;

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
}
