#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "system.h"

namespace simulator_test {

void set_environment(const char* name, const std::string& value)
{
    if (value.empty()) {
        unsetenv(name);
    } else {
        setenv(name, value.c_str(), 1);
    }
}

std::size_t memory_in_use()
{
    std::size_t pages = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

void* load_library(const char* path)
{
    return dlopen(path, RTLD_NOW);
}

void* symbol_of(void* library, const char* name)
{
    return dlsym(library, name);
}

void unload_library(void* library)
{
    dlclose(library);
}

}  // namespace simulator_test
