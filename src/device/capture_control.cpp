// Starting and stopping a scanner's capture.
#include <boost/chrono/duration.hpp>
#include <boost/thread/thread.hpp>

#include "device/capture_config.h"
#include "device/device.h"
#include "device/frame_queue.h"
#include "device/stop_handshake.h"
#include "device/video_extraction.h"

namespace kvs::brenvozulta {

namespace {

// What a scanner needs between the end of one capture and the start of the next.
constexpr boost::chrono::milliseconds restart_pause(200);

}  // namespace

std::int32_t brenvozulta_device::start_camera()
{
    return start_capture("start_camera", flat_config);
}

std::int32_t brenvozulta_device::start_video(std::uint16_t config)
{
    return start_capture("start_video", static_cast<std::uint8_t>(config));
}

// Video that runs is told as a stop tells it: the driver may wait, without a limit, for a callback that waits for
// requests. Its state is then as it was, since the start may yet fail; only a sleep that came meanwhile stays.
void brenvozulta_device::end_earlier_capture()
{
    std::uint32_t running = VIDEO_RUNNING;
    const bool was_running = video_data_->video_state.compare_exchange_strong(running, VIDEO_STOPPED);
    frame_queue_->end_capture();
    const std::uint32_t result = QXDR_StopCapture(device_data_->driver_handle);
    if (was_running) {
        std::uint32_t stopped = VIDEO_STOPPED;
        video_data_->video_state.compare_exchange_strong(stopped, VIDEO_RUNNING);
    }
    if (result == driver_ok) {
        boost::this_thread::sleep_for(restart_pause);
    }
}

std::int32_t brenvozulta_device::start_capture(const char* operation, std::uint8_t config)
{
    if (!is_open_for(operation)) {
        return VYRA_SCN_UNAVAILABLE;
    }
    Stop_handshake::Promise fresh;  // before anything is begun that a lack of memory would leave half done
    frame_queue_->clear();
    void* const scanner = device_data_->driver_handle;
    end_earlier_capture();
    std::uint32_t result = QXDR_SelectCaptureConfig(scanner, config);
    if (result != driver_ok) {
        const std::int32_t status = driver_status("QXDR_SelectCaptureConfig", result);
        return result == driver_config_refused ? VYRA_CAPTURE_CONFIG : status;
    }
    result = QXDR_StartCapture(scanner);
    if (result != driver_ok) {
        return driver_status("QXDR_StartCapture", result);
    }
    frame_queue_->end_capture();  // callbacks that came while the state was still the earlier capture's
    stop_handshake_->begin(*video_data_, boost::move(fresh));
    try {
        // The thread shares what it works on with the device, which may be dropped before it.
        boost::thread([video = video_data_, handshake = stop_handshake_] {
            Video_extraction::run(*video, *handshake);
        }).detach();
    } catch (...) {
        // Capture goes on without an extraction thread: the handshake is answered now, so that a stop does not wait for
        // ever.
        stop_handshake_->fulfil();
        throw;
    }
    return VYRA_OK;
}

std::int32_t brenvozulta_device::stop_video()
{
    if (!is_open_for("stop_video")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    if (video_data_->video_state == VIDEO_RUNNING) {
        video_data_->video_state.exchange(VIDEO_STOP_REQUESTED);
        frame_queue_->wake_waiter();  // a parked acquisition callback would hold the driver's capture cycle up
        frame_queue_->end_capture();  // two are parked where another scanner's images come here too
        // A device that is dropped, which the host may stop from inside its close, has nobody left to answer.
        if (video_data_->video_state != VIDEO_STOPPED && !video_data_->dropped) {
            stop_handshake_->wait();
        }
    }
    const std::uint32_t result = QXDR_StopCapture(device_data_->driver_handle);
    if (result != driver_ok) {
        return driver_status("QXDR_StopCapture", result);
    }
    video_data_->video_state.exchange(VIDEO_STOPPED);
    frame_queue_->clear();
    return VYRA_OK;
}

}  // namespace kvs::brenvozulta
