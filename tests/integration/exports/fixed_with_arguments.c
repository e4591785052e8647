#include "integration/exports/fixed_with_arguments.h"

int32_t VyraBusReset(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraGetBufSize(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraGetImage(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraGetMemory(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraGetVideoBandPosition(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraInitialization(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraInitialize(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraBrenvoCalibrateScanner(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraBrenvoDeviceConnected(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraBrenvoGetFinalImage(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraPutBitmap(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraPutCommand(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraPutImage(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraSetTimeouts(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraSetVideoBandParams(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraStartVideo(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraBrenvoGetDetectedFingersBox(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraBrenvoGetFFDParameters(uint32_t handle, void* pointer, uint64_t number);
int32_t VyraBrenvoSetFFDParameters(uint32_t handle, void* pointer, uint64_t number);
void VyraBreakEnable(uint32_t handle, void* pointer, uint64_t number);

int count_wrong_fixed_results(uint32_t handle, void* pointer, uint64_t number)
{
    int wrong = 0;
    wrong += VyraBusReset(handle, pointer, number) != 0;
    wrong += VyraGetBufSize(handle, pointer, number) != 0;
    wrong += VyraGetImage(handle, pointer, number) != 0;
    wrong += VyraGetMemory(handle, pointer, number) != 0;
    wrong += VyraGetVideoBandPosition(handle, pointer, number) != 0;
    wrong += VyraInitialization(handle, pointer, number) != 0;
    wrong += VyraInitialize(handle, pointer, number) != 0;
    wrong += VyraBrenvoCalibrateScanner(handle, pointer, number) != 0;
    wrong += VyraBrenvoDeviceConnected(handle, pointer, number) != 0;
    wrong += VyraBrenvoGetFinalImage(handle, pointer, number) != 0;
    wrong += VyraPutBitmap(handle, pointer, number) != 0;
    wrong += VyraPutCommand(handle, pointer, number) != 0;
    wrong += VyraPutImage(handle, pointer, number) != 0;
    wrong += VyraSetTimeouts(handle, pointer, number) != 0;
    wrong += VyraSetVideoBandParams(handle, pointer, number) != 0;
    wrong += VyraStartVideo(handle, pointer, number) != 0;
    wrong += VyraBrenvoGetDetectedFingersBox(handle, pointer, number) != 9019;
    wrong += VyraBrenvoGetFFDParameters(handle, pointer, number) != 9019;
    wrong += VyraBrenvoSetFFDParameters(handle, pointer, number) != 9019;
    VyraBreakEnable(handle, pointer, number);
    return wrong;
}
