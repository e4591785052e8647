// The manager's subscriber to sleep and resume.
#pragma once

#include "vyra/notify.h"

namespace kvs::brenvozulta {

// Runs on the notifier thread, with the power table locked.
void power_handler(SysPowerEventType event);

}  // namespace kvs::brenvozulta
