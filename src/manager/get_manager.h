// Access to the one manager of the process.
#pragma once

#include <atomic>
#include <boost/shared_ptr.hpp>

namespace kvs::brenvozulta {

class brenvozulta_manager;

using manager_owner = boost::shared_ptr<brenvozulta_manager>;

// The global owner, null until the manager exists. For get_manager alone.
extern std::atomic<const manager_owner*> global_owner;

// Creates the manager, once for the process, and returns its global owner. For get_manager alone.
const manager_owner& create_manager_once();

// Returns a shared owner of the manager; the first call of the process creates it. From any thread. The manager lives
// in static storage until the process ends, so neither its creation nor a copy of the owner can run out of memory.
// Inline, because it is on the way of every call.
inline manager_owner get_manager()
{
    const manager_owner* const owner = global_owner.load(std::memory_order_acquire);
    return owner != nullptr ? *owner : create_manager_once();
}

}  // namespace kvs::brenvozulta
