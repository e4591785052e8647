// Bringing the library up, the list of scanners, opening; and the way back.
#include <algorithm>
#include <array>
#include <chrono>
#include <future>
#include <set>

#include "presence.h"
#include "selftest.h"
#include "session.h"

namespace vyra_tool {
namespace {

using namespace std::chrono_literals;

constexpr const char* nobody = "no scanner has this name";

void refuses_before_initialize(Test_bench&)
{
    std::uint32_t handle = 0;
    expect_status("VyraOpenDevice", VyraOpenDevice(nobody, &handle), VYRA_NOT_INITIALIZED);
    expect_status("VyraStopVideo", VyraStopVideo(0), VYRA_NOT_INITIALIZED);
    expect_status("VyraTerminate", VyraTerminate(), VYRA_NOT_INITIALIZED);
}

void initializes(Test_bench& bench)
{
    expect_status("VyraInitialize_N", VyraInitialize_N(count_device_event, bench.log_level, 0), VYRA_OK);
}

void initializes_again(Test_bench& bench)
{
    expect_status("the second VyraInitialize_N", VyraInitialize_N(count_device_event, bench.log_level, 0), VYRA_OK);
}

void compatibility_results(Test_bench&)
{
    expect_status("VyraInitialize", VyraInitialize(), VYRA_OK);
    expect_status("VyraGetImage", VyraGetImage(), VYRA_OK);
    expect_status("VyraStartVideo", VyraStartVideo(), VYRA_OK);
    expect_status("VyraGetVersion", VyraGetVersion(nullptr, 0), VYRA_OK);
    expect_status("VyraBrenvoGetFFDParameters", VyraBrenvoGetFFDParameters(), VYRA_NOT_IMPLEMENTED);
    expect_status("VyraBrenvoGetDetectedFingersBox", VyraBrenvoGetDetectedFingersBox(), VYRA_NOT_IMPLEMENTED);
}

void refuses_unknown_handles(Test_bench&)
{
    std::uint64_t context = 0;
    void* buffer = nullptr;
    DeviceInfo info{};
    expect_status("VyraStopVideo", VyraStopVideo(VYRA_NO_HANDLE), VYRA_BAD_SCANNER_IDX);
    expect_status("VyraGetVideoResult", VyraGetVideoResult(7, &buffer, &context), VYRA_BAD_SCANNER_IDX);
    expect_status("VyraBrenvoGetDeviceInfo", VyraBrenvoGetDeviceInfo(7, &info), VYRA_BAD_SCANNER_IDX);
    expect_status("VyraCloseDevice_N", VyraCloseDevice_N(7), VYRA_BAD_SCANNER_IDX);
    expect_status("VyraGetStatus", VyraGetStatus(7), VYRA_OK);
}

std::string name_of(const DeviceListRecord& record)
{
    return {record.name, std::find(record.name, record.name + sizeof record.name, '\0')};
}

std::vector<std::string> listed()
{
    std::array<DeviceListRecord, VYRA_MAX_SCANNERS> records{};
    std::uint32_t count = VYRA_MAX_SCANNERS;
    const int status = VyraGetDeviceList_N(&count, records.data());
    if (status == VYRA_INTERNAL) {
        throw No_such_scanner("VyraGetDeviceList_N returned 9000 VYRA_INTERNAL: no scanner is attached");
    }
    expect_status("VyraGetDeviceList_N", status, VYRA_OK);
    expect(count >= 1 && count <= VYRA_MAX_SCANNERS,
           "VyraGetDeviceList_N tells of " + std::to_string(count) + " scanners in a list of 8");
    std::vector<std::string> names;
    for (std::uint32_t i = 0; i < count; ++i) {
        names.push_back(name_of(records[i]));
    }
    return names;
}

void lists_the_scanner(Test_bench& bench)
{
    const std::vector<std::string> names = listed();
    auto found = bench.wanted.empty() ? names.begin() : std::find(names.begin(), names.end(), bench.wanted);
    if (found == names.end()) {
        found = std::find_if(names.begin(), names.end(),
                             [&](const std::string& name) { return same_name(name, bench.wanted); });
    }
    if (found == names.end()) {
        throw No_such_scanner("\"" + bench.wanted + "\" is not in the list");
    }
    bench.scanner = *found;
}

void names_are_usable(Test_bench&)
{
    std::set<std::string> seen;
    for (const std::string& name : listed()) {
        expect(!name.empty(), "a name in the list is empty");
        expect(name.size() < VYRA_NAME_SLOT,
               "a name has 255 characters or more and runs over a slot of VyraGetDeviceList");
        expect(std::none_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }),
               "the name \"" + name + "\" holds control characters");
        expect(seen.insert(name).second, "two scanners are called \"" + name + "\"");
    }
}

