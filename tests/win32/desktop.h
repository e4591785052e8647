// The windows of the process and the objects that its threads wait for. One lock guards all of it; no window procedure
// and no other foreign code is ever called while it is held.
#pragma once
#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "test_bench/unseen.h"
#include "windows.h"

namespace win32_double {

// What is done under it orders no two threads of the library: what does is handed over.
using Desktop_lock = test_bench::Unseen_lock;

struct Message_queue;

struct Window_class {
    std::string name;
    ATOM atom = 0;
    WNDCLASSEXA description{};  // its names are not kept: the caller's texts may be gone
};

struct Window {
    HWND handle = nullptr;
    std::shared_ptr<Window_class> window_class;
    std::shared_ptr<Message_queue> owner;
    WNDPROC procedure = nullptr;
    HINSTANCE instance = nullptr;
    HWND parent = nullptr;
    DWORD style = 0;
    DWORD extended_style = 0;
    LONG_PTR identifier = 0;
    LONG_PTR user_data = 0;
    std::vector<unsigned char> extra;
    std::string title;
};

// A message that a sender waits for. The sender sees the result once done is set.
struct Sent_message {
    HWND window = nullptr;
    UINT message = 0;
    WPARAM wparam = 0;
    LPARAM lparam = 0;
    std::shared_ptr<Message_queue> sender;
    bool done = false;
    LRESULT result = 0;
};

// One for each thread that uses windows or messages; it lives until the thread ends.
struct Message_queue {
    DWORD thread = 0;
    std::condition_variable wake;  // something was sent or posted, or an answer has come
    std::deque<std::shared_ptr<Sent_message>> sent;
    std::deque<MSG> posted;
    bool quit = false;
    int exit_code = 0;
};

struct Device_notification {
    HWND window = nullptr;
    GUID device_class{};
    bool all_classes = false;
};

// What a thread waits for by its handle (waiting.cpp).
struct Waitable {
    enum class Kind { event, mutex, thread };

    explicit Waitable(Kind of) : kind(of) {}
    virtual ~Waitable() = default;
    // Whether a wait of the calling thread ends now.
    virtual bool signalled() const = 0;
    // What a wait that ends by this object takes of it, and answers.
    virtual DWORD take() { return WAIT_OBJECT_0; }

    const Kind kind;
    std::condition_variable changed;  // a wait may end
};

constexpr uintptr_t first_handle = 0x10010;
constexpr uintptr_t handle_step = 2;

struct Desktop {
    std::mutex lock;  // guards everything below and every record that it reaches; a leaf
    std::vector<std::shared_ptr<Window_class>> classes;
    std::map<HWND, std::shared_ptr<Window>> windows;
    std::map<DWORD, std::shared_ptr<Message_queue>> queues;
    std::map<HDEVNOTIFY, Device_notification> notifications;
    std::map<HANDLE, std::shared_ptr<Waitable>> waitables;
    bool reuses_handles = std::getenv("WIN32_DOUBLE_REUSE_HANDLES") != nullptr;
    uintptr_t last_handle = first_handle;
    ATOM next_atom = 0xC000;

    // A number that was never given before, or, when they are used again, the lowest that no object has.
    template <class Handle>
    Handle new_handle()
    {
        if (!reuses_handles) {
            return reinterpret_cast<Handle>(last_handle += handle_step);
        }
        uintptr_t number = first_handle + handle_step;
        while (is_taken(number)) {
            number += handle_step;
        }
        last_handle = std::max(last_handle, number);
        return reinterpret_cast<Handle>(number);
    }

    bool is_taken(uintptr_t number) const
    {
        return windows.count(reinterpret_cast<HWND>(number)) != 0 ||
               notifications.count(reinterpret_cast<HDEVNOTIFY>(number)) != 0 ||
               waitables.count(reinterpret_cast<HANDLE>(number)) != 0;
    }
};

// Never destroyed: threads may still end after the program's last statement.
Desktop& desktop();

// The following are called with the desktop's lock held.

// The calling thread's queue, made at its first use.
std::shared_ptr<Message_queue> own_queue();

// Null when there is no such window; the last error is then set.
std::shared_ptr<Window> find_window(HWND handle);

// Null when there is no such object; the last error is then set.
std::shared_ptr<Waitable> find_waitable(HANDLE handle);

// Lets the waits for an object try again, those for messages too, which wait at their thread's queue. What the calling
// thread did before stands before what they do after.
void wake_waits(Waitable& object);

// Gives up the mutexes that the calling thread owns and leaves behind.
void abandon_mutexes();

// By name (letter case does not matter) or atom, and instance.
std::shared_ptr<Window_class> find_class(LPCSTR name, HINSTANCE instance);

// Forgets a window; who waits for it to answer gets 0.
void remove_window(HWND handle);

// Lets the owner's thread handle a message and waits for the result; the lock is given up meanwhile.
LRESULT send(Desktop_lock& lock, HWND window, UINT message, WPARAM wparam, LPARAM lparam);

// Whether two names are equal but for the case of their letters.
bool same_name(const std::string& a, const std::string& b);

}  // namespace win32_double
