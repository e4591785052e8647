#include "manager/get_manager.h"
