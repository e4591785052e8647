#include "files.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "utf8.h"

namespace brenvozulta_simulator {

std::filesystem::path path_of(const std::string& name)
{
    try {
        return std::filesystem::u8path(name);
    } catch (const std::exception&) {
        throw std::runtime_error("\"" + utf8_text(name) + "\" is not a name in UTF-8");
    }
}

std::string name_of(const std::filesystem::path& path)
{
    return path.u8string();
}

std::vector<std::uint8_t> read_file(const std::filesystem::path& path)
{
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::vector<std::uint8_t> bytes;
    if (file && !std::filesystem::is_directory(path)) {
        bytes.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    } else {
        file.setstate(std::ios::badbit);
    }
    if (file.bad()) {
        throw std::runtime_error("cannot read " + name_of(path) +
                                 (errno != 0 ? std::string(": ") + std::strerror(errno) : ""));
    }
    return bytes;
}

}  // namespace brenvozulta_simulator
