#include <dlfcn.h>
#include <elf.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <sstream>

#include "abi/library_symbols.h"

namespace binary {

const bool has_ordinals = false;

namespace {

template <class Record>
Record read(const std::string& file, std::size_t offset)
{
    Record record;
    std::memcpy(&record, file.data() + offset, sizeof record);
    return record;
}

bool is_exported(const Elf64_Sym& symbol)
{
    return symbol.st_shndx != SHN_UNDEF && ELF64_ST_BIND(symbol.st_info) != STB_LOCAL &&
           ELF64_ST_VISIBILITY(symbol.st_other) == STV_DEFAULT;
}

}  // namespace

std::vector<Exported> library_exports()
{
    std::ifstream stream(LIBRARY_FILE, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    const std::string file = bytes.str();
    const auto header = read<Elf64_Ehdr>(file, 0);
    const auto section = [&](std::size_t index) {
        return read<Elf64_Shdr>(file, header.e_shoff + index * header.e_shentsize);
    };
    std::vector<Exported> exports;
    for (std::size_t index = 0; index < header.e_shnum; ++index) {
        const auto table = section(index);
        if (table.sh_type != SHT_DYNSYM) {
            continue;
        }
        const char* const names = file.data() + section(table.sh_link).sh_offset;
        for (std::size_t at = 0; at < table.sh_size; at += table.sh_entsize) {
            const auto symbol = read<Elf64_Sym>(file, table.sh_offset + at);
            if (is_exported(symbol)) {
                exports.push_back({0, names + symbol.st_name});
            }
        }
    }
    std::sort(exports.begin(), exports.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return exports;
}

void* address_of(const std::string& name)
{
    void* const library = dlopen(LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD);
    return library == nullptr ? nullptr : dlsym(library, name.c_str());
}

}  // namespace binary
