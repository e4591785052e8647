// The extraction thread, one for each start of video.
#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

namespace kvs::brenvozulta {

class Stop_handshake;
class Video_data;

class Video_extraction {
public:
    // Polls the video state until a stop is requested, then answers it: sets VIDEO_STOPPED and fulfils the handshake.
    // Ends without an answer when the device is gone. Keeps one processor busy meanwhile: the stop is seen at once.
    static void run(const boost::shared_ptr<Video_data>& video,
                    const boost::weak_ptr<Stop_handshake>& handshake) noexcept;
};

}  // namespace kvs::brenvozulta
