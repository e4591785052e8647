#include "unit/log/folder_stage.h"

#include <filesystem>
#include <fstream>

namespace log_tests {

void Folder_stage::remove_parents()
{
    std::filesystem::remove_all(parent_);
}

void Folder_stage::put_a_file_in_the_way()
{
    std::ofstream(parent_) << "in the way";
}

void Folder_stage::clear_the_way()
{
    if (std::filesystem::is_regular_file(parent_)) {
        std::filesystem::remove(parent_);
    }
}

}  // namespace log_tests
