#include "plug_in.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "states.h"
#include "vyra/notify.h"
#include "vyra/vyra.h"

namespace {

struct Step {
    const char* name;
    std::int32_t (*call)();
};

const Step stop{"VyraStopVideo", [] { return VyraStopVideo(0); }};
const Step close_scanner{"VyraCloseDevice_N", [] { return VyraCloseDevice_N(0); }};
const Step terminate{"VyraTerminate", [] { return VyraTerminate(); }};
const Step stop_notifier{"TerminateUsbNotifier", []() -> std::int32_t {
                             return TerminateUsbNotifier(exit_host::notifier_class) ? VYRA_OK : VYRA_INTERNAL;
                         }};

const std::map<std::string, std::vector<Step>> clean_ups = {{"terminate", {terminate}},
                                                            {"close", {close_scanner, terminate}},
                                                            {"stop", {stop, close_scanner, terminate}},
                                                            {"stop_notifier", {stop_notifier}}};

// Neither memory nor a stream: the threads that the system has ended may have held their locks.
void report(const char* name, std::int32_t status)
{
    char line[64];
    const int length = std::snprintf(line, sizeof line, "%s %d\n", name, static_cast<int>(status));
    if (write(STDERR_FILENO, line, static_cast<unsigned>(length)) != length) {
        _exit(3);
    }
}

const std::vector<Step>* steps = nullptr;

struct Static_object {
    ~Static_object() { clean_up(); }
} static_object;

}  // namespace

bool begin(const std::string& state, const std::string& clean_up)
{
    const auto wanted_state = exit_host::states.find(state);
    const auto wanted_clean_up = clean_ups.find(clean_up);
    if (wanted_state == exit_host::states.end() || wanted_clean_up == clean_ups.end() || !wanted_state->second()) {
        return false;
    }
    steps = &wanted_clean_up->second;
    return true;
}

void clean_up()
{
    const auto* const pending = steps;
    steps = nullptr;
    if (pending != nullptr) {
        for (const Step& step : *pending) {
            report(step.name, step.call());
        }
    }
}
