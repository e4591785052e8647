/* The part of the Win32 interface that the project uses, for the native builds: real names, types and values.
   Neither _WIN32 nor WIN32 is defined, and no function name is a macro. */
#pragma once
#include <guiddef.h>
#include <minwindef.h>
#include <winbase.h>
#include <winerror.h>
#include <winuser.h>
