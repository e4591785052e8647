// A host by the Windows compilers' ABI, linked with their import library: plain exports, and decorated ones under the
// names that the compiler itself makes of the header's declarations.
#include "vyra/notify.h"
#include "vyra/vyra.h"

extern "C" {

__declspec(dllimport) void* GetStdHandle(unsigned long which);
__declspec(dllimport) int WriteFile(void* file, const void* bytes, unsigned long size, unsigned long* written, void*);
[[noreturn]] __declspec(dllimport) void ExitProcess(unsigned int code);
}

namespace {

constexpr unsigned long standard_output = static_cast<unsigned long>(-11);

unsigned int failures = 0;
char names[8 * 255 + 560];
DeviceInfo info;

void print(const char* text)
{
    unsigned long length = 0;
    while (text[length] != '\0') {
        ++length;
    }
    unsigned long written = 0;
    WriteFile(GetStdHandle(standard_output), text, length, &written, nullptr);
}

void expect(bool condition, const char* what)
{
    if (!condition) {
        print("not so: ");
        print(what);
        print("\n");
        ++failures;
    }
}

void on_usb(int, int, UsbPlugEventType) {}
void on_power(SysPowerEventType) {}

void check_scanner_exports()
{
    uint32_t count = 8;
    uint32_t handle = 0;
    expect(VyraGetDeviceList(&count, names) == VYRA_NOT_INITIALIZED, "the library is not initialized");
    expect(VyraInitialize_N(nullptr, 0, 0) == VYRA_OK, "it initializes");
    expect(VyraGetDeviceList(&count, names) == VYRA_OK && count == 1, "one scanner is attached");
    expect(VyraOpenDevice(names, &handle) == VYRA_OK && handle == 0, "it opens as handle 0");
    expect(VyraBrenvoGetDeviceInfo(handle, &info) == VYRA_OK && info.manufacturer[0] == 'O', "it tells its maker");
    expect(VyraCloseDevice_N(handle) == VYRA_OK, "it closes");
}

void check_decorated_exports()
{
    char window_class[] = "MSVC HOST";
    expect(InitUsbNotifier(window_class), "the notifier runs");
    expect(SubscribeToUsbEvent(0x1234, 0x5678, on_usb), "a device is subscribed");
    expect(!SubscribeToUsbEvent(0x1234, 0x5678, on_usb), "once only");
    expect(UnSubscribeToUsbEvent(0x1234, 0x5678), "the subscription ends");
    expect(!UnSubscribeToUsbEvent(0x1234, 0x5678), "once only");
    expect(SubscribeToPowerEvent(on_power), "power events are subscribed");
    expect(UnsubscribeToPowerEvent(on_power), "the subscription ends");
    expect(!UnsubscribeToPowerEvent(on_power), "once only");
    expect(TerminateUsbNotifier(window_class), "the notifier stops");
}

}  // namespace

extern "C" void mainCRTStartup()
{
    check_scanner_exports();
    check_decorated_exports();
    expect(VyraTerminate() == VYRA_OK, "the library terminates");
    print(failures == 0 ? "every call had its result\n" : "failed\n");
    ExitProcess(failures);
}
