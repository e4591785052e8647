// Access to the one manager of the process.
#pragma once

#include <boost/shared_ptr.hpp>

namespace kvs::brenvozulta {

class brenvozulta_manager;

// Returns a shared owner of the manager; the first call of the process creates it. From any thread. The manager lives
// in static storage until the process ends, so neither its creation nor a copy of the owner can run out of memory.
boost::shared_ptr<brenvozulta_manager> get_manager();

}  // namespace kvs::brenvozulta
