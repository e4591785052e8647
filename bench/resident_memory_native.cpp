#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <string>

#include "resident_memory.h"

// The sum of the mappings: the counts in statm lag behind by some pages of each thread.
std::size_t resident_bytes()
{
    std::ifstream file("/proc/self/smaps_rollup");
    std::string word;
    std::size_t kibibytes = 0;
    while (file >> word && word != "Rss:") {
    }
    file >> kibibytes;
    return kibibytes * 1024;
}

bool forget_pages(const void* begin, std::size_t size)
{
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto first = (reinterpret_cast<std::uintptr_t>(begin) + page - 1) / page * page;
    const auto end = (reinterpret_cast<std::uintptr_t>(begin) + size) / page * page;
    return madvise(reinterpret_cast<void*>(first), end - first, MADV_DONTNEED) == 0;
}
