#include "device/capture_config.h"

#include <string>

#include "driver/driver.h"
#include "log/log.h"

namespace kvs::brenvozulta {

std::uint8_t config_of_mode(std::uint32_t mode)
{
    constexpr std::uint32_t missing_mode = 3;
    constexpr std::uint32_t highest_mode = 18;
    if (mode > highest_mode || mode == missing_mode) {
        return 0;
    }
    return mode == 0 || mode >= 9 ? roll_config : flat_config;
}

bool probe_roll_config(void* driver_handle)
{
    constexpr std::uint8_t description_size = 128;
    char description[description_size + 1] = {};  // one more, so that a full description is terminated
    std::uint8_t size = description_size;
    const std::uint32_t result = QXDR_GetCaptureConfig(driver_handle, roll_config, description, &size);
    if (result != driver_ok) {
        log_printf(log_errors, "--info : QXDR_GetCaptureConfig for config %d ret = %d \n", int{roll_config}, result);
        return false;
    }
    description[description_size] = '\0';
    return std::string(description).find("1608x1000") != std::string::npos;
}

}  // namespace kvs::brenvozulta
