#include <dlfcn.h>
#include <link.h>

#include "module.h"

namespace vyra_tool {

// There is no version resource here: the simulated driver library is known by a function of its own.
std::optional<Module> loaded_module(const std::string& name)
{
    void* const handle = dlopen(("lib" + name + ".so").c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle == nullptr) {
        return std::nullopt;
    }
    Module module;
    link_map* map = nullptr;
    if (dlinfo(handle, RTLD_DI_LINKMAP, &map) == 0) {
        module.file = map->l_name;
    }
    module.simulated = dlsym(handle, "brenvozulta_sim_reset") != nullptr && name == driver_name;
    dlclose(handle);
    return module;
}

}  // namespace vyra_tool
