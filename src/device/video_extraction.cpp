#include "device/video_extraction.h"

#include <emmintrin.h>

#include <exception>

#include "device/records.h"
#include "device/stop_handshake.h"
#include "log/log.h"

namespace kvs::brenvozulta {

void Video_extraction::run(const boost::shared_ptr<Video_data>& video,
                           const boost::weak_ptr<Stop_handshake>& handshake) noexcept
{
    while (video->video_state != VIDEO_STOP_REQUESTED) {
        if (handshake.expired()) {
            return;
        }
        _mm_pause();  // leaves the processor's sibling thread its share; gives up nothing else
    }
    video->video_state.exchange(VIDEO_STOPPED);
    try {
        if (const auto waiting = handshake.lock()) {
            waiting->fulfil();
        }
    } catch (const std::exception& error) {
        log_printf(log_errors, "#DV# Video_extraction:\t error promise Exception: %s\r\n", error.what());
    }
}

}  // namespace kvs::brenvozulta
