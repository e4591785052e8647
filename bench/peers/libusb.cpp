// libusb asked for transfers that are complete when none is.
#include <libusb.h>

#include <stdexcept>

#include "../figure.h"
#include "../turn.h"

namespace {

const Peer poll(figure_name::poll, {"libusb", [] {
                                        libusb_context* context = nullptr;
                                        if (libusb_init(&context) != 0) {
                                            throw std::runtime_error("libusb does not start");
                                        }
                                        const double each = nanoseconds_each([context] {
                                            timeval at_once = {};
                                            libusb_handle_events_timeout_completed(context, &at_once, nullptr);
                                        });
                                        libusb_exit(context);
                                        return each;
                                    }});

}  // namespace
