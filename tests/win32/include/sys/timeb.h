/* Time of the C runtime. The _ctime64 family stands in <time.h> on Windows; here that header is the system's own. */
#pragma once
#include <stddef.h>
#include <stdint.h>
#include <time.h>

#include <winbase.h>

typedef int64_t __time64_t;

struct __timeb64 {
    __time64_t time;
    unsigned short millitm;
    short timezone; /* minutes west of UTC, without daylight saving */
    short dstflag;
};

#ifdef __cplusplus
extern "C" {
#endif

void _ftime64(struct __timeb64* now);
/* The text's day has two digits, padded with a zero. The buffer belongs to the calling thread. */
char* _ctime64(const __time64_t* time);

#ifdef __cplusplus
}
#endif
