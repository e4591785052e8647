// What a developer writes by hand: two queues of buffers, one mutex and a condition variable.
#include <condition_variable>
#include <mutex>
#include <queue>

#include "../image.h"
#include "../pipe.h"
#include "../turn.h"

namespace {

class Mutex_pipe : public Pipe {
public:
    Mutex_pipe()
    {
        for (std::size_t i = 0; i < host_buffers; ++i) {
            empty_.push(host_buffer(i));
        }
    }

    void deliver() override
    {
        std::uint8_t* buffer = nullptr;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            wanted_.wait(lock, [this] { return ended_ || !empty_.empty(); });
            if (ended_) {
                return;
            }
            buffer = empty_.front();
            empty_.pop();
        }
        copy_image(buffer);
        const std::lock_guard<std::mutex> lock(mutex_);
        filled_.push(buffer);
    }
    bool fetch() override
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (filled_.empty()) {
            return false;
        }
        empty_.push(filled_.front());
        filled_.pop();
        wanted_.notify_one();
        return true;
    }
    void end() override
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        ended_ = true;
        wanted_.notify_one();
    }

private:
    std::mutex mutex_;
    std::condition_variable wanted_;
    std::queue<std::uint8_t*> empty_;
    std::queue<std::uint8_t*> filled_;
    bool ended_ = false;
};

const Pipe_peer peer("mutex and condition", [] { return std::make_unique<Mutex_pipe>(); });

const Peer poll(figure_name::poll, {"mutex and condition", [] {
                                        Mutex_pipe pipe;
                                        return nanoseconds_each([&pipe] { pipe.fetch(); });
                                    }});

}  // namespace
