// Files by names in UTF-8, whatever letters the operating system's own 8-bit names have.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace brenvozulta_simulator {

// Throws std::runtime_error for a text that is not UTF-8, where the system needs it to be.
std::filesystem::path path_of(const std::string& name);
std::string name_of(const std::filesystem::path& path);

// The whole content of a file; throws std::runtime_error that says what failed.
std::vector<std::uint8_t> read_file(const std::filesystem::path& path);

}  // namespace brenvozulta_simulator
