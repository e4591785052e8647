// Where the images of the driver library come in.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>

namespace kvs::brenvozulta {

class brenvozulta_device;
class Frame_queue;
class Video_data;

// The acquisition callback, registered with the driver with a device's address as context. The driver keeps that
// address after the device is closed, so the address is only ever looked up among the attached devices.
//
// Called by the driver's acquisition thread for every image (8-bit grey, width x height bytes). Blocks while video runs
// and no request is queued, until the device is dropped. Returns 0 when the image was dealt with, else why it was not
// looked at: the video state, or VIDEO_STOPPED for a device that is gone. Allocates nothing, throws nothing and never
// calls the driver.
std::int32_t on_acquisition(const std::uint8_t* image, std::uint16_t width, std::uint16_t height,
                            void* context) noexcept;

// Makes images for device acceptable; until its records are supplied they are answered with VIDEO_IDLE.
void attach_acquisition(const brenvozulta_device* device);

// Gives images for device their destination. The records are not kept alive, except by a callback that is under way.
void supply_acquisition(const brenvozulta_device* device, const boost::shared_ptr<Video_data>& video,
                        const boost::shared_ptr<Frame_queue>& queue);

// From now on images for device are refused. A callback under way is not waited for.
void detach_acquisition(const brenvozulta_device* device);

}  // namespace kvs::brenvozulta
