// Two queues of boost::lockfree. Who waits spins: there is nothing to wait for.
#include <atomic>
#include <boost/lockfree/spsc_queue.hpp>
#include <thread>

#include "../image.h"
#include "../pipe.h"
#include "../turn.h"

namespace {

class Lockfree_pipe : public Pipe {
public:
    Lockfree_pipe()
    {
        for (std::size_t i = 0; i < host_buffers; ++i) {
            empty_.push(host_buffer(i));
        }
    }

    void deliver() override
    {
        std::uint8_t* buffer = nullptr;
        while (!empty_.pop(buffer)) {
            if (ended_) {
                return;
            }
            std::this_thread::yield();
        }
        copy_image(buffer);
        filled_.push(buffer);
    }
    bool fetch() override
    {
        std::uint8_t* buffer = nullptr;
        return filled_.pop(buffer) && empty_.push(buffer);
    }
    void end() override { ended_ = true; }

private:
    using Queue = boost::lockfree::spsc_queue<std::uint8_t*, boost::lockfree::capacity<host_buffers>>;
    Queue empty_;
    Queue filled_;
    std::atomic<bool> ended_{false};
};

const Pipe_peer peer("lockfree::spsc_queue", [] { return std::make_unique<Lockfree_pipe>(); });

const Peer poll(figure_name::poll, {"lockfree::spsc_queue", [] {
                                        Lockfree_pipe pipe;
                                        return nanoseconds_each([&pipe] { pipe.fetch(); });
                                    }});

}  // namespace
