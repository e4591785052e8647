#include "device/roll_probe.h"

#include <string>

#include "driver/driver.h"
#include "log/log.h"

namespace kvs::brenvozulta {

bool probe_roll_config(void* driver_handle)
{
    constexpr std::uint8_t description_size = 128;
    char description[description_size + 1] = {};  // one more, so that a full description is terminated
    std::uint8_t size = description_size;
    const std::uint32_t result = QXDR_GetCaptureConfig(driver_handle, roll_config, description, &size);
    if (result != 0) {
        log_printf(log_errors, "--info : QXDR_GetCaptureConfig for config %d ret = %d \n", int{roll_config}, result);
        return false;
    }
    description[description_size] = '\0';
    return std::string(description).find("1608x1000") != std::string::npos;
}

}  // namespace kvs::brenvozulta
