// A process whose first call is the export named on the command line, or a race of first calls. The manager is made
// once a process, so every first call needs one of its own.
#include <atomic>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "log/log_settings.h"
#include "manager/get_manager.h"
#include "manager/manager.h"
#include "support/log_lines.h"
#include "unit/api/export_calls.h"

namespace {

using kvs::brenvozulta::get_manager;

int failures = 0;

void expect(bool condition, const char* what)
{
    if (!condition) {
        std::printf("not so: %s\n", what);
        ++failures;
    }
}

void expect_a_fresh_manager()
{
    const auto manager = get_manager();
    expect(manager != nullptr, "there is a manager");
    expect(manager.use_count() == 2, "besides this owner the manager has the holder's alone");
    expect(manager == get_manager(), "it is the same manager every time");
}

void check_first_call(const export_calls::Export& first, std::int32_t expected)
{
    test_support::remove_logs();
    export_calls::Arguments arguments;
    arguments.result.fill(0xA5);
    const auto untouched = arguments.result;
    const std::int32_t status = first.call(arguments);
    std::printf("%s: %d\n", first.name, status);
    expect(status == expected, "the export has the status of an uninitialized library");
    expect(arguments.result == untouched, "no result is written");
    expect(arguments.handle == VYRA_NO_HANDLE, "no handle is given");
    expect_a_fresh_manager();
    expect(test_support::file_bytes(test_support::log_path()).empty(), "the log is off before the first initialize");
    expect(kvs::brenvozulta::log_settings.level == 0,
           "the log level is 0 until the first initialize, and as it asks for then");
}

void check_race()
{
    constexpr int thread_count = 16;
    std::atomic<int> waiting{0};
    std::vector<boost::shared_ptr<kvs::brenvozulta::brenvozulta_manager>> owners(thread_count);
    std::vector<std::thread> threads;
    for (auto& owner : owners) {
        threads.emplace_back([&] {
            ++waiting;
            while (waiting < thread_count) {
            }
            owner = get_manager();
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    for (const auto& owner : owners) {
        expect(owner != nullptr && owner == owners.front(), "racing first calls get the one manager");
    }
    expect(owners.front().use_count() == thread_count + 1, "every call has one owner, the holder another");
    owners.clear();
    expect_a_fresh_manager();
}

bool check_export(const std::string& name)
{
    for (const auto& each : export_calls::fixed_exports()) {
        if (name == each.name) {
            check_first_call(each, export_calls::fixed_result(name));
            return true;
        }
    }
    for (const auto* exports : {&export_calls::handle_exports(), &export_calls::other_exports()}) {
        for (const auto& each : *exports) {
            if (name == each.name) {
                const bool initializes = name == "VyraInitialize_N";
                check_first_call(each, initializes ? VYRA_OK : VYRA_NOT_INITIALIZED);
                return true;
            }
        }
    }
    return false;
}

}  // namespace

int main(int count, char** arguments)
{
    const std::string name = count == 2 ? arguments[1] : "";
    if (name == "race") {
        check_race();
    } else if (!check_export(name)) {
        std::printf("usage: first_call_tests EXPORT|race\n");
        return 2;
    }
    VyraTerminate();
    return failures == 0 ? 0 : 1;
}
