#include "device/acquisition.h"

#include <boost/smart_ptr/weak_ptr.hpp>
#include <cstddef>
#include <limits>
#include <map>

#include "device/frame_queue.h"
#include "device/records.h"
#include "locks/locks.h"
#include "log/log_exceptions.h"

namespace kvs::brenvozulta {

namespace {

struct Destination {
    bool supplied = false;
    boost::weak_ptr<Video_data> video;
    boost::weak_ptr<Frame_queue> queue;
};

struct Attached_devices {
    mutex lock ACQUIRED_AFTER(lock_order::inside_close);  // nothing is taken inside it
    std::map<const void*, Destination> destinations GUARDED_BY(lock);
};

// Never destroyed: the driver may deliver until the process ends.
Attached_devices& attached_devices()
{
    static auto* const devices = new Attached_devices;
    return *devices;
}

using devices_lock = scoped_lock<mutex>;

Destination destination_of(const void* context)
{
    auto& devices = attached_devices();
    const devices_lock held(devices.lock);
    const auto found = devices.destinations.find(context);
    if (found == devices.destinations.end()) {
        Destination gone;
        gone.supplied = true;
        return gone;
    }
    return found->second;
}

// The driver states the size in two 16-bit numbers; a product beyond a signed 32-bit number is no image.
std::size_t image_size(std::uint16_t width, std::uint16_t height)
{
    const std::uint32_t size = std::uint32_t{width} * height;
    return size <= std::numeric_limits<std::int32_t>::max() ? size : 0;
}

std::int32_t accept_image(const std::uint8_t* image, std::size_t size, const void* context)
{
    const Destination destination = destination_of(context);
    if (!destination.supplied) {
        return VIDEO_IDLE;
    }
    const auto video = destination.video.lock();
    const auto queue = destination.queue.lock();
    if (!video || !queue) {
        return VIDEO_STOPPED;
    }
    const std::uint32_t state = video->video_state;
    if (state != VIDEO_RUNNING) {
        return static_cast<std::int32_t>(state);
    }
    queue->wait_for_request();
    return image == nullptr || size == 0 ? VYRA_OK : queue->fill(image, size);
}

}  // namespace

std::int32_t on_acquisition(const std::uint8_t* image, std::uint16_t width, std::uint16_t height,
                            void* context) noexcept
{
    std::int32_t answer = VYRA_OK;  // of an image that is lost, as when no request waits for it
    log_exceptions([&] { answer = accept_image(image, image_size(width, height), context); });
    return answer;
}

void attach_acquisition(const brenvozulta_device* device)
{
    auto& devices = attached_devices();
    const devices_lock held(devices.lock);
    devices.destinations[device] = {};
}

void supply_acquisition(const brenvozulta_device* device, const boost::shared_ptr<Video_data>& video,
                        const boost::shared_ptr<Frame_queue>& queue)
{
    auto& devices = attached_devices();
    const devices_lock held(devices.lock);
    devices.destinations[device] = {true, video, queue};
}

void detach_acquisition(const brenvozulta_device* device)
{
    auto& devices = attached_devices();
    const devices_lock held(devices.lock);
    devices.destinations.erase(device);
}

}  // namespace kvs::brenvozulta
