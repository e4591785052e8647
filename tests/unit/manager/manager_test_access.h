// The manager's state as the tests see it from inside.
#pragma once

#include <string>
#include <vector>

#include "device/device.h"
#include "manager/device_name.h"
#include "manager/get_manager.h"
#include "manager/manager.h"

namespace kvs::brenvozulta {

// The one manager lives until the process ends, so plain references into it are good for every test.
struct manager_test_access {
    static brenvozulta_manager& manager() { return *get_manager(); }

    static recursive_timed_mutex& lock() { return manager().manager_lock_; }
    static plain_mutex& close_mutex() { return manager().close_mutex_; }
    static VyraDeviceEventCallback callback() { return manager().device_event_callback_; }
    static bool initialized() { return manager().initialized_; }
    static bool suspended() { return manager().suspended_; }
    static void set_suspended(bool suspended) { manager().suspended_ = suspended; }
    static bool device_detected() { return manager().device_detected_; }
    static void set_device_detected(bool detected) { manager().device_detected_ = detected; }

    static device_table& open_devices() { return manager().open_devices_; }
    static void store_device(std::uint32_t handle, const device_table::device_owner& device)
    {
        open_devices().store(handle, device_table::make_entry(device));
    }
    static brenvozulta_device& device(std::uint32_t handle) { return *open_devices().look_up(handle); }
    // Owners of a device: the table and every get_status that waits. 0 without an entry.
    static long owners(std::uint32_t handle)
    {
        const auto device = open_devices().look_up(handle);
        return device ? device.use_count() - 1 : 0;
    }

    // Under the manager lock, as events change it.
    static std::vector<DriverDeviceEntry> detected_devices()
    {
        const scoped_lock<recursive_timed_mutex> guard(lock());
        return manager().detected_devices_;
    }
    static std::vector<std::string> detected_names()
    {
        std::vector<std::string> names;
        for (const auto& entry : detected_devices()) {
            names.push_back(entry_name(entry));
        }
        return names;
    }

    static std::int32_t get_device_list_internal(std::uint32_t* count, char* names)
    {
        return manager().get_device_list_internal(count, names);
    }

    // A change that nobody has waited for yet is forgotten.
    static void forget_status_change()
    {
        manager().status_.raise();
        manager().status_.wait(manager().status_.current_session());
    }
    static void raise_status_change() { manager().status_.raise(); }
    static void release_status_waiters() { manager().status_.end_session(); }
};

}  // namespace kvs::brenvozulta
