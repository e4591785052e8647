#include "session.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <utility>

#include "failure.h"
#include "interrupt.h"
#include "module.h"
#include "output.h"
#include "quoted_list.h"

namespace vyra_tool {
namespace {

// A simulated driver comes up with every scenario that it can use, and says on standard error what is wrong with
// another.
std::string start_advice(int status)
{
    const char* const scenario = std::getenv("BRENVOZULTA_SCENARIO");
    if (status != VYRA_INTERNAL || scenario == nullptr || *scenario == '\0' || !driver_is_simulated()) {
        return {};
    }
    return "correct the scenario of the simulated driver, which BRENVOZULTA_SCENARIO names or holds: the line above "
           "says "
           "where it is wrong";
}

}  // namespace

bool same_name(const std::string& left, const std::string& right)
{
    const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](char a, char b) { return lower(a) == lower(b); });
}

Library::Library(std::uint32_t log_level, VyraDeviceEventCallback callback)
{
    clear_presence();
    const int status = VyraInitialize_N(callback, log_level, 0);
    if (status != 0) {
        VyraTerminate();  // after some failures the library is initialized all the same
        throw Failure("cannot initialize the library", status, start_advice(status));
    }
}

Library::~Library()
{
    if (const int status = VyraTerminate(); status != 0) {
        Output::note("warning: the library did not shut down in order (" + std::to_string(status) + ")");
    }
}

std::vector<std::string> Library::scanners() const
{
    std::array<DeviceListRecord, VYRA_MAX_SCANNERS> records{};
    std::uint32_t count = VYRA_MAX_SCANNERS;
    const int status = VyraGetDeviceList_N(&count, records.data());
    if (status == VYRA_INTERNAL) {
        throw Failure("no scanner found", status,
                      "attach a scanner; if one is attached, check its cable and its driver (vyra doctor)",
                      Cause::no_such_scanner);
    }
    check(status, "list the attached scanners");
    std::vector<std::string> names;
    for (std::uint32_t i = 0; i < count; ++i) {
        const char* name = records[i].name;
        names.emplace_back(name, std::find(name, name + sizeof records[i].name, '\0'));
    }
    return names;
}

std::string Library::choose(const std::string& wanted) const
{
    const std::vector<std::string> names = scanners();
    if (!wanted.empty()) {
        auto found = std::find(names.begin(), names.end(), wanted);
        if (found == names.end()) {
            found = std::find_if(names.begin(), names.end(), [&](const auto& name) { return same_name(name, wanted); });
        }
        if (found == names.end()) {
            throw Failure("no scanner called \"" + wanted + "\" is attached", VYRA_DEVICE_UNAVAIL,
                          "choose one of " + quoted_list(names), Cause::no_such_scanner);
        }
        return *found;
    }
    if (names.size() > 1) {
        Output::note(std::to_string(names.size()) + " scanners are attached (" + quoted_list(names) + "): taking \"" +
                     names.front() + "\"; --scanner chooses another");
    }
    return names.front();
}

Scanner::Scanner(const Library&, std::string name) : name_(std::move(name))
{
    open();
}

Scanner::~Scanner()
{
    close();
}

void Scanner::reopen()
{
    close();
    open();
}

void Scanner::open()
{
    const int status = VyraOpenDevice(name_.c_str(), &handle_);
    if (status == VYRA_DRIVER_REFUSED) {
        throw Failure("cannot open the scanner \"" + name_ + "\"", status,
                      "close every other program that uses the scanner and try again");
    }
    check(status, "open the scanner \"" + name_ + "\"");
}

// While another call holds the library, a plug event of a slow driver for instance, a close is refused after five
// seconds and changes nothing.
void Scanner::close()
{
    if (handle_ == VYRA_NO_HANDLE) {
        return;
    }
    int status = VyraCloseDevice_N(handle_);
    for (int tries = 11; tries > 0 && (status == VYRA_INTERNAL || status == VYRA_OUT_OF_RESOURCE) && !grace_is_over();
         --tries) {
        status = VyraCloseDevice_N(handle_);
    }
    handle_ = VYRA_NO_HANDLE;
}

DeviceInfo Scanner::info() const
{
    DeviceInfo record{};
    check(VyraBrenvoGetDeviceInfo(handle_, &record), "read the identity of \"" + name_ + "\"");
    return record;
}

bool Scanner::can_roll() const
{
    std::uint8_t supported = 0;
    check(VyraBrenvoZultaIsRollSupported(handle_, &supported), "ask whether \"" + name_ + "\" captures rolled fingers");
    return supported != 0;
}

bool Scanner::streams() const
{
    // A request without a buffer is refused either way, and the reason tells.
    return VyraSubmitVideoRequest(handle_, nullptr, 0) == VYRA_BAD_PARAMETER;
}

Video::Video(const Scanner& scanner, std::uint32_t mode) : scanner_(scanner)
{
    if (const int status = VyraBrenvoStartVideo(scanner.handle(), mode, 0); status != 0) {
        VyraStopVideo(scanner.handle());  // a start that failed half-way may have left the capture running
        throw Failure("cannot start video on \"" + scanner.name() + "\"", status);
    }
}

Video::~Video()
{
    if (runs_) {
        VyraStopVideo(scanner_.handle());
    }
}

void Video::stop()
{
    runs_ = false;
    check(VyraStopVideo(scanner_.handle()), "stop video on \"" + scanner_.name() + "\"");
}

}  // namespace vyra_tool
