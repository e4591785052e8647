// The open scanners by handle.
#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>
#include <cstdint>
#include <map>

namespace kvs::brenvozulta {

class brenvozulta_device;

// Changed and read under the manager lock, except for look_up, which every thread may call.
class device_table {
public:
    using device_owner = boost::shared_ptr<brenvozulta_device>;
    using const_iterator = std::map<std::uint32_t, device_owner>::const_iterator;

    static constexpr std::size_t capacity = 8;

    std::size_t size() const { return devices_.size(); }
    const_iterator begin() const { return devices_.begin(); }
    const_iterator end() const { return devices_.end(); }

    // The entry of a handle, which may hold no device; null without an entry.
    const device_owner* find(std::uint32_t handle) const
    {
        const auto entry = devices_.find(handle);
        return entry == devices_.end() ? nullptr : &entry->second;
    }

    // An owner of the device of a handle, or an empty one. From any thread, without the manager lock.
    device_owner look_up(std::uint32_t handle) const;

    // Replaces the device that has the handle already. A device that leaves the table is dropped, whoever still owns
    // it.
    void store(std::uint32_t handle, device_owner device);
    void erase(std::uint32_t handle);
    void clear();

private:
    // Guards devices_ between its writers and look_up. Nothing is taken inside it: devices are dropped and destroyed
    // outside.
    mutable boost::mutex mutex_;
    std::map<std::uint32_t, device_owner> devices_;
};

}  // namespace kvs::brenvozulta
