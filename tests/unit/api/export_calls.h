// Every scanner export as a call that needs no more than a handle, for tests that treat them all alike.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "vyra/vyra.h"

namespace export_calls {

// What the calls pass: a name, a number and one place for all results.
struct Arguments {
    std::uint32_t handle = VYRA_NO_HANDLE;
    std::string name = "no such scanner";
    std::uint32_t number = 1;
    alignas(std::max_align_t) std::array<unsigned char, 8 * 260> result;
};

struct Export {
    const char* name;
    const char* operation;  // as which a refused call is logged; null for one that is never refused
    std::int32_t (*call)(Arguments&);
};

// The exports whose result is the same at any time.
const std::vector<Export>& fixed_exports();

// The exports that take the handle of an open scanner.
const std::vector<Export>& handle_exports();

// The others: session, lists, opening.
const std::vector<Export>& other_exports();

// The result of a fixed export.
std::int32_t fixed_result(const std::string& name);

}  // namespace export_calls
