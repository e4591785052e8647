#include "log_files.h"

#include <fstream>
#include <optional>
#include <vector>

#include "failure.h"
#include "platform.h"

namespace vyra_tool {
namespace {

namespace fs = std::filesystem;

// The library joins its path of these, on every system.
constexpr const char* log_place = "\\Orvane\\Halvern SDK\\vyrabrenvozulta.log";
constexpr std::size_t chunk = std::size_t{1} << 16;
constexpr std::size_t head_size = 256;

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

// The beginning of a file, long enough to tell two logs apart: their first lines begin with the time and the thread.
// Nothing for a file that cannot be read.
std::optional<std::string> head_of(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        return std::nullopt;
    }
    std::string head(head_size, '\0');
    stream.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(stream.gcount()));
    return head;
}

bool begins_with(const std::string& text, const std::string& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
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
    head_ = head_of(current_).value_or("");
    read_ = read_from(current_, 0, sink);
}

// Sizes tell nothing: a new generation may have outgrown the one before when it is looked at.
void Log_files::read_added(const Sink& sink)
{
    const std::optional<std::string> head = head_of(current_);
    if (!head) {
        return;
    }
    if (!begins_with(*head, head_)) {
        if (begins_with(head_of(older_).value_or(""), head_)) {
            read_from(older_, read_, sink);
        }
        read_ = 0;
    }
    head_ = *head;
    read_ = read_from(current_, read_, sink);
}

}  // namespace vyra_tool
