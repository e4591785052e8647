// The library's own ways from the driver to the host.
#include <brenvozulta_simulator/control.h>

#include <atomic>
#include <boost/smart_ptr/make_shared.hpp>
#include <thread>

#include "device/acquisition.h"
#include "device/frame_queue.h"
#include "device/video_state.h"
#include "image.h"
#include "pipe.h"
#include "scanners.h"
#include "vyra/vyra.h"

namespace {

using namespace kvs::brenvozulta;

// The buffers that no image is on its way to. The library drops an image that finds none, so a driver that is to be as
// fast as its host has to wait for one.
class Outstanding_buffers {
public:
    void wait_for_one()
    {
        while (count_ == 0 && !ended_) {
            std::this_thread::yield();
        }
        --count_;
    }
    void add_one() { ++count_; }
    void end() { ended_ = true; }

private:
    std::atomic<int> count_{host_buffers};
    std::atomic<bool> ended_{false};
};

// As a device has them; of the device itself the driver knows the address only.
class Queue_pipe : public Pipe {
public:
    Queue_pipe()
    {
        attach_acquisition(device());
        supply_acquisition(device(), video_, queue_);
        video_->video_state = VIDEO_RUNNING;
        for (std::size_t i = 0; i < host_buffers; ++i) {
            queue_->add_request(host_buffer(i), i);
        }
    }
    ~Queue_pipe() override { detach_acquisition(device()); }

    void deliver() override
    {
        outstanding_.wait_for_one();
        on_acquisition(driver_image(), image_width, image_height, this);
    }
    bool fetch() override
    {
        const auto frame = queue_->take_ready();
        if (!frame) {
            return false;
        }
        queue_->remove(frame->frame_id);
        queue_->add_request(frame->buffer, frame->context);
        outstanding_.add_one();
        return true;
    }
    void end() override
    {
        outstanding_.end();
        queue_->retire();
    }

private:
    const brenvozulta_device* device() const { return reinterpret_cast<const brenvozulta_device*>(this); }

    Outstanding_buffers outstanding_;
    const boost::shared_ptr<Video_data> video_ = boost::make_shared<Video_data>();
    const boost::shared_ptr<Frame_queue> queue_ = boost::make_shared<Frame_queue>();
};

class Library_pipe : public Pipe {
public:
    Library_pipe()
    {
        for (std::size_t i = 0; i < host_buffers; ++i) {
            check("VyraSubmitVideoRequest", VyraSubmitVideoRequest(streaming_scanner, host_buffer(i), i));
        }
    }

    void deliver() override
    {
        outstanding_.wait_for_one();
        callback_(driver_image(), image_width, image_height, device_);
    }
    bool fetch() override
    {
        void* buffer = nullptr;
        std::uint64_t context = 0;
        if (VyraGetVideoResult(streaming_scanner, &buffer, &context) != VYRA_OK) {
            return false;
        }
        check("VyraSubmitVideoRequest", VyraSubmitVideoRequest(streaming_scanner, buffer, context));
        outstanding_.add_one();
        return true;
    }
    void end() override
    {
        outstanding_.end();
        VyraStopVideo(streaming_scanner);
    }

private:
    const Running_video video_;
    Outstanding_buffers outstanding_;
    const brenvozulta_sim_acquisition callback_ = brenvozulta_sim_callback();
    void* const device_ = brenvozulta_sim_callback_context();
};

}  // namespace

std::unique_ptr<Pipe> make_queue_pipe()
{
    return std::make_unique<Queue_pipe>();
}

std::unique_ptr<Pipe> make_library_pipe()
{
    return std::make_unique<Library_pipe>();
}
