// The files of the library's own log: the current one and the generation before.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace vyra_tool {

// The whole path of the log that the library writes on this computer.
std::string library_log_path();

// Reads a log from its older generation on, and then what is added to it. No file stays open meanwhile, because the
// library cannot exchange the generations of a log that another program has open.
class Log_files {
public:
    using Sink = std::function<void(std::string_view)>;

    // The older generation of a file lies beside it, under its name with a 2 behind it.
    explicit Log_files(const std::string& path);

    const std::filesystem::path& current() const noexcept { return current_; }
    const std::filesystem::path& older() const noexcept { return older_; }

    // Both generations; throws a Failure when there is neither.
    void read_all(const Sink& sink);
    // What was added since, also when the file has become the older generation meanwhile. Nothing while the file cannot
    // be had; what was read is never read again.
    void read_added(const Sink& sink);

private:
    const std::filesystem::path current_;
    const std::filesystem::path older_;
    std::string head_;         // the beginning of the current one, by which it is known again as the older one
    std::uintmax_t read_ = 0;  // bytes of it
};

}  // namespace vyra_tool
