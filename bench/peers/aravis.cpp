// Aravis with its fake camera. It makes its own images at its own pace, so only the poll that finds none is the same
// work.
#include <arv.h>

#include <stdexcept>

#include "../figure.h"
#include "../image.h"
#include "../turn.h"

namespace {

const Peer poll(figure_name::poll,
                {"Aravis", [] {
                     arv_enable_interface("Fake");
                     ArvCamera* const camera = arv_camera_new("Fake_1", nullptr);
                     ArvStream* const stream =
                         camera == nullptr ? nullptr : arv_camera_create_stream(camera, nullptr, nullptr, nullptr);
                     if (stream == nullptr) {
                         throw std::runtime_error("Aravis has no fake camera");
                     }
                     for (std::size_t i = 0; i < host_buffers; ++i) {
                         arv_stream_push_buffer(stream,
                                                arv_buffer_new_full(image_size, host_buffer(i), nullptr, nullptr));
                     }
                     const double each = nanoseconds_each([stream] {
                         ArvBuffer* buffer = arv_stream_try_pop_buffer(stream);
                         keep(buffer);
                     });
                     g_object_unref(stream);
                     g_object_unref(camera);
                     return each;
                 }});

}  // namespace
