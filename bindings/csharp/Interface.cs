// Made by bindings/generate from include/vyra: change the headers, not this file.
#pragma warning disable 649, 169 // fields that only the library writes
using System;
using System.Runtime.InteropServices;

namespace Vyra
{
    /// <summary>The numbers of the interface.</summary>
    public static class Constants
    {
        /// <summary>VYRA_OK of the C headers.</summary>
        public const int Ok = 0;
        /// <summary>VYRA_INTERNAL of the C headers.</summary>
        public const int Internal = 9000;
        /// <summary>VYRA_OUT_OF_RESOURCE of the C headers.</summary>
        public const int OutOfResource = 9001;
        /// <summary>VYRA_DEVICE_UNAVAIL of the C headers.</summary>
        public const int DeviceUnavail = 9005;
        /// <summary>VYRA_DEVICE_TIMEOUT of the C headers.</summary>
        public const int DeviceTimeout = 9016;
        /// <summary>VYRA_NOT_IMPLEMENTED of the C headers.</summary>
        public const int NotImplemented = 9019;
        /// <summary>VYRA_DRIVER_REFUSED of the C headers.</summary>
        public const int DriverRefused = 9025;
        /// <summary>VYRA_NOT_INITIALIZED of the C headers.</summary>
        public const int NotInitialized = 9101;
        /// <summary>VYRA_BUF_TOO_SMALL of the C headers.</summary>
        public const int BufTooSmall = 9103;
        /// <summary>VYRA_TOO_MANY_FRAMES of the C headers.</summary>
        public const int TooManyFrames = 9104;
        /// <summary>VYRA_VIDEO_STOPPED of the C headers.</summary>
        public const int VideoStopped = 9105;
        /// <summary>VYRA_VIDEO_TIMEOUT of the C headers.</summary>
        public const int VideoTimeout = 9106;
        /// <summary>VYRA_BAD_SCANNER_IDX of the C headers.</summary>
        public const int BadScannerIdx = 9108;
        /// <summary>VYRA_BAD_PARAMETER of the C headers.</summary>
        public const int BadParameter = 9109;
        /// <summary>VYRA_SCN_UNAVAILABLE of the C headers.</summary>
        public const int ScnUnavailable = 9110;
        /// <summary>VYRA_DRIVER_STATE of the C headers.</summary>
        public const int DriverState = 9111;
        /// <summary>VYRA_CAPTURE_CONFIG of the C headers.</summary>
        public const int CaptureConfig = 9114;
        /// <summary>VYRA_VERSION_MAJOR of the C headers.</summary>
        public const int VersionMajor = 1;
        /// <summary>VYRA_VERSION_MINOR of the C headers.</summary>
        public const int VersionMinor = 0;
        /// <summary>VYRA_VERSION_PATCH of the C headers.</summary>
        public const int VersionPatch = 0;
        /// <summary>VYRA_NO_HANDLE of the C headers.</summary>
        public const uint NoHandle = 4294967295;
        /// <summary>VYRA_MAX_SCANNERS of the C headers.</summary>
        public const int MaxScanners = 8;
        /// <summary>VYRA_MAX_VIDEO_REQUESTS of the C headers.</summary>
        public const int MaxVideoRequests = 8;
        /// <summary>VYRA_NAME_SLOT of the C headers.</summary>
        public const int NameSlot = 255;
        /// <summary>VYRA_LOG_OFF of the C headers.</summary>
        public const int LogOff = 0;
        /// <summary>VYRA_LOG_TRACE of the C headers.</summary>
        public const int LogTrace = 1;
        /// <summary>VYRA_LOG_ALL of the C headers.</summary>
        public const int LogAll = 3;
        /// <summary>VYRA_MODE_ROLL of the C headers.</summary>
        public const int ModeRoll = 0;
        /// <summary>VYRA_MODE_FLAT of the C headers.</summary>
        public const int ModeFlat = 1;
        /// <summary>VYRA_FLAT_WIDTH of the C headers.</summary>
        public const int FlatWidth = 1600;
        /// <summary>VYRA_FLAT_HEIGHT of the C headers.</summary>
        public const int FlatHeight = 1500;
        /// <summary>VYRA_FLAT_SIZE of the C headers.</summary>
        public const int FlatSize = 2400000;
        /// <summary>VYRA_ROLL_WIDTH of the C headers.</summary>
        public const int RollWidth = 1608;
        /// <summary>VYRA_ROLL_HEIGHT of the C headers.</summary>
        public const int RollHeight = 1000;
        /// <summary>VYRA_ROLL_SIZE of the C headers.</summary>
        public const int RollSize = 1608000;
        /// <summary>VYRA_PIXELS_PER_INCH of the C headers.</summary>
        public const int PixelsPerInch = 500;
        /// <summary>VYRA_TONE_DOUBLE of the C headers.</summary>
        public const int ToneDouble = 0;
        /// <summary>VYRA_TONE_LONG of the C headers.</summary>
        public const int ToneLong = 1;
        /// <summary>VYRA_TONE_SHORT of the C headers.</summary>
        public const int ToneShort = 2;
        /// <summary>VYRA_TONE_LOW of the C headers.</summary>
        public const int ToneLow = 3;
        /// <summary>VYRA_LED_OFF of the C headers.</summary>
        public const int LedOff = 0;
        /// <summary>VYRA_LED_LIT_1 of the C headers.</summary>
        public const int LedLit1 = 1;
        /// <summary>VYRA_LED_LIT_2 of the C headers.</summary>
        public const int LedLit2 = 2;
        /// <summary>VYRA_LED_LIT_3 of the C headers.</summary>
        public const int LedLit3 = 3;
        /// <summary>VYRA_CAPABILITIES_ROLL of the C headers.</summary>
        public const int CapabilitiesRoll = 0;
        /// <summary>VYRA_CAPABILITIES_FLAT of the C headers.</summary>
        public const int CapabilitiesFlat = 1;
        /// <summary>VYRA_EVENT_DEVICE of the C headers.</summary>
        public const int EventDevice = 5;
        /// <summary>VYRA_CALIBRATION_WIDTH of the C headers.</summary>
        public const int CalibrationWidth = 3216;
        /// <summary>VYRA_CALIBRATION_HEIGHT of the C headers.</summary>
        public const int CalibrationHeight = 2004;
        /// <summary>VYRA_CALIBRATION_SIZE of the C headers.</summary>
        public const int CalibrationSize = 6444864;
        /// <summary>VYRA_USB_PLUGGED of the C headers.</summary>
        public const int UsbPlugged = 0;
        /// <summary>VYRA_USB_UNPLUGGED of the C headers.</summary>
        public const int UsbUnplugged = 1;
        /// <summary>VYRA_POWER_SLEEP of the C headers.</summary>
        public const int PowerSleep = 0;
        /// <summary>VYRA_POWER_RESUME of the C headers.</summary>
        public const int PowerResume = 1;
        /// <summary>VYRA_FUNCTION_COUNT of the C headers.</summary>
        public const int FunctionCount = 59;
        /// <summary>VYRA_MAX_IMAGE_SIZE of the C headers.</summary>
        public const int MaxImageSize = 2400000;
    }

