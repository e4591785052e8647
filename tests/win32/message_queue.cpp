// Messages: sent, posted, received.
#include <algorithm>
#include <chrono>
#include <optional>

#include "desktop.h"
#include "entry_point.h"
#include "win32_double/control.h"

namespace win32_double {
namespace {

Entry_point send_call{"SendMessageA"};
Entry_point post_call{"PostMessageA"};
Entry_point post_thread_call{"PostThreadMessageA"};
Entry_point post_quit_call{"PostQuitMessage"};
Entry_point get_call{"GetMessageA"};
Entry_point peek_call{"PeekMessageA"};
Entry_point translate_call{"TranslateMessage"};
Entry_point dispatch_call{"DispatchMessageA"};

// When its thread ends a queue goes, and the thread's windows with it; no procedure is called any more.
thread_local bool queue_is_gone = false;  // the main thread's, before static destructors run

struct Queue_owner {
    std::shared_ptr<Message_queue> queue;

    ~Queue_owner()
    {
        queue_is_gone = true;
        if (queue == nullptr) {
            return;
        }
        const Desktop_lock lock(desktop().lock);
        std::vector<HWND> own;
        for (const auto& [handle, window] : desktop().windows) {
            if (window->owner == queue) {
                own.push_back(handle);
            }
        }
        for (const HWND handle : own) {
            remove_window(handle);
        }
        desktop().queues.erase(queue->thread);
    }
};

DWORD tick_count()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<DWORD>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

// Calls a procedure with the lock given up. However the call ends, the sender gets its answer.
class Answer {
public:
    Answer(Desktop_lock& lock, Sent_message& sent) : lock_(lock), sent_(sent) { lock_.unlock(); }
    ~Answer()
    {
        lock_.lock();
        test_bench::hand_over(&sent_);
        sent_.done = true;
        sent_.sender->wake.notify_all();
    }
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;

private:
    Desktop_lock& lock_;
    Sent_message& sent_;
};

void handle_sent_message(Desktop_lock& lock, Message_queue& queue)
{
    const std::shared_ptr<Sent_message> sent = queue.sent.front();
    queue.sent.pop_front();
    test_bench::take_over(sent.get());
    const WNDPROC procedure = desktop().windows.at(sent->window)->procedure;
    const Answer answer(lock, *sent);
    sent->result = procedure(sent->window, sent->message, sent->wparam, sent->lparam);
}

bool matches(const MSG& message, HWND window, UINT first, UINT last)
{
    if (window != nullptr && message.hwnd != window) {
        return false;
    }
    return (first == 0 && last == 0) || (message.message >= first && message.message <= last);
}

// What a thread gets from its queue: posted messages first, then the quit, which stays behind everything posted.
std::optional<MSG> take_message(Message_queue& queue, HWND window, UINT first, UINT last, bool remove)
{
    const auto found = std::find_if(queue.posted.begin(), queue.posted.end(),
                                    [&](const MSG& message) { return matches(message, window, first, last); });
    if (found != queue.posted.end()) {
        const MSG message = *found;
        if (remove) {
            queue.posted.erase(found);
            test_bench::take_over(&queue.posted);
        }
        return message;
    }
    if (!queue.quit) {
        return std::nullopt;
    }
    if (remove) {
        queue.quit = false;
    }
    return MSG{nullptr, WM_QUIT, static_cast<WPARAM>(queue.exit_code), 0, tick_count(), {0, 0}};
}

void post(Message_queue& queue, HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    queue.posted.push_back({window, message, wparam, lparam, tick_count(), {0, 0}});
    test_bench::hand_over(&queue.posted);
    queue.wake.notify_all();
}

}  // namespace

std::shared_ptr<Message_queue> own_queue()
{
    const DWORD thread = GetCurrentThreadId();
    const auto new_queue = [thread] {
        const auto queue = std::make_shared<Message_queue>();
        queue->thread = thread;
        desktop().queues[thread] = queue;
        return queue;
    };
    if (queue_is_gone) {
        const auto last = desktop().queues.find(thread);
        return last == desktop().queues.end() ? new_queue() : last->second;
    }
    thread_local Queue_owner own;
    if (own.queue == nullptr) {
        own.queue = new_queue();
    }
    return own.queue;
}

LRESULT send(Desktop_lock& lock, HWND handle, UINT message, WPARAM wparam, LPARAM lparam)
{
    const auto window = find_window(handle);
    if (window == nullptr) {
        return 0;
    }
    const auto own = own_queue();
    if (window->owner == own) {
        const WNDPROC procedure = window->procedure;
        lock.unlock();
        const LRESULT result = procedure(handle, message, wparam, lparam);
        lock.lock();
        return result;
    }
    const auto sent = std::make_shared<Sent_message>();
    *sent = {handle, message, wparam, lparam, own, false, 0};
    test_bench::hand_over(sent.get());
    window->owner->sent.push_back(sent);
    window->owner->wake.notify_all();
    // What others send here meanwhile is handled, so that two threads that send to each other do not stand still.
    while (!sent->done) {
        if (own->sent.empty()) {
            own->wake.wait(lock);
        } else {
            handle_sent_message(lock, *own);
        }
    }
    test_bench::take_over(sent.get());
    return sent->result;
}

void broadcast(UINT message, WPARAM wparam, LPARAM lparam)
{
    Desktop_lock lock(desktop().lock);
    std::vector<HWND> top_level;
    for (const auto& [handle, window] : desktop().windows) {
        if (window->parent == nullptr) {
            top_level.push_back(handle);
        }
    }
    for (const HWND handle : top_level) {
        send(lock, handle, message, wparam, lparam);
    }
}

}  // namespace win32_double

