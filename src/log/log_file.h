// The log's file, as the parts of the log share it.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <string>

namespace kvs::brenvozulta {

constexpr int log_closed = -1;

// An open file. A line keeps it while it writes, so that a rotation or a close by another thread never takes the
// descriptor away under it: by then the number could be another file's, even one of the host's.
class Log_file {
public:
    // Opens the file, or stays without one.
    explicit Log_file(const char* path);
    ~Log_file();
    Log_file(const Log_file&) = delete;
    Log_file& operator=(const Log_file&) = delete;

    bool is_open() const { return descriptor_ != log_closed; }
    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

using log_file_owner = boost::shared_ptr<Log_file>;

// The process's log file, empty when none is open.
log_file_owner current_log_file();

// The file for the next line: opened when it is not open, and rotated when it has reached the limit. Empty when it
// cannot be opened.
log_file_owner open_log_file(std::int64_t limit);

// Moves the log file in directory (which ends with a backslash) to the older generation and opens a new one, or leaves
// the log closed. While another thread's line is being written the file stays as it is. A file that another process has
// open stays too and is opened again, but its older generation is deleted.
void log_rotate(const char* directory);

// The machine-wide application-data folder, empty when the system does not tell. The log's own sub-folder is appended
// to it.
std::string log_directory();

}  // namespace kvs::brenvozulta