    internal static class Meanings
    {
        internal static string Of(int status)
        {
            switch (status)
            {
                case 9000: return "The manager was busy for more than 5 seconds, or the driver library could not be brought up or down, found no scanner, or failed in a way that no closer code describes";
                case 9001: return "Memory for the call could not be had";
                case 9005: return "The scanner behind the handle is gone: unplugged, or not back after a reset";
                case 9016: return "The scanner did not answer the driver library in time";
                case 9019: return "The function is present for compatibility and has no implementation";
                case 9025: return "The driver library refused the request";
                case 9101: return "VyraInitialize_N has not succeeded yet, or VyraTerminate has been called since";
                case 9103: return "A device-list call without a buffer or without a count";
                case 9104: return "Eight video requests are outstanding already: fetch a result first";
                case 9105: return "Video does not run: start it first";
                case 9106: return "No image is ready yet: ask again";
                case 9108: return "The handle names no open scanner, or eight scanners are open already";
                case 9109: return "A null pointer, a zero capacity or a value out of range";
                case 9110: return "The scanner is open already or not open at all, or the system is asleep";
                case 9111: return "The driver library is in the wrong state for the request";
                case 9114: return "The scanner does not have the capture configuration";
                default: return null;
            }
        }
    }

    internal static class Native
    {
        private const string Library = "vyrabrenvozulta";

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        internal delegate int VyraDeviceEventCallback(int @event, IntPtr name, int plugged);

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        internal delegate void VyraUICallback(IntPtr context);

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        internal delegate void VyraUsbEventCallback(int vendorId, int productId, int @event);

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        internal delegate void VyraPowerEventCallback(int @event);

