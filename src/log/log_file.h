// The log's file, as the parts of the log share it.
#pragma once

#include <boost/shared_ptr.hpp>

namespace kvs::brenvozulta {

constexpr int log_closed = -1;
constexpr char log_sub_directory[] = "\\Orvane\\Halvern SDK\\";

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

// The same, opened when it is not open; empty when it cannot be.
log_file_owner open_log_file();

// The descriptor of the process's log file, log_closed when none is open.
int log_descriptor();

}  // namespace kvs::brenvozulta
