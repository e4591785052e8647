// A window class whose procedure records its messages, for the tests of windows and messages.
#pragma once
#include <windows.h>

#include <future>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

namespace contract {

struct Recorded {
    UINT message;
    DWORD thread;
};

// What the procedure answers to messages, and what it has got. One for the whole program: a window's first message
// comes before its creator knows the window.
class Recorder {
public:
    void answer(UINT message, LRESULT result);
    // Those among `wanted`, in the order in which they came.
    std::vector<UINT> messages(const std::vector<UINT>& wanted);
    // The thread that handled a message; 0 when it has not come.
    DWORD handler_of(UINT message);
    void clear();

    LRESULT record(UINT message);

private:
    std::mutex lock_;  // guards what follows; a leaf
    std::vector<Recorded> recorded_;
    std::map<UINT, LRESULT> answers_;
};

Recorder& recorder();

constexpr char class_name[] = "CONTRACT_RECORDER";

// Never calls DefWindowProcA, as the library's own procedure.
LRESULT CALLBACK record_message(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
void register_recorder_class();
void unregister_recorder_class();
HWND create_recorder_window(const char* title = "Contract");

// A thread with a recorder window and a message loop. The end of its scope ends the loop and joins the thread.
class Window_thread {
public:
    Window_thread();
    ~Window_thread();
    Window_thread(const Window_thread&) = delete;
    Window_thread& operator=(const Window_thread&) = delete;

    HWND window() const { return window_; }
    DWORD id() const { return id_; }

private:
    void run();

    std::promise<void> ready_;
    HWND window_ = nullptr;
    DWORD id_ = 0;
    std::thread thread_;
};

}  // namespace contract
