// GStreamer: appsrc to appsink, with as many buffers of a pool as the library has requests.
#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>

#include <stdexcept>

#include "../image.h"
#include "../pipe.h"
#include "../turn.h"

namespace {

class Gstreamer_pipe : public Pipe {
public:
    Gstreamer_pipe()
    {
        gst_init(nullptr, nullptr);
        pipeline_ = gst_parse_launch(
            "appsrc name=driver format=time caps=video/x-raw,format=GRAY8,width=1608,height=1000,framerate=500/1 ! "
            "appsink name=host sync=false max-buffers=8",
            nullptr);
        if (pipeline_ == nullptr) {
            throw std::runtime_error("GStreamer has no appsrc and appsink");
        }
        driver_ = gst_bin_get_by_name(GST_BIN(pipeline_), "driver");
        host_ = gst_bin_get_by_name(GST_BIN(pipeline_), "host");
        pool_ = gst_buffer_pool_new();
        GstStructure* const config = gst_buffer_pool_get_config(pool_);
        gst_buffer_pool_config_set_params(config, nullptr, image_size, host_buffers, host_buffers);
        gst_buffer_pool_set_config(pool_, config);
        gst_buffer_pool_set_active(pool_, TRUE);
        gst_element_set_state(pipeline_, GST_STATE_PLAYING);
    }
    ~Gstreamer_pipe() override
    {
        gst_element_set_state(pipeline_, GST_STATE_NULL);
        gst_object_unref(host_);
        gst_object_unref(driver_);
        gst_object_unref(pipeline_);
        gst_object_unref(pool_);
    }

    void deliver() override
    {
        GstBuffer* buffer = nullptr;
        if (gst_buffer_pool_acquire_buffer(pool_, &buffer, nullptr) != GST_FLOW_OK) {
            return;
        }
        gst_buffer_fill(buffer, 0, driver_image(), image_size);
        gst_app_src_push_buffer(GST_APP_SRC(driver_), buffer);
    }
    bool fetch() override
    {
        GstSample* const sample = gst_app_sink_try_pull_sample(GST_APP_SINK(host_), 0);
        if (sample == nullptr) {
            return false;
        }
        gst_sample_unref(sample);
        return true;
    }
    void end() override { gst_buffer_pool_set_flushing(pool_, TRUE); }

private:
    GstElement* pipeline_ = nullptr;
    GstElement* driver_ = nullptr;
    GstElement* host_ = nullptr;
    GstBufferPool* pool_ = nullptr;
};

std::unique_ptr<Pipe> make_gstreamer_pipe()
{
    return std::make_unique<Gstreamer_pipe>();
}

const Pipe_peer peer("GStreamer", make_gstreamer_pipe);
const Extraction_peer extraction_peer("GStreamer", make_gstreamer_pipe);

const Peer poll(figure_name::poll, {"GStreamer", [] {
                                        Gstreamer_pipe pipe;
                                        return nanoseconds_each([&pipe] { pipe.fetch(); });
                                    }});

}  // namespace
