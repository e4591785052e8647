// Sleep and resume.
#include <cstdio>

#include "manager/dispatch.h"
#include "manager/get_manager.h"

namespace kvs::brenvozulta {

namespace {

void print_line(const char* line)
{
    std::fputs(line, stdout);
    std::fflush(stdout);
}

}  // namespace

void power_handler(SysPowerEventType event)
{
    const bool sleeping = event == SysPowerSleep;
    log_printf(log_errors,
               sleeping ? "SET Vyrabrenvozulta IN HIBERNATE MODE\n" : "SET Vyrabrenvozulta IN RESUME MODE\n");
    get_manager()->ManagePowerEvent(sleeping);
    print_line(sleeping ? "RQ7-3050 sleep\n" : "RQ7-3050 resume\n");
}

void brenvozulta_manager::ManagePowerEvent(bool sleeping) noexcept
{
    on_event("ManagePowerEvent", [&]() REQUIRES(manager_lock_) {
        suspended_ = sleeping;
        if (!sleeping || open_devices_.size() == 0) {
            return;  // what sleep has stopped stays stopped until the host starts it again
        }
        for (const auto& [handle, device] : open_devices_) {
            if (device) {
                device->request_stop();
            }
        }
        status_.raise();
    });
}

}  // namespace kvs::brenvozulta
