// The life of this module.
#pragma once

namespace kvs::brenvozulta {

// Keeps the module loaded until the process ends. To be called before one of its addresses is handed out for good or a
// thread is started in it: the driver library never gives a callback back, and a thread that is detached, or whose end
// has been waited for, still has its last steps to run when a host calls FreeLibrary.
void pin_module() noexcept;

}  // namespace kvs::brenvozulta
