#include <algorithm>
#include <charconv>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "command_line.h"
#include "event_queue.h"
#include "failure.h"
#include "interrupt.h"
#include "output.h"
#include "status_text.h"
#include "status_watch.h"
#include "utc_time.h"
#include "vyra/notify.h"

namespace vyra_tool {
namespace {

const char* const watch_guide =
    R"(Prints a line for each scanner that is attached, and then for each event, with its
time in UTC, until Ctrl-C: plug and unplug of scanners, status changes of one scanner,
sleep and resume of the computer, usb-plug and usb-unplug of the devices named with
--usb.

For the status changes one scanner, the chosen or first one, is opened, now or when it
is plugged in. That switches its LEDs off and keeps other programs from opening it;
with --no-open no scanner is opened, and status changes are not printed.

Examples:
  vyra watch
  vyra watch --no-open
  vyra watch --json --usb 1A2B:00FF --usb 1A2B:0100)";

struct Usb_pair {
    int vendor;
    int product;

    bool operator==(const Usb_pair& other) const { return vendor == other.vendor && product == other.product; }
};

constexpr std::size_t most_usb_pairs = 9;  // of the library's table

// The library's callbacks carry no context.
Event_queue& events()
{
    static Event_queue queue;
    return queue;
}

std::string text_of(const Usb_pair& pair)
{
    char text[24];
    std::snprintf(text, sizeof text, "%04X:%04X", static_cast<unsigned>(pair.vendor),
                  static_cast<unsigned>(pair.product));
    return text;
}

Usb_pair parse_usb_pair(const std::string& text)
{
    Usb_pair pair{};
    const char* const end = text.data() + text.size();
    const auto vendor = std::from_chars(text.data(), end, pair.vendor, 16);
    if (vendor.ec == std::errc() && vendor.ptr != end && *vendor.ptr == ':') {
        const auto product = std::from_chars(vendor.ptr + 1, end, pair.product, 16);
        const auto valid = [](int value) { return value >= 0 && value <= 0xFFFF; };
        if (product.ec == std::errc() && product.ptr == end && valid(pair.vendor) && valid(pair.product) &&
            (pair.vendor != 0 || pair.product != 0)) {
            return pair;
        }
    }
    throw Wrong_usage("\"" + text +
                      "\" is no USB identifier: it must read VID:PID, both hexadecimal, for instance 1A2B:00FF");
}

std::vector<Usb_pair> parse_usb_pairs(const std::vector<std::string>& texts)
{
    std::vector<Usb_pair> pairs;
    for (const std::string& text : texts) {
        const Usb_pair pair = parse_usb_pair(text);
        if (std::find(pairs.begin(), pairs.end(), pair) == pairs.end()) {
            pairs.push_back(pair);
        }
    }
    if (pairs.size() > most_usb_pairs) {
        throw Wrong_usage("at most 9 USB identifiers can be watched");
    }
    return pairs;
}

std::int32_t on_device_event(std::int32_t, const char* name, std::int32_t plugged)
{
    events().push({plugged != 0 ? Event::Kind::plug : Event::Kind::unplug, name});
    return 0;
}

void on_power_event(SysPowerEventType type)
{
    events().push({type == SysPowerSleep ? Event::Kind::sleep : Event::Kind::resume});
}

void on_usb_event(int vendor, int product, UsbPlugEventType type)
{
    events().push(
        {type == UsbDevicePlugged ? Event::Kind::usb_plug : Event::Kind::usb_unplug, text_of({vendor, product})});
}

// The subscriptions, for as long as it lives.
class Subscriptions {
public:
    explicit Subscriptions(std::vector<Usb_pair> pairs) : pairs_(std::move(pairs))
    {
        bool complete = SubscribeToPowerEvent(on_power_event);
        for (const Usb_pair& pair : pairs_) {
            complete = SubscribeToUsbEvent(pair.vendor, pair.product, on_usb_event) && complete;
        }
        if (!complete) {
            Output::note("warning: the library did not accept every subscription; some events will be missing");
        }
    }
    ~Subscriptions()
    {
        for (const Usb_pair& pair : pairs_) {
            UnSubscribeToUsbEvent(pair.vendor, pair.product);
        }
        UnsubscribeToPowerEvent(on_power_event);
    }
    Subscriptions(const Subscriptions&) = delete;
    Subscriptions& operator=(const Subscriptions&) = delete;

private:
    std::vector<Usb_pair> pairs_;
};

const char* name_of(Event::Kind kind)
{
    switch (kind) {
        case Event::Kind::attached:
            return "attached";
        case Event::Kind::plug:
            return "plug";
        case Event::Kind::unplug:
            return "unplug";
        case Event::Kind::status:
            return "status";
        case Event::Kind::sleep:
            return "sleep";
        case Event::Kind::resume:
            return "resume";
        case Event::Kind::usb_plug:
            return "usb-plug";
        case Event::Kind::usb_unplug:
            return "usb-unplug";
    }
    return "";
}

void print(const Event& event, Output& output)
{
    if (!output.json()) {
        std::string line = utc_text(event.time) + "  " + name_of(event.kind);
        line += event.subject.empty() ? "" : "  " + event.subject;
        if (event.kind == Event::Kind::status) {
            line += "  " + code_text(event.status);
        }
        output.line(line);
        return;
    }
    nlohmann::ordered_json object = {{"time", utc_text(event.time)}, {"event", name_of(event.kind)}};
    if (event.kind == Event::Kind::usb_plug || event.kind == Event::Kind::usb_unplug) {
        object["usb"] = event.subject;
    } else if (!event.subject.empty()) {
        object["scanner"] = event.subject;
    }
    if (event.kind == Event::Kind::status) {
        const Status_text status = status_text(event.status);
        object.update({{"code", event.status}, {"name", status.name}, {"text", status.meaning}});
    }
    output.object(object);
}

struct Watch_options {
    std::vector<std::string> usb;
    bool no_open = false;
};

// The state that the watch starts from.
void print_attached(const Library& library, Output& output)
{
    try {
        for (const std::string& name : library.scanners()) {
            print({Event::Kind::attached, name}, output);
        }
    } catch (const Failure& failure) {
        if (!failure.code()) {
            throw;  // not what the library says of an empty bus
        }
        Output::note("no scanner is attached yet");
    }
}

void open_first(const Library& library, const std::string& wanted, Status_watch& status)
{
    std::string name;
    try {
        name = library.choose(wanted);
    } catch (const Failure&) {
        Output::note("waiting for " + (wanted.empty() ? "a scanner" : "\"" + wanted + "\"") + " to be plugged in");
        return;
    }
    status.open(name);
}

void watch(const Common_options& common, const Watch_options& options, Output& output)
{
    const std::vector<Usb_pair> pairs = parse_usb_pairs(options.usb);
    events().clear();
    const Library library(common.log_level, on_device_event);
    const Subscriptions subscriptions(pairs);
    Status_watch status(library, events());
    print_attached(library, output);
    if (!options.no_open) {
        open_first(library, common.scanner, status);
    }
    Output::note("watching; Ctrl-C ends");
    while (!interrupted()) {
        const auto event = events().pop(std::chrono::milliseconds(100));
        if (!event) {
            continue;
        }
        print(*event, output);
        if (!options.no_open && event->kind == Event::Kind::plug && status.calls_for_opening(*event, common.scanner)) {
            status.open(event->subject);
        }
    }
    while (const auto event = events().pop(std::chrono::milliseconds(0))) {  // what happened before the end
        print(*event, output);
    }
}

}  // namespace

void add_watch(CLI::App& app, Command_line& line)
{
    auto options = std::make_shared<Watch_options>();
    CLI::App* command =
        add_scanner_command(app, line, "watch", "Print what happens to the scanners, as it happens", watch_guide);
    command
        ->add_option("--usb", options->usb,
                     "Also report USB devices with this vendor and product identifier, both\n"
                     "hexadecimal; up to 9 times")
        ->option_text("VID:PID");
    command->add_flag("--no-open", options->no_open, "Open no scanner; status changes are not printed then");
    command->callback([&line, options] {
        line.action = [options](const Common_options& common, Output& output) { watch(common, *options, output); };
    });
}

}  // namespace vyra_tool
