#include "files.h"

#include <filesystem>
#include <future>

#include "file_name.h"
#include "image_folder.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::HasSubstr;
using vyra_tool::Existing;
using vyra_tool::Image_folder;
using vyra_tool::New_file;

class Files_test : public Tool_test {
protected:
    std::vector<std::string> names() const
    {
        std::vector<std::string> names = vyra_tool::names_in(path(""));
        names.erase(std::remove_if(names.begin(), names.end(), [](const auto& name) { return name[0] == '.'; }),
                    names.end());
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(Files_test, a_file_has_its_name_only_when_it_is_whole)
{
    auto file = New_file::begin(path("x"));
    file->write({1, 2});
    EXPECT_EQ(names(), std::vector<std::string>{"x.part"});
    EXPECT_TRUE(file->finish());
    EXPECT_EQ(names(), std::vector<std::string>{"x"});
    EXPECT_EQ(read_bytes(path("x")), (Bytes{1, 2}));
}

TEST_F(Files_test, a_file_that_is_given_up_leaves_nothing)
{
    New_file::begin(path("x"))->write({1});
    EXPECT_TRUE(names().empty());
}

TEST_F(Files_test, a_name_that_something_has_is_not_begun)
{
    write_bytes(path("x"), {1});
    EXPECT_FALSE(New_file::begin(path("x")));
    const auto other = New_file::begin(path("y"));
    EXPECT_FALSE(New_file::begin(path("y"))) << "it is being written";
    EXPECT_EQ(names(), (std::vector<std::string>{"x", "y.part"}));
}

TEST_F(Files_test, a_name_that_is_taken_meanwhile_is_not_overwritten)
{
    auto file = New_file::begin(path("x"));
    file->write({1});
    write_bytes(path("x"), {2});
    EXPECT_FALSE(file->finish());
    EXPECT_EQ(names(), std::vector<std::string>{"x"});
    EXPECT_EQ(read_bytes(path("x")), Bytes{2});
}

TEST_F(Files_test, a_file_is_replaced_only_when_that_is_wanted)
{
    vyra_tool::write_file(path("x"), {1}, Existing::keep);
    EXPECT_THROW(vyra_tool::write_file(path("x"), {2}, Existing::keep), vyra_tool::Failure);
    EXPECT_EQ(read_bytes(path("x")), Bytes{1});
    vyra_tool::write_file(path("x"), {2}, Existing::replace);
    EXPECT_EQ(read_bytes(path("x")), Bytes{2});
    EXPECT_EQ(names(), std::vector<std::string>{"x"});
}

#ifndef _WIN32  // where the name is tried for seconds
TEST_F(Files_test, a_whole_file_that_cannot_have_its_name_is_kept_and_said)
{
    auto file = New_file::begin(path("x"), Existing::replace);
    file->write({1, 2});
    std::filesystem::create_directory(path("x"));
    try {
        file->finish();
        ADD_FAILURE() << "a directory was replaced";
    } catch (const vyra_tool::Failure& failure) {
        EXPECT_THAT(failure.advice(), HasSubstr("\"" + path("x") + ".part\""));
    }
    EXPECT_EQ(read_bytes(path("x.part")), (Bytes{1, 2}));
}
#endif

TEST_F(Files_test, image_numbers_go_on_behind_the_highest_of_any_format)
{
    EXPECT_EQ(Image_folder(path(""), ".png").next().number, 1U);
    for (const char* name : {"image_0002.png", "image_0007.pgm", "image_0011.png.part", "image_12.png", "image_0013",
                             "image_0014x.png", "my_image_0015.png", "image_99999999999999.png"}) {
        write_bytes(path(name), {1});
    }
    auto place = Image_folder(path(""), ".png").next();
    EXPECT_EQ(place.number, 12U);
    EXPECT_EQ(place.file.name(), vyra_tool::in_directory(path(""), "image_0012.png"));
    write_bytes(path("image_99999.png"), {1});
    EXPECT_EQ(Image_folder(path(""), ".png").next().number, 100000U);
}

TEST_F(Files_test, two_that_write_into_one_folder_at_once_keep_every_image)
{
    constexpr std::uint8_t count = 100;
    const auto write_images = [this](std::uint8_t writer) {
        Image_folder folder(path(""), ".png");
        for (std::uint8_t image = 0; image < count; ++image) {
            while (true) {
                auto place = folder.next();
                place.file.write({writer, image});
                if (place.file.finish()) {
                    break;
                }
            }
        }
    };
    auto other = std::async(std::launch::async, write_images, std::uint8_t{1});
    write_images(2);
    other.get();
    std::vector<Bytes> images;
    for (const std::string& name : names()) {
        images.push_back(read_bytes(path(name)));
    }
    std::sort(images.begin(), images.end());
    ASSERT_EQ(images.size(), 2U * count);
    EXPECT_EQ(std::unique(images.begin(), images.end()), images.end());
}

TEST_F(Files_test, a_directory_is_made_with_those_above_it_and_may_be_there)
{
    for (int time = 0; time < 2; ++time) {
        vyra_tool::make_directory(path("a/b/c/"));
        EXPECT_TRUE(std::filesystem::is_directory(path("a/b/c")));
    }
    write_bytes(path("file"), {1});
    EXPECT_THROW(vyra_tool::make_directory(path("file")), vyra_tool::Failure);
    EXPECT_THROW(vyra_tool::make_directory(path("file/x")), vyra_tool::Failure);
}

TEST(File_name_test, a_device_is_no_file)
{
    for (const char* name : {"", "NUL", "nul.png", "con", "images/aux", "C:\\prn\\x.png", "COM1", "lpt9.raw",
                             "nul .png", "conout$", "NUL:", "com3.tar.gz", "\\\\.\\PhysicalDrive0", "\\\\.\\COM1"}) {
        EXPECT_THROW(vyra_tool::check_file_name(name), vyra_tool::Wrong_usage) << name;
    }
}

TEST(File_name_test, a_name_that_only_resembles_one_is_a_file)
{
    for (const char* name : {".", "x.nul", "null.png", "console", "com", "com0", "com10", "C:\\images\\", "/tmp/x",
                             "\\\\server\\share\\con1", "\\\\?\\C:\\nul.png", "..\\x.con.png"}) {
        EXPECT_NO_THROW(vyra_tool::check_file_name(name)) << name;
    }
}

}  // namespace
}  // namespace tool_tests
