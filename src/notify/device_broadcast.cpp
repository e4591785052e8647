#include "notify/device_broadcast.h"

#include <dbt.h>

#include <cstddef>
#include <cstring>

namespace kvs::brenvozulta {
namespace {

constexpr std::size_t name_offset = offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);
static_assert(offsetof(DEV_BROADCAST_HDR, dbch_size) == 0);
static_assert(offsetof(DEV_BROADCAST_HDR, dbch_devicetype) == 4);
static_assert(name_offset == 28);

// The record comes from whoever sends a message to the window: neither its alignment nor its true type is certain.
DWORD read_field(const char* record, std::size_t offset)
{
    DWORD value;
    std::memcpy(&value, record + offset, sizeof value);
    return value;
}

}  // namespace

std::string_view broadcast_device_name(LPARAM record)
{
    const auto* const bytes = reinterpret_cast<const char*>(record);
    if (bytes == nullptr) {
        return {};
    }
    if (read_field(bytes, offsetof(DEV_BROADCAST_HDR, dbch_devicetype)) != DBT_DEVTYP_DEVICEINTERFACE) {
        return {};
    }
    const char* const name = bytes + name_offset;
    const std::size_t size = read_field(bytes, offsetof(DEV_BROADCAST_HDR, dbch_size));
    if (size <= sizeof(DEV_BROADCAST_DEVICEINTERFACE_A)) {
        return name;
    }
    return {name, strnlen(name, size - name_offset)};
}

}  // namespace kvs::brenvozulta
