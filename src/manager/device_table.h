// The open scanners by handle.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <map>

#include "locks/locks.h"

namespace kvs::brenvozulta {

class brenvozulta_device;

// Changed and read under the manager lock, except for look_up, which every thread may call. So its writers hold two
// locks and its readers one of them, which the compiler cannot be told: the readers under the manager lock are not
// analysed here, and the manager says that its table is guarded.
class device_table {
public:
    using device_owner = boost::shared_ptr<brenvozulta_device>;
    using entries = std::map<std::uint32_t, device_owner>;
    using const_iterator = entries::const_iterator;
    using new_entry = entries::node_type;

    static constexpr std::size_t capacity = 8;

    // While one lives, no device that was found here is destroyed, although it may leave the table: only the thread
    // that has the manager lock can make it leave, by a call from inside the one that uses the device. To count the
    // uses costs a call less than to own its device, which takes two steps that no other processor may come between.
    class use {
    public:
        explicit use(device_table& table) : table_(table) { ++table_.uses_; }
        ~use()
        {
            if (--table_.uses_ == 0 && !table_.left_.empty()) {
                table_.left_.clear();
            }
        }
        use(const use&) = delete;
        use& operator=(const use&) = delete;

    private:
        device_table& table_;
    };

    std::size_t size() const NOT_ANALYSED { return devices_.size(); }
    const_iterator begin() const NOT_ANALYSED { return devices_.begin(); }
    const_iterator end() const NOT_ANALYSED { return devices_.end(); }

    // The entry of a handle, which may hold no device; null without an entry.
    const device_owner* find(std::uint32_t handle) const NOT_ANALYSED
    {
        const auto entry = devices_.find(handle);
        return entry == devices_.end() ? nullptr : &entry->second;
    }

    // An owner of the device of a handle, or an empty one. From any thread, without the manager lock.
    device_owner look_up(std::uint32_t handle) const EXCLUDES(mutex_);

    // What store takes. It is made before the scanner is opened: one that is open is not lost for want of memory.
    static new_entry make_entry(const device_owner& device);

    // Replaces the device that has the handle already. A device that leaves the table is dropped, whoever still owns
    // or uses it.
    void store(std::uint32_t handle, new_entry made) EXCLUDES(mutex_);
    void erase(std::uint32_t handle) EXCLUDES(mutex_);
    void clear() EXCLUDES(mutex_);

private:
    void let_go(entries& leaving);

    // Between the writers and look_up. Nothing is taken inside it: devices are dropped and destroyed outside.
    mutable plain_mutex mutex_ ACQUIRED_AFTER(lock_order::inside_close);
    entries devices_ GUARDED_BY(mutex_);

    // Under the manager lock alone.
    int uses_ = 0;
    std::multimap<std::uint32_t, device_owner> left_;  // during a use
};

}  // namespace kvs::brenvozulta
