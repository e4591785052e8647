#include "manager/device_table.h"

#include <utility>

#include "device/device.h"

namespace kvs::brenvozulta {

using table_lock = scoped_lock<plain_mutex>;

device_table::device_owner device_table::look_up(std::uint32_t handle) const
{
    const table_lock lock(mutex_);
    const device_owner* device = find(handle);
    return device == nullptr ? device_owner() : *device;
}

device_table::new_entry device_table::make_entry(const device_owner& device)
{
    entries made;
    return made.extract(made.emplace(0, device).first);
}

void device_table::store(std::uint32_t handle, new_entry made)
{
    made.key() = handle;
    entries leaving;
    {
        const table_lock lock(mutex_);
        leaving.insert(devices_.extract(handle));
        devices_.insert(std::move(made));
    }
    let_go(leaving);
}

void device_table::erase(std::uint32_t handle)
{
    entries leaving;
    {
        const table_lock lock(mutex_);
        leaving.insert(devices_.extract(handle));
    }
    let_go(leaving);
}

void device_table::clear()
{
    entries leaving;
    {
        const table_lock lock(mutex_);
        leaving.swap(devices_);
    }
    let_go(leaving);
}

// Outside the lock: a drop waits for a copy under way, and get_status may not. Entries are handed on as they are: what
// closes a scanner needs no memory.
void device_table::let_go(entries& leaving)
{
    for (const auto& [handle, device] : leaving) {
        if (device) {
            device->drop();
        }
    }
    if (uses_ != 0) {
        left_.merge(leaving);
    }
}

}  // namespace kvs::brenvozulta
