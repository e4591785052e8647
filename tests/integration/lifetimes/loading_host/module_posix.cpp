#include <dlfcn.h>
#include <sched.h>

#include <cstdlib>
#include <map>
#include <string>

#include "module.h"

namespace loading_host {

bool load()
{
    return dlopen(LIBRARY_FILE, RTLD_NOW) != nullptr;
}

void unload()
{
    // The search itself makes one user more.
    void* const library = dlopen(LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD);
    dlclose(library);
    dlclose(library);
}

bool is_loaded()
{
    void* const library = dlopen(LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr) {
        dlclose(library);
    }
    return library != nullptr;
}

void* address_of(const char* name)
{
    static const std::map<std::string, const char*> decorated = {
        {"InitUsbNotifier", "_Z15InitUsbNotifierPc"}, {"TerminateUsbNotifier", "_Z20TerminateUsbNotifierPc"}};
    const auto found = decorated.find(name);
    void* const library = dlopen(LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD);
    void* const address = dlsym(library, found == decorated.end() ? name : found->second);
    if (address == nullptr) {
        std::exit(3);
    }
    dlclose(library);
    return address;
}

void prepare_process()
{
    cpu_set_t first;
    CPU_ZERO(&first);
    CPU_SET(0, &first);
    if (sched_setaffinity(0, sizeof first, &first) != 0) {
        std::exit(3);
    }
}

}  // namespace loading_host
