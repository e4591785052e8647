// The order in which the locks are taken, each inside those that it stands below:
//
//   manager lock
//   |
//   |-- inside_manager --------------------------------------------------------------------------
//   |   stop handshake   close mutex                                        notifier's start and stop
//   |                    |                                                  |
//   |                    |-- inside_close ----------------------------      |-- inside_notifier --
//   |                    status wait   device table   attached devices      USB table
//   |                    frame queue
//
// A lock declares between which of these lines it stands, so that the rooms need not know each other's locks. The power
// table stands on both sides of the manager lock: its subscribers take that one inside it, and a session's begin and
// end take it inside that one. The five seconds for which a subscriber waits end what comes of it.
#pragma once

#include "locks/annotations.h"

namespace kvs::brenvozulta::lock_order {

class CAPABILITY("line") line {};

// For the compiler alone: defined nowhere.
extern line inside_close;
extern line inside_notifier;
extern line inside_manager ACQUIRED_BEFORE(inside_close, inside_notifier);

}  // namespace kvs::brenvozulta::lock_order
