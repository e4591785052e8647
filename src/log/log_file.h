// The log's file, as the parts of the log share it.
#pragma once

#include <atomic>

namespace kvs::brenvozulta {

constexpr int log_closed = -1;
constexpr char log_sub_directory[] = "\\Orvane\\Halvern SDK\\";

// The process's descriptor of the log file. Whoever closes it takes it out first, so that it is closed once.
extern std::atomic<int> log_descriptor;

}  // namespace kvs::brenvozulta
