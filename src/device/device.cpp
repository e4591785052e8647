#include "device/device.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <cstdint>

#include "device/acquisition.h"
#include "device/frame_queue.h"
#include "device/stop_handshake.h"
#include "log/log.h"
#include "log/log_exceptions.h"
#include "status/error_text.h"
#include "status/refusal.h"

namespace kvs::brenvozulta {

brenvozulta_device::brenvozulta_device() : disconnected_(false), device_state_(DEVICE_CREATED) {}

brenvozulta_device::~brenvozulta_device()
{
    drop();
}

// Each step for itself: one that the system refuses does not keep the others from being taken.
void brenvozulta_device::drop() noexcept
{
    if (video_data_) {
        video_data_->dropped = true;
    }
    if (device_data_) {
        device_data_->ui_callback = nullptr;  // the host may be done with what it points at
    }
    log_exceptions([this] { detach_acquisition(this); });
    if (frame_queue_) {
        log_exceptions([this] { frame_queue_->clear(); });
        log_exceptions([this] { frame_queue_->retire(); });
    }
}

std::int32_t brenvozulta_device::open(const std::string& name, std::uint8_t /*option*/)
{
    if (device_data_) {
        drop();  // what an earlier open left
    }
    device_data_ = boost::make_shared<Device_data>();
    device_data_->name = name;
    stop_handshake_ = boost::make_shared<Stop_handshake>();
    // All that needs memory, or a place, before the driver is asked: what it has opened would stay open there.
    const auto video = boost::make_shared<Video_data>();
    const auto queue = boost::make_shared<Frame_queue>();
    attach_acquisition(this);

    std::uint32_t result = QXDR_OpenDevice(name.c_str(), &device_data_->driver_handle);
    if (result != driver_ok) {
        return driver_status("QXDR_OpenDevice", result);
    }
    // The driver may deliver as soon as it knows the callback, and finds no records yet. When it refuses the callback,
    // the scanner stays open in the driver, as hosts know it.
    result = QXDR_SetCallbackAcquisition(on_acquisition, this);
    if (result != driver_ok) {
        return driver_status("QXDR_SetCallbackAcquisition", result);
    }
    QXDR_SetLeds(device_data_->driver_handle, 0, 0, 0, 0);  // a scanner that cannot is opened all the same

    // Only now: an open that fails leaves a device that refuses its operations without looking at the records.
    device_state_.exchange(DEVICE_OPEN);
    device_data_->ui_callback = nullptr;
    device_data_->ui_context = nullptr;
    video_data_ = video;
    frame_queue_ = queue;
    supply_acquisition(this, video_data_, frame_queue_);
    return VYRA_OK;
}

std::int32_t brenvozulta_device::close()
{
    if (!is_open()) {
        log_printf(log_errors, "close:\t Error: %d %s\r\n", VYRA_SCN_UNAVAILABLE,
                   vyra_error_text(VYRA_SCN_UNAVAILABLE));
        return VYRA_SCN_UNAVAILABLE;
    }
    // Video that runs is not stopped, which could wait without a limit.
    const std::uint32_t result = QXDR_CloseDevice(&device_data_->driver_handle);
    if (result != driver_ok) {
        return driver_status("QXDR_CloseDevice", result);
    }
    device_state_.exchange(DEVICE_CLOSED);
    frame_queue_->clear();
    return VYRA_OK;
}

std::int32_t brenvozulta_device::reset(std::uint32_t /*handle*/)
{
    if (!is_open()) {
        // The line has always shown the address of the text as its number.
        const auto address = reinterpret_cast<std::intptr_t>(vyra_error_text(VYRA_SCN_UNAVAILABLE));
        log_printf(log_errors, "reset:\t reset Error %d\r\n", static_cast<int>(address));
        return VYRA_SCN_UNAVAILABLE;
    }
    return driver_status("QXDR_ResetDevice", QXDR_ResetDevice(device_data_->driver_handle));
}

const std::string& brenvozulta_device::name() const
{
    return device_data_->name;
}

void* brenvozulta_device::driver_handle() const
{
    return device_data_->driver_handle;
}

std::uint32_t brenvozulta_device::video_state() const
{
    return video_data_->video_state;
}

void brenvozulta_device::request_stop()
{
    video_data_->video_state.exchange(VIDEO_STOP_REQUESTED);
    frame_queue_->end_capture();  // the driver's next stop may wait for a callback that waits for requests
}

// Hosts know fewer causes than the driver: several share a status, and what has none is internal.
std::int32_t brenvozulta_device::translate_driver_result(std::uint32_t result)
{
    switch (result) {
        case driver_ok:
            return VYRA_OK;
        case driver_bad_parameter:
        case driver_bad_parameter_7:
        case driver_bad_size:
        case driver_bad_parameter_14:
        case driver_bad_parameter_15:
            return VYRA_BAD_PARAMETER;
        case driver_refused:
            return VYRA_DRIVER_REFUSED;
        case driver_not_initialized:
            return VYRA_NOT_INITIALIZED;
        case driver_scanner_gone:
        case driver_no_scanner:
            return VYRA_DEVICE_UNAVAIL;
        case driver_timeout:
            return VYRA_DEVICE_TIMEOUT;
        case driver_bad_handle:
            return VYRA_BAD_SCANNER_IDX;
        case driver_unknown_config:
            return VYRA_CAPTURE_CONFIG;
        case driver_wrong_state:
            return VYRA_DRIVER_STATE;
        default:
            return VYRA_INTERNAL;
    }
}

std::int32_t brenvozulta_device::driver_status(const char* function, std::uint32_t result)
{
    if (result != driver_ok) {
        log_printf(log_errors, "--Error : %s ret = %d \n", function, result);
    }
    return translate_driver_result(result);
}

bool brenvozulta_device::is_open_for(const char* operation) const
{
    const bool open = is_open();
    if (!open) {
        refuse(operation, VYRA_SCN_UNAVAILABLE);
    }
    return open;
}

}  // namespace kvs::brenvozulta
