// The exchange of image buffers with the host.
#include "device/device.h"
#include "device/frame_queue.h"
#include "log/log.h"
#include "status/refusal.h"

namespace kvs::brenvozulta {

std::int32_t brenvozulta_device::submit_video_request(void* buffer, std::uint64_t context)
{
    if (!is_open_for("submit_video_request")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    if (video_data_->video_state != VIDEO_RUNNING) {
        return refuse("submit_video_request", VYRA_VIDEO_STOPPED);
    }
    if (buffer == nullptr) {
        refuse("submit_video_request", VYRA_VIDEO_STOPPED);  // the line names another code than the result
        return VYRA_BAD_PARAMETER;
    }
    const std::int32_t status = frame_queue_->add_request(buffer, context);
    if (status != VYRA_OK) {
        log_printf(log_errors, "submit_video_request:    Add frame queue Error=%d\r\n", status);
    }
    return status;
}

std::int32_t brenvozulta_device::get_video_result(void** buffer_out, std::uint64_t* context_out)
{
    *buffer_out = nullptr;
    if (!is_open_for("get_video_result")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    if (video_data_->video_state != VIDEO_RUNNING) {
        return refuse("get_video_result", VYRA_VIDEO_STOPPED);
    }
    // Never waits for an image: nothing ready is told as a time-out, and the host asks again.
    const auto frame = frame_queue_->take_ready();
    if (!frame) {
        return refuse("get_video_result", VYRA_VIDEO_TIMEOUT);
    }
    *buffer_out = frame->buffer;
    if (context_out != nullptr) {
        *context_out = frame->context;
    }
    frame_queue_->remove(frame->frame_id);  // the buffer is the host's again, and its place in the queue free
    return VYRA_OK;
}

}  // namespace kvs::brenvozulta
