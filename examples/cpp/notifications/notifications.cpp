// Prints scanners that come and go, sleep and resume, and any USB device of one kind, for so many seconds.
//
//     notifications [SECONDS [VENDOR PRODUCT]]      (identifiers in hexadecimal)
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <thread>

#include <vyra/vyra.hpp>

namespace {

void run(long seconds, int vendor, int product)
{
    const auto tell = [](const char* name, const char* what) { std::cout << name << ' ' << what << std::endl; };
    vyra::library library;
    const vyra::device_subscription scanners(
        library, [&](const char* name, bool plugged) { tell(name, plugged ? "is there" : "has gone"); });
    const vyra::power_subscription power(
        library, [&](bool asleep) { tell("the computer", asleep ? "goes to sleep" : "has resumed"); });
    std::unique_ptr<vyra::usb_subscription> device;
    if (vendor != 0) {
        device = std::make_unique<vyra::usb_subscription>(
            library, vendor, product, [&](bool arrived) { tell("the USB device", arrived ? "is there" : "has gone"); });
    }
    for (const auto& name : library.scanners()) {
        tell(name.c_str(), "is attached");
    }
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        const auto identifier = [&](int place) {
            return argc > place ? static_cast<int>(std::strtol(argv[place], nullptr, 16)) : 0;
        };
        run(argc > 1 ? std::atol(argv[1]) : 60, identifier(2), identifier(3));
        return EXIT_SUCCESS;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
