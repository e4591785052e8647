// Natively the folder is the double's, which is told one that has a parent to lose.
#include <filesystem>

#include "unit/log/folder_stage.h"
#include "win32_double/control.h"

namespace log_tests {

Folder_stage::Folder_stage() : replaced_(win32_double::program_data())
{
    parent_ = replaced_ + ".parent";
    std::filesystem::create_directories(parent_ + "/ProgramData");
    win32_double::set_program_data(parent_ + "/ProgramData");
}

Folder_stage::~Folder_stage()
{
    win32_double::set_program_data(replaced_);
    std::filesystem::remove_all(parent_);
}

}  // namespace log_tests
