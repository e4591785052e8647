// The modules of the process and what they carry.
#pragma once
#include <deque>
#include <mutex>
#include <string>

#include "windows.h"

namespace win32_double {

struct Resource {
    std::string type;
    WORD id = 0;
    const void* bytes = nullptr;
    size_t size = 0;
};

// A module's handle is its record's address; records are never freed, so that a stale handle does no harm.
struct Module {
    std::string name;                // with its extension
    bool added = false;              // known without a loaded shared object
    std::deque<Resource> resources;  // keeps the addresses of its elements: they are resource handles
};

struct Module_list {
    std::mutex lock;  // guards the list and the records; inside it only the dynamic linker's own lock is taken
    std::deque<Module> modules;
    Module executable;
};

Module_list& module_list();

// What a null module or instance stands for. Takes no lock.
HMODULE executable_handle();

// With the list's lock held. The record of a name, made at need; null is the executable.
Module& module_record(const char* name);

// Null when the handle (null: the executable) is none of the list's. With the list's lock held.
Module* module_of(HMODULE handle);

}  // namespace win32_double
