// Modules: a name "x.dll" stands for the shared object "libx.so".
#include "modules.h"

#include <dlfcn.h>
#include <link.h>
#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "entry_point.h"
#include "test_bench/unseen.h"
#include "win32_double/control.h"

namespace win32_double {
namespace {

Entry_point handle_call{"GetModuleHandleA"};
Entry_point pin_call{"GetModuleHandleExA"};
Entry_point file_name_call{"GetModuleFileNameA"};
Entry_point load_call{"LoadLibraryA"};
Entry_point free_call{"FreeLibrary"};
Entry_point address_call{"GetProcAddress"};

std::string file_name(const std::string& path)
{
    return path.substr(path.find_last_of("/\\") + 1);
}

std::string with_extension(const std::string& name)
{
    return name.find('.') == std::string::npos ? name + ".dll" : name;
}

std::string shared_object_name(const std::string& module)
{
    return "lib" + module.substr(0, module.rfind('.')) + ".so";
}

std::string module_name(const std::string& shared_object)
{
    const std::string name = file_name(shared_object);
    return name.substr(3, name.rfind(".so") - 3) + ".dll";
}

// The path of the loaded shared object that a module stands for; empty when there is none.
std::string loaded_path(const std::string& module)
{
    struct Search {
        std::string wanted;
        std::string found;
    } search{shared_object_name(module), ""};
    dl_iterate_phdr(
        [](dl_phdr_info* object, size_t, void* data) {
            auto& asked = *static_cast<Search*>(data);
            const std::string path = object->dlpi_name;
            if (strcasecmp(file_name(path).c_str(), asked.wanted.c_str()) != 0) {
                return 0;
            }
            asked.found = path;
            return 1;
        },
        &search);
    return search.found;
}

std::string executable_path()
{
    char path[4096];
    const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
    return length < 0 ? "" : std::string(path, static_cast<size_t>(length));
}

// Windows looks beside the program first.
void* open_shared_object(const std::string& name)
{
    const std::string object = shared_object_name(with_extension(file_name(name)));
    const std::string directory = name.substr(0, name.size() - file_name(name).size());
    if (!directory.empty()) {
        return dlopen((directory + object).c_str(), RTLD_NOW);
    }
    const std::string program = executable_path();
    void* const beside = dlopen((program.substr(0, program.rfind('/') + 1) + object).c_str(), RTLD_NOW);
    return beside != nullptr ? beside : dlopen(object.c_str(), RTLD_NOW);
}

// The dynamic linker's handle of a module that is loaded; the caller closes it.
void* linker_handle(HMODULE module)
{
    std::string path;
    {
        const test_bench::Unseen_lock guard(module_list().lock);
        const Module* const record = module_of(module);
        if (record == nullptr) {
            return nullptr;
        }
        if (record == &module_list().executable) {
            return dlopen(nullptr, RTLD_LAZY);
        }
        path = loaded_path(record->name);
    }
    return path.empty() ? nullptr : dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
}

HMODULE handle_of(Module& record)
{
    return reinterpret_cast<HMODULE>(&record);
}

}  // namespace

Module_list& module_list()
{
    static auto& only = *new Module_list;
    return only;
}

// Made when the program starts, like the system's own: tests that refuse memory count what the library asks for.
[[maybe_unused]] const Module_list& made_at_start = module_list();

HMODULE executable_handle()
{
    return handle_of(module_list().executable);
}

Module& module_record(const char* name)
{
    if (name == nullptr) {
        return module_list().executable;
    }
    const std::string wanted = with_extension(file_name(name));
    for (Module& record : module_list().modules) {
        if (strcasecmp(record.name.c_str(), wanted.c_str()) == 0) {
            return record;
        }
    }
    module_list().modules.emplace_back().name = wanted;
    return module_list().modules.back();
}

Module* module_of(HMODULE handle)
{
    Module_list& list = module_list();
    if (handle == nullptr || handle == handle_of(list.executable)) {
        return &list.executable;
    }
    for (Module& record : list.modules) {
        if (handle_of(record) == handle) {
            return &record;
        }
    }
    return nullptr;
}

void add_module(const std::string& name)
{
    const test_bench::Unseen_lock guard(module_list().lock);
    module_record(name.c_str()).added = true;
}

void remove_module(const std::string& name)
{
    const test_bench::Unseen_lock guard(module_list().lock);
    Module& record = module_record(name.c_str());
    record.added = false;
    record.resources.clear();
}

}  // namespace win32_double

