// The state of a scanner's video.
#pragma once

#include <atomic>
#include <cstdint>

namespace kvs::brenvozulta {

//   IDLE --start--> RUNNING --stop, sleep--> STOP_REQUESTED --extraction thread--> STOPPED
//
// A start leads to RUNNING and a stop that the driver accepts leads to STOPPED from every state; sleep leads to
// STOP_REQUESTED from every state. Only RUNNING serves video requests.
enum Video_state : std::uint32_t {
    VIDEO_IDLE = 0,
    VIDEO_RUNNING = 1,
    VIDEO_STOP_REQUESTED = 2,
    VIDEO_STOPPED = 3,
};

// Read by the driver's acquisition thread and the extraction threads without a lock.
class Video_data {
public:
    std::atomic<std::uint32_t> video_state{VIDEO_IDLE};
    std::atomic<bool> dropped{false};  // the scanner's device is gone, with whatever state its video had
};

}  // namespace kvs::brenvozulta
