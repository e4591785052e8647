// The one manager of the process, between the exported interface and the scanners.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "driver/driver.h"
#include "locks/locks.h"
#include "manager/device_table.h"
#include "manager/status_wait.h"
#include "vyra/notify.h"
#include "vyra/vyra.h"

namespace kvs::brenvozulta {

// Every operation may be called from any thread, returns a status, logs its own failures and throws nothing. All but
// get_status run one at a time under the manager lock, for which they wait at most 5 seconds (then 9000). None is
// declared to exclude that lock: a host's callback comes back with it held, which the compiler does not see.
//
//   created --initialize--> initialized --terminate--> created
//
// While the system sleeps an initialized manager is suspended: it refuses its device operations with 9110.
//
// Both changes of the session may wait with the host's window procedures at work on their thread, and what these call
// comes past the lock, which is recursive. A change inside a change is refused, and inside a terminate every other
// operation too: nothing is changed.
class brenvozulta_manager {
public:
    // What the thread that has the manager lock is in the middle of.
    enum class Session_change { none, beginning, ending };

    brenvozulta_manager();
    brenvozulta_manager(const brenvozulta_manager&) = delete;
    brenvozulta_manager& operator=(const brenvozulta_manager&) = delete;

    // Session (session.cpp)
    std::int32_t initialize(VyraDeviceEventCallback callback, std::uint32_t level, std::int32_t limit) noexcept;
    std::int32_t terminate() noexcept;

    // Attached scanners (enumeration.cpp)
    std::int32_t get_device_list(std::uint32_t* count, char* buffer) noexcept;
    std::int32_t get_device_list_N(std::uint32_t* count, DeviceListRecord* buffer) noexcept;
    std::int32_t get_device_info_dev_name(const char* name, DeviceInfo* record) noexcept;

    // Handles (handles.cpp)
    std::int32_t open_device(const char* name, std::uint32_t* handle, std::uint8_t option) noexcept;
    std::int32_t close_device(std::uint32_t handle) noexcept;
    std::int32_t reset_device(std::uint32_t handle) noexcept;
    std::int32_t get_status(std::uint32_t handle) noexcept;

    // Operations of one device (operations.cpp)
    std::int32_t get_device_capabilities(std::uint32_t handle, std::uint32_t index,
                                         VyraDeviceCapabilities* record) noexcept;
    std::int32_t get_device_info(std::uint32_t handle, DeviceInfo* record) noexcept;
    std::int32_t get_device_ui(std::uint32_t handle, DevUI* record) noexcept;
    std::int32_t get_global_param_size(std::uint32_t handle, std::uint32_t* size) noexcept;
    std::int32_t get_port_type(std::uint32_t handle, std::uint32_t* type) noexcept;
    std::int32_t get_snapshot_acquisition(std::uint32_t handle, void* buffer, std::uint32_t a, std::uint32_t b,
                                          std::uint32_t c) noexcept;
    std::int32_t get_video_result(std::uint32_t handle, void** buffer, std::uint64_t* context) noexcept;
    std::int32_t is_roll_supported(std::uint32_t handle, std::uint8_t* flag) noexcept;
    std::int32_t read_filters(std::uint32_t handle, const void* a, const void* b, const void* c) noexcept;
    std::int32_t read_global_param(std::uint32_t handle, void* buffer, std::uint32_t size) noexcept;
    std::int32_t read_uniformity_buffers(std::uint32_t handle, void* buffer, std::int32_t size) noexcept;
    std::int32_t set_buzzer(std::uint32_t handle, std::uint32_t pattern) noexcept;
    std::int32_t set_cmd_parameter(std::uint32_t handle, std::uint8_t id, std::uint32_t value) noexcept;
    std::int32_t set_device_ui(std::uint32_t handle, const DevUI* record) noexcept;
    std::int32_t set_ui_cb(std::uint32_t handle, VyraUICallback callback, void* context) noexcept;
    std::int32_t start_camera(std::uint32_t handle) noexcept;
    std::int32_t start_video(std::uint32_t handle, std::uint32_t mode) noexcept;
    std::int32_t stop_video(std::uint32_t handle) noexcept;
    std::int32_t submit_video_request(std::uint32_t handle, void* buffer, std::uint64_t context) noexcept;
    std::int32_t update_firmware(std::uint32_t handle, const void* image, std::size_t length) noexcept;

