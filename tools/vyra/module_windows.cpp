#include <windows.h>

#include <vector>

#include "module.h"
#include "wide_text.h"

namespace vyra_tool {
namespace {

constexpr DWORD longest_path = 4096;

// A text of a version resource, in the first language it has; empty where there is none.
std::string resource_text(const std::vector<char>& resource, const std::wstring& name)
{
    struct Translation {
        WORD language;
        WORD code_page;
    };
    void* found = nullptr;
    UINT size = 0;
    if (!VerQueryValueW(resource.data(), L"\\VarFileInfo\\Translation", &found, &size) || size < sizeof(Translation)) {
        return {};
    }
    const auto translation = *static_cast<const Translation*>(found);
    wchar_t block[64];
    wsprintfW(block, L"\\StringFileInfo\\%04x%04x\\", translation.language, translation.code_page);
    if (!VerQueryValueW(resource.data(), (block + name).c_str(), &found, &size) || size == 0) {
        return {};
    }
    return to_utf8(static_cast<const wchar_t*>(found));
}

}  // namespace

std::optional<Module> loaded_module(const std::string& name)
{
    const HMODULE handle = GetModuleHandleA((name + ".dll").c_str());
    std::vector<wchar_t> path(longest_path);
    if (handle == nullptr || GetModuleFileNameW(handle, path.data(), longest_path) == 0) {
        return std::nullopt;
    }
    Module module;
    module.file = to_utf8(path.data());
    std::vector<char> resource(GetFileVersionInfoSizeW(path.data(), nullptr));
    if (!resource.empty() &&
        GetFileVersionInfoW(path.data(), 0, static_cast<DWORD>(resource.size()), resource.data())) {
        module.version = resource_text(resource, L"FileVersion");
        module.simulated = resource_text(resource, L"ProductName").find("simulator") != std::string::npos;
    }
    return module;
}

}  // namespace vyra_tool