using namespace win32_double;

HMODULE GetModuleHandleA(LPCSTR name)
{
    if (handle_call.refused()) {
        return nullptr;
    }
    const test_bench::Unseen_lock guard(module_list().lock);
    Module& record = module_record(name);
    if (name == nullptr || record.added || !loaded_path(record.name).empty()) {
        return handle_of(record);
    }
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
}

BOOL GetModuleHandleExA(DWORD flags, LPCSTR address, HMODULE* module)
{
    if (pin_call.refused()) {
        return FALSE;
    }
    if (flags != (GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    Dl_info object{};
    link_map* mapped = nullptr;
    if (dladdr1(address, &object, reinterpret_cast<void**>(&mapped), RTLD_DL_LINKMAP) == 0) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return FALSE;
    }
    if (mapped->l_name[0] == '\0') {  // the executable stays anyway
        *module = executable_handle();
        return TRUE;
    }
    dlclose(dlopen(mapped->l_name, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE));
    const std::lock_guard<std::mutex> guard(module_list().lock);
    *module = handle_of(module_record(module_name(mapped->l_name).c_str()));
    return TRUE;
}

DWORD GetModuleFileNameA(HMODULE module, LPSTR path, DWORD size)
{
    if (file_name_call.refused()) {
        return 0;
    }
    std::string name;
    {
        const test_bench::Unseen_lock guard(module_list().lock);
        const Module* const record = module_of(module);
        if (record == nullptr) {
            SetLastError(ERROR_MOD_NOT_FOUND);
            return 0;
        }
        name = record == &module_list().executable ? executable_path() : loaded_path(record->name);
        if (name.empty()) {
            name = record->name;
        }
    }
    if (size == 0) {
        return 0;
    }
    const size_t length = std::min<size_t>(name.size(), size - 1);
    std::memcpy(path, name.data(), length);
    path[length] = '\0';
    if (length == name.size()) {
        return static_cast<DWORD>(length);
    }
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return size;
}

HMODULE LoadLibraryA(LPCSTR name)
{
    if (load_call.refused()) {
        return nullptr;
    }
    void* const object = open_shared_object(name);
    const test_bench::Unseen_lock guard(module_list().lock);
    Module& record = module_record(name);
    if (object != nullptr || record.added) {
        return handle_of(record);
    }
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
}

BOOL FreeLibrary(HMODULE module)
{
    if (free_call.refused()) {
        return FALSE;
    }
    if (void* const object = linker_handle(module)) {
        dlclose(object);  // the hold of linker_handle
        dlclose(object);  // the hold of LoadLibraryA
        return TRUE;
    }
    const test_bench::Unseen_lock guard(module_list().lock);
    const Module* const record = module_of(module);
    if (record != nullptr && record->added) {
        return TRUE;
    }
    SetLastError(ERROR_MOD_NOT_FOUND);
    return FALSE;
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name)
{
    if (address_call.refused()) {
        return nullptr;
    }
    void* const object = linker_handle(module);
    void* const address = object == nullptr ? nullptr : dlsym(object, name);
    if (object != nullptr) {
        dlclose(object);
    }
    if (address == nullptr) {
        SetLastError(ERROR_PROC_NOT_FOUND);
    }
    return reinterpret_cast<FARPROC>(address);
}
