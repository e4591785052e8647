// What the library is doing when the host's process begins to end.
#pragma once

#include <map>
#include <string>

namespace exit_host {

extern char notifier_class[];

// "initialized", "open", "video", "copying", "waiting", "notifier"; each brings the library there and returns whether
// that succeeded.
extern const std::map<std::string, bool (*)()> states;

}  // namespace exit_host
