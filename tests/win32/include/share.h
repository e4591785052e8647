/* The sharing mode of _sopen: all may read and write the file, none may move or delete it. */
#pragma once
#define _SH_DENYNO 0x40
