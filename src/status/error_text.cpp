#include "status/error_text.h"

#include <cstdio>

namespace kvs::brenvozulta {

namespace {

constexpr std::int32_t first_run_start = 9000;
constexpr std::uint32_t first_run_last = 18;
constexpr std::int32_t second_run_start = 9100;
constexpr std::uint32_t second_run_last = 8;

using text_slot = char[16];

constexpr text_slot first_run[] = {
    "Internal VYRA  ", "Out of Resource", "Adapter Access ", "Adapter Mapping", "Bus Reset      ",
    "Device Unavail ", "Wait Object    ", "Bad Channel    ", "Isoch Request  ", "Video Rcvr     ",
    "Async Read     ", "Async Write    ", "CSR Address    ", "CSR Write      ", "Invalid Rsp    ",
    "Failure Rsp    ", "Device Timeout ", "Bad Pipe       ", "XCTRL Abort    ",
};

// The last two slots belong to 9109 and 9110. The lookup stops at 9108: logs in the field show these two codes as
// "Error 9109" and "Error 9110", and tools that read them rely on it.
constexpr text_slot second_run[] = {
    "User Error     ", "Not Initialized", "Buf Too Big    ", "Buf Too Small  ", "Too Many Frames", "Video Stopped  ",
    "Video Timeout  ", "Terminated     ", "Bad Scanner Idx", "Bad Parameter  ", "Device Unavail ",
};

static_assert(sizeof first_run / sizeof(text_slot) == first_run_last + 1);
static_assert(sizeof second_run / sizeof(text_slot) == second_run_last + 3);

}  // namespace

const char* vyra_error_text(std::int32_t code, Unlisted_text&& room)
{
    const auto in_first = static_cast<std::uint32_t>(code) - first_run_start;
    if (in_first <= first_run_last) {
        return first_run[in_first];
    }
    const auto in_second = static_cast<std::uint32_t>(code) - second_run_start;
    if (in_second <= second_run_last) {
        return second_run[in_second];
    }
    std::snprintf(room.text, sizeof room.text, "Error %ld", static_cast<long>(code));
    return room.text;
}

}  // namespace kvs::brenvozulta
