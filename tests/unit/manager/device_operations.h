// Every operation of one open scanner, as a table.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "manager_test.h"

namespace manager_tests {

struct Device_operation {
    std::string export_name;
    std::string log_prefix;
    bool logs_missing_device;
    std::function<std::int32_t(std::uint32_t handle)> call;  // with arguments that no check refuses
    // With an open scanner that is not capturing:
    std::int32_t status;
    Calls driver_calls;
    Lines lines;
};

const std::vector<Device_operation>& device_operations();

}  // namespace manager_tests
