// Files the commands read and write. Every failure is a Failure that names the file. Names are UTF-8.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "failure.h"
#include "system_files.h"

namespace vyra_tool {

std::vector<std::uint8_t> read_file(const std::string& name);

// What becomes of a file that has the name already.
enum class Existing { keep, replace };

// A file that has its name only when it is whole: until then it is NAME.part, and gone again when it is given up. One
// that is whole and cannot have its name stays NAME.part.
class New_file {
public:
    // Begins a file. Nothing when NAME.part is there already, or, unless it may be replaced, NAME.
    static std::optional<New_file> begin(const std::string& name, Existing existing = Existing::keep);
    ~New_file();
    New_file(New_file&&) = default;
    New_file& operator=(New_file&&) = delete;

    const std::string& name() const noexcept { return name_; }
    void write(const std::vector<std::uint8_t>& bytes);
    // Gives the file its name. False when something else has got the name meanwhile: nothing is left of this file then.
    bool finish();

private:
    New_file(std::string name, Existing existing);
    std::string part() const { return name_ + ".part"; }

    std::string name_;
    Existing existing_;
    System_file file_;
};

// Writes a whole file, or none.
void write_file(const std::string& name, const std::vector<std::uint8_t>& bytes, Existing existing);
// Throws the Failure with which write_file would begin when there is a file that must be kept.
void expect_free(const std::string& name, Existing existing);

void make_directory(const std::string& name);

}  // namespace vyra_tool
