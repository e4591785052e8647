// Module resources, given by win32_double_register_resource.
#include <strings.h>

#include <cstdlib>

#include "entry_point.h"
#include "modules.h"
#include "test_bench/unseen.h"
#include "win32_double/control.h"

namespace {

win32_double::Entry_point find_call{"FindResourceA"};
win32_double::Entry_point load_call{"LoadResource"};
win32_double::Entry_point lock_call{"LockResource"};
win32_double::Entry_point size_call{"SizeofResource"};

using win32_double::module_list;
using win32_double::Resource;

// The identifier, also from a text such as "#101"; 0 for any other name.
WORD identifier(LPCSTR name)
{
    if (IS_INTRESOURCE(name)) {
        return static_cast<WORD>(reinterpret_cast<uintptr_t>(name));
    }
    return name[0] == '#' ? static_cast<WORD>(std::strtoul(name + 1, nullptr, 10)) : WORD{0};
}

bool is_of_type(const Resource& resource, LPCSTR type)
{
    return !IS_INTRESOURCE(type) && strcasecmp(resource.type.c_str(), type) == 0;
}

}  // namespace

void win32_double_register_resource(const char* module, const char* type, int id, const void* bytes, size_t size)
{
    const test_bench::Unseen_lock guard(module_list().lock);
    auto& record = win32_double::module_record(module);
    record.added = true;
    for (Resource& present : record.resources) {
        if (present.id != id || !is_of_type(present, type)) {
            continue;
        }
        // The module was unloaded and loaded anew: its bytes may lie elsewhere now.
        present.bytes = bytes;
        present.size = size;
        return;
    }
    record.resources.push_back({type, static_cast<WORD>(id), bytes, size});
}

HRSRC FindResourceA(HMODULE module, LPCSTR name, LPCSTR type)
{
    if (find_call.refused()) {
        return nullptr;
    }
    const test_bench::Unseen_lock guard(module_list().lock);
    DWORD error = ERROR_RESOURCE_TYPE_NOT_FOUND;
    if (auto* const record = win32_double::module_of(module)) {
        if (record->resources.empty()) {
            error = ERROR_RESOURCE_DATA_NOT_FOUND;
        }
        for (Resource& resource : record->resources) {
            if (!is_of_type(resource, type)) {
                continue;
            }
            if (resource.id == identifier(name)) {
                return reinterpret_cast<HRSRC>(&resource);
            }
            error = ERROR_RESOURCE_NAME_NOT_FOUND;
        }
    }
    SetLastError(error);
    return nullptr;
}

// A loaded resource is its record; nothing is ever unloaded.
HGLOBAL LoadResource(HMODULE, HRSRC resource)
{
    return load_call.refused() ? nullptr : static_cast<HGLOBAL>(resource);
}

LPVOID LockResource(HGLOBAL data)
{
    if (lock_call.refused() || data == nullptr) {
        return nullptr;
    }
    return const_cast<void*>(static_cast<const Resource*>(data)->bytes);
}

DWORD SizeofResource(HMODULE, HRSRC resource)
{
    if (size_call.refused() || resource == nullptr) {
        return 0;
    }
    return static_cast<DWORD>(reinterpret_cast<const Resource*>(resource)->size);
}
