// The end of the process.
#pragma once

namespace kvs::brenvozulta {

// Whether the process is ending: the system has then ended every other thread, wherever it was, and only the static
// destructors and the detach routines of the modules still run. What another thread owned or was to answer never comes:
// a host that shuts the library down from there would otherwise wait for ever.
bool process_is_ending() noexcept;

}  // namespace kvs::brenvozulta
