// Links every export of the library: one that is missing keeps the program from being linked, or from being loaded.
#include "host.h"
#include "vyra/notify.h"
#include "vyra/vyra.h"
#include "win32.h"

namespace {

using Function = void (*)();

template <typename F>
Function erase(F* function)
{
    return reinterpret_cast<Function>(function);
}

}  // namespace

bool check_exports()
{
    const Function functions[] = {
        erase(VyraBreakEnable),
        erase(VyraBusReset),
        erase(VyraBusReset_N),
        erase(VyraCloseDevice_N),
        erase(VyraGetBufSize),
        erase(VyraGetDeviceList),
        erase(VyraGetDeviceList_N),
        erase(VyraGetImage),
        erase(VyraGetMemory),
        erase(VyraGetStatus),
        erase(VyraGetVerInfo),
        erase(VyraGetVersion),
        erase(VyraGetVideoBandPosition),
        erase(VyraGetVideoResult),
        erase(VyraInitialization),
        erase(VyraInitialize),
        erase(VyraInitialize_N),
        erase(VyraBrenvoCalibrateScanner),
        erase(VyraBrenvoDeviceConnected),
        erase(VyraBrenvoGetCapabilities),
        erase(VyraBrenvoGetDetectedFingersBox),
        erase(VyraBrenvoGetDevUI),
        erase(VyraBrenvoGetDeviceInfo),
        erase(VyraBrenvoGetFFDParameters),
        erase(VyraBrenvoGetFinalImage),
        erase(VyraBrenvoMGGetDeviceInfo),
        erase(VyraBrenvoSetBuzzer),
        erase(VyraBrenvoSetDevUI),
        erase(VyraBrenvoSetFFDParameters),
        erase(VyraBrenvoSetUICallBack),
        erase(VyraBrenvoStartVideo),
        erase(VyraBrenvoZultaGetGlobalParamSize),
        erase(VyraBrenvoZultaGetPortType),
        erase(VyraBrenvoZultaGetSnapshotAcquisition),
        erase(VyraBrenvoZultaIsRollSupported),
        erase(VyraBrenvoZultaOpenDevice),
        erase(VyraBrenvoZultaReadFilters),
        erase(VyraBrenvoZultaReadGlobalParam),
        erase(VyraBrenvoZultaReadUniformityBuffers),
        erase(VyraBrenvoZultaSetParameters),
        erase(VyraBrenvoZultaStartCamera),
        erase(VyraOpenDevice),
        erase(VyraOpenDevice_N),
        erase(VyraPutBitmap),
        erase(VyraPutCommand),
        erase(VyraPutImage),
        erase(VyraPutMemory),
        erase(VyraSetTimeouts),
        erase(VyraSetVideoBandParams),
        erase(VyraStartVideo),
        erase(VyraStopVideo),
        erase(VyraSubmitVideoRequest),
        erase(VyraTerminate),
        erase(InitUsbNotifier),
        erase(TerminateUsbNotifier),
        erase(SubscribeToUsbEvent),
        erase(UnSubscribeToUsbEvent),
        erase(SubscribeToPowerEvent),
        erase(UnsubscribeToPowerEvent),
    };
    constexpr int count = sizeof functions / sizeof functions[0];
    static_assert(count == 59, "53 scanner functions and 6 of the notification service");
    int distinct = 0;
    for (int i = 0; i < count; ++i) {
        bool seen = false;
        for (int j = 0; j < i; ++j) {
            seen = seen || functions[i] == functions[j];
        }
        distinct += seen ? 0 : 1;
    }
    char line[64];
    wsprintfA(line, "%d exports linked", distinct);
    return report(distinct == count, line);
}
