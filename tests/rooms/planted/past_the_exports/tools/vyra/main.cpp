#include "device/device.h"
