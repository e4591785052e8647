#include "device/acquisition.h"

#include <atomic>
#include <cstddef>
#include <limits>

#include "device/frame_queue.h"
#include "device/video_state.h"
#include "lifetime/never_destroyed.h"
#include "locks/locks.h"
#include "log/log_exceptions.h"
#include "vyra/status.h"

namespace kvs::brenvozulta {

namespace {

// What becomes of a place is told by its bits and by the number of callbacks that are in it, which is counted above
// them.
enum : std::uint32_t {
    place_taken = 1,     // by a device, or by callbacks that are left of one
    place_attached = 2,  // callbacks may enter
    place_supplied = 4,  // the records are there
    one_callback = 8,
};

// The place of an attached device. A callback enters it in one step that fails once the device is detached, and keeps
// the records alive until it leaves; so it takes no lock and counts no reference. Places are used again, never freed.
struct Place {
    std::atomic<const void*> device{nullptr};
    std::atomic<std::uint32_t> state{0};
    Place* next = nullptr;

    // Written between taken and supplied, and when nobody is left.
    boost::shared_ptr<Video_data> video;
    boost::shared_ptr<Frame_queue> queue;
};

struct Attached_devices {
    // Held where a device is attached, supplied or detached; a callback reads without it. Nothing is taken inside it.
    plain_mutex lock ACQUIRED_AFTER(lock_order::inside_close);
    std::atomic<Place*> places{nullptr};  // as many as there ever were devices at a time
};

Attached_devices& attached_devices()
{
    return never_destroyed<Attached_devices>();
}

using devices_lock = scoped_lock<plain_mutex>;

void leave(Place& place, std::uint32_t what)
{
    if (place.state.fetch_sub(what, std::memory_order_acq_rel) - what == place_taken) {
        place.device.store(nullptr, std::memory_order_relaxed);
        place.video.reset();
        place.queue.reset();
        place.state.store(0, std::memory_order_release);
    }
}

// A callback's stay in the place of its device.
class Visit {
public:
    explicit Visit(const void* device)
    {
        for (Place* place = attached_devices().places.load(std::memory_order_acquire); place != nullptr;
             place = place->next) {
            if (place->device.load(std::memory_order_relaxed) == device && enter(*place)) {
                // It may have been given to another device in between.
                if (place->device.load(std::memory_order_relaxed) == device) {
                    return;
                }
                leave(*place_, one_callback);
                place_ = nullptr;
            }
        }
    }
    ~Visit()
    {
        if (place_ != nullptr) {
            leave(*place_, one_callback);
        }
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    bool attached() const { return place_ != nullptr; }
    bool supplied() const { return (state_ & place_supplied) != 0; }
    const Video_data& video() const { return *place_->video; }
    Frame_queue& queue() const { return *place_->queue; }

private:
    bool enter(Place& place)
    {
        state_ = place.state.load(std::memory_order_relaxed);
        while ((state_ & place_attached) != 0) {
            if (place.state.compare_exchange_weak(state_, state_ + one_callback, std::memory_order_acquire,
                                                  std::memory_order_relaxed)) {
                place_ = &place;
                return true;
            }
        }
        return false;
    }

    Place* place_ = nullptr;
    std::uint32_t state_ = 0;
};

Place* place_of(const brenvozulta_device* device, Attached_devices& devices) REQUIRES(devices.lock)
{
    for (Place* place = devices.places; place != nullptr; place = place->next) {
        if (place->device == device && (place->state & place_attached) != 0) {
            return place;
        }
    }
    return nullptr;
}

Place& free_place(Attached_devices& devices) REQUIRES(devices.lock)
{
    for (Place* place = devices.places; place != nullptr; place = place->next) {
        if (place->state.load(std::memory_order_acquire) == 0) {
            return *place;
        }
    }
    auto* const place = new Place;
    place->next = devices.places;
    devices.places.store(place, std::memory_order_release);
    return *place;
}

// The driver states the size in two 16-bit numbers; a product beyond a signed 32-bit number is no image.
std::size_t image_size(std::uint16_t width, std::uint16_t height)
{
    const std::uint32_t size = std::uint32_t{width} * height;
    return size <= std::numeric_limits<std::int32_t>::max() ? size : 0;
}

std::int32_t accept_image(const std::uint8_t* image, std::size_t size, const void* context)
{
    const Visit visit(context);
    if (!visit.attached()) {
        return VIDEO_STOPPED;
    }
    if (!visit.supplied()) {
        return VIDEO_IDLE;
    }
    const std::uint32_t capture = visit.queue().capture();  // before the state: a capture that ends in between is over
    const std::uint32_t state = visit.video().video_state;
    if (state != VIDEO_RUNNING) {
        return static_cast<std::int32_t>(state);
    }
    visit.queue().wait_for_request(capture);
    return image == nullptr || size == 0 ? VYRA_OK : visit.queue().fill(capture, image, size);
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
    Place& place = free_place(devices);
    place.device.store(device, std::memory_order_relaxed);
    place.state.store(place_taken | place_attached, std::memory_order_release);
}

void supply_acquisition(const brenvozulta_device* device, const boost::shared_ptr<Video_data>& video,
                        const boost::shared_ptr<Frame_queue>& queue)
{
    auto& devices = attached_devices();
    const devices_lock held(devices.lock);
    Place& place = *place_of(device, devices);
    place.video = video;
    place.queue = queue;
    place.state.fetch_or(place_supplied, std::memory_order_release);
}

void detach_acquisition(const brenvozulta_device* device)
{
    auto& devices = attached_devices();
    const devices_lock held(devices.lock);
    Place* const place = place_of(device, devices);
    if (place != nullptr) {
        leave(*place, place->state & (place_attached | place_supplied));
    }
}

}  // namespace kvs::brenvozulta
