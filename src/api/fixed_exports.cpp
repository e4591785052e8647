// The exported scanner functions that are present for compatibility: each has a fixed result and touches nothing, not
// even the manager. Hosts may pass what they like; none is declared, because none is read. VyraInitialize and
// VyraInitialization initialize nothing, on purpose: hosts know that what follows them is refused.
#include "vyra/vyra.h"

namespace {

int32_t succeed()
{
    return VYRA_OK;
}

int32_t not_implemented()
{
    return VYRA_NOT_IMPLEMENTED;
}

}  // namespace

extern "C" {

void VyraBreakEnable(void) {}

int32_t VyraBusReset(void)
{
    return succeed();
}

int32_t VyraGetBufSize(void)
{
    return succeed();
}

int32_t VyraGetImage(void)
{
    return succeed();
}

int32_t VyraGetMemory(void)
{
    return succeed();
}

int32_t VyraGetVideoBandPosition(void)
{
    return succeed();
}

int32_t VyraInitialization(void)
{
    return succeed();
}

int32_t VyraInitialize(void)
{
    return succeed();
}

int32_t VyraBrenvoCalibrateScanner(void)
{
    return succeed();
}

int32_t VyraBrenvoDeviceConnected(void)
{
    return succeed();
}

int32_t VyraBrenvoGetFinalImage(void)
{
    return succeed();
}

int32_t VyraPutBitmap(void)
{
    return succeed();
}

int32_t VyraPutCommand(void)
{
    return succeed();
}

int32_t VyraPutImage(void)
{
    return succeed();
}

int32_t VyraSetTimeouts(void)
{
    return succeed();
}

int32_t VyraSetVideoBandParams(void)
{
    return succeed();
}

int32_t VyraStartVideo(void)
{
    return succeed();
}

int32_t VyraBrenvoGetDetectedFingersBox(void)
{
    return not_implemented();
}

int32_t VyraBrenvoGetFFDParameters(void)
{
    return not_implemented();
}

int32_t VyraBrenvoSetFFDParameters(void)
{
    return not_implemented();
}

}  // extern "C"
