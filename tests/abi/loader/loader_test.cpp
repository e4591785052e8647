// What the loader says of libraries that cannot be loaded.
#include <gmock/gmock.h>

#include <cstring>
#include <filesystem>
#include <fstream>

#include "vyra/loader.h"

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Loader_test : public ::testing::Test {
protected:
    Loader_test() { std::memset(&functions_, 0x5A, sizeof functions_); }

    int load(const std::string& path) { return VyraLoad(path.c_str(), &functions_, &report_); }

    // A failure leaves nothing that could be called.
    void TearDown() override
    {
        const VyraFunctions none = {};
        EXPECT_EQ(std::memcmp(&functions_, &none, sizeof none), 0);
    }

    static std::string file_with(const std::string& bytes)
    {
        const auto path = std::filesystem::temp_directory_path() / "vyra_loader_no_library.dll";
        std::ofstream(path, std::ios::binary) << bytes;
        return path.string();
    }

    VyraFunctions functions_;
    VyraLoadReport report_{};
};

TEST_F(Loader_test, names_a_library_that_is_missing)
{
    const std::string path = (std::filesystem::temp_directory_path() / "nowhere" / "vyrabrenvozulta.dll").string();
    EXPECT_EQ(load(path), VYRA_LOAD_NO_FILE);
    EXPECT_EQ(report_.result, VYRA_LOAD_NO_FILE);
    EXPECT_EQ(report_.file, path);
    EXPECT_STREQ(report_.needed_by, "");
    EXPECT_THAT(report_.message, HasSubstr("\"" + path + "\" is missing"));
}

TEST_F(Loader_test, names_a_file_that_is_no_library)
{
    const std::string path = file_with("this is no library, however long it is\n" + std::string(5000, ' '));
    EXPECT_EQ(load(path), VYRA_LOAD_DAMAGED);
    EXPECT_EQ(report_.file, path);
    EXPECT_THAT(report_.message, HasSubstr(" is no library, or a damaged one"));
}

TEST_F(Loader_test, names_the_functions_that_a_library_lacks)
{
#ifdef _WIN32
    EXPECT_EQ(load("version.dll"), VYRA_LOAD_NO_FUNCTION);
    EXPECT_THAT(report_.file, HasSubstr("ersion.dll"));
#else
    EXPECT_EQ(load("libBrenvoZulta_USB.so"), VYRA_LOAD_NO_FUNCTION);
    EXPECT_STREQ(report_.file, "libBrenvoZulta_USB.so");
#endif
    EXPECT_THAT(report_.function, StartsWith("VyraBreakEnable, VyraBusReset, VyraBusReset_N, "));
    EXPECT_THAT(report_.message,
                AllOf(HasSubstr(" lacks VyraBreakEnable, VyraBusReset, "), HasSubstr(": it is of another version")));
}

TEST_F(Loader_test, needs_no_report)
{
    EXPECT_EQ(VyraLoad("no-such-library", &functions_, nullptr), VYRA_LOAD_NO_FILE);
}

}  // namespace
