#include "log/log_line.h"

#include <io.h>
#include <sys/timeb.h>
#include <time.h>
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "log/log_file.h"
#include "log/log_settings.h"

namespace kvs::brenvozulta {

namespace {

// The limit of wvsprintfA itself, which cuts what is longer and then has no room for the line's end. Logs in the field
// show such lines run together with the next one.
constexpr std::size_t message_size = 1024;

bool write_piece(int file, const char* piece)
{
    const auto length = static_cast<unsigned>(std::strlen(piece));
    return _write(file, piece, length) == static_cast<int>(length);
}

// The runtime's own calendar text, up to the seconds: programs that read the log in the field know its layout, and that
// the day is filled up as that runtime does.
void format_timestamp(char (&text)[64])
{
    __timeb64 now = {};
    _ftime64(&now);
    const char* calendar = _ctime64(&now.time);
    std::snprintf(text, sizeof text, "%.19s.%03hu", calendar == nullptr ? "" : calendar, now.millitm);
    text[std::strcspn(text, "\r\n")] = '\0';
}

}  // namespace

void log_vprintf(const char* format, va_list arguments) noexcept
{
    char message[message_size];
    wvsprintfA(message, format, arguments);
    try {
        log_write(message);
    } catch (...) {
        // Only building the directory's name can end here, for want of memory: the line is dropped.
    }
}

int log_write(const char* line)
{
    // One reading for the whole line: initialize may set another limit meanwhile.
    const std::int64_t limit = log_settings.limit.load(std::memory_order_relaxed);
    if (static_cast<std::int64_t>(std::strlen(line)) >= limit) {
        return -1;
    }
    const log_file_owner owner = open_log_file(limit);
    if (!owner) {
        return -1;
    }
    const int file = owner->descriptor();

    char timestamp[64];
    format_timestamp(timestamp);
    char thread[32];
    std::snprintf(thread, sizeof thread, "Thd %16lu ", static_cast<unsigned long>(GetCurrentThreadId()));
    // A write for each piece, as the file has always been written: appending keeps a piece whole, whoever else writes
    // at the same moment, and two lines that meet interleave by pieces. Of a line whose message is there, a lost piece
    // is no failure.
    write_piece(file, timestamp);
    write_piece(file, " ");
    write_piece(file, thread);
    if (!write_piece(file, line)) {
        return -1;
    }
    _commit(file);  // the line survives a crash of the machine
    return 0;
}

}  // namespace kvs::brenvozulta
