#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <new>

#include "image_memory.h"

namespace vyra_tool {
namespace {

constexpr std::size_t page = 4096;
constexpr std::size_t growth = std::size_t{1} << 20;

// Where the images' memory lies, for the handler, which runs on a thread that may hold any lock and takes none.
std::array<std::atomic<std::uint8_t*>, 64> places{};
std::atomic<std::size_t> place_size{0};

// Windows promises memory when it is committed, not when it is written as others do. So most of an image's place is
// only reserved, and a write that goes beyond what is committed gets the memory it needs and goes on.
LONG CALLBACK commit_on_write(EXCEPTION_POINTERS* pointers)
{
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION || record.NumberParameters < 2) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    auto* const address = reinterpret_cast<std::uint8_t*>(record.ExceptionInformation[1]);
    for (const auto& place : places) {
        std::uint8_t* const begin = place;
        if (begin != nullptr && address >= begin && address < begin + place_size) {
            const std::size_t offset = static_cast<std::size_t>(address - begin) / page * page;
            void* const committed =
                VirtualAlloc(begin + offset, std::min(growth, place_size - offset), MEM_COMMIT, PAGE_READWRITE);
            return committed != nullptr ? EXCEPTION_CONTINUE_EXECUTION : EXCEPTION_CONTINUE_SEARCH;
        }
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

// False when there is no place left.
bool remember(std::uint8_t* bytes)
{
    return std::any_of(places.begin(), places.end(), [bytes](auto& place) {
        std::uint8_t* none = nullptr;
        return place.compare_exchange_strong(none, bytes);
    });
}

void forget(std::uint8_t* bytes)
{
    for (auto& place : places) {
        std::uint8_t* ours = bytes;
        place.compare_exchange_strong(ours, nullptr);
    }
}

}  // namespace

Image_memory::Image_memory(std::size_t expected)
    : bytes_(static_cast<std::uint8_t*>(VirtualAlloc(nullptr, reserved, MEM_RESERVE, PAGE_READWRITE)))
{
    static const void* const handler = AddVectoredExceptionHandler(1, commit_on_write);
    place_size = reserved;
    if (handler == nullptr || bytes_ == nullptr ||
        VirtualAlloc(bytes_, expected, MEM_COMMIT, PAGE_READWRITE) == nullptr || !remember(bytes_)) {
        VirtualFree(bytes_, 0, MEM_RELEASE);
        throw std::bad_alloc();
    }
}

Image_memory::~Image_memory()
{
    if (bytes_ != nullptr) {
        forget(bytes_);
        VirtualFree(bytes_, 0, MEM_RELEASE);
    }
}

}  // namespace vyra_tool