using namespace win32_double;

LRESULT SendMessageA(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (send_call.refused()) {
        return 0;
    }
    if (window == HWND_BROADCAST) {
        broadcast(message, wparam, lparam);
        return TRUE;
    }
    Desktop_lock lock(desktop().lock);
    return send(lock, window, message, wparam, lparam);
}

BOOL PostMessageA(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (post_call.refused()) {
        return FALSE;
    }
    const Desktop_lock lock(desktop().lock);
    if (window == nullptr) {
        post(*own_queue(), nullptr, message, wparam, lparam);
        return TRUE;
    }
    const auto target = find_window(window);
    if (target == nullptr) {
        return FALSE;
    }
    post(*target->owner, window, message, wparam, lparam);
    return TRUE;
}

BOOL PostThreadMessageA(DWORD thread, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (post_thread_call.refused()) {
        return FALSE;
    }
    const Desktop_lock lock(desktop().lock);
    if (thread == GetCurrentThreadId()) {
        own_queue();
    }
    const auto found = desktop().queues.find(thread);
    if (found == desktop().queues.end()) {
        SetLastError(ERROR_INVALID_THREAD_ID);
        return FALSE;
    }
    post(*found->second, nullptr, message, wparam, lparam);
    return TRUE;
}

// It cannot fail on Windows; only its calls are counted.
void PostQuitMessage(int exit_code)
{
    post_quit_call.enter();
    const Desktop_lock lock(desktop().lock);
    const auto queue = own_queue();
    queue->quit = true;
    queue->exit_code = exit_code;
}

BOOL GetMessageA(MSG* message, HWND window, UINT first, UINT last)
{
    if (get_call.refused()) {
        return -1;
    }
    Desktop_lock lock(desktop().lock);
    const auto queue = own_queue();
    if (window != nullptr && find_window(window) == nullptr) {
        return -1;
    }
    for (;;) {
        while (!queue->sent.empty()) {
            handle_sent_message(lock, *queue);
        }
        if (const auto next = take_message(*queue, window, first, last, true)) {
            *message = *next;
            return next->message == WM_QUIT ? 0 : 1;
        }
        queue->wake.wait(lock);
    }
}

BOOL PeekMessageA(MSG* message, HWND window, UINT first, UINT last, UINT options)
{
    if (peek_call.refused()) {
        return FALSE;
    }
    Desktop_lock lock(desktop().lock);
    const auto queue = own_queue();
    while (!queue->sent.empty()) {
        handle_sent_message(lock, *queue);
    }
    if ((options & PM_QS_SENDMESSAGE) != 0) {
        return FALSE;
    }
    const auto next = take_message(*queue, window, first, last, (options & PM_REMOVE) != 0);
    if (next) {
        *message = *next;
    }
    return next ? TRUE : FALSE;
}

// Only keyboard messages would be translated, and there are none.
BOOL TranslateMessage(const MSG*)
{
    translate_call.enter();
    return FALSE;
}

LRESULT DispatchMessageA(const MSG* message)
{
    if (dispatch_call.refused() || message->hwnd == nullptr) {
        return 0;
    }
    WNDPROC procedure = nullptr;
    {
        const Desktop_lock lock(desktop().lock);
        const auto window = find_window(message->hwnd);
        if (window == nullptr) {
            return 0;
        }
        procedure = window->procedure;
    }
    return procedure(message->hwnd, message->message, message->wParam, message->lParam);
}