        [StructLayout(LayoutKind.Sequential)]
        internal struct DeviceListRecord
        {
            [MarshalAs(UnmanagedType.ByValArray, SizeConst = 4)]
            internal byte[] reserved0;
            [MarshalAs(UnmanagedType.ByValArray, SizeConst = 255)]
            internal byte[] name;
            internal byte reserved259;
        }

        [StructLayout(LayoutKind.Sequential)]
        internal struct DeviceInfo
        {
            [MarshalAs(UnmanagedType.ByValArray, SizeConst = 8)]
            internal byte[] manufacturer;
            [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
            internal byte[] model;
            [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
            internal byte[] serialNumber;
            [MarshalAs(UnmanagedType.ByValArray, SizeConst = 12)]
            internal byte[] version;
        }

        [StructLayout(LayoutKind.Sequential)]
        internal struct VyraDeviceCapabilities
        {
            internal uint constant0;
            internal uint constant1;
            internal uint resolution;
            internal uint areaWidth;
            internal uint areaHeight;
            internal uint imageWidth;
            internal uint imageHeight;
            [MarshalAs(UnmanagedType.ByValArray, SizeConst = 7)]
            internal uint[] reserved;
        }

        [StructLayout(LayoutKind.Sequential)]
        internal struct DevUI
        {
            [MarshalAs(UnmanagedType.ByValArray, SizeConst = 4)]
            internal uint[] groupA;
            [MarshalAs(UnmanagedType.ByValArray, SizeConst = 4)]
            internal uint[] groupB;
            [MarshalAs(UnmanagedType.ByValArray, SizeConst = 2)]
            internal uint[] groupC;
            internal uint groupAOn;
            internal uint groupBOn;
            internal uint groupCOn;
        }

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern void VyraBreakEnable();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBusReset();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBusReset_N(uint handle);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraCloseDevice_N(uint handle);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraGetBufSize();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraGetDeviceList(ref uint count, IntPtr buffer);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraGetDeviceList_N(ref uint count, [Out] DeviceListRecord[] buffer);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraGetImage();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraGetMemory();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraGetStatus(uint handle);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraGetVerInfo(IntPtr unused);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraGetVersion(IntPtr unused1, uint unused2);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraGetVideoBandPosition();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraGetVideoResult(uint handle, out IntPtr buffer, out ulong context);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraInitialization();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraInitialize();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraInitialize_N(VyraDeviceEventCallback callback, uint logLevel, int logLimit);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoCalibrateScanner();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoDeviceConnected();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoGetCapabilities(uint handle, uint index, ref VyraDeviceCapabilities record);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoGetDetectedFingersBox();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoGetDevUI(uint handle, out DevUI record);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoGetDeviceInfo(uint handle, out DeviceInfo record);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoGetFFDParameters();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoGetFinalImage();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoMGGetDeviceInfo(byte[] name, IntPtr unused, out DeviceInfo record);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoSetBuzzer(uint handle, uint pattern, IntPtr unused1, IntPtr unused2);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoSetDevUI(uint handle, ref DevUI record);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoSetFFDParameters();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoSetUICallBack(uint handle, VyraUICallback callback, IntPtr context);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoStartVideo(uint handle, uint mode, uint unused);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoZultaGetGlobalParamSize(uint handle, ref uint size);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoZultaGetPortType(uint handle, ref uint portType);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoZultaGetSnapshotAcquisition(uint handle, IntPtr buffer, uint a, uint b, uint c);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoZultaIsRollSupported(uint handle, out byte supported);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoZultaOpenDevice(byte[] name, ref uint handle, byte option);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoZultaReadFilters(uint handle, IntPtr a, IntPtr b, IntPtr c);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoZultaReadGlobalParam(uint handle, IntPtr buffer, uint size);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoZultaReadUniformityBuffers(uint handle, IntPtr buffer, int size);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoZultaSetParameters(uint handle, byte parameter, uint value);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraBrenvoZultaStartCamera(uint handle);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraOpenDevice(byte[] name, ref uint handle);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraOpenDevice_N(byte[] name, IntPtr unused, ref uint handle);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraPutBitmap();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraPutCommand();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraPutImage();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraPutMemory(uint handle, IntPtr image, UIntPtr length);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraSetTimeouts();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraSetVideoBandParams();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraStartVideo();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraStopVideo(uint handle);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraSubmitVideoRequest(uint handle, IntPtr buffer, ulong context);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int VyraTerminate();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true, EntryPoint = "?InitUsbNotifier@@YA_NPEAD@Z")]
        [return: MarshalAs(UnmanagedType.U1)]
        internal static extern bool InitUsbNotifier(IntPtr windowClassName);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true, EntryPoint = "_Z15InitUsbNotifierPc")]
        [return: MarshalAs(UnmanagedType.U1)]
        internal static extern bool InitUsbNotifierNative(IntPtr windowClassName);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true, EntryPoint = "?TerminateUsbNotifier@@YA_NPEAD@Z")]
        [return: MarshalAs(UnmanagedType.U1)]
        internal static extern bool TerminateUsbNotifier(IntPtr windowClassName);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true, EntryPoint = "_Z20TerminateUsbNotifierPc")]
        [return: MarshalAs(UnmanagedType.U1)]
        internal static extern bool TerminateUsbNotifierNative(IntPtr windowClassName);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true, EntryPoint = "?SubscribeToUsbEvent@@YA_NHHP6AXHHW4UsbPlugEventType@@@Z@Z")]
        [return: MarshalAs(UnmanagedType.U1)]
        internal static extern bool SubscribeToUsbEvent(int vendorId, int productId, VyraUsbEventCallback callback);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true, EntryPoint = "_Z19SubscribeToUsbEventiiPFvii16UsbPlugEventTypeE")]
        [return: MarshalAs(UnmanagedType.U1)]
        internal static extern bool SubscribeToUsbEventNative(int vendorId, int productId, VyraUsbEventCallback callback);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true, EntryPoint = "?UnSubscribeToUsbEvent@@YA_NHH@Z")]
        [return: MarshalAs(UnmanagedType.U1)]
        internal static extern bool UnSubscribeToUsbEvent(int vendorId, int productId);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true, EntryPoint = "_Z21UnSubscribeToUsbEventii")]
        [return: MarshalAs(UnmanagedType.U1)]
        internal static extern bool UnSubscribeToUsbEventNative(int vendorId, int productId);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true, EntryPoint = "?SubscribeToPowerEvent@@YA_NP6AXW4SysPowerEventType@@@Z@Z")]
        [return: MarshalAs(UnmanagedType.U1)]
        internal static extern bool SubscribeToPowerEvent(VyraPowerEventCallback callback);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true, EntryPoint = "_Z21SubscribeToPowerEventPFv17SysPowerEventTypeE")]
        [return: MarshalAs(UnmanagedType.U1)]
        internal static extern bool SubscribeToPowerEventNative(VyraPowerEventCallback callback);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true, EntryPoint = "?UnsubscribeToPowerEvent@@YA_NP6AXW4SysPowerEventType@@@Z@Z")]
        [return: MarshalAs(UnmanagedType.U1)]
        internal static extern bool UnsubscribeToPowerEvent(VyraPowerEventCallback callback);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true, EntryPoint = "_Z23UnsubscribeToPowerEventPFv17SysPowerEventTypeE")]
        [return: MarshalAs(UnmanagedType.U1)]
        internal static extern bool UnsubscribeToPowerEventNative(VyraPowerEventCallback callback);
    }
}
