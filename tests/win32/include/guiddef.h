/* GUID and its comparison. */
#pragma once
#include <string.h>

#include <minwindef.h>

typedef struct GUID {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
} GUID;
typedef GUID IID;

#ifdef __cplusplus
inline bool operator==(const GUID& a, const GUID& b)
{
    return memcmp(&a, &b, sizeof a) == 0;
}
inline bool operator!=(const GUID& a, const GUID& b)
{
    return !(a == b);
}
typedef const GUID& REFGUID;
#define IsEqualGUID(a, b) ((a) == (b))
#else
typedef const GUID* REFGUID;
#define IsEqualGUID(a, b) (memcmp((a), (b), sizeof(GUID)) == 0)
#endif
