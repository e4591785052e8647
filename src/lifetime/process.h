// The ends that the library does not see coming: the module's and the process's.
#pragma once

namespace kvs::brenvozulta {

// Keeps the module loaded until the process ends. To be called before one of its addresses is handed out for good or a
// thread is started in it: the driver library never gives a callback back, and a thread that is detached, or whose end
// has been waited for, still has its last steps to run when a host calls FreeLibrary.
void pin_module() noexcept;

// Whether the process is ending: the system has then ended every other thread, wherever it was, and only the static
// destructors and the detach routines of the modules still run. What another thread owned or was to answer never comes:
// a host that shuts the library down from there would otherwise wait for ever.
bool process_is_ending() noexcept;

}  // namespace kvs::brenvozulta
