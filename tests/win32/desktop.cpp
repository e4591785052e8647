#include "desktop.h"

#include <strings.h>

#include "descriptors.h"
#include "win32_double/control.h"

namespace win32_double {

Desktop& desktop()
{
    static auto& only = *new Desktop;
    return only;
}

bool same_name(const std::string& a, const std::string& b)
{
    return strcasecmp(a.c_str(), b.c_str()) == 0;
}

std::shared_ptr<Window> find_window(HWND handle)
{
    const auto found = desktop().windows.find(handle);
    if (found != desktop().windows.end()) {
        return found->second;
    }
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return nullptr;
}

void remove_window(HWND handle)
{
    const auto found = desktop().windows.find(handle);
    if (found == desktop().windows.end()) {
        return;
    }
    auto& waiting = found->second->owner->sent;
    for (auto at = waiting.begin(); at != waiting.end();) {
        if ((*at)->window != handle) {
            ++at;
            continue;
        }
        (*at)->done = true;
        (*at)->sender->wake.notify_all();
        at = waiting.erase(at);
    }
    desktop().windows.erase(found);
}

void reuse_handles(bool reuse)
{
    const Desktop_lock lock(desktop().lock);
    desktop().reuses_handles = reuse;
}

Live_objects live_objects()
{
    const Desktop_lock lock(desktop().lock);
    Live_objects alive{};
    alive.windows = desktop().windows.size();
    alive.window_classes = desktop().classes.size();
    alive.device_notifications = desktop().notifications.size();
    alive.message_queues = desktop().queues.size();
    for (const auto& [handle, object] : desktop().waitables) {
        if (object == nullptr) {
            continue;  // a thread that is about to run
        }
        switch (object->kind) {
            case Waitable::Kind::event:
                ++alive.events;
                break;
            case Waitable::Kind::mutex:
                ++alive.mutexes;
                break;
            case Waitable::Kind::thread:
                ++alive.thread_handles;
                break;
        }
    }
    alive.descriptors = open_descriptors();
    return alive;
}

}  // namespace win32_double
