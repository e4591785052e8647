// The extraction thread, one for each start of video.
#pragma once

namespace kvs::brenvozulta {

class Stop_handshake;
class Video_data;

class Video_extraction {
public:
    // Polls the video state until it has answered a stop, or until the device is dropped. A stop that is over before it
    // could be answered is missed; another thread has answered it, or a start has come. Keeps one processor busy
    // meanwhile: the stop is seen at once.
    static void run(Video_data& video, Stop_handshake& handshake) noexcept;
};

}  // namespace kvs::brenvozulta
