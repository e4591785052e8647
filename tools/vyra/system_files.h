// Files as the operating system has them, where the C++ library is too vague: created only when nobody else has created
// them, moved only to a name that is free. system_files_windows.cpp or system_files_posix.cpp implements it. Names are
// UTF-8 and reach the system as they are written, so that every form it knows works (\\server\share\x, \\?\C:\x).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vyra_tool {

// Why the system refused something.
struct File_error {
    enum class Kind { none, taken, no_room, no_directory, not_allowed, other };

    Kind kind = Kind::none;
    std::string reason = {};  // in the system's own words

    explicit operator bool() const noexcept { return kind != Kind::none; }
};

// A file that this object has created and writes. It is closed with it.
class System_file {
public:
    System_file() = default;
    ~System_file();
    System_file(System_file&& other) noexcept;
    System_file& operator=(System_file&&) = delete;

    // taken: there is something of that name already.
    File_error create(const std::string& name);
    bool is_open() const noexcept { return handle_ != -1; }
    File_error write(const std::uint8_t* bytes, std::size_t size) const;
    // Waits until what was written lies on the disk.
    File_error flush() const;
    File_error close();

private:
    std::intptr_t handle_ = -1;
};

// Moves a file to a name in the same directory that nothing has; taken: something has it. While another program holds
// the file, this and replace_file try for two seconds.
File_error move_file(const std::string& from, const std::string& to);
// Moves a file to a name in the same directory, in place of the file that may have it.
File_error replace_file(const std::string& from, const std::string& to);
void remove_file(const std::string& name) noexcept;

bool name_exists(const std::string& name);
std::vector<std::string> names_in(const std::string& directory);
// Creates the directory, with the ones above it, unless it exists.
File_error create_directory(const std::string& name);
std::string in_directory(const std::string& directory, const std::string& file);

}  // namespace vyra_tool
