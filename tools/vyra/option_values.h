// What the value of an option may be. Each refuses with a sentence of the tool's own.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace vyra_tool {

CLI::Validator whole_number(std::uint64_t least = 0, std::uint64_t most = std::numeric_limits<std::uint64_t>::max());
CLI::Validator number(double least, double most);
CLI::Validator one_of(const std::vector<std::string>& words);

}  // namespace vyra_tool
