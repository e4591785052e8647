// The library as objects: what is initialized, opened or started is ended with its owner, in the right order, on every
// way out.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "presence.h"
#include "vyra/vyra.h"

namespace vyra_tool {

// Whether the library takes two scanner names for the same: it does not look at the letters' case.
bool same_name(const std::string& left, const std::string& right);

// The initialized library. One at a time.
class Library {
public:
    explicit Library(std::uint32_t log_level, VyraDeviceEventCallback callback = count_device_event);
    ~Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    // The names of the attached scanners; a Failure when there is none.
    std::vector<std::string> scanners() const;
    // The attached scanner called wanted, in any letter case, or the first one when wanted is empty; says which when it
    // had a choice.
    std::string choose(const std::string& wanted) const;
};

// An open scanner. Its end waits for the library while another call holds it, up to a minute, or for as long as an
// interrupt leaves; the library's end closes what is open then.
class Scanner {
public:
    Scanner(const Library& library, std::string name);
    ~Scanner();
    Scanner(const Scanner&) = delete;
    Scanner& operator=(const Scanner&) = delete;

    const std::string& name() const noexcept { return name_; }
    std::uint32_t handle() const noexcept { return handle_; }

    // Closes it and opens it anew: what a scanner that left and came back needs. Throws a Failure, and stays closed,
    // when it cannot be opened.
    void reopen();

    DeviceInfo info() const;
    bool can_roll() const;
    // Whether video runs on it, in this process; another program's scanner cannot be opened at all.
    bool streams() const;

private:
    void open();
    void close();

    std::string name_;
    std::uint32_t handle_ = VYRA_NO_HANDLE;
};

// Running video.
class Video {
public:
    Video(const Scanner& scanner, std::uint32_t mode);
    ~Video();
    Video(const Video&) = delete;
    Video& operator=(const Video&) = delete;

    // Stops it; a Failure when the scanner refuses.
    void stop();

private:
    const Scanner& scanner_;
    bool runs_ = true;
};

}  // namespace vyra_tool
