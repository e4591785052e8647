#include "win32_double/control.h"
