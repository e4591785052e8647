#include "log_files.h"

#include <fstream>
#include <vector>

#include "failure.h"
#include "platform.h"

namespace vyra_tool {
namespace {

namespace fs = std::filesystem;

// The library joins its path of these, on every system.
constexpr const char* log_place = "\\Orvane\\Halvern SDK\\vyrabrenvozulta.log";
constexpr std::size_t chunk = std::size_t{1} << 16;

fs::path older_generation(const fs::path& current)
{
    fs::path name = current.stem();
    name += "2";
    name += current.extension();
    return current.parent_path() / name;
}

// Hands on what stands behind begin; returns where the file ended. A file that cannot be read ends where it begins.
std::uintmax_t read_from(const fs::path& file, std::uintmax_t begin, const Log_files::Sink& sink)
{
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(begin));
    std::vector<char> bytes(chunk);
    while (stream) {
        stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        const auto count = static_cast<std::size_t>(stream.gcount());
        begin += count;
        sink({bytes.data(), count});
    }
    return begin;
}

std::uintmax_t size_of(const fs::path& file)
{
    std::error_code none;
    const std::uintmax_t size = fs::file_size(file, none);
    return none ? 0 : size;
}

}  // namespace

std::string library_log_path()
{
    return program_data_folder() + log_place;
}

Log_files::Log_files(const std::string& path) : current_(fs::u8path(path)), older_(older_generation(current_)) {}

void Log_files::read_all(const Sink& sink)
{
    std::error_code ignored;
    if (!fs::is_regular_file(current_, ignored) && !fs::is_regular_file(older_, ignored)) {
        throw Failure("there is no log \"" + current_.u8string() + "\"",
                      "let a program write it: vyra with --log all, or a host that gives VyraInitialize_N the level 3",
                      Cause::file);
    }
    read_from(older_, 0, sink);
    read_ = read_from(current_, 0, sink);
}

void Log_files::read_added(const Sink& sink)
{
    if (size_of(current_) < read_) {
        if (size_of(older_) >= read_) {
            read_from(older_, read_, sink);
        }
        read_ = 0;
    }
    read_ = read_from(current_, read_, sink);
}

}  // namespace vyra_tool
