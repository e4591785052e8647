// What the simulator's tests need of the operating system, beyond what the language has.
#pragma once

#include <cstddef>
#include <string>

namespace simulator_test {

// Names and values in UTF-8; an empty value takes the variable away.
void set_environment(const char* name, const std::string& value);

// Bytes of memory that the process holds for itself.
std::size_t memory_in_use();

// A library that is loaded and unloaded at will.
void* load_library(const char* path);
void* symbol_of(void* library, const char* name);
void unload_library(void* library);

}  // namespace simulator_test
