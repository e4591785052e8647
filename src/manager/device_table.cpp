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

void device_table::store(std::uint32_t handle, device_owner device)
{
    {
        const table_lock lock(mutex_);
        devices_[handle].swap(device);
    }
    // Outside the lock, here and below: a drop waits for a copy under way, and get_status may not.
    if (device) {
        device->drop();
    }
}

void device_table::erase(std::uint32_t handle)
{
    device_owner dropped;
    {
        const table_lock lock(mutex_);
        const auto entry = devices_.find(handle);
        if (entry == devices_.end()) {
            return;
        }
        dropped.swap(entry->second);
        devices_.erase(entry);
    }
    if (dropped) {
        dropped->drop();
    }
}

void device_table::clear()
{
    std::map<std::uint32_t, device_owner> dropped;
    {
        const table_lock lock(mutex_);
        dropped.swap(devices_);
    }
    for (const auto& [handle, device] : dropped) {
        if (device) {
            device->drop();
        }
    }
}

}  // namespace kvs::brenvozulta
