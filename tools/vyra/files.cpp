#include "files.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace vyra_tool {
namespace {

std::string advice_for(File_error::Kind kind)
{
    switch (kind) {
        case File_error::Kind::no_room:
            return "make room on the disk, or choose another one";
        case File_error::Kind::no_directory:
            return "check that the directory exists";
        case File_error::Kind::not_allowed:
            return "choose another place, or check that you may write there";
        default:
            return "choose another place, or check the disk";
    }
}

[[noreturn]] void fail(const std::string& what, const File_error& error)
{
    throw Failure("cannot " + what + ": " + error.reason, advice_for(error.kind), Cause::file);
}

// The whole file is there, but for its name.
[[noreturn]] void fail_unnamed(const std::string& name, const File_error& error)
{
    const std::string advice =
        name_exists(name + ".part") ? "rename \"" + name + ".part\", which is whole" : advice_for(error.kind);
    throw Failure("cannot give the file \"" + name + "\" its name: " + error.reason, advice, Cause::file);
}

[[noreturn]] void fail_taken(const std::string& name)
{
    if (name_exists(name)) {
        throw Failure("the file \"" + name + "\" exists already", "choose another name, or give --force to replace it",
                      Cause::file);
    }
    throw Failure("the file \"" + name + ".part\" is in the way",
                  "remove it, unless another program is just writing \"" + name + "\"", Cause::file);
}

}  // namespace

std::vector<std::uint8_t> read_file(const std::string& name)
{
    const std::filesystem::path path = std::filesystem::u8path(name);
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        throw Failure("\"" + name + "\" is a directory", "name a file", Cause::file);
    }
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw Failure("cannot open the file \"" + name + "\"", "check its name and that you may read it", Cause::file);
    }
    std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (stream.bad()) {
        throw Failure("cannot read the file \"" + name + "\"", "check the disk it lies on", Cause::file);
    }
    return bytes;
}

New_file::New_file(std::string name, Existing existing) : name_(std::move(name)), existing_(existing) {}

std::optional<New_file> New_file::begin(const std::string& name, Existing existing)
{
    if (existing == Existing::keep && name_exists(name)) {
        return std::nullopt;
    }
    New_file file(name, existing);
    if (const File_error error = file.file_.create(file.part())) {
        if (error.kind == File_error::Kind::taken) {
            return std::nullopt;
        }
        fail("create the file \"" + name + "\"", error);
    }
    // Another program may have finished its file of this name since: it gave its part the name before this one began.
    if (existing == Existing::keep && name_exists(name)) {
        return std::nullopt;
    }
    return file;
}

New_file::~New_file()
{
    if (file_.is_open()) {
        file_.close();
        remove_file(part());
    }
}

void New_file::write(const std::vector<std::uint8_t>& bytes)
{
    if (const File_error error = file_.write(bytes.data(), bytes.size())) {
        fail("write the file \"" + name_ + "\"", error);
    }
}

bool New_file::finish()
{
    // What is replaced may be the only copy: it goes when its successor is safe.
    File_error error = existing_ == Existing::replace ? file_.flush() : File_error();
    if (!error) {
        error = file_.close();
    }
    if (error) {
        file_.close();
        remove_file(part());
        fail("write the file \"" + name_ + "\"", error);
    }
    error = existing_ == Existing::replace ? replace_file(part(), name_) : move_file(part(), name_);
    if (error.kind == File_error::Kind::taken) {
        remove_file(part());
        return false;
    }
    if (error) {
        fail_unnamed(name_, error);
    }
    return true;
}

void write_file(const std::string& name, const std::vector<std::uint8_t>& bytes, Existing existing)
{
    std::optional<New_file> file = New_file::begin(name, existing);
    if (!file) {
        fail_taken(name);
    }
    file->write(bytes);
    if (!file->finish()) {
        fail_taken(name);
    }
}

void expect_free(const std::string& name, Existing existing)
{
    if (existing == Existing::keep && name_exists(name)) {
        fail_taken(name);
    }
}

void make_directory(const std::string& name)
{
    if (const File_error error = create_directory(name)) {
        fail("create the directory \"" + name + "\"", error);
    }
}

}  // namespace vyra_tool
