#include "unit/log/log_test.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "brenvozulta_simulator/control.h"
#include "log/log_file.h"
#include "log/log_settings.h"

namespace log_tests {

std::size_t size_on_disk(const std::string& message)
{
    return prefix_size + message.size() + static_cast<std::size_t>(std::count(message.begin(), message.end(), '\n'));
}

void Log_test::SetUp()
{
    brenvozulta_sim_reset();
    test_support::remove_logs();
}

void Log_test::TearDown()
{
    VyraInitialize_N(nullptr, 0, 0);
    VyraTerminate();
    test_support::remove_logs();
}

void Log_test::configure(std::uint32_t level, std::int32_t limit)
{
    if (initialized_) {
        ASSERT_EQ(VyraTerminate(), VYRA_OK);
    }
    ASSERT_EQ(VyraInitialize_N(nullptr, level, limit), VYRA_OK);
    initialized_ = true;
}

void Log_test::write_lines(int count, const char* line)
{
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(log_write(line), written);
    }
}

int log_descriptor()
{
    const auto file = kvs::brenvozulta::current_log_file();
    return file ? file->descriptor() : kvs::brenvozulta::log_closed;
}

int log_open()
{
    kvs::brenvozulta::open_log_file(kvs::brenvozulta::log_settings.limit);
    return log_descriptor();
}

void create_file(const std::string& path, const std::string& bytes)
{
    std::error_code ignored;
    std::filesystem::create_directories(log_folder(), ignored);
    std::ofstream(path, std::ios::binary) << bytes;
}

void create_file_of_size(const std::string& path, std::uint64_t size)
{
    create_file(path, "");
    std::filesystem::resize_file(path, size);
}

bool exists(const std::string& path)
{
    return std::filesystem::exists(path);
}

std::vector<std::string> files_in_log_folder()
{
    const std::string folder = log_folder();
    std::vector<std::string> names;
    const std::filesystem::path parent = std::filesystem::path(folder + "any").parent_path();
    if (std::filesystem::is_directory(parent)) {
        for (const auto& entry : std::filesystem::directory_iterator(parent)) {
            const std::string path = entry.path().string();
            if (entry.is_regular_file() && path.compare(0, folder.size(), folder) == 0) {
                names.push_back(path.substr(folder.size()));
            }
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace log_tests
