// The simulated scanners that the benchmarks work with: as many as can be open, so that a look-up meets a full table.
#pragma once

#include <cstdint>

// Initializes the library with its log off and opens the scanners, which have the handles 0 to 7, while it lives.
// Throws std::runtime_error when a call fails.
class Open_scanners {
public:
    Open_scanners();
    ~Open_scanners();
    Open_scanners(const Open_scanners&) = delete;
    Open_scanners& operator=(const Open_scanners&) = delete;
};

constexpr std::uint32_t some_scanner = 4;
constexpr std::uint32_t streaming_scanner = 7;  // images are delivered to the scanner that was opened last

// Video of the streaming scanner while it lives.
class Running_video {
public:
    Running_video();
    ~Running_video();
    Running_video(const Running_video&) = delete;
    Running_video& operator=(const Running_video&) = delete;
};

// Throws std::runtime_error when a call of the library did not return 0.
void check(const char* call, std::int32_t status);
