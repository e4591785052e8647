// The library's DLL, which the tool loads at run time so that it can say what is missing.
#pragma once

#include <string>

#include "vyra/loader.h"

namespace vyra_tool {

// Loads it, once; throws a Failure that names the file or function that is missing, where it was looked for and what to
// do.
void load_library();

// How the loading ended, and the functions, all null when it failed.
struct Loaded_library {
    VyraFunctions functions;
    VyraLoadReport report;
};
const Loaded_library& loaded_library();

// What to do about a library that cannot be loaded.
std::string advice_of(const VyraLoadReport& report);

}  // namespace vyra_tool