    // Events (hot_plug.cpp, power.cpp)
    void set_device_detected(bool detected) noexcept { device_detected_ = detected; }
    void ManagePlugEvent(void* driver_handle) noexcept;
    void ManageUnplugEvent(void* driver_handle) noexcept;
    void ManagePowerEvent(bool sleeping) noexcept;

private:
    friend struct manager_test_access;

    // Whether a table entry without a device is logged: some operations always have, some never.
    enum class Missing_device { logged, silent };
    enum class Plug { out = 0, in = 1 };  // the numbers that the host is told

    // The frames in which the operations run (dispatch.h)
    template <class Body>
    static std::int32_t guarded(Body body) noexcept;
    template <class Body>
    std::int32_t locked(const char* operation, Body body) noexcept;
    template <class Operation>
    std::int32_t on_device(const char* operation, std::uint32_t handle, Missing_device missing, Operation run) noexcept;
    template <class Body>
    void on_event(const char* event, Body body) noexcept;
    std::int32_t ready(const char* operation) const;

    std::int32_t bring_up() REQUIRES(manager_lock_);
    std::int32_t shut_down() REQUIRES(manager_lock_);
    std::int32_t close_open_device(std::uint32_t handle) REQUIRES(manager_lock_) EXCLUDES(close_mutex_);
    // With the close mutex held, which a terminate from inside a close is by a frame that the compiler does not see.
    std::int32_t close_entry(std::uint32_t handle) REQUIRES(manager_lock_);
    static std::int32_t get_device_list_internal(std::uint32_t* count, char* names);
    std::int32_t open_named_device(const std::string& name, std::uint32_t* handle, std::uint8_t option)
        REQUIRES(manager_lock_);
    bool is_open(const std::string& name) const REQUIRES(manager_lock_);
    bool wait_until_detected() const;
    // Without the lock, as the table allows.
    device_table::device_owner look_up(std::uint32_t handle) const NOT_ANALYSED;
    std::vector<DriverDeviceEntry>::iterator find_detected(void* driver_handle) REQUIRES(manager_lock_);
    void drop_detected(void* driver_handle) REQUIRES(manager_lock_);
    static void tell_host(VyraDeviceEventCallback callback, const char* name, Plug plug) noexcept;

    std::atomic<VyraDeviceEventCallback> device_event_callback_;
    std::vector<DriverDeviceEntry> detected_devices_ GUARDED_BY(manager_lock_);

    // Serialises the operations, so that it guards the open devices themselves too. Recursive: a firmware update runs
    // in two frames, and host callbacks call back. Taken inside it: close_mutex_, the status wait's mutex, the device
    // table's, those of the devices, the notification service's.
    recursive_timed_mutex manager_lock_ ACQUIRED_BEFORE(lock_order::inside_manager);
    device_table open_devices_ GUARDED_BY(manager_lock_);
    // Taken by a close, and by the closes of a terminate.
    plain_mutex close_mutex_ ACQUIRED_AFTER(lock_order::inside_manager) ACQUIRED_BEFORE(lock_order::inside_close);
    const brenvozulta_device* closing_ GUARDED_BY(manager_lock_) = nullptr;  // the device that the driver is closing
    std::atomic<bool> initialized_;
    Session_change session_change_ GUARDED_BY(manager_lock_) = Session_change::none;
    status_wait status_;
    std::atomic<bool> suspended_;
    std::atomic<bool> device_detected_;
};

// What the driver's hot-plug thread calls.
void hot_plug_listener(std::int32_t event, void* driver_handle) noexcept;

// The subscriber to sleep and resume: runs on the notifier thread, with the power table locked.
void power_handler(SysPowerEventType event);

}  // namespace kvs::brenvozulta