void slots_agree(Test_bench&)
{
    const std::vector<std::string> names = listed();
    std::array<char, std::size_t{VYRA_MAX_SCANNERS} * VYRA_NAME_SLOT> slots{};
    std::uint32_t count = VYRA_MAX_SCANNERS;
    expect_status("VyraGetDeviceList", VyraGetDeviceList(&count, slots.data()), VYRA_OK);
    expect(count == names.size(), "VyraGetDeviceList tells of " + std::to_string(count) +
                                      " scanners, VyraGetDeviceList_N of " + std::to_string(names.size()));
    for (std::size_t i = 0; i < names.size(); ++i) {
        expect(names[i] == &slots[i * VYRA_NAME_SLOT], "the two lists differ at place " + std::to_string(i));
    }
}

void list_arguments(Test_bench&)
{
    std::uint32_t none = 0;
    std::uint32_t count = 1;
    DeviceListRecord record{};
    expect_status("VyraGetDeviceList_N without a count", VyraGetDeviceList_N(nullptr, &record), VYRA_BUF_TOO_SMALL);
    expect_status("VyraGetDeviceList_N with a count of 0", VyraGetDeviceList_N(&none, &record), VYRA_BAD_PARAMETER);
    expect_status("VyraGetDeviceList without a buffer", VyraGetDeviceList(&count, nullptr), VYRA_BUF_TOO_SMALL);
}

void refuses_unknown_names(Test_bench&)
{
    std::uint32_t handle = 0;
    const int status = VyraOpenDevice(nobody, &handle);
    if (status == VYRA_OK) {
        VyraCloseDevice_N(handle);
    }
    expect_status("VyraOpenDevice of a name that no scanner has", status, VYRA_DEVICE_UNAVAIL);
    expect(handle == VYRA_NO_HANDLE, "VyraOpenDevice failed and left a handle");
    expect_status("VyraOpenDevice without a name", VyraOpenDevice(nullptr, &handle), VYRA_BAD_PARAMETER);
}

void opens(Test_bench& bench)
{
    expect_status("VyraOpenDevice", VyraOpenDevice(bench.scanner.c_str(), &bench.handle), VYRA_OK);
    expect(bench.handle == 0, "the first scanner that is opened has handle " + std::to_string(bench.handle));
}

void opens_once(Test_bench& bench)
{
    std::string other_case = bench.scanner;
    std::transform(other_case.begin(), other_case.end(), other_case.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    std::uint32_t handle = 0;
    expect_status("the second VyraOpenDevice", VyraOpenDevice(bench.scanner.c_str(), &handle), VYRA_SCN_UNAVAILABLE);
    expect_status("VyraOpenDevice in another letter case", VyraOpenDevice(other_case.c_str(), &handle),
                  VYRA_SCN_UNAVAILABLE);
    expect(handle == VYRA_NO_HANDLE, "a refused VyraOpenDevice left a handle");
}

void close_ends_a_wait(Test_bench& bench)
{
    const std::future<void> waiting = std::async(std::launch::async, [handle = bench.handle] {
        // A change that nobody waited for when it came ends the first wait at once.
        while (VyraGetStatus(handle) == VYRA_OK && VyraBrenvoZultaSetParameters(handle, 0, 0) == VYRA_OK) {
        }
    });
    waiting.wait_for(20ms);
    const int status = VyraCloseDevice_N(bench.handle);
    bench.handle = VYRA_NO_HANDLE;
    const bool ended = waiting.wait_for(2s) == std::future_status::ready;
    if (!ended) {
        VyraTerminate();  // releases every waiter, in whatever state
    }
    expect_status("VyraCloseDevice_N", status, VYRA_OK);
    expect(ended, "VyraGetStatus still waits 2 seconds after the close");
}

void closed_is_closed(Test_bench&)
{
    std::uint8_t pixel = 0;
    expect_status("VyraCloseDevice_N of a closed scanner", VyraCloseDevice_N(0), VYRA_BAD_SCANNER_IDX);
    expect_status("VyraSubmitVideoRequest of a closed scanner", VyraSubmitVideoRequest(0, &pixel, 0),
                  VYRA_BAD_SCANNER_IDX);
}

void opens_again(Test_bench& bench)
{
    std::uint32_t handle = 0;
    expect_status("VyraOpenDevice after a close", VyraOpenDevice(bench.scanner.c_str(), &handle), VYRA_OK);
    const int closed = VyraCloseDevice_N(handle);
    expect(handle == 0, "the scanner that is opened again has handle " + std::to_string(handle));
    expect_status("VyraCloseDevice_N", closed, VYRA_OK);
}

void terminates(Test_bench&)
{
    expect_status("VyraTerminate", VyraTerminate(), VYRA_OK);
}

void refuses_after_terminate(Test_bench&)
{
    std::uint32_t count = 1;
    DeviceListRecord record{};
    expect_status("VyraGetDeviceList_N", VyraGetDeviceList_N(&count, &record), VYRA_NOT_INITIALIZED);
}

void starts_anew(Test_bench& bench)
{
    expect_status("VyraInitialize_N", VyraInitialize_N(nullptr, bench.log_level, 0), VYRA_OK);
    const std::vector<std::string> names = listed();
    expect_status("VyraTerminate", VyraTerminate(), VYRA_OK);
    expect(std::find(names.begin(), names.end(), bench.scanner) != names.end(), "the scanner is not listed any more");
}

}  // namespace

