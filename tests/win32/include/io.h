/* The C runtime's low-level files. On Windows the flags come from <fcntl.h>, <sys/stat.h> and <stdio.h>; those headers
   stay the system's own in a native build, so the names are here. Paths are taken literally: a backslash is an
   ordinary character. */
#pragma once
#include <stdint.h>
#include <stdio.h>

#include <share.h>

#define _O_RDONLY 0x0000
#define _O_WRONLY 0x0001
#define _O_RDWR 0x0002
#define _O_APPEND 0x0008
#define _O_CREAT 0x0100
#define _O_TRUNC 0x0200
#define _O_EXCL 0x0400
#define _O_TEXT 0x4000
#define _O_BINARY 0x8000

#define _S_IREAD 0x0100
#define _S_IWRITE 0x0080

#ifdef __cplusplus
extern "C" {
#endif

int _sopen(const char* path, int flags, int share, ...);
int _close(int descriptor);
int _write(int descriptor, const void* buffer, unsigned int size);
int _commit(int descriptor);
int32_t _filelength(int descriptor); /* a Windows long */
int _isatty(int descriptor);
int _fileno(FILE* stream);

#ifdef __cplusplus
}
#endif
