#include "image_writer.h"

#include <utility>

#include "files.h"

namespace vyra_tool {

Image_writer::Image_writer(std::string directory, Image_size size, double pixels_per_inch)
    : directory_(std::move(directory)), size_(size), pixels_per_inch_(pixels_per_inch), thread_([this] { work(); })
{
}

Image_writer::~Image_writer()
{
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void Image_writer::put(std::size_t buffer, const std::uint8_t* pixels)
{
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back({buffer, pixels});
    }
    changed_.notify_all();
}

std::optional<Image_writer::Written> Image_writer::take(std::chrono::milliseconds patience)
{
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, patience, [this] { return error_ || !written_.empty(); });
    if (error_) {
        std::rethrow_exception(error_);
    }
    if (written_.empty()) {
        return std::nullopt;
    }
    Written first = std::move(written_.front());
    written_.pop_front();
    return first;
}

void Image_writer::work()
{
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return ending_ || !jobs_.empty(); });
        if (ending_) {
            return;
        }
        const Job job = jobs_.front();
        jobs_.pop_front();
        lock.unlock();
        std::string file;
        std::exception_ptr error;
        try {
            file = next_file();
            write_file(file, encode_png(job.pixels, size_, pixels_per_inch_));
        } catch (...) {
            error = std::current_exception();
        }
        lock.lock();
        if (error) {
            error_ = error;
        } else {
            written_.push_back({job.buffer, std::move(file)});
        }
        changed_.notify_all();
    }
}

std::string Image_writer::next_file()
{
    std::string file;
    do {
        ++number_;
        std::string digits = std::to_string(number_);
        digits.insert(0, digits.size() < 4 ? 4 - digits.size() : 0, '0');
        file = in_directory(directory_, "image_" + digits + ".png");
    } while (file_exists(file));
    return file;
}

}  // namespace vyra_tool
