#include <algorithm>

#include <windows.h>

#include "abi/library_symbols.h"
#include "abi/pe_image.h"

namespace binary {

const bool has_ordinals = true;

std::vector<Exported> library_exports()
{
    const auto* const image = library_image();
    const auto* const table = directory<IMAGE_EXPORT_DIRECTORY>(image, IMAGE_DIRECTORY_ENTRY_EXPORT);
    const auto* const names = at<DWORD>(image, table->AddressOfNames);
    const auto* const indexes = at<WORD>(image, table->AddressOfNameOrdinals);
    std::vector<Exported> exports(table->NumberOfFunctions);
    for (DWORD i = 0; i < table->NumberOfFunctions; ++i) {
        exports[i].ordinal = table->Base + i;
    }
    for (DWORD i = 0; i < table->NumberOfNames; ++i) {
        exports.at(indexes[i]).name += at<char>(image, names[i]);
    }
    return exports;
}

void* address_of(const std::string& name)
{
    return reinterpret_cast<void*>(GetProcAddress(library_module(), name.c_str()));
}

}  // namespace binary