std::vector<Check> session_checks()
{
    return {
        {"refuses-before-initialize",
         "Calls before VyraInitialize_N return 9101",
         "a host cannot tell that it forgot to initialize",
         {},
         refuses_before_initialize},
        {"initialize",
         "VyraInitialize_N brings the driver up and reads its list",
         "nothing works: the driver library is missing its service, its rights or its scanner list",
         {},
         initializes},
        {"initialize-again",
         "VyraInitialize_N of an initialized library starts over",
         "a host that initializes twice, as some do after sleep, stays without a scanner",
         {"initialize"},
         initializes_again},
        {"compatibility",
         "The functions kept for compatibility return their fixed results",
         "hosts that call them take the library for another version",
         {},
         compatibility_results},
        {"unknown-handle",
         "Calls with a handle that no open scanner has return 9108, VyraGetStatus 0 at once",
         "a host that uses a stale handle is not told, or hangs",
         {"initialize-again"},
         refuses_unknown_handles},
        {"list",
         "VyraGetDeviceList_N names the scanner",
         "a host finds no scanner: check its cable, its power and its driver",
         {"initialize-again"},
         lists_the_scanner},
        {"list-names",
         "The names in the list are short, printable and different",
         "a host that copies a name overruns its buffer, or opens the wrong scanner",
         {"list"},
         names_are_usable},
        {"list-slots",
         "VyraGetDeviceList gives the same names in the same order",
         "older and newer hosts see different scanners",
         {"list"},
         slots_agree},
        {"list-arguments",
         "The list calls refuse null pointers (9103) and room for nothing (9109)",
         "a host's mistake overwrites memory instead of being told",
         {"initialize-again"},
         list_arguments},
        {"open-unknown",
         "VyraOpenDevice of an unknown name returns 9005 and no handle",
         "a host believes that it has opened a scanner that is not there",
         {"initialize-again"},
         refuses_unknown_names},
        {"open",
         "VyraOpenDevice opens the scanner and gives it handle 0",
         "no host can use the scanner: another program has it, or its driver refuses",
         {"list"},
         opens},
        {"open-once",
         "A scanner that is open is refused (9110), in any letter case",
         "two parts of a host share a scanner without knowing",
         {"open"},
         opens_once},
    };
}

std::vector<Check> closing_checks()
{
    return {
        {"close",
         "VyraCloseDevice_N closes the scanner and ends a waiting VyraGetStatus",
         "the thread of a host that waits for the status hangs when the host ends",
         {"open"},
         close_ends_a_wait},
        {"closed",
         "A closed scanner's handle is refused (9108)",
         "a host goes on with a scanner that it has given up",
         {"close"},
         closed_is_closed},
        {"open-again",
         "A closed scanner can be opened again and has handle 0 again",
         "a host must be ended before it can use the scanner again",
         {"close"},
         opens_again},
        {"terminate",
         "VyraTerminate releases the driver",
         "the driver stays occupied: other programs, and a new start, do not get the scanner",
         {"initialize-again"},
         terminates},
        {"refuses-after-terminate",
         "Calls after VyraTerminate return 9101",
         "a host goes on with a library that it has ended",
         {"terminate"},
         refuses_after_terminate},
        {"start-anew",
         "After VyraTerminate everything can start again",
         "a host must be ended before it can use a scanner again",
         {"terminate", "list"},
         starts_anew},
    };
}

}  // namespace vyra_tool
