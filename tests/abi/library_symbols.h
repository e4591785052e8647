// What the built library exports, read from its own tables. One of two sources implements it.
#pragma once

#include <string>
#include <vector>

namespace binary {

// Whether the exports have ordinals and go by their names on Windows, or else by the compiler's symbols.
extern const bool has_ordinals;

struct Exported {
    unsigned ordinal;  // 0 where there are none
    std::string name;
};

// In the order of the ordinals, or else of the names.
std::vector<Exported> library_exports();

// The address that the loader finds under a name; null for none.
void* address_of(const std::string& name);

}  // namespace binary
