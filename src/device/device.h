// One scanner that the host has opened.
#pragma once

#include <atomic>
#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <string>

#include "device/records.h"
#include "device/video_state.h"
#include "driver/driver.h"

namespace kvs::brenvozulta {

class Frame_queue;
class Stop_handshake;

//   CREATED --open--> OPEN --close--> CLOSED
//
// A failed open or close leaves the state as it was. A closed device is never opened again.
enum Device_state : std::uint32_t {
    DEVICE_CREATED = 0,
    DEVICE_OPEN = 1,
    DEVICE_CLOSED = 2,
};

// Every operation returns a status and logs its own failures. The manager calls them one at a time, under its lock. Two
// other kinds of thread work on the device's records, which they share with it, and never touch the device: the
// driver's acquisition thread (acquisition.h) and the extraction threads (video_extraction.h).
class brenvozulta_device {
public:
    brenvozulta_device();
    // As drop.
    virtual ~brenvozulta_device();
    brenvozulta_device(const brenvozulta_device&) = delete;
    brenvozulta_device& operator=(const brenvozulta_device&) = delete;

    // Lifecycle (device.cpp). The option of open and the handle of reset are not used.
    std::int32_t open(const std::string& name, std::uint8_t option);
    std::int32_t close();
    std::int32_t reset(std::uint32_t handle);

    // Lets go of the scanner, whose handle is given up: neither closes it nor stops capture. What the host left running
    // runs on in the driver, and its images are refused. An image that is being copied is waited for: when this
    // returns, the host's buffers are its own again, and the device's threads are on their way out.
    void drop() noexcept;

    // Capture control (capture_control.cpp). A start waits 200 ms when the driver accepts the stop before it, whether
    // anything captured or not; a stop waits, without a limit, for an extraction thread.
    std::int32_t start_camera();
    std::int32_t start_video(std::uint16_t config);
    std::int32_t stop_video();

    // Video requests (video_requests.cpp). Neither waits for an image; a result waits for the rest of a copy under way.
    std::int32_t submit_video_request(void* buffer, std::uint64_t context);
    std::int32_t get_video_result(void** buffer_out, std::uint64_t* context_out);

    // Identity and capabilities (identity.cpp).
    std::int32_t get_device_info(DeviceInfo* out);
    std::int32_t get_device_capabilities(std::uint32_t index, VyraDeviceCapabilities* out);
    std::int32_t get_port_type(std::uint32_t* out);
    std::int32_t is_roll_supported(std::uint8_t* out);

    // Operator feedback (feedback.cpp). set_device_ui returns the driver's own result when it refuses the LED command;
    // set_buzzer returns when the tone is over.
    std::int32_t set_device_ui(const DevUI* record);
    std::int32_t get_device_ui(DevUI* out) const;
    std::int32_t set_ui_cb(VyraUICallback callback, void* context);
    std::int32_t set_buzzer(std::uint32_t pattern);
    std::int32_t set_cmd_parameter(std::uint8_t parameter, std::uint32_t value);

    // Device data and firmware (device_data.cpp).
    std::int32_t get_global_param_size(std::uint32_t* size);
    std::int32_t read_global_param(void* buffer, std::uint32_t size);
    std::int32_t get_snapshot_acquisition(void* buffer, std::uint32_t a, std::uint32_t b, std::uint32_t c);
    std::int32_t read_filters(const void* a, const void* b, const void* c);
    std::int32_t read_uniformity_buffers(void* buffer, std::int32_t size);
    std::int32_t update_firmware(const void* image, std::size_t length);

    // The status for a driver result.
    static std::int32_t translate_driver_result(std::uint32_t result);

    // What the manager's event handling needs of an open device.
    const std::string& name() const;
    void* driver_handle() const;
    void request_stop();  // without waiting for it
    bool disconnected() const { return disconnected_; }
    void set_disconnected(bool disconnected) { disconnected_.exchange(disconnected); }

    // What the tests see of a capture.
    std::uint32_t video_state() const;

private:
    bool is_open() const { return device_state_ == DEVICE_OPEN; }
    // The guard of an operation that needs the scanner: when it is not open, the operation's line says so.
    bool is_open_for(const char* operation) const;
    std::int32_t start_capture(const char* operation, std::uint8_t config);
    void end_earlier_capture();
    // The status of a driver call, whose failure is logged.
    static std::int32_t driver_status(const char* function, std::uint32_t result);

    boost::shared_ptr<Frame_queue> frame_queue_;
    boost::shared_ptr<Device_data> device_data_;
    boost::shared_ptr<Video_data> video_data_;
    std::atomic<bool> disconnected_;  // the manager's mark of an unplugged scanner; no operation here reads it
    boost::shared_ptr<Stop_handshake> stop_handshake_;
    std::atomic<std::uint32_t> device_state_;
};

}  // namespace kvs::brenvozulta
