#include "status_watch.h"

#include "failure.h"
#include "output.h"

namespace vyra_tool {

void Status_watch::open(const std::string& name)
{
    close();
    if (!same_name(name, name_)) {
        last_ = VYRA_OK;
    }
    name_ = name;
    opened_ = std::chrono::steady_clock::now();
    try {
        scanner_.emplace(library_, name);
    } catch (const Failure& failure) {
        Output::note(std::string("warning: ") + failure.what() + " (" + std::to_string(failure.code().value_or(0)) +
                     "): its status is not watched");
        return;
    }
    if (last_ != VYRA_OK) {  // it came back, and its thread ended before it could tell
        last_ = VYRA_OK;
        events_.push({Event::Kind::status, name_, VYRA_OK});
    }
    closing_ = false;
    thread_ = std::thread([this, handle = scanner_->handle()] { wait(handle); });
}

bool Status_watch::calls_for_opening(const Event& plug, const std::string& awaited) const
{
    const std::string& mine = name_.empty() ? awaited : name_;
    return (mine.empty() || same_name(plug.subject, mine)) && plug.moment > opened_;
}

void Status_watch::close()
{
    closing_ = true;
    scanner_.reset();  // ends the library's wait
    if (thread_.joinable()) {
        thread_.join();
    }
}

void Status_watch::wait(std::uint32_t handle)
{
    while (!closing_) {
        const int status = VyraGetStatus(handle);
        if (closing_) {
            return;
        }
        if (status == VYRA_SCN_UNAVAILABLE) {
            // The computer sleeps, which is reported as such: the library does not wait meanwhile.
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        } else if (status != last_) {
            last_ = status;
            events_.push({Event::Kind::status, name_, status});
        }
    }
}

}  // namespace vyra_tool
