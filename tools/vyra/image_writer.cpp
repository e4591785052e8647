#include "image_writer.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace vyra_tool {
namespace {

// Two at least, so that one encodes while a disk holds up the other; four at most: more would wait for the disk rather
// than work.
std::size_t thread_count()
{
    return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 2, 4);
}

}  // namespace

// What the threads share. It outlives the writer for the sake of those that a disk holds up.
class Image_writer::Work {
public:
    Work(Image_folder folder, Encoder encode, std::shared_ptr<void> owner)
        : folder_(std::move(folder)), encode_(std::move(encode)), owner_(std::move(owner))
    {
    }

    void put(const Taken_image& image)
    {
        {
            const std::lock_guard lock(mutex_);
            jobs_.push_back({image});
        }
        changed_.notify_all();
    }

    std::optional<Written> take(std::chrono::milliseconds patience)
    {
        std::unique_lock lock(mutex_);
        if (!changed_.wait_for(lock, patience, [this] { return !jobs_.empty() && jobs_.front().done; })) {
            return std::nullopt;
        }
        const Job& first = jobs_.front();
        Written written{first.image.buffer, first.number, first.error};
        jobs_.pop_front();
        --begun_;
        return written;
    }

    std::size_t pending()
    {
        const std::lock_guard lock(mutex_);
        return jobs_.size();
    }

    void end()
    {
        {
            const std::lock_guard lock(mutex_);
            ending_ = true;
        }
        changed_.notify_all();
    }

    std::vector<Written> abandon()
    {
        end();
        std::vector<Written> finished;
        const std::lock_guard lock(mutex_);
        for (const Job& job : jobs_) {
            if (job.done) {
                finished.push_back({job.image.buffer, job.number, job.error});
            }
        }
        return finished;
    }

    // The life of a thread. Numbers are given in the order of the images: the next image is begun when the one before
    // has its number.
    void run()
    {
        while (true) {
            std::unique_lock order(order_);
            Job* const job = begin();
            if (job == nullptr) {
                return;
            }
            std::uint64_t number = 0;
            std::exception_ptr error;
            try {
                std::optional<Image_folder::Place> place(next_place());
                order.unlock();
                const std::vector<std::uint8_t> bytes = encode_(job->image);
                while (!store(*place, bytes)) {
                    place.emplace(next_place());
                }
                number = place->number;
            } catch (...) {
                error = std::current_exception();
            }
            finish(*job, number, error);
        }
    }

private:
    struct Job {
        Taken_image image;
        bool done = false;
        std::uint64_t number = 0;
        std::exception_ptr error = {};
    };

    Image_folder::Place next_place()
    {
        const std::lock_guard lock(folder_mutex_);
        return folder_.next();
    }

    static bool store(Image_folder::Place& place, const std::vector<std::uint8_t>& bytes)
    {
        place.file.write(bytes);
        return place.file.finish();
    }

    // The first image that nobody has begun, waited for; nothing at the end.
    Job* begin()
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return ending_ || begun_ < jobs_.size(); });
        return ending_ ? nullptr : &jobs_[begun_++];
    }

    void finish(Job& job, std::uint64_t number, std::exception_ptr error)
    {
        {
            const std::lock_guard lock(mutex_);
            job.number = number;
            job.error = std::move(error);
            job.done = true;
        }
        changed_.notify_all();
    }

    // Held by the thread that begins the next image, also while it waits for one: images are begun one by one. The
    // others may be taken inside it.
    std::mutex order_;

    // Guards the folder. Files are created while it is held.
    std::mutex folder_mutex_;
    Image_folder folder_;

    const Encoder encode_;
    const std::shared_ptr<void> owner_;

    // Guards everything below it. Nothing else is taken and no file is touched while it is held.
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Job> jobs_;   // a deque: a job stays where it is while others come and go at its ends
    std::size_t begun_ = 0;  // of the jobs, from the front
    bool ending_ = false;
};

Image_writer::Image_writer(Image_folder folder, Encoder encode, std::shared_ptr<void> owner)
    : work_(std::make_shared<Work>(std::move(folder), std::move(encode), std::move(owner)))
{
    for (std::size_t i = 0; i < thread_count(); ++i) {
        try {
            threads_.emplace_back([work = work_] { work->run(); });
        } catch (const std::exception&) {  // no thread to be had, or no memory for one
            if (threads_.empty()) {
                throw;
            }
            break;
        }
    }
}

Image_writer::~Image_writer()
{
    work_->end();
    for (std::thread& thread : threads_) {
        thread.join();
    }
}

void Image_writer::put(const Taken_image& image)
{
    work_->put(image);
}

std::optional<Image_writer::Written> Image_writer::take(std::chrono::milliseconds patience)
{
    return work_->take(patience);
}

std::size_t Image_writer::pending() const
{
    return work_->pending();
}

std::vector<Image_writer::Written> Image_writer::abandon()
{
    for (std::thread& thread : threads_) {
        thread.detach();
    }
    threads_.clear();
    return work_->abandon();
}

}  // namespace vyra_tool
