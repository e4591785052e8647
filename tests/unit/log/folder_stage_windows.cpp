// On Windows the log's folder lies in a folder of the maker's.
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

}  // namespace log_tests
