// A host that loads and unloads the library, over and over: loading_host USE ROUNDS. In between it uses the library in
// one of the ways below. At the end it says on standard output whether the library is still there.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "module.h"
#include "vyra/vyra.h"

namespace {

using loading_host::address_of;

constexpr std::size_t image_size = 1600 * 1500;  // room for an image of any scenario

void expect_success(const char* name, std::int32_t status)
{
    if (status != VYRA_OK) {
        std::fprintf(stderr, "%s %d\n", name, static_cast<int>(status));
        std::exit(1);
    }
}

template <class... Arguments>
void call(const char* name, Arguments... arguments)
{
    expect_success(name, reinterpret_cast<std::int32_t (*)(Arguments...)>(address_of(name))(arguments...));
}

void call_notifier(const char* name)
{
    static char class_name[] = "LOADING_HOST";
    expect_success(name, reinterpret_cast<bool (*)(char*)>(address_of(name))(class_name) ? VYRA_OK : VYRA_INTERNAL);
}

std::uint32_t open()
{
    std::uint32_t handle = VYRA_NO_HANDLE;
    call<VyraDeviceEventCallback, std::uint32_t, std::int32_t>("VyraInitialize_N", nullptr, 0, 0);
    call<const char*, std::uint32_t*>("VyraOpenDevice", "RQ7-3050 #1", &handle);
    return handle;
}

void start_video(std::uint32_t handle)
{
    static std::uint8_t image[image_size];
    call<std::uint32_t, std::uint32_t, std::uint32_t>("VyraBrenvoStartVideo", handle, 1, 0);
    call<std::uint32_t, void*, std::uint64_t>("VyraSubmitVideoRequest", handle, image, 0);
}

void capture(int starts)
{
    const std::uint32_t handle = open();
    for (int i = 0; i < starts; ++i) {
        start_video(handle);
    }
    call<std::uint32_t>("VyraStopVideo", handle);
    call<std::uint32_t>("VyraCloseDevice_N", handle);
}

const std::map<std::string, void (*)()> uses = {
    {"none", [] {}},
    {"calls_that_start_nothing",
     [] {
         call("VyraInitialize");
         call<void*>("VyraGetVerInfo", nullptr);
     }},
    {"notifier",
     [] {
         call_notifier("InitUsbNotifier");
         call_notifier("TerminateUsbNotifier");
     }},
    {"session",
     [] {
         open();
         call("VyraTerminate");
     }},
    {"capture",
     [] {
         capture(1);
         call("VyraTerminate");
     }},
    {"capture_without_stop",
     [] {
         const std::uint32_t handle = open();
         start_video(handle);
         call<std::uint32_t>("VyraCloseDevice_N", handle);
         call("VyraTerminate");
     }},
    {"four_starts_one_stop",
     [] {
         capture(4);
         call("VyraTerminate");
     }},
    {"capture_without_terminate", [] { capture(1); }},
};

}  // namespace

int main(int argc, char** argv)
{
    const auto use = argc == 3 ? uses.find(argv[1]) : uses.end();
    if (use == uses.end()) {
        return 2;
    }
    loading_host::prepare_process();
    for (int round = std::atoi(argv[2]); round > 0; --round) {
        if (!loading_host::load()) {
            std::fprintf(stderr, "%d rounds before the end, the library cannot be loaded\n", round);
            return 1;
        }
        use->second();
        loading_host::unload();
    }
    std::puts(loading_host::is_loaded() ? "still loaded" : "not loaded");
    return 0;
}
