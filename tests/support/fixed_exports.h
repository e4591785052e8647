/* The exports that take nothing, do nothing and always have the same result, each as EXPORT(name, result). */
#ifndef TEST_SUPPORT_FIXED_EXPORTS_H
#define TEST_SUPPORT_FIXED_EXPORTS_H

#define FIXED_EXPORTS(EXPORT)                     \
    EXPORT(VyraBusReset, 0)                       \
    EXPORT(VyraGetBufSize, 0)                     \
    EXPORT(VyraGetImage, 0)                       \
    EXPORT(VyraGetMemory, 0)                      \
    EXPORT(VyraGetVideoBandPosition, 0)           \
    EXPORT(VyraInitialization, 0)                 \
    EXPORT(VyraInitialize, 0)                     \
    EXPORT(VyraBrenvoCalibrateScanner, 0)         \
    EXPORT(VyraBrenvoDeviceConnected, 0)          \
    EXPORT(VyraBrenvoGetDetectedFingersBox, 9019) \
    EXPORT(VyraBrenvoGetFFDParameters, 9019)      \
    EXPORT(VyraBrenvoGetFinalImage, 0)            \
    EXPORT(VyraBrenvoSetFFDParameters, 9019)      \
    EXPORT(VyraPutBitmap, 0)                      \
    EXPORT(VyraPutCommand, 0)                     \
    EXPORT(VyraPutImage, 0)                       \
    EXPORT(VyraSetTimeouts, 0)                    \
    EXPORT(VyraSetVideoBandParams, 0)             \
    EXPORT(VyraStartVideo, 0)

#endif
