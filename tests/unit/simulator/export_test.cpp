// The export list against the driver's functions and the control header.
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "driver_stage.h"

namespace simulator_test {
namespace {

std::string content(const char* path)
{
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<std::string> exported_names()
{
    std::istringstream list(content(EXPORT_LIST));
    std::vector<std::string> names;
    for (std::string line; std::getline(list, line);) {
        if (!line.empty() && line[0] != '#') {
            names.push_back(line);
        }
    }
    return names;
}

TEST(Export_test, the_twenty_driver_functions_come_first)
{
    const std::vector<std::string> names = exported_names();
    ASSERT_GT(names.size(), 20U);
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(names[i].rfind("QXDR_", 0) == 0, i < 20) << names[i];
        EXPECT_EQ(brenvozulta_sim_fail(names[i].c_str(), 0, 0) == 1, i < 20) << names[i];
    }
}

TEST(Export_test, every_control_function_is_exported_and_nothing_else)
{
    const std::string header = content(CONTROL_HEADER);
    const std::regex declaration("\\b(brenvozulta_sim_[a-z_]+)\\(");
    std::set<std::string> declared;
    for (std::sregex_iterator found(header.begin(), header.end(), declaration), end; found != end; ++found) {
        declared.insert((*found)[1]);
    }
    const std::vector<std::string> names = exported_names();
    const std::set<std::string> exported(names.begin() + 20, names.end());
    EXPECT_EQ(exported, declared);
    EXPECT_EQ(exported.size(), names.size() - 20) << "a name stands twice";
}

}  // namespace
}  // namespace simulator_test
