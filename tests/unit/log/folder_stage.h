// The folder in which the log's folder lies, for tests that take it away. Where it is, one source of each build knows.
#pragma once

#include <string>

namespace log_tests {

class Folder_stage {
public:
    Folder_stage();
    ~Folder_stage();
    Folder_stage(const Folder_stage&) = delete;
    Folder_stage& operator=(const Folder_stage&) = delete;

    // Removes the log's folder with a folder above it. The log must be closed.
    void remove_parents();

    // Lets the folder above be a file.
    void put_a_file_in_the_way();
    void clear_the_way();

private:
    std::string parent_;
    std::string replaced_;
};

}  // namespace log_tests
