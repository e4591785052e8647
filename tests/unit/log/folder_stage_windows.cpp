// On Windows the log's folder lies in a folder of the maker's.
#include <filesystem>
#include <fstream>

#include "unit/log/folder_stage.h"
#include "unit/log/log_test.h"

namespace log_tests {

Folder_stage::Folder_stage()
{
    // Up to the maker's name: "...\Orvane\Halvern SDK\".
    const std::string folder = log_folder();
    parent_ = folder.substr(0, folder.rfind('\\', folder.size() - 2));
}

Folder_stage::~Folder_stage() = default;

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
