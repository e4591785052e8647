using System;
using System.Collections.Generic;
using System.Runtime.InteropServices;
using System.Text;

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

    /// <summary>What a capture index offers. The sizes are not those of the images.</summary>
    public sealed class Capabilities
    {
        /// <summary>Pixels per inch.</summary>
        public int Resolution { get; }

        /// <summary>Thousandths of an inch.</summary>
        public int AreaWidth { get; }

        /// <summary>Thousandths of an inch.</summary>
        public int AreaHeight { get; }

        /// <summary>Pixels of the area.</summary>
        public int ImageWidth { get; }

        /// <summary>Pixels of the area.</summary>
        public int ImageHeight { get; }

        internal Capabilities(Native.VyraDeviceCapabilities record)
        {
            Resolution = (int)record.resolution;
            AreaWidth = (int)record.areaWidth;
            AreaHeight = (int)record.areaHeight;
            ImageWidth = (int)record.imageWidth;
            ImageHeight = (int)record.imageHeight;
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

        /// <summary>All off.</summary>
        public Leds()
        {
        }

        internal Leds(Native.DevUI record)
        {
            GroupA = record.groupA;
            GroupB = record.groupB;
            GroupC = record.groupC;
            GroupAOn = record.groupAOn != 0;
            GroupBOn = record.groupBOn != 0;
            GroupCOn = record.groupCOn != 0;
        }

        internal Native.DevUI Record()
        {
            return new Native.DevUI {
                groupA = GroupA,
                groupB = GroupB,
                groupC = GroupC,
                groupAOn = GroupAOn ? 1u : 0u,
                groupBOn = GroupBOn ? 1u : 0u,
                groupCOn = GroupCOn ? 1u : 0u,
            };
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
}
