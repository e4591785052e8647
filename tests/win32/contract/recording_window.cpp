#include "recording_window.h"

#include <algorithm>

namespace contract {

void Recorder::answer(UINT message, LRESULT result)
{
    const std::lock_guard<std::mutex> guard(lock_);
    answers_[message] = result;
}

std::vector<UINT> Recorder::messages(const std::vector<UINT>& wanted)
{
    const std::lock_guard<std::mutex> guard(lock_);
    std::vector<UINT> result;
    for (const Recorded& entry : recorded_) {
        if (std::count(wanted.begin(), wanted.end(), entry.message) != 0) {
            result.push_back(entry.message);
        }
    }
    return result;
}

DWORD Recorder::handler_of(UINT message)
{
    const std::lock_guard<std::mutex> guard(lock_);
    for (const Recorded& entry : recorded_) {
        if (entry.message == message) {
            return entry.thread;
        }
    }
    return 0;
}

void Recorder::clear()
{
    const std::lock_guard<std::mutex> guard(lock_);
    recorded_.clear();
    answers_.clear();
    answers_[WM_NCCREATE] = TRUE;
}

LRESULT Recorder::record(UINT message)
{
    const std::lock_guard<std::mutex> guard(lock_);
    recorded_.push_back({message, GetCurrentThreadId()});
    const auto found = answers_.find(message);
    return found == answers_.end() ? 0 : found->second;
}

Recorder& recorder()
{
    static Recorder only;
    return only;
}

LRESULT CALLBACK record_message(HWND window, UINT message, WPARAM, LPARAM)
{
    const LRESULT result = recorder().record(message);
    if (message == WM_CLOSE) {
        DestroyWindow(window);
    }
    if (message == WM_DESTROY) {
        PostQuitMessage(0);
    }
    return result;
}

void register_recorder_class()
{
    WNDCLASSEXA added{};
    added.cbSize = sizeof added;
    added.lpfnWndProc = record_message;
    added.hInstance = GetModuleHandleA(nullptr);
    added.lpszClassName = class_name;
    RegisterClassExA(&added);
}

void unregister_recorder_class()
{
    UnregisterClassA(class_name, GetModuleHandleA(nullptr));
}

HWND create_recorder_window(const char* title)
{
    return CreateWindowExA(WS_EX_APPWINDOW | WS_EX_CLIENTEDGE, class_name, title, WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, 0,
                           120, 100, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
}

Window_thread::Window_thread() : thread_([this] { run(); })
{
    ready_.get_future().wait();
}

Window_thread::~Window_thread()
{
    if (IsWindow(window_)) {
        SendMessageA(window_, WM_CLOSE, 0, 0);
    }
    thread_.join();
}

void Window_thread::run()
{
    id_ = GetCurrentThreadId();
    window_ = create_recorder_window();
    ready_.set_value();
    if (window_ == nullptr) {
        return;
    }
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

}  // namespace contract
