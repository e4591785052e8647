#include <sys/timeb.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "entry_point.h"

namespace {

win32_double::Entry_point ctime_call{"_ctime64"};
win32_double::Entry_point ftime_call{"_ftime64"};

constexpr size_t time_text_size = 26;

bool to_local_time(const __time64_t* time, tm* result)
{
    if (time == nullptr || *time < 0) {
        errno = EINVAL;
        return false;
    }
    const time_t seconds = *time;
    return localtime_r(&seconds, result) != nullptr;
}

// The runtime's own form, which differs from Linux in the day: "Sun Jan 04 12:00:00 1970\n".
bool format_time(const __time64_t* time, char* text)
{
    static const char* const days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static const char* const months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    tm local{};
    if (!to_local_time(time, &local) || local.tm_year > 9999 - 1900) {
        return false;
    }
    char form[64];  // room for what the compiler believes the fields could hold
    std::snprintf(form, sizeof form, "%s %s %02d %02d:%02d:%02d %04d\n", days[local.tm_wday], months[local.tm_mon],
                  local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, local.tm_year + 1900);
    std::memcpy(text, form, time_text_size - 1);
    text[time_text_size - 1] = '\0';
    return true;
}

}  // namespace

// It cannot fail on Windows either; only its calls are counted.
void _ftime64(__timeb64* now)
{
    ftime_call.enter();
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    tm local{};
    localtime_r(&time.tv_sec, &local);
    const long standard_offset = local.tm_gmtoff - (local.tm_isdst > 0 ? 3600 : 0);
    now->time = time.tv_sec;
    now->millitm = static_cast<unsigned short>(time.tv_nsec / 1'000'000);
    now->timezone = static_cast<short>(-standard_offset / 60);
    now->dstflag = static_cast<short>(local.tm_isdst > 0);
}

char* _ctime64(const __time64_t* time)
{
    thread_local char text[time_text_size];
    if (ctime_call.refused_by_errno() || !format_time(time, text)) {
        return nullptr;
    }
    return text;
}
