#include "support/child_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

namespace test_support {

Child_process::Child_process(const std::vector<std::string>& command, const Environment& environment,
                             const std::string& input, std::chrono::seconds patience)
    : patience_(patience), child_(spawn(command, environment, input))
{
    out_.reader = std::thread([this] { read(child_.out, out_); });
    err_.reader = std::thread([this] { read(child_.err, err_); });
}

Child_process::~Child_process()
{
    if (!waited_) {
        end_by_force(child_.process);
        wait();
    }
}

void Child_process::read(System_handle pipe, Stream& stream)
{
    char buffer[4096];
    while (const std::size_t count = read_some(pipe, buffer, sizeof buffer)) {
        const std::lock_guard lock(mutex_);
        std::remove_copy(buffer, buffer + count, std::back_inserter(stream.text), '\r');
        changed_.notify_all();
    }
    close_pipe(pipe);
    const std::lock_guard lock(mutex_);
    stream.ended = true;
    changed_.notify_all();
}

bool Child_process::wait_for(const Stream& stream, const std::string& text)
{
    std::unique_lock lock(mutex_);
    const auto written = [&] { return stream.text.find(text) != std::string::npos; };
    changed_.wait_for(lock, patience_, [&] { return written() || stream.ended; });
    return written();
}

bool Child_process::wait_for_output(const std::string& text)
{
    return wait_for(out_, text);
}

bool Child_process::wait_for_error(const std::string& text)
{
    return wait_for(err_, text);
}

int Child_process::wait()
{
    {
        std::unique_lock lock(mutex_);
        if (!changed_.wait_for(lock, patience_, [this] { return out_.ended && err_.ended; })) {
            ended_by_force_ = true;
            end_by_force(child_.process);
        }
    }
    out_.reader.join();
    err_.reader.join();
    waited_ = true;
    EXPECT_FALSE(has_sanitizer_report(err_.text)) << err_.text;
    return wait_for_exit(child_.process);
}

std::string Child_process::text_of(const Stream& stream) const
{
    const std::lock_guard lock(mutex_);
    return stream.text;
}

std::string Child_process::out() const
{
    return text_of(out_);
}

std::string Child_process::err() const
{
    return text_of(err_);
}

bool has_sanitizer_report(const std::string& text)
{
    return text.find("Sanitizer") != std::string::npos || text.find(": runtime error: ") != std::string::npos;
}

Result run_program(const std::vector<std::string>& command, const Environment& environment, const std::string& input,
                   std::chrono::seconds patience)
{
    Child_process child(command, environment, input, patience);
    const int code = child.wait();
    return {code, child.out(), child.err(), child.ended_by_force()};
}

}  // namespace test_support
