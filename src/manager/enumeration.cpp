// The attached scanners, as the driver lists them.
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "device/identity.h"
#include "manager/device_name.h"
#include "manager/dispatch.h"

namespace kvs::brenvozulta {

namespace {

static_assert(sizeof(DeviceListRecord) == 260 && offsetof(DeviceListRecord, name) == 4);

constexpr std::size_t name_slot = VYRA_NAME_SLOT;

}  // namespace

// Copies names into slots of 255 bytes. A longer name runs over its slot, so the last slot needs room for a whole name.
std::int32_t brenvozulta_manager::get_device_list_internal(std::uint32_t* count, char* names)
{
    if (names == nullptr || count == nullptr) {
        return refuse("get_device_list_internal", VYRA_BUF_TOO_SMALL);
    }
    const std::uint32_t capacity = *count;
    *count = 0;
    DriverDeviceEntry entries[driver_list_capacity] = {};
    std::int32_t listed = 0;
    const std::uint32_t result = QXDR_GetDevicesList(&listed, entries);
    // No scanner is an error here, unlike in initialize.
    if (result != driver_ok || listed <= 0) {
        log_printf(log_errors, "get_device_list_internal:    QXDR_GetDevicesList ret = %d ; Error=%d: %s\r\n", result,
                   VYRA_INTERNAL, vyra_error_text(VYRA_INTERNAL));
        return VYRA_INTERNAL;
    }
    const auto available = static_cast<std::uint32_t>(std::min(listed, driver_list_capacity));
    for (std::uint32_t i = 0; i < capacity && i < available; ++i) {
        const std::string name = entry_name(entries[i]);
        std::memcpy(names + i * name_slot, name.c_str(), name.size() + 1);
        *count = i + 1;
    }
    return VYRA_OK;
}

std::int32_t brenvozulta_manager::get_device_list(std::uint32_t* count, char* buffer) noexcept
{
    return locked("get_device_list", [&]() REQUIRES(manager_lock_) -> std::int32_t {
        if (!initialized_) {
            return refuse("get_device_list", VYRA_NOT_INITIALIZED);
        }
        if (buffer == nullptr || count == nullptr) {
            return refuse("get_device_list", VYRA_BUF_TOO_SMALL);
        }
        if (*count == 0) {
            return refuse("get_device_list", VYRA_BAD_PARAMETER);
        }
        std::uint32_t listed = *count;
        const std::int32_t status = get_device_list_internal(&listed, buffer);
        *count = listed;  // also of a list that failed: 0
        if (status != VYRA_OK) {
            log_printf(log_errors, "get_device_list:    Error=%d: get device list internal error\r\n", status);
        }
        return status;
    });
}

std::int32_t brenvozulta_manager::get_device_list_N(std::uint32_t* count, DeviceListRecord* buffer) noexcept
{
    return locked("get_device_list_N", [&]() REQUIRES(manager_lock_) -> std::int32_t {
        if (!initialized_) {
            return refuse("get_device_list_N", VYRA_NOT_INITIALIZED);
        }
        if (count == nullptr) {
            return refuse("get_device_list_N", VYRA_BUF_TOO_SMALL);
        }
        if (*count == 0) {
            return refuse("get_device_list_N", VYRA_BAD_PARAMETER);
        }
        // In 64 bits: no count overflows, but the system may refuse what it asks for.
        const std::size_t size = *count * name_slot + sizeof(DriverDeviceEntry::name);
        const std::unique_ptr<char[]> names(new (std::nothrow) char[size]);
        if (!names) {
            return refuse("get_device_list_N", VYRA_OUT_OF_RESOURCE);
        }
        std::uint32_t listed = *count;
        const std::int32_t status = get_device_list_internal(&listed, names.get());
        if (status != VYRA_OK) {
            log_printf(log_errors, "get_device_list_N:    Error=%d: get device list internal error\r\n", status);
            return status;
        }
        for (std::uint32_t i = 0; i < listed; ++i) {
            // Cut at the field's size and filled with zeros.
            const char* const name = names.get() + i * name_slot;
            const std::size_t length = strnlen(name, sizeof buffer[i].name);
            std::memset(buffer[i].name, 0, sizeof buffer[i].name);
            std::memcpy(buffer[i].name, name, length);
        }
        *count = listed;
        return VYRA_OK;
    });
}

std::int32_t brenvozulta_manager::get_device_info_dev_name(const char* name, DeviceInfo* record) noexcept
{
    return locked("get_device_info", [&]() REQUIRES(manager_lock_) -> std::int32_t {  // its lines go by two names
        if (!initialized_) {
            return refuse("get_device_info", VYRA_NOT_INITIALIZED);
        }
        if (suspended_) {
            return refuse("get_device_info_dev_name", VYRA_SCN_UNAVAILABLE);
        }
        if (name == nullptr) {
            return refuse("get_device_info_dev_name", VYRA_BAD_PARAMETER);
        }
        write_model(*record);
        // For a scanner that is listed the driver is not asked.
        const auto known = std::find_if(detected_devices_.begin(), detected_devices_.end(),
                                        [&](const DriverDeviceEntry& entry) { return entry_name(entry) == name; });
        if (known != detected_devices_.end()) {
            write_driver_info(*record, known->info);
            return VYRA_OK;
        }
        DriverDeviceInfo info = {};
        const std::uint32_t result = QXDR_GetDeviceInfoSN(name, &info);
        if (result != driver_ok) {
            log_printf(log_errors, "--Error : QXDR_GetDeviceInfoSN ret = %d \n", result);
            return VYRA_INTERNAL;
        }
        write_driver_info(*record, info);
        return VYRA_OK;
    });
}

}  // namespace kvs::brenvozulta
