// What the log writes, and how much of it.
#pragma once

#include <atomic>
#include <cstdint>

namespace kvs::brenvozulta {

struct Log_settings {
    std::atomic<int> level{0};           // the highest level that is written
    std::atomic<std::int64_t> limit{0};  // bytes: of the file, and of one line
};

// The one object is the manager's, whose initialize sets it (manager/session.cpp). It needs no creation and has no
// owner: the log reads it on any thread, before there is a manager and while the process ends.
extern Log_settings log_settings;

}  // namespace kvs::brenvozulta
