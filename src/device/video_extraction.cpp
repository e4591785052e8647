#include "device/video_extraction.h"

#include <emmintrin.h>

#include <exception>

#include "device/stop_handshake.h"
#include "device/video_state.h"
#include "log/log.h"
#include "log/log_exceptions.h"

namespace kvs::brenvozulta {

void Video_extraction::run(Video_data& video, Stop_handshake& handshake) noexcept
{
    constexpr const char* failed = "#DV# Video_extraction:\t error promise Exception: %s\r\n";
    try {
        while (!video.dropped) {
            if (video.video_state == VIDEO_STOP_REQUESTED && handshake.answer(video)) {
                return;
            }
            _mm_pause();  // leaves the processor's sibling thread its share; gives up nothing else
        }
    } catch (const std::exception& error) {
        log_printf(log_errors, failed, error.what());
    } catch (...) {
        log_printf(log_errors, failed, not_standard);
    }
}

}  // namespace kvs::brenvozulta
