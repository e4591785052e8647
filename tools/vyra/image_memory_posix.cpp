#include <sys/mman.h>

#include <new>

#include "image_memory.h"

namespace vyra_tool {

Image_memory::Image_memory(std::size_t)
{
    void* const address =
        mmap(nullptr, reserved, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (address == MAP_FAILED) {
        throw std::bad_alloc();
    }
    bytes_ = static_cast<std::uint8_t*>(address);
}

Image_memory::~Image_memory()
{
    if (bytes_ != nullptr) {
        munmap(bytes_, reserved);
    }
}

}  // namespace vyra_tool
